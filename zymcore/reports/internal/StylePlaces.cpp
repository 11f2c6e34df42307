#include "zymcore/reports/internal/StylePlaces.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "zymcore/reports/PageKeys.h"

namespace zym::pages {
namespace {

struct Range {
  KeyName least;
  KeyName most;
  KeyName figure;
  KeyName place;
};
constexpr Range ranges[] = {
    {keys::MinOG, keys::MaxOG, keys::ExpectedOriginalGravity, keys::OriginalGravityPlace},
    {keys::MinFG, keys::MaxFG, keys::ExpectedFinalGravity, keys::FinalGravityPlace},
    {keys::MinIBU, keys::MaxIBU, keys::ExpectedIBU, keys::BitternessPlace},
    {keys::MinColor, keys::MaxColor, keys::ExpectedColor, keys::ColorPlace},
};

std::string placeOf(double figure, double least, double most) {
  const double place = 25 + 50 * (figure - least) / (most - least);
  if (!(most > least) || !std::isfinite(place)) return "";
  return std::to_string(std::lround(std::clamp(place, 0.0, 100.0)));
}

}  // namespace

void addStylePlaces(const PlistDictionary& recipe, const PlistDictionary& style,
                    PlistDictionary& values) {
  for (const Range& range : ranges) {
    values.set(range.place, placeOf(recipe.doubleValue(range.figure),
                                    style.doubleValue(range.least), style.doubleValue(range.most)));
  }
}

}  // namespace zym::pages
