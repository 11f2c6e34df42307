#include "zymcore/library/ZYMSuppliers.h"

#include "zymcore/documents/RecordKeys.h"
#include "zymcore/store/entities/ZYMSupplierEntity.h"

namespace zym {
namespace {

constexpr ZYMFlatLibrary::Default defaults[] = {
    {keys::Name, "New Supplier", true},
    {keys::Email, ""},
    {keys::Location, ""},
    {keys::Phone, ""},
    {keys::Homepage, ""},
};

}  // namespace

ZYMSuppliers& ZYMSuppliers::sharedInstance() {
  static auto* instance = new ZYMSuppliers();
  return *instance;
}

ZYMSuppliers::ZYMSuppliers()
    : ZYMFlatLibrary(ZYMSupplierEntity::entityName, keys::Name, defaults) {}

PlistArray ZYMSuppliers::allSuppliers() {
  return allItems();
}

std::vector<ZYMSummary> ZYMSuppliers::summariesForAllSuppliers() {
  return summariesforAllItems();
}

PlistDictionary ZYMSuppliers::createSupplier() {
  return createItem();
}

void ZYMSuppliers::updateSupplier(PlistDictionary& supplier) {
  updateItem(supplier);
}

void ZYMSuppliers::removeSupplierWithUUID(const std::optional<std::string>& uuid) {
  removeItemWithUUID(uuid);
}

}  // namespace zym
