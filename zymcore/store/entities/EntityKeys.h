#pragma once

#include "zymcore/platform/values/PlistKey.h"

/// The attributes and relationships of the store's entities, as far as code names them. The keys of
/// their records are in `RecordKeys.h`; `RecordForms.cpp` says which belongs to which.
namespace zym::attributes {

inline constexpr KeyName uuid{"uuid"};
inline constexpr KeyName name{"name"};
inline constexpr KeyName dateLastModified{"dateLastModified"};
inline constexpr KeyName index{"index"};
inline constexpr KeyName data{"data"};  // the document of a recipe or batch
inline constexpr KeyName dateBrewed{"dateBrewed"};
inline constexpr KeyName ingredientType{"ingredientType"};
inline constexpr KeyName amountInStock{"amountInStock"};
inline constexpr KeyName amountOnOrder{"amountOnOrder"};
inline constexpr KeyName expiresOn{"expiresOn"};
inline constexpr KeyName supplierUuid{"supplierUuid"};
inline constexpr KeyName ingredientUuid{"ingredientUuid"};
inline constexpr KeyName status{"status"};
inline constexpr KeyName amount{"amount"};

}  // namespace zym::attributes

namespace zym::relationships {

inline constexpr KeyName batches{"batches"};  // of a recipe; of an inventory item
inline constexpr KeyName recipe{"recipe"};
inline constexpr KeyName recipes{"recipes"};
inline constexpr KeyName groups{"groups"};
inline constexpr KeyName images{"images"};
inline constexpr KeyName recipeBatch{"recipeBatch"};
inline constexpr KeyName steps{"steps"};
inline constexpr KeyName schedule{"schedule"};
inline constexpr KeyName item{"item"};
inline constexpr KeyName items{"items"};
inline constexpr KeyName order{"order"};

}  // namespace zym::relationships
