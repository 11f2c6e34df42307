#include "app/terminal/Sheet.h"

#include <string>

#include "app/terminal/Text.h"

namespace zym::host {
namespace {

constexpr std::size_t textWidth = 80;
constexpr std::string_view indent = "  ";

}  // namespace

void Sheet::title(std::string_view text) {
  heading(text);
  out_ << std::string(displayWidth(text), '=') << '\n';
}

void Sheet::remark(std::string_view text) {
  for (const std::string& line : wrapped(text, textWidth)) out_ << line << '\n';
}

void Sheet::section(std::string_view heading, const Table& table) {
  if (table.empty()) return;
  out_ << '\n';
  this->heading(heading);
  for (const std::string& line : table.lines()) out_ << indent << line << '\n';
}

void Sheet::section(std::string_view heading, std::string_view text) {
  const std::vector<std::string> lines = wrapped(text, textWidth - indent.size());
  if (lines.empty()) return;
  out_ << '\n';
  this->heading(heading);
  for (const std::string& line : lines) out_ << indent << line << '\n';
}

void Sheet::heading(std::string_view text) {
  if (look_ == Look::Terminal) {
    out_ << "\033[1m" << text << "\033[0m\n";
  } else {
    out_ << text << '\n';
  }
}

}  // namespace zym::host
