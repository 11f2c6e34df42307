#include "zymcore/platform/text/NSString.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <stdexcept>

namespace zym {
namespace {

constexpr char32_t replacement = 0xFFFD;

std::size_t lengthOfASCIIPrefix(std::string_view text) noexcept {
  std::size_t at = 0;
  for (; at + 8 <= text.size(); at += 8) {
    std::uint64_t bytes;
    std::memcpy(&bytes, text.data() + at, 8);
    if (bytes & 0x8080808080808080U) break;
  }
  while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80) ++at;
  return at;
}

// Calls visit(character, first, end) for each character; a negative one stands for a stretch that
// is no UTF-8.
template <class Visit>
void forEachCharacter(std::string_view text, Visit visit) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t first = at;
    UChar32 character;
    U8_NEXT(bytes, at, text.size(), character);
    visit(character, first, at);
  }
}

char32_t orReplacement(UChar32 character) noexcept {
  return character < 0 ? replacement : static_cast<char32_t>(character);
}

using CaseMapping = void (*)(const char* locale, std::uint32_t options, icu::StringPiece source,
                             icu::ByteSink& sink, icu::Edits* edits, UErrorCode& status);

std::int32_t lengthForMapping(std::string_view text) {
  if (text.size() > std::numeric_limits<std::int32_t>::max() / 4) {
    throw std::length_error("text too long for case mapping");
  }
  return static_cast<std::int32_t>(text.size());
}

std::string mapped(std::string_view text, CaseMapping mapping, char first, char last) {
  std::string result;
  if (isASCII(text)) {
    result.resize(text.size());
    std::transform(text.begin(), text.end(), result.begin(), [&](char c) {
      return c >= first && c <= last ? static_cast<char>(c ^ 0x20) : c;
    });
    return result;
  }
  icu::StringByteSink<std::string> sink(&result);
  UErrorCode status = U_ZERO_ERROR;
  mapping("", 0, icu::StringPiece(text.data(), lengthForMapping(text)), sink, nullptr, status);
  return result;
}

struct Conversion {
  std::size_t length;  // of its text; 0 for none
  std::optional<std::size_t> argument;
};

Conversion conversionAt(std::string_view format) {
  std::string_view rest = format.substr(1);
  std::optional<std::size_t> argument;
  if (rest.size() > 2 && rest[0] >= '1' && rest[0] <= '9' && rest[1] == '$') {
    argument = static_cast<std::size_t>(rest[0] - '1');
    rest.remove_prefix(2);
  }
  for (const std::string_view kind : {"@", "ld", "lu", ".0f"}) {
    if (rest.starts_with(kind)) return {format.size() - rest.size() + kind.size(), argument};
  }
  return {0, std::nullopt};
}

}  // namespace

std::string uppercaseString(std::string_view text) {
  return mapped(text, &icu::CaseMap::utf8ToUpper, 'a', 'z');
}

std::string lowercaseString(std::string_view text) {
  return mapped(text, &icu::CaseMap::utf8ToLower, 'A', 'Z');
}

void uppercaseUTF16(std::string_view text, std::u16string& units) {
  if (isASCII(text)) {
    units.resize(text.size());
    std::transform(text.begin(), text.end(), units.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? c ^ 0x20 : c; });
    return;
  }
  // In upper case a unit becomes three at most. The text is decoded behind the room for that.
  const std::int32_t length = lengthForMapping(text);
  const std::int32_t room = 3 * length;
  units.resize(static_cast<std::size_t>(room + length));
  char16_t* const decoded = units.data() + room;
  std::int32_t decodedLength = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(decoded, length, &decodedLength, text.data(), length, replacement, nullptr,
                       &status);
  units.resize(static_cast<std::size_t>(
      icu::CaseMap::toUpper("", 0, decoded, decodedLength, units.data(), room, nullptr, status)));
}

bool isASCII(std::string_view text) noexcept {
  return lengthOfASCIIPrefix(text) == text.size();
}

bool isUTF8(std::string_view text) noexcept {
  return lengthOfValidUTF8(text) == text.size();
}

std::size_t lengthOfValidUTF8(std::string_view text) noexcept {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  std::size_t at = 0;
  while ((at += lengthOfASCIIPrefix(text.substr(at))) < text.size()) {
    std::size_t next = at;
    UChar32 character;
    U8_NEXT(bytes, next, text.size(), character);
    if (character < 0) break;
    at = next;
  }
  return at;
}

std::string stringByDroppingInvalidUTF8(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  forEachCharacter(text, [&](UChar32 character, std::size_t first, std::size_t end) {
    if (character >= 0) result.append(text, first, end - first);
  });
  return result;
}

std::size_t UTF16Length(std::string_view text) noexcept {
  std::size_t length = lengthOfASCIIPrefix(text);
  forEachCharacter(text.substr(length), [&](UChar32 character, std::size_t, std::size_t) {
    length += character > 0xFFFF ? 2 : 1;
  });
  return length;
}

std::u16string UTF16String(std::string_view text) {
  const std::size_t ascii = lengthOfASCIIPrefix(text);
  std::u16string result(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(ascii));
  forEachCharacter(text.substr(ascii), [&](UChar32 read, std::size_t, std::size_t) {
    const char32_t character = orReplacement(read);
    if (character > 0xFFFF) {
      result.push_back(U16_LEAD(character));
      result.push_back(U16_TRAIL(character));
    } else {
      result.push_back(static_cast<char16_t>(character));
    }
  });
  return result;
}

std::string stringWithUTF16(std::u16string_view units) {
  std::string result;
  result.reserve(units.size());
  for (std::size_t at = 0; at < units.size();) {
    UChar32 character;
    U16_NEXT(units.data(), at, units.size(), character);
    if (U_IS_SURROGATE(character)) character = replacement;
    std::uint8_t bytes[U8_MAX_LENGTH];
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, character);
    result.append(reinterpret_cast<const char*>(bytes), length);
  }
  return result;
}

std::u32string UTF32String(std::string_view text) {
  std::u32string result;
  result.reserve(text.size());
  forEachCharacter(text, [&](UChar32 character, std::size_t, std::size_t) {
    result.push_back(orReplacement(character));
  });
  return result;
}

std::string stringWithFormat(std::string_view format,
                             std::initializer_list<std::string_view> arguments) {
  std::string result;
  std::size_t next = 0;
  while (!format.empty()) {
    const std::size_t mark = std::min(format.find('%'), format.size());
    result += format.substr(0, mark);
    format.remove_prefix(mark);
    if (format.empty()) break;
    const Conversion conversion = conversionAt(format);
    if (conversion.length == 0) {
      result += format.starts_with("%%") ? "%" : format.substr(0, 1);
      format.remove_prefix(format.starts_with("%%") ? 2 : 1);
      continue;
    }
    const std::size_t argument = conversion.argument ? *conversion.argument : next++;
    if (argument < arguments.size()) result += arguments.begin()[argument];
    format.remove_prefix(conversion.length);
  }
  return result;
}

}  // namespace zym
