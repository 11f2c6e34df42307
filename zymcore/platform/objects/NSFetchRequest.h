#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zymcore/platform/objects/NSPredicate.h"
#include "zymcore/platform/objects/NSSortDescriptor.h"

namespace zym {

/// What to fetch: the objects of an entity, those for which a predicate holds, in an order; without
/// an order by row, and what isn't saved yet after them.
class NSFetchRequest {
 public:
  [[nodiscard]] static NSFetchRequest fetchRequestWithEntityName(std::string_view entityName) {
    return NSFetchRequest(entityName);
  }

  void setPredicate(std::optional<NSPredicate> predicate) { predicate_ = std::move(predicate); }
  void setSortDescriptors(std::vector<NSSortDescriptor> descriptors) {
    sortDescriptors_ = std::move(descriptors);
  }

  [[nodiscard]] const std::string& entityName() const noexcept { return entityName_; }
  [[nodiscard]] const std::optional<NSPredicate>& predicate() const noexcept { return predicate_; }
  [[nodiscard]] const std::vector<NSSortDescriptor>& sortDescriptors() const noexcept {
    return sortDescriptors_;
  }

 private:
  explicit NSFetchRequest(std::string_view entityName) : entityName_(entityName) {}

  std::string entityName_;
  std::optional<NSPredicate> predicate_;
  std::vector<NSSortDescriptor> sortDescriptors_;
};

}  // namespace zym
