#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace zym {

/// Bytes that don't change. A copy shares them.
class NSData {
 public:
  NSData() = default;
  explicit NSData(std::vector<std::uint8_t> bytes)
      : bytes_(std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes))) {}
  explicit NSData(std::string_view bytes)
      : NSData(std::vector<std::uint8_t>(bytes.begin(), bytes.end())) {}

  [[nodiscard]] std::size_t length() const noexcept { return bytes_ ? bytes_->size() : 0; }
  [[nodiscard]] std::span<const std::uint8_t> bytes() const noexcept {
    return bytes_ ? std::span<const std::uint8_t>(*bytes_) : std::span<const std::uint8_t>();
  }
  /// The same bytes as text, for as long as this object lives.
  [[nodiscard]] std::string_view view() const noexcept {
    return {reinterpret_cast<const char*>(bytes().data()), length()};
  }

  friend bool operator==(const NSData& a, const NSData& b) noexcept {
    return a.bytes_ == b.bytes_ || a.view() == b.view();
  }

 private:
  std::shared_ptr<const std::vector<std::uint8_t>> bytes_;
};

}  // namespace zym
