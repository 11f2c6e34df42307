#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/interchange/ParsedRecipeKeys.h"
#include "zymcore/interchange/rec/RecLayout.h"
#include "zymcore/interchange/rec/ZYMRecFile.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/PlistValue.h"

// Whatever is read is a whole recipe in UTF-8, and written twice it is the same twice: what has no
// place in its field is left out the first time.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zym;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto recipe = ZYMRecFile::parseFileData(NSData(bytes));
  const auto file = RecFile::read(bytes);
  if (recipe.has_value() != file.has_value()) std::abort();
  if (!recipe) return 0;
  for (const KeyName key : {keys::YeastIngredients, parsedKeys::FERMENTABLES, parsedKeys::HOPS,
                            parsedKeys::MISCS, parsedKeys::MASHSTEPS}) {
    if (!recipe->array(key)) std::abort();
  }
  if (!isUTF8(recipe->stringValue(keys::Notes))) std::abort();
  const std::string once = file->write();
  const auto again = RecFile::read(once);
  if (!again || again->hops.size() != file->hops.size()) std::abort();
  const auto settled = RecFile::read(again->write());
  if (!settled || settled->write() != again->write()) std::abort();
  return 0;
}
