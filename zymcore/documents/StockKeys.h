#pragma once

#include "zymcore/platform/values/PlistKey.h"

/// The keys of the records of stock and of orders, beyond those that they share with the libraries
/// (`RecordKeys.h`).
namespace zym::keys {

// Inventory items and their lots.
inline constexpr KeyName IngredientType{"IngredientType"};
inline constexpr KeyName AmountInStock{"AmountInStock"};
inline constexpr KeyName BatchName{"BatchName"};
inline constexpr KeyName DeliveredOn{"DeliveredOn"};  // dates
inline constexpr KeyName ExpiresOn{"ExpiresOn"};

// Orders and their lines.
inline constexpr KeyName OrderDate{"OrderDate"};  // dates
inline constexpr KeyName DeliveryDate{"DeliveryDate"};
inline constexpr KeyName SupplierUUID{"SupplierUUID"};
inline constexpr KeyName OrderItems{"OrderItems"};
inline constexpr KeyName IngredientUUID{"IngredientUUID"};
inline constexpr KeyName Status{"Status"};
inline constexpr KeyName OrderUUID{"OrderUUID"};

}  // namespace zym::keys
