#include "zymcore/library/ZYMYeasts.h"

#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/store/FirstOf.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMYeastEntity.h"

namespace zym {
namespace {

constexpr ZYMFlatLibrary::Default defaults[] = {
    {keys::Name, "New Yeast", true}, {keys::Attenuation, "75.000000"},
    {keys::BeerType, words::Ale},    {keys::YeastType, words::Liquid},
    {keys::Description, ""},
};

}  // namespace

ZYMYeasts& ZYMYeasts::sharedInstance() {
  static auto* instance = new ZYMYeasts();
  return *instance;
}

ZYMYeasts::ZYMYeasts() : ZYMFlatLibrary(ZYMYeastEntity::entityName, keys::Name, defaults) {}

PlistDictionary ZYMYeasts::noChosenYeast() {
  return firstItem();
}

PlistArray ZYMYeasts::allItemsWithoutNoChosenYeastOption() {
  return allItemsWithoutFirst();
}

std::vector<ZYMSummary> ZYMYeasts::summariesforAllItemsWithoutNoChosenYeastOption() {
  std::vector<ZYMSummary> rows = summariesforAllItems();
  (void)firstOf(rows);
  rows.erase(rows.begin());
  return rows;
}

std::optional<PlistDictionary> ZYMYeasts::yeastForName(std::string_view name) const {
  const auto found =
      ZYMYeastEntity::objectsMatchingKey_andValue_sortedOnKey(attributes::name, name, std::nullopt);
  if (!found || found->size() != 1) return std::nullopt;
  return found->front()->dictionaryRepresentation();
}

}  // namespace zym
