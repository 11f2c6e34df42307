#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "zymcore/platform/graphics/NSImage.h"

// What is decoded is a picture of a size that one may have, and survives scaling and writing. Large
// ones are only measured, since filling them is most of the time that they take.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zym;
  const auto image =
      NSImage::imageWithData(NSData(std::string_view(reinterpret_cast<const char*>(data), size)));
  if (!image) return 0;
  const auto [width, height] = image->size();
  if (!CGImage::isSize(width, height)) std::abort();
  if (width * height > 1'000'000) return 0;
  if (image->imageResizedTo(7, 5).size() != NSSize{7, 5}) std::abort();
  const auto png = image->image().PNGRepresentation();
  const auto again = png ? NSImage::imageWithData(*png) : std::nullopt;
  if (!again || again->size() != image->size()) std::abort();
  return 0;
}
