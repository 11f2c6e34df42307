#pragma once

#include <cstdint>
#include <string_view>

namespace zym {

/// The name of a key, with its hash. Known keys are constants of this type, hashed at compile time:
///
///     inline constexpr KeyName Amount{"Amount"};
///
/// It doesn't own its text.
class KeyName {
 public:
  explicit constexpr KeyName(std::string_view text) noexcept : text_(text), hash_(hashOf(text)) {}

  [[nodiscard]] constexpr std::string_view text() const noexcept { return text_; }
  [[nodiscard]] constexpr std::uint32_t hash() const noexcept { return hash_; }

 private:
  friend class PlistKey;
  constexpr KeyName(std::string_view text, std::uint32_t hash) noexcept
      : text_(text), hash_(hash) {}

  static constexpr std::uint32_t hashOf(std::string_view text) noexcept {
    std::uint32_t hash = 2166136261U;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    return hash;
  }

  std::string_view text_;
  std::uint32_t hash_;
};

/// A key held by a dictionary. Keys of the same short text share one immortal copy of it, as long
/// as there is room for it; the text of any other key belongs to those that hold it. So a document
/// with keys without end costs its own memory and leaves none behind.
class PlistKey {
 public:
  explicit PlistKey(KeyName name);
  PlistKey(const PlistKey& other) noexcept;
  PlistKey(PlistKey&& other) noexcept;
  PlistKey& operator=(PlistKey other) noexcept;
  ~PlistKey();

  [[nodiscard]] std::string_view text() const noexcept;
  [[nodiscard]] std::uint32_t hash() const noexcept;
  [[nodiscard]] KeyName name() const noexcept { return {text(), hash()}; }

  // NOLINTNEXTLINE(google-explicit-constructor): a key that is held names itself.
  operator KeyName() const noexcept { return name(); }

 private:
  struct Text;
  static Text* interned(KeyName name);
  static Text* allocate(KeyName name, bool immortal);

  Text* text_;
};

}  // namespace zym
