#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "zymcore/platform/BinaryPropertyList.h"

// Whatever is read can be written, and reads back the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using zym::BinaryPropertyList;
  const auto tree = BinaryPropertyList::read({reinterpret_cast<const char*>(data), size});
  if (!tree) return 0;
  const auto written = BinaryPropertyList::write(*tree);
  if (!written) std::abort();
  if (BinaryPropertyList::read(*written) != tree) std::abort();
  return 0;
}
