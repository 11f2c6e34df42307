#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zym {

class NSLocale;
class PlistDictionary;

/// A folder of resources. Any thread may read it.
class NSBundle {
 public:
  NSBundle() : NSBundle("", "", "") {}
  NSBundle(std::string resourcePath, std::string identifier, std::string version);

  /// The host's own; without folder, identifier and version until the host says otherwise.
  [[nodiscard]] static NSBundle mainBundle();
  static void setMainBundle(NSBundle bundle);

  /// The folder; empty when there is none.
  [[nodiscard]] const std::string& resourcePath() const noexcept;
  /// Such as "org.example.host"; empty when there is none.
  [[nodiscard]] const std::string& bundleIdentifier() const noexcept;
  [[nodiscard]] const std::string& version() const noexcept;

  /// The path of a file or folder "<name>.<type>", or "<name>" with an empty type. Absent when
  /// there is none, and for a name that would lead out of the bundle.
  [[nodiscard]] std::optional<std::string> pathForResource_ofType(std::string_view name,
                                                                  std::string_view type) const;
  /// The same in a folder of the bundle.
  [[nodiscard]] std::optional<std::string> pathForResource_ofType_inDirectory(
      std::string_view name, std::string_view type, std::string_view directory) const;

  /// The translation of the key into the language of the current locale, from
  /// "<language>.lproj/<table>.strings", a property list from keys to texts; an empty table means
  /// "Localizable". For a language with a region that of the language alone serves too. Without a
  /// translation the value, and when that is empty the key. Tables are read once for a locale.
  [[nodiscard]] std::string localizedStringForKey_value_table(std::string_view key,
                                                              std::string_view value,
                                                              std::string_view table) const;

 private:
  struct Content;
  [[nodiscard]] PlistDictionary translations(const NSLocale& locale,
                                             const std::string& table) const;
  std::shared_ptr<Content> content_;
};

}  // namespace zym
