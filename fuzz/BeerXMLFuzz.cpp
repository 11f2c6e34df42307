#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/interchange/ParsedRecipeKeys.h"
#include "zymcore/interchange/beerxml/ZYMBeerXML.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/PlistValue.h"

namespace {

bool isText(const zym::PlistDictionary& record) {
  for (const auto& [key, value] : record) {
    if (value.string() && !zym::isUTF8(*value.string())) return false;
    if (!value.array()) continue;
    for (const zym::PlistDictionary& row : record.rows(key)) {
      if (!isText(row)) return false;
    }
  }
  return true;
}

}  // namespace

// Either a recipe, whole and in UTF-8, or a reason.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zym;
  NSError error;
  const auto recipe = ZYMBeerXML::parseFileData(
      NSData(std::string_view(reinterpret_cast<const char*>(data), size)), &error);
  if (recipe.has_value() == !error.localizedDescription.empty()) std::abort();
  if (!recipe) return 0;
  for (const KeyName key :
       {keys::YeastIngredients, parsedKeys::FERMENTABLES, parsedKeys::HOPS, parsedKeys::MISCS}) {
    if (!recipe->array(key)) std::abort();
  }
  for (const KeyName key :
       {keys::RecipeTitle, parsedKeys::TYPE, keys::PreBoilWortVolume, keys::Notes}) {
    if (!recipe->string(key)) std::abort();
  }
  if (!isText(*recipe)) std::abort();
  return 0;
}
