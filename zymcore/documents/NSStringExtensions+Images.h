#pragma once

#include <string_view>

#include "zymcore/platform/graphics/NSAttributedString.h"
#include "zymcore/platform/graphics/NSImage.h"

namespace zym {

// Texts with pictures, for lists.

/// The image, in the given size where it has another, followed by a blank and the text.
[[nodiscard]] NSAttributedString prependWithImage(std::string_view text, const NSImage& image);
[[nodiscard]] NSAttributedString prependWithImage_withSize(std::string_view text,
                                                           const NSImage& image, NSSize size);
[[nodiscard]] NSAttributedString prependWithImage_width_height(std::string_view text,
                                                               const NSImage& image, double width,
                                                               double height);

}  // namespace zym
