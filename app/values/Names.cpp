#include "app/values/Names.h"

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

#include "app/terminal/Faults.h"
#include "app/terminal/Text.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/platform/text/NSString.h"

namespace zym::host {
namespace {

constexpr std::size_t mostNamed = 20;
constexpr std::size_t mostHints = 3;

template <class Matches>
std::vector<std::size_t> positionsOf(std::span<const Named> candidates, Matches matches) {
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    if (matches(candidates[i])) found.push_back(i);
  }
  return found;
}

std::vector<std::size_t> positionsNamed(const std::string& typed,
                                        std::span<const Named> candidates) {
  const std::string upper = uppercaseString(typed);
  auto found = positionsOf(candidates, [&](const Named& one) { return one.uuid == typed; });
  if (found.empty()) {
    found = positionsOf(candidates, [&](const Named& one) { return one.name == typed; });
  }
  if (found.empty()) {
    found = positionsOf(candidates,
                        [&](const Named& one) { return uppercaseString(one.name) == upper; });
  }
  if (found.empty() && !upper.empty()) {
    found = positionsOf(
        candidates, [&](const Named& one) { return uppercaseString(one.name).starts_with(upper); });
  }
  return found;
}

std::string hintFor(const std::string& typed, std::span<const Named> candidates) {
  std::vector<std::pair<double, std::string_view>> scored;
  for (const Named& one : candidates) {
    const double score = similarityWithString(typed, one.name);
    if (score > 0) scored.emplace_back(score, one.name);
  }
  const std::size_t count = std::min(scored.size(), mostHints);
  std::ranges::partial_sort(scored, scored.begin() + static_cast<std::ptrdiff_t>(count),
                            std::greater(), &std::pair<double, std::string_view>::first);
  std::string hint;
  for (std::size_t i = 0; i < count; ++i) {
    hint += (i == 0 ? "; the nearest names are '" : ", '") + printable(scored[i].second) + "'";
  }
  return hint;
}

}  // namespace

std::size_t positionMeant(const std::string& typed, std::span<const Named> candidates,
                          std::string_view what) {
  const std::vector<std::size_t> found = positionsNamed(typed, candidates);
  if (found.size() == 1) return found.front();
  if (found.empty()) {
    throw InputError("no " + std::string(what) + " is named '" + printable(typed) + "'" +
                     hintFor(typed, candidates));
  }
  std::string message = "'" + printable(typed) + "' may be any of these:";
  for (std::size_t i = 0; i < found.size() && i < mostNamed; ++i) {
    const Named& one = candidates[found[i]];
    message += "\n  " + printable(one.name) + "  " + printable(one.uuid);
  }
  if (found.size() > mostNamed) {
    message += "\n  and " + std::to_string(found.size() - mostNamed) + " more";
  }
  throw InputError(message);
}

}  // namespace zym::host
