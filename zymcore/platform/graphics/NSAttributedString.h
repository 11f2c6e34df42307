#pragma once

#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "zymcore/platform/graphics/NSImage.h"

namespace zym {

/// A text with pictures in it, as runs of either.
class NSAttributedString {
 public:
  using Run = std::variant<NSImage, std::string>;

  NSAttributedString() = default;
  explicit NSAttributedString(std::vector<Run> runs) : runs_(std::move(runs)) {}

  [[nodiscard]] const std::vector<Run>& runs() const noexcept { return runs_; }

 private:
  std::vector<Run> runs_;
};

}  // namespace zym
