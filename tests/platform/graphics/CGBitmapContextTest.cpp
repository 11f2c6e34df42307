#include "tests/support/Pictures.h"
#include "tests/support/Test.h"
#include "zymcore/platform/graphics/CGBitmapContext.h"

namespace zym {
namespace {

using zym::testing::Bytes;
using zym::testing::bytesOf;
using zym::testing::picture;

// Grey pixels, given row by row.
CGImage greys(int width, int height, const std::vector<std::uint8_t>& values) {
  return picture(width, height, false, [&](int x, int y) {
    const std::uint8_t grey = values[static_cast<std::size_t>(y * width + x)];
    return Bytes{grey, grey, grey, 255};
  });
}

std::vector<std::uint8_t> greysOf(const CGImage& image) {
  std::vector<std::uint8_t> values;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) values.push_back(*image.pixelAt(x, y));
  }
  return values;
}

// The eight ways to hold a picture, as a reader of orientation tags draws them: a quarter turn goes
// with width and height exchanged. y points upwards.
TEST(CGBitmapContext, TurnsAndMirrorsToThePixel) {
  const CGImage image = greys(3, 2,
                              {1, 2, 3,  //
                               4, 5, 6});
  struct Case {
    int width, height;
    CGAffineTransform transform;
    std::vector<std::uint8_t> expected;
  };
  const Case cases[] = {
      {3, 2, {}, {1, 2, 3, 4, 5, 6}},
      {3, 2, {-1, 0, 0, 1, 3, 0}, {3, 2, 1, 6, 5, 4}},
      {3, 2, {1, 0, 0, -1, 0, 2}, {4, 5, 6, 1, 2, 3}},
      {2, 3, {0, -1, 1, 0, 0, 3}, {4, 1, 5, 2, 6, 3}},   // clockwise
      {2, 3, {0, 1, -1, 0, 2, 0}, {3, 6, 2, 5, 1, 4}},   // the other way
      {2, 3, {0, -1, -1, 0, 2, 3}, {1, 4, 2, 5, 3, 6}},  // along the diagonal
      {2, 3, {0, 1, 1, 0, 0, 0}, {6, 3, 5, 2, 4, 1}},
      {3, 2, {1, 0, 0, 1, 1, 1}, {0, 4, 5, 0, 0, 0}},  // partly outside
      {3, 2, {1, 0, 0, NAN, 0, 0}, {0, 0, 0, 0, 0, 0}},
      {3, 2, {1e300, 0, 0, 1e300, 0, 0}, {0, 0, 0, 0, 0, 0}},
  };
  for (const CGInterpolationQuality quality : {kCGInterpolationNone, kCGInterpolationMedium}) {
    for (const Case& c : cases) {
      auto context = CGBitmapContext::create(c.width, c.height, false).value();
      context.concatCTM(c.transform);
      context.setInterpolationQuality(quality);
      context.drawImage({{0, 0}, {3, 2}}, image);
      EXPECT_EQ(greysOf(context.createImage()), c.expected)
          << c.transform.a << ' ' << c.transform.b << ' ' << c.transform.c << ' ' << c.transform.d;
    }
  }
}

// A new pixel is the mean of the part of the picture that it covers. A smooth picture is drawn to
// within 4 of that: a filter may look at the pixels beside that part too.
TEST(CGBitmapContext, ScalesLikeTheMeanOfWhatIsCovered) {
  const int width = 203;
  const int height = 101;
  const CGImage image = picture(width, height, false, [&](int x, int y) {
    const auto wave = [](double at) {
      return static_cast<std::uint8_t>(std::lround(127.5 + 120 * std::sin(at / 14)));
    };
    return Bytes{wave(x), wave(y), wave(x + y), 255};
  });
  for (const auto& [newWidth, newHeight] : {std::pair(101, 50), {40, 77}, {13, 7}}) {
    auto context = CGBitmapContext::create(newWidth, newHeight, false).value();
    context.setInterpolationQuality(kCGInterpolationMedium);
    context.drawImage({{0, 0}, {double(newWidth), double(newHeight)}}, image);
    const CGImage drawn = context.createImage();
    // How much of a pixel of the picture lies in a new one, across or down.
    const auto covered = [](int pixel, int drawnPixel, double size) {
      return std::max(0.0, std::min(pixel + 1.0, (drawnPixel + 1) * size) -
                               std::max<double>(pixel, drawnPixel * size));
    };
    const double across = double(width) / newWidth;
    const double down = double(height) / newHeight;
    for (int at = 0; at < newWidth * newHeight; ++at) {
      double sums[3] = {};
      const int left = at % newWidth;
      const int top = at / newWidth;
      for (int y = int(top * down); y < std::min(height, int((top + 1) * down) + 1); ++y) {
        for (int x = int(left * across); x < std::min(width, int((left + 1) * across) + 1); ++x) {
          const double weight = covered(x, left, across) * covered(y, top, down);
          for (int i = 0; i < 3; ++i) sums[i] += weight * image.pixelAt(x, y)[i];
        }
      }
      for (int i = 0; i < 3; ++i) {
        ASSERT_NEAR(drawn.pixelAt(left, top)[i], sums[i] / (across * down), 4) << left << top;
      }
    }
  }
}

// What can't be seen gives no colour to what can.
TEST(CGBitmapContext, KeepsOpacityApartFromColour) {
  const CGImage image = picture(64, 64, true, [](int x, int) {
    return x < 32 ? Bytes{255, 0, 0, 0} : Bytes{0, 0, 200, static_cast<std::uint8_t>(x * 2)};
  });
  auto context = CGBitmapContext::create(16, 16, true).value();
  context.setInterpolationQuality(kCGInterpolationMedium);
  context.drawImage({{0, 0}, {16, 16}}, image);
  const CGImage drawn = context.createImage();
  EXPECT_EQ(bytesOf(drawn, 2, 8)[3], 0);
  for (int x = 8; x < 16; ++x) {
    const Bytes pixel = bytesOf(drawn, x, 8);
    EXPECT_EQ(pixel[0], 0) << x;
    EXPECT_NEAR(pixel[2], 200, 2) << x;
    if (x > 8) {
      EXPECT_NEAR(pixel[3], x * 8 + 3, 2) << x;
    }
  }
  // Over something else.
  auto over = CGBitmapContext::create(1, 1, false).value();
  over.drawImage({{0, 0}, {1, 1}}, greys(1, 1, {100}));
  over.drawImage({{0, 0}, {1, 1}}, picture(1, 1, true, [](int, int) {
                   return Bytes{200, 0, 100, 51};
                 }));
  EXPECT_EQ(bytesOf(over.createImage(), 0, 0), (Bytes{120, 80, 100, 255}));
}

TEST(CGBitmapContext, RefusesASizeThatNoPictureHas) {
  for (const auto& [width, height] :
       {std::pair(0, 1), {1, 0}, {-1, 5}, {16'385, 1}, {16'000, 16'000}, {1 << 30, 1 << 30}}) {
    EXPECT_FALSE(CGBitmapContext::create(width, height, true)) << width;
  }
}

}  // namespace
}  // namespace zym
