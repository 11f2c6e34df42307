#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "zymcore/platform/graphics/CGAffineTransform.h"
#include "zymcore/platform/graphics/CGGeometry.h"
#include "zymcore/platform/graphics/CGImage.h"

namespace zym {

/// A picture that is drawn on. Its plane has the origin at the lower left and y upwards, one unit a
/// pixel. It begins clear or, where it has no opacity, black.
class CGBitmapContext {
 public:
  /// Absent for a size that no picture may have.
  [[nodiscard]] static std::optional<CGBitmapContext> create(int width, int height, bool hasAlpha);

  /// What is drawn from now on goes through this transform before those given earlier.
  void concatCTM(const CGAffineTransform& transform) noexcept;
  void setInterpolationQuality(CGInterpolationQuality quality) noexcept { quality_ = quality; }
  /// Draws the picture, upright, over what lies in the rectangle.
  void drawImage(const CGRect& rect, const CGImage& image);

  /// What has been drawn so far.
  [[nodiscard]] CGImage createImage() const;

 private:
  CGBitmapContext(int width, int height, bool hasAlpha);

  int width_;
  int height_;
  bool hasAlpha_;
  std::vector<std::uint8_t> pixels_;
  CGAffineTransform ctm_;
  CGInterpolationQuality quality_ = kCGInterpolationDefault;
};

}  // namespace zym
