#pragma once

#include <span>
#include <string_view>

#include "zymcore/store/ZYMCachingModel.h"

namespace zym {

/// A library that differs from others only in what it holds: its entity, its name key and the
/// defaults of a new record.
class ZYMFlatLibrary : public ZYMCachingModel {
 public:
  /// A default of a new record. A translated one is text of the user's language.
  struct Default {
    KeyName key;
    std::string_view text;
    bool isTranslated = false;
  };

  [[nodiscard]] std::string_view entityClass() const override { return entity_; }
  void prepareNewItem(PlistDictionary& item) override;

 protected:
  ZYMFlatLibrary(std::string_view entity, KeyName nameKey, std::span<const Default> defaults)
      : ZYMCachingModel(nameKey), entity_(entity), defaults_(defaults) {}

  // For the libraries whose first record by name stands for no choice. Nothing marks that record
  // but its place, and an empty library has none to leave out: these throw `NSRangeException`.
  [[nodiscard]] PlistDictionary firstItem();
  [[nodiscard]] PlistArray allItemsWithoutFirst();
  [[nodiscard]] std::vector<ZYMSummary> summariesWithoutFirst() const;

 private:
  std::string_view entity_;
  std::span<const Default> defaults_;
};

}  // namespace zym
