#include "app/terminal/Sheet.h"

#include <algorithm>
#include <string>
#include <vector>

#include "app/terminal/Text.h"

namespace zym::host {
namespace {

constexpr std::size_t textWidth = 80;
constexpr std::string_view indent = "  ";

/// The lines of a text, those too long broken, without blank ones around them.
std::vector<std::string> linesOf(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const auto parts = wrapped(printable(text.substr(0, end)), textWidth - indent.size());
    lines.insert(lines.end(), parts.begin(), parts.end());
    if (parts.empty() && !lines.empty()) lines.emplace_back();
    const bool isPair = text.substr(end).starts_with("\r\n");
    text.remove_prefix(std::min(text.size(), end + (isPair ? 2 : 1)));
  }
  while (!lines.empty() && lines.back().empty()) lines.pop_back();
  return lines;
}

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
  const std::vector<std::string> lines = linesOf(text);
  if (lines.empty()) return;
  out_ << '\n';
  this->heading(heading);
  for (const std::string& line : lines) out_ << (line.empty() ? "" : indent) << line << '\n';
}

void Sheet::heading(std::string_view text) {
  if (look_ == Look::Terminal) {
    out_ << "\033[1m" << text << "\033[0m\n";
  } else {
    out_ << text << '\n';
  }
}

}  // namespace zym::host
