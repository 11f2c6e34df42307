#include "zymcore/library/recipes/ZYMImageUtils.h"

#include "zymcore/platform/graphics/CGBitmapContext.h"

namespace zym {

std::optional<CGImage>
ZYMImageUtils::createResizedImage_toSize_transform_drawTransposed_interpolationQuality(
    const CGImage& image, CGSize size, const CGAffineTransform& transform, bool transposed,
    CGInterpolationQuality quality) {
  CGRect rect = CGRectIntegral({{0, 0}, size});
  if (!CGImage::isSize(rect.size.width, rect.size.height)) return std::nullopt;
  auto context = CGBitmapContext::create(static_cast<int>(rect.size.width),
                                         static_cast<int>(rect.size.height), image.hasAlpha());
  if (!context) return std::nullopt;
  context->concatCTM(transform);
  context->setInterpolationQuality(quality);
  if (transposed) rect.size = {rect.size.height, rect.size.width};
  context->drawImage(rect, image);
  return context->createImage();
}

std::optional<NSImage> resizedImageToSize_interpolationQuality(const NSImage& image, NSSize size,
                                                               CGInterpolationQuality quality) {
  auto resized =
      ZYMImageUtils::createResizedImage_toSize_transform_drawTransposed_interpolationQuality(
          image.image(), size, CGAffineTransformIdentity, false, quality);
  if (!resized) return std::nullopt;
  return NSImage(std::move(*resized));
}

}  // namespace zym
