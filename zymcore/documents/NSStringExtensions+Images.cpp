#include <string>

#include "zymcore/documents/NSStringExtensions+Images.h"

namespace zym {

NSAttributedString prependWithImage(std::string_view text, const NSImage& image) {
  return prependWithImage_withSize(text, image, image.size());
}

NSAttributedString prependWithImage_withSize(std::string_view text, const NSImage& image,
                                             NSSize size) {
  const NSImage sized =
      image.size() == size ? image : image.imageResizedTo(size.width, size.height);
  return NSAttributedString({sized, std::string(" ").append(text)});
}

NSAttributedString prependWithImage_width_height(std::string_view text, const NSImage& image,
                                                 double width, double height) {
  return prependWithImage_withSize(text, image, {width, height});
}

}  // namespace zym
