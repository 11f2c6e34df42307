#include "zymcore/documents/SimilarNames.h"

#include <array>
#include <span>

#include "zymcore/documents/internal/LetterPairs.h"

namespace zym {
namespace {

using letterpairs::LetterPair;

/// Which pairs a text may have: never no for one that it has.
class PairFilter {
 public:
  explicit PairFilter(std::span<const LetterPair> pairs) {
    for (const LetterPair pair : pairs) bits_[wordOf(pair)] |= bitOf(pair);
  }
  /// As many of the others as may be in the text, or more.
  [[nodiscard]] std::size_t mostMatches(std::span<const LetterPair> others) const {
    std::size_t count = 0;
    for (const LetterPair pair : others) count += (bits_[wordOf(pair)] & bitOf(pair)) != 0;
    return count;
  }

 private:
  static std::size_t hashOf(LetterPair pair) { return (pair * 0x9E3779B1U) >> 20U; }
  static std::size_t wordOf(LetterPair pair) { return hashOf(pair) >> 6U; }
  static std::uint64_t bitOf(LetterPair pair) { return std::uint64_t{1} << (hashOf(pair) & 63U); }

  std::array<std::uint64_t, 64> bits_{};
};

}  // namespace

SimilarNames::SimilarNames(std::vector<std::string> names) : names_(std::move(names)) {
  ends_.reserve(names_.size());
  for (const std::string& name : names_) {
    letterpairs::append(name, pairs_);
    ends_.push_back(pairs_.size());
  }
}

std::int64_t SimilarNames::indexOfMostSimilarTo(std::string_view text) const {
  std::vector<LetterPair> pairs;
  letterpairs::append(text, pairs);
  const PairFilter filter(pairs);

  double best = -1.0;
  std::int64_t bestIndex = -1;
  std::size_t start = 0;
  for (std::size_t i = 0; i < names_.size(); start = ends_[i++]) {
    const std::span others(pairs_.data() + start, ends_[i] - start);
    const double most = 2.0 * static_cast<double>(filter.mostMatches(others)) /
                        static_cast<double>(pairs.size() + others.size());
    // What can't be better than the best isn't compared; one that is the same to the letter may be
    // the better for that.
    if (most <= best && most <= 0.99) continue;
    double score = letterpairs::score(pairs, others);
    if (score > 0.99 && names_[i] == text) score = 1.1;
    if (score > best) {
      best = score;
      bestIndex = static_cast<std::int64_t>(i);
    }
  }
  return bestIndex;
}

}  // namespace zym
