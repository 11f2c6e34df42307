#include "zymcore/store/entities/SummaryRows.h"

#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMEntity.h"

namespace zym {

ZYMSummary summaryOf(const ZYMEntity& object, std::int64_t numberOfChildren) {
  return {object.name().value_or(""), object.uuid(), numberOfChildren};
}

std::vector<ZYMSummary> summariesOf(const std::vector<NSManagedObject*>& objects) {
  std::vector<ZYMSummary> rows;
  rows.reserve(objects.size());
  for (const NSManagedObject* object : objects) {
    rows.push_back(summaryOf(*static_cast<const ZYMEntity*>(object), 0));
  }
  return rows;
}

std::vector<ZYMSummary> summariesForFetchRequest(
    const NSFetchRequest& request, const std::optional<KeyName>& children,
    const std::function<bool(std::int64_t key)>& takes) {
  std::vector<KeyName> columns = {attributes::name, attributes::uuid};
  if (children) columns.push_back(*children);
  const std::optional<NSFetchedProperties> found =
      mainContext().propertiesForFetchRequest(request, columns);
  std::vector<ZYMSummary> rows;
  if (!found) return rows;
  rows.reserve(found->size());
  for (std::size_t row = 0; row < found->size(); ++row) {
    if (takes && !takes(found->key(row))) continue;
    const std::string* name = found->string(row, 0);
    const std::string* uuid = found->string(row, 1);
    rows.push_back({name ? *name : "", uuid ? std::optional(*uuid) : std::nullopt,
                    children ? found->value(row, 2)->integerValue() : 0});
  }
  return rows;
}

}  // namespace zym
