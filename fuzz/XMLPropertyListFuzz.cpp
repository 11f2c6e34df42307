#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "zymcore/platform/formats/XMLPropertyList.h"

// Whatever is read can be written, and reads back the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using zym::XMLPropertyList;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto tree = XMLPropertyList::read(bytes);
  if (!tree) return 0;
  const auto written = XMLPropertyList::write(*tree);
  if (!written) std::abort();
  if (XMLPropertyList::read(*written) != tree) std::abort();
  return 0;
}
