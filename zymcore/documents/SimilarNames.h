#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zym {

/// Names among which the one most similar to a text is looked for, again and again: what
/// `similarityWithString` needs of each is worked out once, and what can't win is passed over.
class SimilarNames {
 public:
  SimilarNames() = default;
  explicit SimilarNames(std::vector<std::string> names);

  [[nodiscard]] std::size_t size() const noexcept { return names_.size(); }

  /// The position of the name with the highest `similarityWithString(text, name)`, the first of
  /// equals, but for one that is the same to the letter; -1 when none has a score.
  [[nodiscard]] std::int64_t indexOfMostSimilarTo(std::string_view text) const;

 private:
  /// A pair of letters, and the name that has it.
  struct Place {
    std::uint32_t pair;
    std::uint32_t name;
  };

  [[nodiscard]] std::vector<std::uint32_t> mostMatches(std::vector<std::uint32_t> pairs) const;

  std::vector<std::string> names_;
  std::vector<std::uint32_t> pairs_;  // of all names, one behind the other
  std::vector<std::size_t> ends_;     // of the pairs of each
  std::vector<Place> places_;         // of all pairs, in their order
};

}  // namespace zym
