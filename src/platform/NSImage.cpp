#include "zymcore/platform/NSImage.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>

namespace zym {
namespace {

constexpr std::int64_t unreadable = 256;

struct Release {
  void operator()(gpointer object) const noexcept { g_object_unref(object); }
};
template <class Object>
using Owned = std::unique_ptr<Object, Release>;

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

bool isBounded(int width, int height) noexcept {
  return width > 0 && height > 0 && width <= NSImage::mostPixelsASide &&
         height <= NSImage::mostPixelsASide &&
         static_cast<std::size_t>(width) * static_cast<std::size_t>(height) <= NSImage::mostPixels;
}

// A size of nothing tells the loader to go no further.
void refuseLargePicture(GdkPixbufLoader* loader, int width, int height, gpointer refused) {
  if (isBounded(width, height)) return;
  *static_cast<bool*>(refused) = true;
  gdk_pixbuf_loader_set_size(loader, 0, 0);
}

std::string take(GError* problem) {
  std::string message = problem ? problem->message : "no picture";
  g_clear_error(&problem);
  return message;
}

}  // namespace

struct NSImage::Pixels {
  Owned<GdkPixbuf> buffer;
};

std::optional<NSImage> NSImage::imageWithData(const NSData& data, NSError* error) {
  const auto refuse = [&](std::string reason) -> std::optional<NSImage> {
    fail(error, NSCocoaErrorDomain, unreadable, std::move(reason));
    return std::nullopt;
  };
  const char* const format = formatOf(data.view());
  if (!format) return refuse("no picture in a known format");
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
  Owned<GdkPixbuf> upright(gdk_pixbuf_apply_embedded_orientation(picture));
  if (!upright) return refuse("out of memory");
  return NSImage(std::make_shared<const Pixels>(Pixels{std::move(upright)}));
}

NSSize NSImage::size() const noexcept {
  return {static_cast<double>(gdk_pixbuf_get_width(pixels_->buffer.get())),
          static_cast<double>(gdk_pixbuf_get_height(pixels_->buffer.get()))};
}

NSImage NSImage::imageResizedTo(double width, double height) const {
  const auto side = [](double length) {
    return static_cast<int>(std::clamp(std::round(std::isnan(length) ? 1 : length), 1.0,
                                       static_cast<double>(mostPixelsASide)));
  };
  Owned<GdkPixbuf> scaled(gdk_pixbuf_scale_simple(pixels_->buffer.get(), side(width), side(height),
                                                  GDK_INTERP_BILINEAR));
  if (!scaled) return *this;
  return NSImage(std::make_shared<const Pixels>(Pixels{std::move(scaled)}));
}

NSData NSImage::PNGRepresentation() const {
  gchar* bytes = nullptr;
  gsize length = 0;
  gdk_pixbuf_save_to_buffer(pixels_->buffer.get(), &bytes, &length, "png", nullptr, nullptr);
  const std::unique_ptr<gchar, decltype(&g_free)> owned(bytes, &g_free);
  return NSData(std::string_view(bytes, length));
}

}  // namespace zym
