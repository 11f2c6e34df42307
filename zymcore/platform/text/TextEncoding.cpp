#include "zymcore/platform/text/TextEncoding.h"

#include <unicode/translit.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>

#include "zymcore/platform/text/NSString.h"

namespace zym {
namespace {

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

Converter converterNamed(const char* encoding, UErrorCode& status) {
  return {ucnv_open(encoding, &status), &ucnv_close};
}

}  // namespace

const char* wideEncodingOf(std::string_view bytes) noexcept {
  struct Pattern {
    std::string_view start;  // x for any byte but zero
    const char* encoding;
  };
  using namespace std::string_view_literals;
  constexpr Pattern patterns[] = {
      {"\0\0\xFE\xFF"sv, "UTF-32BE"}, {"\xFF\xFE\0\0"sv, "UTF-32LE"}, {"\xFE\xFF"sv, "UTF-16BE"},
      {"\xFF\xFE"sv, "UTF-16LE"},     {"\0\0\0x"sv, "UTF-32BE"},      {"x\0\0\0"sv, "UTF-32LE"},
      {"\0x"sv, "UTF-16BE"},          {"x\0"sv, "UTF-16LE"},
  };
  for (const Pattern& pattern : patterns) {
    const bool fits = bytes.size() >= pattern.start.size() &&
                      std::equal(pattern.start.begin(), pattern.start.end(), bytes.begin(),
                                 [](char p, char b) { return p == 'x' ? b != 0 : p == b; });
    if (fits) return pattern.encoding;
  }
  return nullptr;
}

std::optional<std::string> stringFromEncoding(std::string_view bytes, const char* encoding,
                                              InvalidBytes invalid) {
  if (bytes.size() > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  const Converter converter = converterNamed(encoding, status);
  if (U_FAILURE(status)) return std::nullopt;
  if (invalid == InvalidBytes::Refused) {
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &status);
  }
  const auto convert = [&](char* into, std::int32_t room) {
    status = U_ZERO_ERROR;
    return ucnv_toAlgorithmic(UCNV_UTF8, converter.get(), into, room, bytes.data(),
                              static_cast<std::int32_t>(bytes.size()), &status);
  };
  const std::int32_t length = convert(nullptr, 0);
  if (U_FAILURE(status) && status != U_BUFFER_OVERFLOW_ERROR) return std::nullopt;
  std::string text(static_cast<std::size_t>(length), '\0');
  convert(text.data(), length);
  if (U_FAILURE(status)) return std::nullopt;
  return text;
}

std::optional<std::string> dataUsingEncoding(std::string_view text, const char* encoding) {
  if (isASCII(text)) return std::string(text);
  if (!isUTF8(text) || text.size() > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  const Converter converter = converterNamed(encoding, status);
  if (U_FAILURE(status)) return std::nullopt;
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &status);
  // A character takes two bytes or more of UTF-8, or is ASCII.
  std::string bytes(text.size(), '\0');
  const std::int32_t length = ucnv_fromAlgorithmic(
      converter.get(), UCNV_UTF8, bytes.data(), static_cast<std::int32_t>(bytes.size()),
      text.data(), static_cast<std::int32_t>(text.size()), &status);
  if (U_FAILURE(status)) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(length));
  return bytes;
}

std::string dataUsingLossyASCII(std::string_view text) {
  if (isASCII(text)) return std::string(text);
  UErrorCode status = U_ZERO_ERROR;
  static const std::unique_ptr<const icu::Transliterator> nearest(
      icu::Transliterator::createInstance("NFKD; [:M:] Remove; Latin-ASCII", UTRANS_FORWARD,
                                          status));
  icu::UnicodeString units = icu::UnicodeString::fromUTF8(icu::StringPiece(text));
  for (const char16_t lineEnd : {u'\u0085', u'\u2028', u'\u2029'}) {
    units.findAndReplace(icu::UnicodeString(lineEnd), icu::UnicodeString(u'\n'));
  }
  if (nearest) nearest->transliterate(units);
  std::string bytes;
  for (std::int32_t i = 0; i < units.length(); i = units.moveIndex32(i, 1)) {
    const UChar32 character = units.char32At(i);
    bytes += character < 0x80 ? static_cast<char>(character) : '?';
  }
  return bytes;
}

}  // namespace zym
