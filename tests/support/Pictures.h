#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "zymcore/platform/graphics/CGImage.h"

namespace zym::testing {

/// Red, green, blue and opacity of a pixel.
using Bytes = std::array<std::uint8_t, 4>;

/// A picture from a function of column and row.
template <class PixelAt>
CGImage picture(int width, int height, bool hasAlpha, PixelAt pixelAt) {
  const std::size_t each = hasAlpha ? 4 : 3;
  auto bytes = std::make_shared<std::vector<std::uint8_t>>();
  bytes->reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * each);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const Bytes pixel = pixelAt(x, y);
      bytes->insert(bytes->end(), pixel.begin(), pixel.begin() + static_cast<int>(each));
    }
  }
  return {width, height, hasAlpha, static_cast<std::size_t>(width) * each,
          std::shared_ptr<const std::uint8_t>(bytes, bytes->data())};
}

inline Bytes bytesOf(const CGImage& image, int x, int y) {
  const std::uint8_t* pixel = image.pixelAt(x, y);
  return {pixel[0], pixel[1], pixel[2], image.hasAlpha() ? pixel[3] : std::uint8_t{255}};
}

}  // namespace zym::testing
