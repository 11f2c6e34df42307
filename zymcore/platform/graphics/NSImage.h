#pragma once

#include <optional>
#include <utility>

#include "zymcore/platform/graphics/CGGeometry.h"
#include "zymcore/platform/graphics/CGImage.h"
#include "zymcore/platform/values/NSData.h"
#include "zymcore/platform/values/NSError.h"

namespace zym {

using NSSize = CGSize;

/// A picture that doesn't change. A copy shares it. A point is a pixel.
class NSImage {
 public:
  /// A picture in any format the system knows, turned upright as its orientation tag says. Absent,
  /// with an error, when it can't be read or is larger than a `CGImage` may be; the latter is found
  /// before it is decoded.
  [[nodiscard]] static std::optional<NSImage> imageWithData(const NSData& data,
                                                            NSError* error = nullptr);
  explicit NSImage(CGImage image) noexcept : image_(std::move(image)) {}

  [[nodiscard]] NSSize size() const noexcept {
    return {static_cast<double>(image_.width()), static_cast<double>(image_.height())};
  }
  [[nodiscard]] const CGImage& image() const noexcept { return image_; }
  /// Scaled to exactly this size in whole pixels, of which each side has at least 1. What is larger
  /// than a `CGImage` may be becomes the largest that may: first each side, then both in
  /// proportion.
  [[nodiscard]] NSImage imageResizedTo(double width, double height) const;

 private:
  CGImage image_;
};

}  // namespace zym
