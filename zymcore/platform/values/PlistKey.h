#pragma once

#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace zym {

/// The name of a key, with its hash. Known keys are constants of this type, hashed at compile time:
///
///     inline constexpr KeyName Amount{"Amount"};
///
/// It doesn't own its text.
class KeyName {
 public:
  explicit constexpr KeyName(std::string_view text) noexcept : KeyName(text, hashOf(text)) {}

  [[nodiscard]] constexpr std::string_view text() const noexcept { return {text_, length_}; }
  [[nodiscard]] constexpr std::uint32_t hash() const noexcept { return hash_; }

 private:
  friend class PlistKey;
  constexpr KeyName(std::string_view text, std::uint32_t hash) noexcept
      : text_(text.data()), length_(static_cast<std::uint32_t>(text.size())), hash_(hash) {}

  // Up to eight bytes as a number, the first one lowest.
  template <std::size_t count>
  static constexpr std::uint64_t load(const char* at) noexcept {
    std::uint64_t word = 0;
    if (std::is_constant_evaluated() || std::endian::native != std::endian::little) {
      for (std::size_t i = 0; i < count; ++i) {
        word |= std::uint64_t{static_cast<unsigned char>(at[i])} << (8 * i);
      }
    } else {
      std::memcpy(&word, at, count);
    }
    return word;
  }

  [[nodiscard]] bool hasText(std::string_view text) const noexcept {
    if (text.size() != length_) return false;
    const char* const other = text.data();
    if (length_ < 8) {
      for (std::size_t i = 0; i < length_; ++i) {
        if (text_[i] != other[i]) return false;
      }
      return true;
    }
    for (std::size_t i = 0; i + 8 < length_; i += 8) {
      if (load<8>(text_ + i) != load<8>(other + i)) return false;
    }
    return load<8>(text_ + length_ - 8) == load<8>(other + length_ - 8);
  }

  // Eight bytes at a time, the last eight overlapping those before: keys are hashed as a document
  // is read.
  static constexpr std::uint32_t hashOf(std::string_view text) noexcept {
    constexpr std::uint64_t factor = 0x9E3779B97F4A7C15U;
    const char* at = text.data();
    const char* const end = at + text.size();
    std::uint64_t hash = text.size();
    const auto mix = [&](std::uint64_t word) {
      hash = (hash ^ word) * factor;
      hash ^= hash >> 32U;
    };
    if (text.size() >= 8) {
      for (; end - at > 8; at += 8) mix(load<8>(at));
      mix(load<8>(end - 8));
    } else if (text.size() >= 4) {
      mix(load<4>(at) | load<4>(end - 4) << 32U);
    } else {
      for (; at != end; ++at) mix(load<1>(at));
    }
    return static_cast<std::uint32_t>((hash * factor) >> 32U);
  }

  // Small enough to travel in registers.
  const char* text_;
  std::uint32_t length_;
  std::uint32_t hash_;
};

/// A key held by a dictionary. Keys of the same short text share one immortal copy of it, as long
/// as there is room for it; the text of any other key belongs to those that hold it. So a document
/// with keys without end costs its own memory and leaves none behind.
class PlistKey {
 public:
  explicit PlistKey(KeyName name) : text_(interned(name)) {
    if (!text_) text_ = new Text{std::string(name.text()), name.hash(), false};
  }
  PlistKey(const PlistKey& other) noexcept : text_(other.text_) {
    if (text_ && !text_->immortal) text_->holders.fetch_add(1, std::memory_order_relaxed);
  }
  PlistKey(PlistKey&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
  PlistKey& operator=(PlistKey other) noexcept {
    std::swap(text_, other.text_);
    return *this;
  }
  ~PlistKey() {
    if (text_ && !text_->immortal) release();
  }

  [[nodiscard]] std::string_view text() const noexcept { return text_->text; }
  [[nodiscard]] std::uint32_t hash() const noexcept { return text_->hash; }
  [[nodiscard]] bool isNamed(KeyName name) const noexcept {
    return text_->hash == name.hash() && name.hasText(text_->text);
  }
  [[nodiscard]] KeyName name() const noexcept { return {text(), hash()}; }

  // NOLINTNEXTLINE(google-explicit-constructor): a key that is held names itself.
  operator KeyName() const noexcept { return name(); }

 private:
  struct Text {
    std::string text;
    std::uint32_t hash;
    bool immortal;
    std::atomic<std::uint32_t> holders{1};
  };

  static Text* interned(KeyName name);
  void release() noexcept;

  Text* text_;
};

}  // namespace zym
