#include "zymcore/platform/graphics/CGImage.h"

#include <string_view>
#include <utility>

#include "zymcore/platform/graphics/internal/Owned.h"

namespace zym {
namespace {

using Buffer = Owned<GdkPixbuf>;

Buffer bufferOf(const CGImage& image, std::size_t bytesPerRow) {
  return Buffer(gdk_pixbuf_new_from_data(image.pixelAt(0, 0), GDK_COLORSPACE_RGB, image.hasAlpha(),
                                         8, image.width(), image.height(),
                                         static_cast<int>(bytesPerRow), nullptr, nullptr));
}

}  // namespace

bool CGImage::isSize(double width, double height) noexcept {
  return width >= 1 && height >= 1 && width <= mostPixelsASide && height <= mostPixelsASide &&
         width * height <= static_cast<double>(mostPixels);
}

CGImage::CGImage(int width, int height, bool hasAlpha, std::size_t bytesPerRow,
                 std::shared_ptr<const std::uint8_t> pixels) noexcept
    : width_(width),
      height_(height),
      hasAlpha_(hasAlpha),
      bytesPerRow_(bytesPerRow),
      pixels_(std::move(pixels)) {}

CGImage CGImage::scaledTo(int width, int height, CGInterpolationQuality quality) const {
  if (width == width_ && height == height_) return *this;
  const Buffer buffer = bufferOf(*this, bytesPerRow_);
  const std::shared_ptr<GdkPixbuf> scaled(
      gdk_pixbuf_scale_simple(
          buffer.get(), width, height,
          quality == kCGInterpolationNone ? GDK_INTERP_NEAREST : GDK_INTERP_BILINEAR),
      Release());
  if (!scaled) return *this;
  return {width, height, hasAlpha_,
          static_cast<std::size_t>(gdk_pixbuf_get_rowstride(scaled.get())),
          std::shared_ptr<const std::uint8_t>(scaled, gdk_pixbuf_read_pixels(scaled.get()))};
}

std::optional<NSData> CGImage::PNGRepresentation() const {
  const Buffer buffer = bufferOf(*this, bytesPerRow_);
  gchar* bytes = nullptr;
  gsize length = 0;
  if (!gdk_pixbuf_save_to_buffer(buffer.get(), &bytes, &length, "png", nullptr, nullptr)) {
    return std::nullopt;
  }
  const std::unique_ptr<gchar, decltype(&g_free)> owned(bytes, &g_free);
  return NSData(std::string_view(bytes, length));
}

}  // namespace zym
