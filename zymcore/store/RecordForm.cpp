#include "zymcore/store/RecordForm.h"

#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/store/FirstOf.h"
#include "zymcore/store/ZYMCachingModel.h"
#include "zymcore/store/ZYMLibraryRegistry.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMWaterEntity.h"

namespace zym {
namespace {

std::optional<PlistValue> copyOf(const PlistValue* value) {
  return value ? std::optional(*value) : std::nullopt;
}

std::optional<PlistValue> orText(const PlistValue* given, std::string_view text) {
  return given ? *given : PlistValue(text);
}

}  // namespace

namespace written {

std::optional<PlistValue> ifPresent(NSManagedObject& object, KeyName attribute) {
  return copyOf(object.valueForKey(attribute));
}

std::optional<PlistValue> always(NSManagedObject& object, KeyName attribute) {
  return orText(object.valueForKey(attribute), "");
}

std::optional<PlistValue> alwaysStored(NSManagedObject& object, KeyName attribute) {
  if (!object.valueForKey(attribute)) object.setValue_forKey("", attribute);
  return ifPresent(object, attribute);
}

std::optional<PlistValue> withNewUUID(NSManagedObject& object, KeyName attribute) {
  if (!object.valueForKey(attribute)) object.setValue_forKey(uuid(), attribute);
  return ifPresent(object, attribute);
}

std::optional<PlistValue> orFirstWater(NSManagedObject& object, KeyName attribute) {
  if (const PlistValue* uuid = object.valueForKey(attribute)) return *uuid;
  ZYMCachingModel* waters =
      ZYMLibraryRegistry::sharedInstance().libraryOfEntity(ZYMWaterEntity::entityName);
  const std::vector<ZYMSummary> rows =
      waters ? waters->rowsOfAllItems() : std::vector<ZYMSummary>();
  const std::optional<std::string>& first = firstOf(rows).uuid;
  return first ? std::optional<PlistValue>(*first) : std::nullopt;
}

std::optional<PlistValue> nameInLibrary(NSManagedObject& object, KeyName /*attribute*/) {
  const std::string* type = object.stringForKey(attributes::ingredientType);
  const std::string* uuid = object.stringForKey(attributes::uuid);
  ZYMCachingModel* library =
      type ? ZYMLibraryRegistry::sharedInstance().libraryOfIngredientType(*type) : nullptr;
  if (!library || !uuid) return "";
  const std::optional<PlistDictionary> record = library->itemWithUUID(*uuid);
  if (!record) return "";
  return orText(record->find(library->nameKeyInRecords()), "");
}

std::optional<PlistValue> uuidOfRelated(NSManagedObject& object, KeyName relationship) {
  const NSManagedObject* related = object.objectForKey(relationship);
  return related ? copyOf(related->valueForKey(attributes::uuid)) : std::nullopt;
}

}  // namespace written

namespace read {

std::optional<PlistValue> asGiven(const PlistValue* given, const PlistValue* /*stored*/) {
  return copyOf(given);
}

std::optional<PlistValue> orKept(const PlistValue* given, const PlistValue* stored) {
  return copyOf(given ? given : stored);
}

std::optional<PlistValue> orEmpty(const PlistValue* given, const PlistValue* /*stored*/) {
  return orText(given, "");
}
// That no library gives a name any more doesn't mean that there is none.
std::optional<PlistValue> orKeptWhenEmpty(const PlistValue* given, const PlistValue* stored) {
  const std::string* text = given ? given->string() : nullptr;
  const bool isEmpty = !given || (text && text->empty());
  return isEmpty && stored ? *stored : orText(given, "");
}

std::optional<PlistValue> orNewUUID(const PlistValue* given, const PlistValue* /*stored*/) {
  return given ? *given : PlistValue(uuid());
}

std::optional<PlistValue> orNow(const PlistValue* given, const PlistValue* /*stored*/) {
  return given ? *given : PlistValue(NSDate::date());
}

std::optional<PlistValue> number(const PlistValue* given, const PlistValue* /*stored*/) {
  return stringWithFormatF(given ? given->floatValue() : 0);
}

std::optional<PlistValue> wholeNumber(const PlistValue* given, const PlistValue* /*stored*/) {
  return std::to_string(given ? given->integerValue() : 0);
}

std::optional<PlistValue> orNoCost(const PlistValue* given, const PlistValue* /*stored*/) {
  return orText(given, "0.0");
}

std::optional<PlistValue> aleOrLager(const PlistValue* given, const PlistValue* /*stored*/) {
  const std::string* type = given ? given->string() : nullptr;
  return type && words::positionOf(*type, words::beerTypes) != NSNotFound ? *given
                                                                          : PlistValue(words::Ale);
}

std::optional<PlistValue> orLiquid(const PlistValue* given, const PlistValue* /*stored*/) {
  return orText(given, words::Liquid);
}

std::optional<PlistValue> orFermentable(const PlistValue* given, const PlistValue* /*stored*/) {
  return orText(given, words::Fermentable);
}

}  // namespace read
}  // namespace zym
