#include "zymcore/store/ZYMLibraryRegistry.h"

#include <algorithm>

namespace zym {

ZYMLibraryRegistry& ZYMLibraryRegistry::sharedInstance() {
  static ZYMLibraryRegistry instance;
  return instance;
}

void ZYMLibraryRegistry::registerLibrary(const Library& library) {
  std::erase_if(libraries_, [&](const Library& other) { return other.entity == library.entity; });
  libraries_.push_back(library);
}

void ZYMLibraryRegistry::registerOrders(Orders orders) {
  orders_ = std::move(orders);
}

ZYMCachingModel* ZYMLibraryRegistry::libraryOfIngredientType(
    std::string_view ingredientType) const {
  if (ingredientType.empty()) return nullptr;
  const auto found = std::find_if(libraries_.begin(), libraries_.end(), [=](const Library& other) {
    return other.ingredientType == ingredientType;
  });
  return found == libraries_.end() ? nullptr : &found->sharedInstance();
}

ZYMCachingModel* ZYMLibraryRegistry::libraryOfEntity(std::string_view entity) const {
  const auto found = std::find_if(libraries_.begin(), libraries_.end(),
                                  [=](const Library& other) { return other.entity == entity; });
  return found == libraries_.end() ? nullptr : &found->sharedInstance();
}

void ZYMLibraryRegistry::removeOrderItemsForIngredientWithUUID(
    const std::optional<std::string>& uuid) const {
  if (orders_.removeOrderItemsForIngredientWithUUID) {
    orders_.removeOrderItemsForIngredientWithUUID(uuid);
  }
}

void ZYMLibraryRegistry::removeOrdersForSupplierUUID(const std::optional<std::string>& uuid) const {
  if (orders_.removeOrdersForSupplierUUID) orders_.removeOrdersForSupplierUUID(uuid);
}

}  // namespace zym
