#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "zymcore/platform/formats/BinaryPropertyList.h"

// Whatever is read can be written, and what reads back from that is written the same. (Trees aren't
// compared: a date that is no number differs from itself.)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using zym::BinaryPropertyList;
  const auto tree = BinaryPropertyList::read({reinterpret_cast<const char*>(data), size});
  if (!tree) return 0;
  const auto written = BinaryPropertyList::write(*tree);
  if (!written) std::abort();
  const auto again = BinaryPropertyList::read(*written);
  if (!again || BinaryPropertyList::write(*again) != written) std::abort();
  return 0;
}
