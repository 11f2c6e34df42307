#include <cstdlib>
#include <string_view>

#include "fuzz/FuzzStore.h"
#include "zymcore/interchange/native/ZYMIngFile.h"
#include "zymcore/platform/values/PlistValue.h"

// A package that can be read can be installed and written, and is then the same package.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zym;
  static const bool isOpen = (openFuzzStore("zymcore-package-fuzz"), true);
  (void)isOpen;
  const auto package = ZYMIngFile::parseFileData(
      NSData(std::string_view(reinterpret_cast<const char*>(data), size)));
  if (!package) return 0;
  (void)ZYMIngFile::installIngredients(*package);
  const auto written = ZYMIngFile::dataForItem(*package);
  if (!written) return 0;  // a date that is in a list
  const auto again = ZYMIngFile::parseFileData(*written);
  if (!again || ZYMIngFile::dataForItem(*again) != written) std::abort();
  return 0;
}
