#pragma once

#include <cstddef>
#include <memory>
#include <optional>

#include "zymcore/platform/NSData.h"
#include "zymcore/platform/NSError.h"

namespace zym {

struct NSSize {
  double width = 0;
  double height = 0;

  friend bool operator==(const NSSize&, const NSSize&) = default;
};

/// A picture that doesn't change. A copy shares it.
class NSImage {
 public:
  // A picture that says it is larger is refused before it is decoded.
  static constexpr int mostPixelsASide = 16'384;
  static constexpr std::size_t mostPixels = 64'000'000;

  /// A picture in any format the system knows, turned upright as its orientation tag says. Absent,
  /// with an error, when it can't be read or is too large.
  [[nodiscard]] static std::optional<NSImage> imageWithData(const NSData& data,
                                                            NSError* error = nullptr);

  /// In pixels.
  [[nodiscard]] NSSize size() const noexcept;
  /// Scaled to exactly this size in whole pixels, from 1 to `mostPixelsASide` a side.
  [[nodiscard]] NSImage imageResizedTo(double width, double height) const;
  [[nodiscard]] NSData PNGRepresentation() const;

 private:
  struct Pixels;
  explicit NSImage(std::shared_ptr<const Pixels> pixels) noexcept : pixels_(std::move(pixels)) {}

  std::shared_ptr<const Pixels> pixels_;
};

}  // namespace zym
