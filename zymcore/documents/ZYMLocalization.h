#pragma once

#include <string>
#include <string_view>

namespace zym {

/// The translations of the host.
class ZYMLocalization {
 public:
  [[nodiscard]] static ZYMLocalization& sharedInstance();

  /// The text for the key in the default string table of the main bundle; the key when there is
  /// none.
  [[nodiscard]] std::string localizedString(std::string_view key) const;

 private:
  ZYMLocalization() = default;
};

/// The translation of the key.
[[nodiscard]] std::string Localized_String(std::string_view key);

}  // namespace zym
