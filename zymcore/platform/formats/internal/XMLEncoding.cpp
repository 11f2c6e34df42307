#include "zymcore/platform/formats/internal/XMLEncoding.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include "zymcore/platform/text/NSString.h"

namespace zym {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t declarationRoom = 256;

bool isInRange(char c, unsigned first, unsigned last) noexcept {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= first && byte <= last;
}

// ---- Wide characters

// With its byte-order mark, or absent.
const char* wideEncoding(std::string_view bytes) noexcept {
  struct Pattern {
    std::string_view start;
    const char* encoding;
  };
  constexpr Pattern marks[] = {{"\0\0\xFE\xFF"sv, "UTF-32BE"},
                               {"\xFF\xFE\0\0"sv, "UTF-32LE"},
                               {"\xFE\xFF"sv, "UTF-16BE"},
                               {"\xFF\xFE"sv, "UTF-16LE"}};
  for (const Pattern& pattern : marks) {
    if (bytes.starts_with(pattern.start)) return pattern.encoding;
  }
  const auto begins = [&](std::size_t at) {
    return bytes.size() >= 2 && "< \t\r\n"sv.find(bytes[at]) != std::string_view::npos &&
           bytes[1 - at] == '\0';
  };
  if (begins(1)) return "UTF-16BE";
  return begins(0) ? "UTF-16LE" : nullptr;
}

// Absent where there is no such encoding. What it has no character for becomes U+FFFD.
std::optional<std::string> convert(std::string_view bytes, const char* encoding) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open(encoding, &status),
                                                                     &ucnv_close);
  if (U_FAILURE(status)) return std::nullopt;
  const auto into = [&](char* text, std::int32_t room) {
    status = U_ZERO_ERROR;
    return ucnv_toAlgorithmic(UCNV_UTF8, converter.get(), text, room, bytes.data(),
                              static_cast<std::int32_t>(bytes.size()), &status);
  };
  std::string text(static_cast<std::size_t>(into(nullptr, 0)), '\0');
  into(text.data(), static_cast<std::int32_t>(text.size()));
  if (U_FAILURE(status)) return std::nullopt;
  return text;
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

std::optional<std::string> fromDeclared(std::string_view bytes) {
  constexpr std::string_view others[] = {"ISO-8859-1", "US-ASCII", "UTF-8"};
  const std::optional<Declaration> declaration = declarationIn(bytes);
  if (!declaration) return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  const char* const name = ucnv_getAlias(declaration->encoding.c_str(), 0, &status);
  if (!name || std::ranges::find(others, name) != std::end(others)) return std::nullopt;
  std::optional<std::string> text = convert(bytes, name);
  // The declaration couldn't have been read in an encoding that doesn't extend ASCII.
  if (text && !text->starts_with(declaration->before)) return std::nullopt;
  return text;
}

}  // namespace

std::string_view textOfXML(std::string_view bytes, std::string& converted) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  if (const char* const encoding = wideEncoding(bytes)) {
    converted = convert(bytes, encoding).value_or("");
    bytes = converted;
  }
  if (bytes.starts_with(mark)) bytes.remove_prefix(mark.size());
  if (isUTF8(bytes)) return bytes;

  std::optional<std::string> text = fromMostlyUTF8(bytes);
  if (!text) text = fromDeclared(bytes);
  converted = text ? *std::move(text) : fromWindows(bytes);
  return converted;
}

}  // namespace zym
