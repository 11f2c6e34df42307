#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zym {

class NSManagedObject;
class NSPredicate;

/// The objects of one entity that aren't saved as they stand, in the order of their first change.
/// Whoever looks for one by a text, as each record that is added looks for those of its UUID, finds
/// it without going through all.
class ChangedObjects {
 public:
  [[nodiscard]] bool empty() const noexcept { return objects_.empty(); }
  [[nodiscard]] const std::vector<NSManagedObject*>& all() const noexcept { return objects_; }
  /// Some that hold all for which the predicate is true; one may stand among them twice.
  [[nodiscard]] const std::vector<NSManagedObject*>& candidatesFor(const NSPredicate* predicate);

  void add(NSManagedObject& object);
  /// An object that is here has another value in that attribute.
  void attributeChanged(NSManagedObject& object, std::size_t attribute);
  void clear();

 private:
  /// Each under every text that it had since it is here.
  using ByText = std::map<std::string, std::vector<NSManagedObject*>, std::less<>>;
  static void insert(ByText& texts, NSManagedObject& object, std::size_t attribute);

  std::vector<NSManagedObject*> objects_;
  std::map<std::size_t, ByText> byAttribute_;  // of those that were asked for
};

}  // namespace zym
