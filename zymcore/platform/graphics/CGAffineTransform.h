#pragma once

#include <cmath>
#include <optional>

#include "zymcore/platform/graphics/CGGeometry.h"

namespace zym {

/// x' = ax + cy + tx, y' = bx + dy + ty. As made, it changes nothing.
struct CGAffineTransform {
  double a = 1;
  double b = 0;
  double c = 0;
  double d = 1;
  double tx = 0;
  double ty = 0;

  friend bool operator==(const CGAffineTransform&, const CGAffineTransform&) = default;
};

inline constexpr CGAffineTransform CGAffineTransformIdentity{};

[[nodiscard]] inline CGPoint CGPointApplyAffineTransform(const CGPoint& p,
                                                         const CGAffineTransform& t) noexcept {
  return {t.a * p.x + t.c * p.y + t.tx, t.b * p.x + t.d * p.y + t.ty};
}

/// `first`, and what comes of it through `second`.
[[nodiscard]] inline CGAffineTransform CGAffineTransformConcat(
    const CGAffineTransform& first, const CGAffineTransform& second) noexcept {
  const CGPoint offset = CGPointApplyAffineTransform({first.tx, first.ty}, second);
  return {first.a * second.a + first.b * second.c,
          first.a * second.b + first.b * second.d,
          first.c * second.a + first.d * second.c,
          first.c * second.b + first.d * second.d,
          offset.x,
          offset.y};
}

/// Absent for one that leaves nothing of a plane.
[[nodiscard]] inline std::optional<CGAffineTransform> CGAffineTransformInvert(
    const CGAffineTransform& t) noexcept {
  const double area = t.a * t.d - t.b * t.c;
  if (!std::isfinite(1 / area)) return std::nullopt;
  return CGAffineTransform{t.d / area,
                           -t.b / area,
                           -t.c / area,
                           t.a / area,
                           (t.c * t.ty - t.d * t.tx) / area,
                           (t.b * t.tx - t.a * t.ty) / area};
}

}  // namespace zym
