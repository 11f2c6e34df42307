#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "zymcore/platform/values/NSData.h"

namespace zym {

enum CGInterpolationQuality {
  kCGInterpolationDefault = 0,
  kCGInterpolationNone = 1,  // the nearest pixel
  kCGInterpolationLow = 2,
  kCGInterpolationHigh = 3,
  kCGInterpolationMedium = 4,
};

/// Pixels of red, green, blue and, if there is, opacity, 8 bits each, from the top left. Colours
/// aren't multiplied by opacity. It doesn't change, and a copy shares it.
class CGImage {
 public:
  // No picture is larger.
  static constexpr int mostPixelsASide = 16'384;
  static constexpr std::size_t mostPixels = 64'000'000;

  /// Whether a picture may have this size; nothing isn't one.
  [[nodiscard]] static bool isSize(double width, double height) noexcept;

  /// The size must be one. Each row has 3 or 4 bytes a pixel and begins `bytesPerRow` after the one
  /// before it.
  CGImage(int width, int height, bool hasAlpha, std::size_t bytesPerRow,
          std::shared_ptr<const std::uint8_t> pixels) noexcept;

  [[nodiscard]] int width() const noexcept { return width_; }
  [[nodiscard]] int height() const noexcept { return height_; }
  [[nodiscard]] bool hasAlpha() const noexcept { return hasAlpha_; }
  [[nodiscard]] const std::uint8_t* pixelAt(int x, int y) const noexcept {
    return pixels_.get() + static_cast<std::size_t>(y) * bytesPerRow_ +
           static_cast<std::size_t>(x) * (hasAlpha_ ? 4U : 3U);
  }

  /// Each new pixel is the mean of what it covers, or lies between its neighbours. The same picture
  /// when that is its size, or memory is short.
  [[nodiscard]] CGImage scaledTo(int width, int height, CGInterpolationQuality quality) const;
  /// Absent when memory is short.
  [[nodiscard]] std::optional<NSData> PNGRepresentation() const;

 private:
  int width_;
  int height_;
  bool hasAlpha_;
  std::size_t bytesPerRow_;
  std::shared_ptr<const std::uint8_t> pixels_;
};

}  // namespace zym
