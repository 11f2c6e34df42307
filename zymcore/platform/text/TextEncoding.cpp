#include "zymcore/platform/text/TextEncoding.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>

namespace zym {

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
  const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open(encoding, &status),
                                                                     &ucnv_close);
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

}  // namespace zym
