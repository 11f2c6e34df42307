#include "zymcore/documents/SimilarNames.h"

#include <algorithm>
#include <span>
#include <utility>

#include "zymcore/documents/internal/LetterPairs.h"

namespace zym {

using letterpairs::LetterPair;

SimilarNames::SimilarNames(std::vector<std::string> names) : names_(std::move(names)) {
  ends_.reserve(names_.size());
  for (const std::string& name : names_) {
    letterpairs::append(name, pairs_);
    for (std::size_t i = ends_.empty() ? 0 : ends_.back(); i < pairs_.size(); ++i) {
      places_.push_back({pairs_[i], static_cast<std::uint32_t>(ends_.size())});
    }
    ends_.push_back(pairs_.size());
  }
  std::sort(places_.begin(), places_.end(), [](Place a, Place b) { return a.pair < b.pair; });
}

// As many as the text may share with each name, or more: a pair that both have counts as often as
// the name has it.
std::vector<std::uint32_t> SimilarNames::mostMatches(std::vector<LetterPair> pairs) const {
  std::sort(pairs.begin(), pairs.end());
  pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
  std::vector<std::uint32_t> counts(names_.size());
  auto place = places_.begin();
  for (const LetterPair pair : pairs) {
    place = std::lower_bound(place, places_.end(), pair,
                             [](Place one, LetterPair other) { return one.pair < other; });
    for (; place != places_.end() && place->pair == pair; ++place) ++counts[place->name];
  }
  return counts;
}

std::int64_t SimilarNames::indexOfMostSimilarTo(std::string_view text) const {
  std::vector<LetterPair> pairs;
  letterpairs::append(text, pairs);
  const std::vector<std::uint32_t> matches = mostMatches(pairs);

  double best = -1.0;
  std::int64_t bestIndex = -1;
  std::size_t start = 0;
  for (std::size_t i = 0; i < names_.size(); start = ends_[i++]) {
    const std::span others(pairs_.data() + start, ends_[i] - start);
    const double most = 2.0 * matches[i] / static_cast<double>(pairs.size() + others.size());
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
