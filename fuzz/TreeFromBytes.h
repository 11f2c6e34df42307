#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>

#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// Makes a tree of whatever bytes: what would be read of them in no file format, built from the
/// given keys and words so that it gets past the first look. Ends with the bytes.
class TreeFromBytes {
 public:
  TreeFromBytes(std::string_view bytes, std::span<const KeyName> keys,
                std::span<const std::string_view> words)
      : bytes_(bytes), keys_(keys), words_(words) {}

  /// 0 when there is none left.
  [[nodiscard]] std::uint8_t byte() {
    const auto next = static_cast<std::uint8_t>(bytes_.empty() ? 0 : bytes_.front());
    bytes_.remove_prefix(bytes_.empty() ? 0 : 1);
    return next;
  }

  [[nodiscard]] PlistDictionary dictionary(int depth = 0) {
    PlistDictionary result;
    for (int entries = byte() % 64; entries > 0 && !bytes_.empty(); --entries) {
      const KeyName key = keys_[byte() % keys_.size()];
      result.set(key, value(depth + 1));
    }
    return result;
  }

 private:
  static constexpr int mostDepth = 8;

  [[nodiscard]] PlistValue value(int depth) {
    switch (byte() % 16) {
      case 0:
      case 1:
      case 2:
        if (depth < mostDepth) return dictionary(depth);
        break;
      case 3:
      case 4:
      case 5:
        if (depth < mostDepth) return array(depth);
        break;
      case 6:
      case 7:
      case 8:
        return words_[byte() % words_.size()];
      case 9:
        return text(byte());
      case 10:
        return static_cast<std::int8_t>(byte());
      case 11:
        return bits<std::int64_t>();
      case 12:
        return bits<double>();
      case 13:
        return byte() % 2 == 0;
      case 14:
        return NSDate::dateWithTimeIntervalSinceReferenceDate(bits<double>());
      default:
        break;
    }
    return text(byte() % 8);
  }

  [[nodiscard]] PlistArray array(int depth) {
    PlistArray result;
    for (int elements = byte() % 16; elements > 0 && !bytes_.empty(); --elements) {
      result.append(value(depth + 1));
    }
    return result;
  }

  [[nodiscard]] std::string_view text(std::size_t length) {
    const std::string_view result = bytes_.substr(0, length);
    bytes_.remove_prefix(result.size());
    return result;
  }

  template <class Number>
  [[nodiscard]] Number bits() {
    char raw[sizeof(Number)] = {};
    const std::string_view taken = text(sizeof raw);
    std::memcpy(raw, taken.data(), taken.size());
    return std::bit_cast<Number>(raw);
  }

  std::string_view bytes_;
  std::span<const KeyName> keys_;
  std::span<const std::string_view> words_;
};

}  // namespace zym
