#include "tests/support/Test.h"
#include "zymcore/platform/graphics/NSImage.h"

namespace zym {
namespace {

std::string bigEndian(std::uint32_t number, int bytes) {
  std::string text;
  for (int shift = (bytes - 1) * 8; shift >= 0; shift -= 8) {
    text += static_cast<char>(number >> static_cast<unsigned>(shift));
  }
  return text;
}

// A bitmap of 24 bits a pixel, all of one colour.
std::string bitmap(std::uint32_t width, std::uint32_t height, std::size_t pixelBytes) {
  const auto littleEndian = [](std::uint32_t number, int bytes) {
    const std::string text = bigEndian(number, bytes);
    return std::string(text.rbegin(), text.rend());
  };
  return "BM" + littleEndian(static_cast<std::uint32_t>(54 + pixelBytes), 4) + littleEndian(0, 4) +
         littleEndian(54, 4) + littleEndian(40, 4) + littleEndian(width, 4) +
         littleEndian(height, 4) + littleEndian(1, 2) + littleEndian(24, 2) +
         std::string(24, '\0') + std::string(pixelBytes, '\x80');
}

std::optional<NSImage> imageOf(const std::string& bytes, NSError* error = nullptr) {
  return NSImage::imageWithData(NSData(std::string_view(bytes)), error);
}

std::uint32_t crc32(std::string_view bytes) {
  std::uint32_t crc = ~0U;
  for (const char c : bytes) {
    crc ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1U) ^ (crc & 1U ? 0xEDB88320U : 0);
  }
  return ~crc;
}

// A small picture that says it is of another size.
std::string pngClaiming(std::uint32_t width, std::uint32_t height) {
  std::string png(imageOf(bitmap(4, 2, 24))->image().PNGRepresentation()->view());
  png.replace(16, 8, bigEndian(width, 4) + bigEndian(height, 4));
  return png.replace(29, 4, bigEndian(crc32(std::string_view(png).substr(12, 17)), 4));
}

TEST(NSImage, ReadsScalesAndWrites) {
  const auto image = imageOf(bitmap(4, 2, 24));
  ASSERT_TRUE(image);
  EXPECT_EQ(image->size(), (NSSize{4, 2}));
  const NSImage larger = image->imageResizedTo(10, 30);
  EXPECT_EQ(larger.size(), (NSSize{10, 30}));
  const auto back = NSImage::imageWithData(larger.image().PNGRepresentation().value());
  ASSERT_TRUE(back);
  EXPECT_EQ(back->size(), (NSSize{10, 30}));
  EXPECT_EQ(image->imageResizedTo(0.2, -5).size(), (NSSize{1, 1}));
  EXPECT_EQ(image->imageResizedTo(1e9, std::nan("")).size(), (NSSize{16384, 1}));
  EXPECT_EQ(image->imageResizedTo(16384, 1e9).size(), (NSSize{8000, 8000}));
  EXPECT_EQ(image->size(), (NSSize{4, 2}));
}

TEST(NSImage, RefusesWhatIsNoPictureOrTooLarge) {
  struct Case {
    std::string bytes;
    const char* reason;
  };
  const std::string whole = bitmap(4, 2, 24);
  const Case cases[] = {
      {"", "known format"},
      {"/* XPM */ static char*x[]={\"9999999 9999999 1 1\"", "known format"},
      {whole.substr(0, 20), ""},
      {pngClaiming(16'385, 1), "too large"},
      {pngClaiming(16'000, 16'000), "too large"},
      {pngClaiming(4, 2).substr(0, 40), ""},
      {bitmap(60'000, 60'000, 24), "too large"},
      {std::string(whole).replace(10, 4, "\xFF\xFF\xFF\x7F"), "cut off"},
      {std::string(whole).replace(14, 4, "\xFF\xFF\xFF\x7F"), "cut off"},
  };
  for (const Case& c : cases) {
    NSError error;
    EXPECT_FALSE(imageOf(c.bytes, &error)) << c.reason;
    EXPECT_NE(error.localizedDescription, "");
    EXPECT_THAT(error.localizedDescription, HasSubstr(c.reason));
  }
}

}  // namespace
}  // namespace zym
