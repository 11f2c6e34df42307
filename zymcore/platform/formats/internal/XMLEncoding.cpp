#include "zymcore/platform/formats/internal/XMLEncoding.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <optional>

#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/text/TextEncoding.h"

namespace zym {
namespace {

constexpr std::size_t declarationRoom = 256;

bool isInRange(char c, unsigned first, unsigned last) noexcept {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= first && byte <= last;
}

// ---- Single bytes

// 0x80 to 0x9F of Windows-1252; 0 for those that have none.
constexpr std::string_view windowsCharacters[] = {
    "€", "\u0081", "‚",      "ƒ", "„",      "…",      "†", "‡",      "ˆ", "‰", "Š",
    "‹", "Œ",      "\u008D", "Ž", "\u008F", "\u0090", "‘", "’",      "“", "”", "•",
    "–", "—",      "˜",      "™", "š",      "›",      "œ", "\u009D", "ž", "Ÿ"};

void appendWindowsCharacter(std::string& text, char byte) {
  const auto code = static_cast<unsigned char>(byte);
  if (isInRange(byte, 0x80, 0x9F)) {
    text += windowsCharacters[code - 0x80];
  } else {
    text += static_cast<char>(0xC0 | code >> 6U);
    text += static_cast<char>(0x80 | (code & 0x3FU));
  }
}

std::string fromWindows(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  for (const char byte : bytes) {
    if (isInRange(byte, 0, 0x7F)) {
      text += byte;
    } else {
      appendWindowsCharacter(text, byte);
    }
  }
  return text;
}

// ---- UTF-8

// Calls valid(stretch) and invalid(byte) in order.
template <class Valid, class Invalid>
void forEachStretch(std::string_view text, Valid valid, Invalid invalid) {
  while (!text.empty()) {
    const std::size_t length = lengthOfValidUTF8(text);
    valid(text.substr(0, length));
    text.remove_prefix(length);
    if (text.empty()) return;
    invalid(text.front());
    text.remove_prefix(1);
  }
}

std::string_view withoutCutCharacter(std::string_view text) noexcept {
  for (std::size_t length = 1; length <= std::min<std::size_t>(3, text.size()); ++length) {
    const char first = text[text.size() - length];
    if (isInRange(first, 0x80, 0xBF)) continue;
    const std::size_t due = isInRange(first, 0xF0, 0xF4)   ? 4
                            : isInRange(first, 0xE0, 0xEF) ? 3
                            : isInRange(first, 0xC2, 0xDF) ? 2
                                                           : 1;
    return text.substr(0, text.size() - (due > length ? length : 0));
  }
  return text;
}

std::optional<std::string> fromMostlyUTF8(std::string_view bytes) {
  bytes = withoutCutCharacter(bytes);
  std::size_t valid = 0;
  std::size_t invalid = 0;
  forEachStretch(
      bytes,
      [&](std::string_view stretch) {
        valid += static_cast<std::size_t>(
            std::ranges::count_if(stretch, [](char c) { return isInRange(c, 0xC0, 0xFF); }));
      },
      [&](char) { ++invalid; });
  if (valid == 0 || valid < invalid) return std::nullopt;

  std::string text;
  text.reserve(bytes.size() + invalid);
  forEachStretch(
      bytes, [&](std::string_view stretch) { text += stretch; },
      [&](char byte) { appendWindowsCharacter(text, byte); });
  return text;
}

// ---- What is declared

// The text's beginning up to the name of the encoding, and the name.
struct Declaration {
  std::string_view before;
  std::string encoding;
};
std::optional<Declaration> declarationIn(std::string_view bytes) {
  const std::string_view start = bytes.substr(0, declarationRoom);
  constexpr std::string_view mark = "encoding";
  const std::size_t place = start.find(mark);
  const std::size_t open = start.find_first_of("\"'", place);
  if (open == std::string_view::npos) return std::nullopt;
  const std::string_view name = start.substr(open + 1);
  const std::size_t length = name.find(start[open]);
  // The names of converters could have options and paths in them.
  const bool isName = length != 0 && length != std::string_view::npos &&
                      std::ranges::all_of(name.substr(0, length), [](char c) {
                        return isInRange(c, 'a', 'z') || isInRange(c, 'A', 'Z') ||
                               isInRange(c, '0', '9') || c == '-' || c == '_' || c == '.';
                      });
  if (!isName) return std::nullopt;
  return Declaration{start.substr(0, open), std::string(name.substr(0, length))};
}

// Null where none is declared that is known.
const char* encodingOf(const std::optional<Declaration>& declaration) {
  UErrorCode status = U_ZERO_ERROR;
  return declaration ? ucnv_getAlias(declaration->encoding.c_str(), 0, &status) : nullptr;
}

std::optional<std::string> fromDeclared(std::string_view bytes) {
  constexpr std::string_view others[] = {"ISO-8859-1", "US-ASCII", "UTF-8"};
  const std::optional<Declaration> declaration = declarationIn(bytes);
  const char* const name = encodingOf(declaration);
  if (!name || std::ranges::find(others, name) != std::end(others)) return std::nullopt;
  std::optional<std::string> text = stringFromEncoding(bytes, name, InvalidBytes::Replaced);
  // The declaration couldn't have been read in an encoding that doesn't extend ASCII.
  if (text && !text->starts_with(declaration->before)) return std::nullopt;
  return text;
}

}  // namespace

std::string_view textOfXML(std::string_view bytes, std::string& converted) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  if (const char* const encoding = wideEncodingOf(bytes)) {
    converted = stringFromEncoding(bytes, encoding, InvalidBytes::Replaced).value_or("");
    bytes = converted;
  }
  if (bytes.starts_with(mark)) bytes.remove_prefix(mark.size());
  if (isUTF8(bytes)) return bytes;

  std::optional<std::string> text = fromMostlyUTF8(bytes);
  if (!text) text = fromDeclared(bytes);
  converted = text ? *std::move(text) : fromWindows(bytes);
  return converted;
}

bool declaresOtherEncoding(std::string_view bytes) {
  const char* const name = encodingOf(declarationIn(bytes));
  return name && name != std::string_view("UTF-8");
}

}  // namespace zym
