#include "zymcore/documents/Base64.h"

#include <array>

namespace zym {
namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t outside = 0xFF;
constexpr std::size_t bytesInLine = 48;

constexpr std::array<std::uint8_t, 256> makeDigitValues() {
  std::array<std::uint8_t, 256> values{};
  values.fill(outside);
  for (std::size_t i = 0; i < alphabet.size(); ++i) {
    values[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
  }
  return values;
}
constexpr std::array<std::uint8_t, 256> digitValues = makeDigitValues();

}  // namespace

std::string NewBase64Encode(std::span<const std::uint8_t> bytes, bool separateLines) {
  std::string text;
  const std::size_t lines = separateLines ? bytes.size() / bytesInLine : 0;
  text.reserve((bytes.size() + 2) / 3 * 4 + lines * 2);

  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    if (separateLines && at > 0 && at % bytesInLine == 0) text += "\r\n";
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - at);
    std::uint32_t group = 0;
    for (std::size_t i = 0; i < 3; ++i) group = group << 8U | (i < count ? bytes[at + i] : 0U);
    for (std::size_t i = 0; i < 4; ++i) {
      text += i <= count ? alphabet[group >> (18 - 6 * i) & 0x3FU] : '=';
    }
  }
  return text;
}

std::vector<std::uint8_t> NewBase64Decode(std::string_view text) {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(text.size() / 4 * 3 + 3);
  std::uint32_t bits = 0;
  unsigned held = 0;
  for (const char c : text) {
    const std::uint8_t value = digitValues[static_cast<unsigned char>(c)];
    if (value == outside) continue;
    bits = bits << 6U | value;
    held += 6;
    if (held < 8) continue;
    held -= 8;
    bytes.push_back(static_cast<std::uint8_t>(bits >> held));
  }
  return bytes;
}

}  // namespace zym
