#include "zymcore/interchange/operations/ImportMatch.h"

#include <algorithm>
#include <cmath>

#include "zymcore/documents/Vocabularies.h"

namespace zym {
namespace {

// An origin before a short name takes more than half of its score.
constexpr double leastSimilarity = 0.4;
constexpr double mostPointsOfAttenuation = 5;
constexpr double mostApart = 1.5;
constexpr double mostOfFigure = 0.35;

}  // namespace

bool isPoor(const ImportMatch& match) {
  if (match.similarity < leastSimilarity) return true;
  if (!match.figureInFile || !match.figureMatched) return false;
  const double most = match.kind == words::Yeast
                          ? mostPointsOfAttenuation
                          : std::max(mostApart, mostOfFigure * *match.figureInFile);
  return std::abs(*match.figureInFile - *match.figureMatched) > most;
}

}  // namespace zym
