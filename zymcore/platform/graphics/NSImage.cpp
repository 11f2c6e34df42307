#include "zymcore/platform/graphics/NSImage.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>

#include "zymcore/platform/graphics/internal/Owned.h"
#include "zymcore/platform/values/NSCocoaErrors.h"

namespace zym {
namespace {

// Only loaders that tell the size of a picture before they decode it.
struct Format {
  std::string_view start;
  const char* name;
};
using namespace std::string_view_literals;
constexpr Format formats[] = {
    {"\x89PNG\r\n\x1A\n"sv, "png"},
    {"\xFF\xD8\xFF"sv, "jpeg"},
    {"GIF8"sv, "gif"},
    {"BM"sv, "bmp"},
    {"II*\0"sv, "tiff"},
    {"MM\0*"sv, "tiff"},
};

const char* formatOf(std::string_view bytes) noexcept {
  const auto* const format =
      std::find_if(std::begin(formats), std::end(formats),
                   [&](const Format& known) { return bytes.starts_with(known.start); });
  return format == std::end(formats) ? nullptr : format->name;
}

std::uint32_t littleEndianAt(std::string_view bytes, std::size_t place) noexcept {
  std::uint32_t number = 0;
  for (unsigned i = 0; i < 4; ++i) {
    number |= std::uint32_t{static_cast<unsigned char>(bytes[place + i])} << 8 * i;
  }
  return number;
}

// The loader of bitmaps makes room for as much as they say stands before the pixels, and for as
// long a header as they say they have.
bool isBitmapCutOff(std::string_view bytes) noexcept {
  constexpr std::size_t pixelsBegin = 10;
  constexpr std::size_t headerLength = 14;
  return bytes.starts_with("BM") && bytes.size() >= headerLength + 4 &&
         (littleEndianAt(bytes, pixelsBegin) > bytes.size() ||
          littleEndianAt(bytes, headerLength) > bytes.size());
}

// A size of nothing tells the loader to go no further.
void refuseLargePicture(GdkPixbufLoader* loader, int width, int height, gpointer refused) {
  if (CGImage::isSize(width, height)) return;
  *static_cast<bool*>(refused) = true;
  gdk_pixbuf_loader_set_size(loader, 0, 0);
}

std::string take(GError* problem) {
  std::string message = problem ? problem->message : "no picture";
  g_clear_error(&problem);
  return message;
}

}  // namespace

std::optional<NSImage> NSImage::imageWithData(const NSData& data, NSError* error) {
  const auto refuse = [&](std::string reason) -> std::optional<NSImage> {
    fail(error, NSCocoaErrorDomain, NSFileReadUnknownError, std::move(reason));
    return std::nullopt;
  };
  const char* const format = formatOf(data.view());
  if (!format) return refuse("no picture in a known format");
  if (isBitmapCutOff(data.view())) return refuse("a bitmap that is cut off");
  GError* problem = nullptr;
  const Owned<GdkPixbufLoader> loader(gdk_pixbuf_loader_new_with_type(format, &problem));
  if (!loader) return refuse(take(problem));

  bool isTooLarge = false;
  g_signal_connect(loader.get(), "size-prepared", G_CALLBACK(refuseLargePicture), &isTooLarge);
  bool isRead = gdk_pixbuf_loader_write(loader.get(), data.bytes().data(), data.length(), &problem);
  isRead = gdk_pixbuf_loader_close(loader.get(), isRead ? &problem : nullptr) && isRead;
  const std::string reason = take(problem);
  if (isTooLarge) return refuse("a picture too large");
  GdkPixbuf* const picture = isRead ? gdk_pixbuf_loader_get_pixbuf(loader.get()) : nullptr;
  if (!picture) return refuse(reason);
  const std::shared_ptr<GdkPixbuf> upright(gdk_pixbuf_apply_embedded_orientation(picture),
                                           Release());
  if (!upright) return refuse("out of memory");
  return NSImage(
      CGImage(gdk_pixbuf_get_width(upright.get()), gdk_pixbuf_get_height(upright.get()),
              gdk_pixbuf_get_has_alpha(upright.get()) != 0,
              static_cast<std::size_t>(gdk_pixbuf_get_rowstride(upright.get())),
              std::shared_ptr<const std::uint8_t>(upright, gdk_pixbuf_read_pixels(upright.get()))));
}

NSImage NSImage::imageResizedTo(double width, double height) const {
  const auto limited = [](double length) {
    return std::clamp(std::round(std::isnan(length) ? 1 : length), 1.0,
                      static_cast<double>(CGImage::mostPixelsASide));
  };
  double across = limited(width);
  double down = limited(height);
  if (!CGImage::isSize(across, down)) {
    const double scale = std::sqrt(static_cast<double>(CGImage::mostPixels) / (across * down));
    across = std::floor(across * scale);
    down = std::floor(down * scale);
  }
  return NSImage(
      image_.scaledTo(static_cast<int>(across), static_cast<int>(down), kCGInterpolationDefault));
}

}  // namespace zym
