#pragma once

#include <cmath>

namespace zym {

struct CGPoint {
  double x = 0;
  double y = 0;

  friend bool operator==(const CGPoint&, const CGPoint&) = default;
};

struct CGSize {
  double width = 0;
  double height = 0;

  friend bool operator==(const CGSize&, const CGSize&) = default;
};

struct CGRect {
  CGPoint origin;
  CGSize size;

  friend bool operator==(const CGRect&, const CGRect&) = default;
};

/// The smallest rectangle of whole numbers that holds the given one.
[[nodiscard]] inline CGRect CGRectIntegral(const CGRect& rect) noexcept {
  const CGPoint origin{std::floor(rect.origin.x), std::floor(rect.origin.y)};
  return {origin,
          {std::ceil(rect.origin.x + rect.size.width) - origin.x,
           std::ceil(rect.origin.y + rect.size.height) - origin.y}};
}

}  // namespace zym
