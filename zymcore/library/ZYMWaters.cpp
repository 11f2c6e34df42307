#include "zymcore/library/ZYMWaters.h"

#include "zymcore/documents/RecordKeys.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMWaterEntity.h"

namespace zym {
namespace {

constexpr ZYMFlatLibrary::Default defaults[] = {
    {keys::Name, "New Water", true}, {keys::Calcium, "0.000000"},   {keys::Carbonate, "0.000000"},
    {keys::Chloride, "0.000000"},    {keys::Magnesium, "0.000000"}, {keys::Sodium, "0.000000"},
    {keys::Sulfate, "0.000000"},
};

}  // namespace

ZYMWaters& ZYMWaters::sharedInstance() {
  static auto* instance = new ZYMWaters();
  return *instance;
}

ZYMWaters::ZYMWaters() : ZYMFlatLibrary(ZYMWaterEntity::entityName, keys::Name, defaults) {}

std::optional<PlistDictionary> ZYMWaters::waterWithName(std::string_view name) const {
  const auto found =
      ZYMWaterEntity::objectsMatchingKey_andValue_sortedOnKey(attributes::name, name, std::nullopt);
  if (!found || found->empty()) return std::nullopt;
  return found->front()->dictionaryRepresentation();
}

PlistArray ZYMWaters::allItemsWithoutNoChosenWaterOption() {
  return allItemsWithoutFirst();
}

std::vector<ZYMSummary> ZYMWaters::summariesForAllItemsWithoutNoChosenWaterOption() const {
  return summariesWithoutFirst();
}

}  // namespace zym
