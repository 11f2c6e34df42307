#pragma once

#include <optional>

#include "zymcore/platform/graphics/CGAffineTransform.h"
#include "zymcore/platform/graphics/CGImage.h"
#include "zymcore/platform/graphics/NSImage.h"

namespace zym {

class ZYMImageUtils {
 public:
  /// The picture drawn to fill `size`, which is rounded up to whole pixels, and through the
  /// transform. Transposed, it is drawn with width and height exchanged, for a transform that
  /// turns it by a quarter. Absent for a size that no picture may have.
  [[nodiscard]] static std::optional<CGImage>
  createResizedImage_toSize_transform_drawTransposed_interpolationQuality(
      const CGImage& image, CGSize size, const CGAffineTransform& transform, bool transposed,
      CGInterpolationQuality quality);
};

/// The picture at that size, rounded up to whole pixels. Absent for a size that no picture may
/// have.
[[nodiscard]] std::optional<NSImage> resizedImageToSize_interpolationQuality(
    const NSImage& image, NSSize size, CGInterpolationQuality quality);

}  // namespace zym
