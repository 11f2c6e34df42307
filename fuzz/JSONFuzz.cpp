#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "zymcore/platform/formats/NSJSONSerialization.h"

// Whatever is read can be written, and reads back the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using zym::NSJSONSerialization;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto tree = NSJSONSerialization::JSONObjectWithData_options(bytes, 0);
  if (!tree) return 0;
  const auto written = NSJSONSerialization::dataWithJSONObject_options(*tree, 0);
  if (!written) std::abort();
  if (NSJSONSerialization::JSONObjectWithData_options(*written, 0) != tree) std::abort();
  return 0;
}
