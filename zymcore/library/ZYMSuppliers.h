#pragma once

#include "zymcore/library/ZYMFlatLibrary.h"

namespace zym {

/// The suppliers that the brewer orders from.
class ZYMSuppliers final : public ZYMFlatLibrary {
 public:
  [[nodiscard]] static ZYMSuppliers& sharedInstance();

  [[nodiscard]] PlistArray allSuppliers();
  [[nodiscard]] std::vector<ZYMSummary> summariesForAllSuppliers();
  PlistDictionary createSupplier();
  void updateSupplier(PlistDictionary& supplier);
  void removeSupplierWithUUID(const std::optional<std::string>& uuid);

 private:
  ZYMSuppliers();
};

}  // namespace zym
