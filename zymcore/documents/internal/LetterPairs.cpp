#include "zymcore/documents/internal/LetterPairs.h"

#include <algorithm>
#include <limits>
#include <string>

#include "zymcore/platform/text/NSString.h"

namespace zym::letterpairs {
namespace {

// Takes the pair out wherever it stands, passing over the place behind each one taken out. Answers
// how often it stood there.
std::size_t takeOut(LetterPair pair, std::vector<LetterPair>& pairs) {
  const auto first = std::find(pairs.begin(), pairs.end(), pair);
  if (first == pairs.end()) return 0;

  std::size_t matches = 0;
  auto kept = first;
  for (auto at = first; at != pairs.end(); ++at) {
    if (*at == pair) {
      ++matches;
      if (++at == pairs.end()) break;
    }
    *kept++ = *at;
  }
  pairs.erase(kept, pairs.end());
  return matches;
}

}  // namespace

void append(std::string_view text, std::vector<LetterPair>& pairs) {
  thread_local std::u16string units;
  uppercaseUTF16(text, units);
  for (std::size_t i = 1; i < units.size(); ++i) {
    if (units[i - 1] == u' ' || units[i] == u' ') continue;
    pairs.push_back(static_cast<LetterPair>(units[i - 1]) << 16U | units[i]);
  }
}

double score(std::span<const LetterPair> pairs, std::span<const LetterPair> others) {
  const std::size_t total = pairs.size() + others.size();
  if (total == 0) return std::numeric_limits<double>::quiet_NaN();
  thread_local std::vector<LetterPair> left;
  left.assign(others.begin(), others.end());
  std::size_t matches = 0;
  for (const LetterPair pair : pairs) matches += takeOut(pair, left);
  return 2.0 * static_cast<double>(matches) / static_cast<double>(total);
}

}  // namespace zym::letterpairs
