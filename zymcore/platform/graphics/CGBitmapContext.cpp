#include "zymcore/platform/graphics/CGBitmapContext.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace zym {
namespace {

/// Opacity from 0 to 1, and colours from 0 to 255 that are multiplied by it.
struct Color {
  float red = 0;
  float green = 0;
  float blue = 0;
  float alpha = 0;

  void add(const Color& other, float share) noexcept {
    red += other.red * share;
    green += other.green * share;
    blue += other.blue * share;
    alpha += other.alpha * share;
  }
};

Color colorOf(const std::uint8_t* pixel, bool hasAlpha) noexcept {
  const float alpha = hasAlpha ? static_cast<float>(pixel[3]) / 255.0F : 1.0F;
  return {static_cast<float>(pixel[0]) * alpha, static_cast<float>(pixel[1]) * alpha,
          static_cast<float>(pixel[2]) * alpha, alpha};
}

std::uint8_t byteOf(float value) noexcept {
  return static_cast<std::uint8_t>(std::clamp(value + 0.5F, 0.0F, 255.0F));
}

void drawOver(std::uint8_t* pixel, bool hasAlpha, Color color) noexcept {
  if (color.alpha <= 0) return;
  if (color.alpha < 1) color.add(colorOf(pixel, hasAlpha), 1 - color.alpha);
  pixel[0] = byteOf(color.red / color.alpha);
  pixel[1] = byteOf(color.green / color.alpha);
  pixel[2] = byteOf(color.blue / color.alpha);
  if (hasAlpha) pixel[3] = byteOf(color.alpha * 255.0F);
}

Color nearest(const CGImage& image, double x, double y) noexcept {
  return colorOf(image.pixelAt(std::min(static_cast<int>(x), image.width() - 1),
                               std::min(static_cast<int>(y), image.height() - 1)),
                 image.hasAlpha());
}

// Between the middles of the four pixels around.
Color between(const CGImage& image, double x, double y) noexcept {
  x = std::clamp(x - 0.5, 0.0, image.width() - 1.0);
  y = std::clamp(y - 0.5, 0.0, image.height() - 1.0);
  const int left = static_cast<int>(x);
  const int top = static_cast<int>(y);
  const int right = std::min(left + 1, image.width() - 1);
  const int bottom = std::min(top + 1, image.height() - 1);
  const auto shareOfRight = static_cast<float>(x - left);
  const auto shareOfBottom = static_cast<float>(y - top);
  const auto at = [&](int column, int row) {
    return colorOf(image.pixelAt(column, row), image.hasAlpha());
  };
  Color color;
  color.add(at(left, top), (1 - shareOfRight) * (1 - shareOfBottom));
  color.add(at(right, top), shareOfRight * (1 - shareOfBottom));
  color.add(at(left, bottom), (1 - shareOfRight) * shareOfBottom);
  color.add(at(right, bottom), shareOfRight * shareOfBottom);
  return color;
}

// As many pixels as the picture covers, never more than it has: what is larger lies between those.
int pixelsFor(double extent, int most) noexcept {
  return extent < most ? std::max(1, static_cast<int>(std::lround(extent))) : most;
}

}  // namespace

std::optional<CGBitmapContext> CGBitmapContext::create(int width, int height, bool hasAlpha) {
  if (!CGImage::isSize(width, height)) return std::nullopt;
  return CGBitmapContext(width, height, hasAlpha);
}

CGBitmapContext::CGBitmapContext(int width, int height, bool hasAlpha)
    : width_(width),
      height_(height),
      hasAlpha_(hasAlpha),
      pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
              (hasAlpha ? 4U : 3U)) {}

void CGBitmapContext::concatCTM(const CGAffineTransform& transform) noexcept {
  ctm_ = CGAffineTransformConcat(transform, ctm_);
}

void CGBitmapContext::drawImage(const CGRect& rect, const CGImage& image) {
  const auto inverse = CGAffineTransformInvert(ctm_);
  if (!inverse || !(rect.size.width > 0) || !(rect.size.height > 0)) return;

  const bool isExact = quality_ == kCGInterpolationNone;
  const CGImage source =
      isExact
          ? image
          : image.scaledTo(pixelsFor(rect.size.width * std::hypot(ctm_.a, ctm_.b), image.width()),
                           pixelsFor(rect.size.height * std::hypot(ctm_.c, ctm_.d), image.height()),
                           quality_);
  const auto colorAt = isExact ? nearest : between;

  std::uint8_t* pixel = pixels_.data();
  for (int row = 0; row < height_; ++row) {
    for (int column = 0; column < width_; ++column, pixel += hasAlpha_ ? 4 : 3) {
      const CGPoint p = CGPointApplyAffineTransform({column + 0.5, height_ - row - 0.5}, *inverse);
      const double across = (p.x - rect.origin.x) / rect.size.width;
      const double down = 1 - (p.y - rect.origin.y) / rect.size.height;
      if (!(across >= 0 && across < 1 && down >= 0 && down < 1)) continue;
      drawOver(pixel, hasAlpha_, colorAt(source, across * source.width(), down * source.height()));
    }
  }
}

CGImage CGBitmapContext::createImage() const {
  auto owned = std::make_shared<const std::vector<std::uint8_t>>(pixels_);
  return {width_, height_, hasAlpha_, static_cast<std::size_t>(width_) * (hasAlpha_ ? 4U : 3U),
          std::shared_ptr<const std::uint8_t>(owned, owned->data())};
}

}  // namespace zym
