#pragma once

#include <span>
#include <string>
#include <string_view>

#include "zymcore/transformers/internal/TransformerText.h"

namespace zym::transformer {

/// What colours of beer and of malt differ in.
struct ColorScale {
  std::string_view unit;  // of what is stored
  double (*toEBC)(double);
  double (*fromEBC)(double);
  std::span<const UnitWord> words;
};

[[nodiscard]] std::string colorForDisplay(const PlistValue* value, const ColorScale& scale);
[[nodiscard]] std::string colorForStorage(const PlistValue* value, const ColorScale& scale);

}  // namespace zym::transformer
