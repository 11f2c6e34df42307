#include "zymcore/store/ZYMLibraryRegistry.h"

#include <algorithm>

namespace zym {

ZYMLibraryRegistry& ZYMLibraryRegistry::sharedInstance() {
  static ZYMLibraryRegistry instance;
  return instance;
}

void ZYMLibraryRegistry::registerLibrary(const Library& library) {
  const auto known = std::ranges::find(libraries_, library.entity, &Library::entity);
  if (known == libraries_.end()) {
    libraries_.push_back(library);
  } else {
    *known = library;
  }
}

void ZYMLibraryRegistry::registerOrders(Orders orders) {
  orders_ = std::move(orders);
}

const ZYMLibraryRegistry::Library* ZYMLibraryRegistry::rowWith(std::string_view Library::*field,
                                                               std::string_view text) const {
  const auto found = std::ranges::find(libraries_, text, field);
  return found == libraries_.end() ? nullptr : &*found;
}

ZYMCachingModel* ZYMLibraryRegistry::libraryOfIngredientType(
    std::string_view ingredientType) const {
  const Library* row =
      ingredientType.empty() ? nullptr : rowWith(&Library::ingredientType, ingredientType);
  return row ? &row->sharedInstance() : nullptr;
}

ZYMCachingModel* ZYMLibraryRegistry::libraryOfEntity(std::string_view entity) const {
  const Library* row = rowWith(&Library::entity, entity);
  return row ? &row->sharedInstance() : nullptr;
}

bool ZYMLibraryRegistry::isIngredient(std::string_view entity) const {
  const Library* row = rowWith(&Library::entity, entity);
  return row && !row->ingredientType.empty();
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
