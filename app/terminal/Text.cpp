#include "app/terminal/Text.h"

#include <algorithm>

namespace zym::host {
namespace {

constexpr char32_t broken = 0xFFFFFFFF;

struct Range {
  char32_t first, last;
};
// The blocks that matter for names of beers and ingredients.
constexpr Range withoutWidth[] = {{0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD},
                                  {0x064B, 0x065F}, {0x0E34, 0x0E3A}, {0x0E47, 0x0E4E},
                                  {0x1AB0, 0x1AFF}, {0x200B, 0x200D}, {0x20D0, 0x20FF},
                                  {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}};
constexpr Range wide[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},
                          {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},
                          {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},   {0x1F300, 0x1F64F},
                          {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

template <std::size_t Count>
bool isIn(char32_t character, const Range (&ranges)[Count]) {
  return std::ranges::any_of(ranges, [character](const Range& range) {
    return character >= range.first && character <= range.last;
  });
}

/// Takes the first character off the text; `broken`, and one byte, where it is no UTF-8.
char32_t takeCharacter(std::string_view& text) {
  const auto first = static_cast<unsigned char>(text.front());
  const std::size_t length = first < 0x80   ? 1
                             : first < 0xC2 ? 0
                             : first < 0xE0 ? 2
                             : first < 0xF0 ? 3
                             : first < 0xF5 ? 4
                                            : 0;
  char32_t character = length == 1 ? first : first & (0xFFU >> (length + 1));
  bool isGood = length > 0 && text.size() >= length;
  for (std::size_t i = 1; isGood && i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[i]);
    isGood = (next & 0xC0) == 0x80;
    character = character << 6 | (next & 0x3F);
  }
  constexpr char32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
  isGood = isGood && character >= least[length] && character <= 0x10FFFF &&
           (character < 0xD800 || character > 0xDFFF);
  text.remove_prefix(isGood ? length : 1);
  return isGood ? character : broken;
}

bool isControl(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x2028 || c == 0x2029 ||
         (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

std::size_t widthOf(char32_t character) {
  if (isIn(character, withoutWidth)) return 0;
  return isIn(character, wide) ? 2 : 1;
}

}  // namespace

std::string printable(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const std::string_view before = text;
    const char32_t character = takeCharacter(text);
    if (character == broken) {
      result += '?';
    } else if (isControl(character)) {
      result += ' ';
    } else {
      result += before.substr(0, before.size() - text.size());
    }
  }
  return result;
}

std::size_t displayWidth(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) width += widthOf(takeCharacter(text));
  return width;
}

std::string padded(std::string_view text, std::size_t width) {
  const std::size_t taken = displayWidth(text);
  return std::string(text) + std::string(width > taken ? width - taken : 0, ' ');
}

std::string shortened(std::string_view text, std::size_t width) {
  std::string_view rest = text;
  std::size_t taken = 0;
  std::size_t kept = 0;
  while (!rest.empty()) {
    taken += widthOf(takeCharacter(rest));
    if (taken > width) return std::string(text.substr(0, kept)) + "…";
    if (taken < width) kept = text.size() - rest.size();
  }
  return std::string(text);
}

std::vector<std::string> wrapped(std::string_view text, std::size_t width) {
  std::vector<std::string> lines;
  std::size_t taken = 0;
  while (true) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    if (text.empty()) return lines;
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(word.size());
    const std::size_t wordWidth = displayWidth(word);
    if (lines.empty() || taken + 1 + wordWidth > width) {
      lines.emplace_back(word);
      taken = wordWidth;
    } else {
      lines.back().append(" ").append(word);
      taken += 1 + wordWidth;
    }
  }
}

}  // namespace zym::host
