#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zym {

/// Bytes that don't change. A copy shares them, and a string or vector moved in is kept as it is.
class NSData {
 public:
  NSData() = default;
  explicit NSData(std::string bytes)
      : NSData(std::make_shared<const std::string>(std::move(bytes))) {}
  explicit NSData(std::vector<std::uint8_t> bytes)
      : NSData(std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes))) {}
  explicit NSData(std::string_view bytes) : NSData(std::string(bytes)) {}
  explicit NSData(const char* text) : NSData(std::string(text)) {}

  NSData(const NSData&) = default;
  NSData(NSData&& other) noexcept
      : bytes_(std::exchange(other.bytes_, {})), owner_(std::move(other.owner_)) {}
  NSData& operator=(NSData other) noexcept {
    std::swap(bytes_, other.bytes_);
    std::swap(owner_, other.owner_);
    return *this;
  }
  ~NSData() = default;

  [[nodiscard]] std::size_t length() const noexcept { return bytes_.size(); }
  [[nodiscard]] std::span<const std::uint8_t> bytes() const noexcept { return bytes_; }
  /// The same bytes as text, for as long as this object or a copy lives.
  [[nodiscard]] std::string_view view() const noexcept {
    return {reinterpret_cast<const char*>(bytes_.data()), bytes_.size()};
  }

  friend bool operator==(const NSData& a, const NSData& b) noexcept { return a.view() == b.view(); }

 private:
  template <class Owner>
  explicit NSData(std::shared_ptr<const Owner> owner) noexcept
      : bytes_(reinterpret_cast<const std::uint8_t*>(owner->data()), owner->size()),
        owner_(std::move(owner)) {}

  std::span<const std::uint8_t> bytes_;
  std::shared_ptr<const void> owner_;
};

}  // namespace zym
