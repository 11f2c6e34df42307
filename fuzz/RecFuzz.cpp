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

// Whatever is read is a whole recipe in UTF-8, and written as one of ours it stays the same from
// then on.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zym;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto recipe = ZYMRecFile::parseFileData(NSData(bytes));
  auto file = RecFile::read(bytes);
  if (recipe.has_value() != file.has_value()) std::abort();
  if (!recipe) return 0;
  for (const KeyName key : {keys::YeastIngredients, parsedKeys::FERMENTABLES, parsedKeys::HOPS,
                            parsedKeys::MISCS, parsedKeys::MASHSTEPS}) {
    if (!recipe->array(key)) std::abort();
  }
  if (!isUTF8(recipe->stringValue(keys::Notes))) std::abort();
  file->tail.water = RecFile::ownWater;
  const std::string once = file->write();
  const auto again = RecFile::read(once);
  if (!again || again->write() != once) std::abort();
  return 0;
}
