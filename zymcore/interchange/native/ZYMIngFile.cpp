#include "zymcore/interchange/native/ZYMIngFile.h"

#include <algorithm>
#include <iterator>

#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/SafeJSON.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/ZYMFermentables.h"
#include "zymcore/library/ZYMHops.h"
#include "zymcore/library/ZYMOtherIngredients.h"
#include "zymcore/library/ZYMYeasts.h"
#include "zymcore/platform/formats/NSJSONSerialization.h"
#include "zymcore/platform/values/NSCocoaErrors.h"

namespace zym {
namespace {

constexpr KeyName Ingredients{"Ingredients"};

/// A kind of ingredient, and the key by which a record shows that it is of it.
struct Kind {
  std::string_view type;
  KeyName key;
  ZYMCachingModel& (*library)();
};
template <class Library>
ZYMCachingModel& library() {
  return Library::sharedInstance();
}
// In this order; the last is for all else.
constexpr Kind kinds[] = {
    {words::Fermentable, keys::IsGrain, library<ZYMFermentables>},
    {words::Hop, keys::Alpha, library<ZYMHops>},
    {words::Yeast, keys::Attenuation, library<ZYMYeasts>},
    {words::Other, keys::UUID, library<ZYMOtherIngredients>},
};

const Kind& kindOf(const PlistDictionary* record) {
  const auto* found = std::ranges::find_if(
      kinds, [record](const Kind& kind) { return record && record->contains(kind.key); });
  return found == std::end(kinds) ? *std::rbegin(kinds) : *found;
}

const Kind* kindNamed(std::string_view type) {
  const auto* found = std::ranges::find(kinds, type, &Kind::type);
  return found == std::end(kinds) ? nullptr : found;
}

}  // namespace

PlistDictionary ZYMIngFile::packageIngredients(const PlistArray& records) {
  if (records.empty()) return {};
  return {{keys::IngredientType, kindOf(records.begin()->dictionary()).type},
          {Ingredients, records}};
}

std::size_t ZYMIngFile::installIngredients(const PlistDictionary& package) {
  const PlistArray* records = package.array(Ingredients);
  const Kind* kind = kindNamed(package.stringValue(keys::IngredientType));
  if (records && kind) kind->library().addItemsFromArray(*records);
  return countOfIngredients(package);
}

std::size_t ZYMIngFile::countOfIngredients(const PlistDictionary& package) {
  const PlistArray* records = package.array(Ingredients);
  return records && kindNamed(package.stringValue(keys::IngredientType)) ? records->size() : 0;
}

std::optional<PlistDictionary> ZYMIngFile::parseFileData(const NSData& data, NSError* error) {
  constexpr unsigned options = NSJSONReadingMutableContainers | NSJSONReadingMutableLeaves;
  std::optional<PlistValue> tree = safeJSONObjectWithData_options(data.view(), options, error);
  if (!tree) return std::nullopt;
  if (PlistDictionary* package = tree->editDictionary()) return std::move(*package);
  fail(error, NSCocoaErrorDomain, NSFileReadCorruptFileError, "no package, but a list");
  return std::nullopt;
}

std::optional<NSData> ZYMIngFile::dataForItem(const PlistDictionary& package) {
  std::optional<std::string> text =
      safeDataWithJSONObject_options(package, NSJSONWritingPrettyPrinted);
  return text ? std::optional(NSData(std::move(*text))) : std::nullopt;
}

}  // namespace zym
