#include "zymcore/stock/ZYMOrders.h"
#include "zymcore/store/ZYMLibraryRegistry.h"

namespace zym {
namespace {

bool registerOrders() {
  ZYMLibraryRegistry::sharedInstance().registerOrders(
      {.removeOrderItemsForIngredientWithUUID =
           [](const std::optional<std::string>& uuid) {
             ZYMOrders::sharedInstance().removeOrderItemsForIngredientWithUUID(uuid);
           },
       .removeOrdersForSupplierUUID =
           [](const std::optional<std::string>& uuid) {
             ZYMOrders::sharedInstance().removeOrdersForSupplierUUID(uuid);
           }});
  return true;
}

}  // namespace
}  // namespace zym

// Orders register themselves when the process starts. A program that links the static library asks
// for this name, so that the linker takes the registration along.
extern "C" {
extern const bool zym_orders_are_registered;
const bool zym_orders_are_registered = zym::registerOrders();
}
