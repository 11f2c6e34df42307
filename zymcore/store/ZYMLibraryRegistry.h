#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "zymcore/platform/values/PlistKey.h"

namespace zym {

class ZYMCachingModel;

/// The place where the libraries make themselves known to the store below them: records of stock
/// and profiles read names from them, and the initial state fills them. Main thread.
class ZYMLibraryRegistry {
 public:
  struct Library {
    std::string_view entity;          // such as "ZYMHopEntity"
    std::string_view ingredientType;  // such as "Hop"; empty for what is no ingredient
    std::string_view seed;            // the resource of its first records, and their key in it
    KeyName installedVersion;         // the user default that says which of it were installed
    ZYMCachingModel& (*sharedInstance)();
  };
  /// What orders do when something they are made of goes. The uuid may be absent.
  struct Orders {
    std::function<void(const std::optional<std::string>& uuid)>
        removeOrderItemsForIngredientWithUUID;
    std::function<void(const std::optional<std::string>& uuid)> removeOrdersForSupplierUUID;
  };

  [[nodiscard]] static ZYMLibraryRegistry& sharedInstance();

  /// A second library of the same entity takes the place of the first.
  void registerLibrary(const Library& library);
  void registerOrders(Orders orders);

  /// Null when none is registered.
  [[nodiscard]] ZYMCachingModel* libraryOfIngredientType(std::string_view ingredientType) const;
  [[nodiscard]] ZYMCachingModel* libraryOfEntity(std::string_view entity) const;

  [[nodiscard]] bool isIngredient(std::string_view entity) const;
  /// In the order in which they were registered, which is that of installing their seeds.
  [[nodiscard]] std::span<const Library> libraries() const noexcept { return libraries_; }

  // Nothing, while no orders are registered.
  void removeOrderItemsForIngredientWithUUID(const std::optional<std::string>& uuid) const;
  void removeOrdersForSupplierUUID(const std::optional<std::string>& uuid) const;

 private:
  ZYMLibraryRegistry() = default;
  [[nodiscard]] const Library* rowWith(std::string_view Library::*field,
                                       std::string_view text) const;

  std::vector<Library> libraries_;
  Orders orders_;
};

}  // namespace zym
