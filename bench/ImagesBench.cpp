// A photo taken in: made small in both sizes and written, beside gdk-pixbuf doing no more than
// that.

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <cstdint>
#include <memory>
#include <string_view>

#include "bench/Ratio.h"
#include "zymcore/library/recipes/ZYMRecipes.h"

namespace zym {
namespace {

struct Release {
  void operator()(gpointer object) const noexcept { g_object_unref(object); }
};
using Picture = std::unique_ptr<GdkPixbuf, Release>;

// 12 megapixels with detail everywhere.
NSData photo() {
  const int width = 4000;
  const int height = 3000;
  const Picture picture(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, width, height));
  guchar* const pixels = gdk_pixbuf_get_pixels(picture.get());
  const int stride = gdk_pixbuf_get_rowstride(picture.get());
  std::uint32_t noise = 1;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < 3 * width; ++x) {
      noise = noise * 1664525U + 1013904223U;
      pixels[y * stride + x] = static_cast<guchar>((x / 24 + y / 8) / 4 + (noise >> 27U));
    }
  }
  gchar* bytes = nullptr;
  gsize length = 0;
  gdk_pixbuf_save_to_buffer(picture.get(), &bytes, &length, "jpeg", nullptr, "quality", "92",
                            nullptr);
  const NSData data(std::string_view(bytes, length));
  g_free(bytes);
  return data;
}

std::size_t pngLength(const Picture& picture) {
  gchar* bytes = nullptr;
  gsize length = 0;
  gdk_pixbuf_save_to_buffer(picture.get(), &bytes, &length, "png", nullptr, nullptr);
  g_free(bytes);
  return length;
}

// PNG with opacity, as it is written for every image.
std::size_t bareSize(GdkPixbuf* picture, int width, int height) {
  const Picture scaled(gdk_pixbuf_scale_simple(picture, width, height, GDK_INTERP_BILINEAR));
  return pngLength(Picture(gdk_pixbuf_add_alpha(scaled.get(), FALSE, 0, 0, 0)));
}

void takeInPhoto(benchmark::State& state) {
  const NSData data = photo();
  measureRatio(
      state, 1.2,
      [&] {
        const NSImage image = NSImage::imageWithData(data).value();
        for (const NSImage& sized :
             {ZYMRecipes::thumbnailFromImage(image), ZYMRecipes::sizedLargeImageFromImage(image)}) {
          benchmark::DoNotOptimize(ZYMRecipes::dataFromImage(sized));
        }
      },
      [&] {
        GdkPixbufLoader* const loader = gdk_pixbuf_loader_new_with_type("jpeg", nullptr);
        gdk_pixbuf_loader_write(loader, data.bytes().data(), data.length(), nullptr);
        gdk_pixbuf_loader_close(loader, nullptr);
        GdkPixbuf* const picture = gdk_pixbuf_loader_get_pixbuf(loader);
        benchmark::DoNotOptimize(bareSize(picture, 128, 96) + bareSize(picture, 600, 450));
        g_object_unref(loader);
      });
}
BENCHMARK(takeInPhoto)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zym
