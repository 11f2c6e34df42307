#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

/// What the similarity of two texts is reckoned from.
namespace zym::letterpairs {

/// Two UTF-16 units side by side in a word.
using LetterPair = std::uint32_t;

/// Appends the pairs of the text in capitals, in their order.
void append(std::string_view text, std::vector<LetterPair>& pairs);

/// The score of pairs against those of another text; NaN where there are none at all.
[[nodiscard]] double score(std::span<const LetterPair> pairs, std::span<const LetterPair> others);

}  // namespace zym::letterpairs
