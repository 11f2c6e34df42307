#include "app/values/Names.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <utility>
#include <vector>

#include "app/terminal/Faults.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/platform/text/NSString.h"

namespace zym::host {
namespace {

constexpr std::size_t mostNamed = 20;
constexpr std::size_t mostHints = 3;

struct Sign {
  std::string_view written, meant;
};
// clang-format off
constexpr Sign signsAlike[] = {{"˚", "°"}, {"º", "°"}, {"’", "'"}, {"‘", "'"}, {"´", "'"},
                               {"`", "'"}, {"“", "\""}, {"”", "\""}, {"–", "-"}, {"—", "-"},
                               {"‑", "-"}, {"\u00A0", " "}, {"\u202F", " "}};
// clang-format on

bool isWordSign(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 ||
         (static_cast<unsigned char>(c) >= 0x80);
}

/// Whether the words stand in the text with no letter or digit beside them.
bool holdsWords(std::string_view text, std::string_view words) {
  for (std::size_t at = text.find(words); at != std::string_view::npos;
       at = text.find(words, at + 1)) {
    const std::size_t end = at + words.size();
    if ((at == 0 || !isWordSign(text[at - 1])) && (end == text.size() || !isWordSign(text[end]))) {
      return true;
    }
  }
  return false;
}

/// Its ASCII letters and digits alone.
std::string withoutSigns(std::string_view text) {
  std::string bare;
  for (const char c : folded(text)) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) bare += c;
  }
  return bare;
}

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
  const std::string plain = folded(typed);
  auto found = positionsOf(candidates, [&](const Named& one) { return one.uuid == typed; });
  if (found.empty()) {
    found = positionsOf(candidates, [&](const Named& one) { return one.name == typed; });
  }
  if (found.empty()) {
    found = positionsOf(candidates, [&](const Named& one) { return folded(one.name) == plain; });
  }
  if (found.empty() && !plain.empty()) {
    found = positionsOf(candidates,
                        [&](const Named& one) { return folded(one.name).starts_with(plain); });
  }
  if (found.empty() && !plain.empty()) {
    found = positionsOf(candidates,
                        [&](const Named& one) { return holdsWords(folded(one.name), plain); });
  }
  return found;
}

std::string hintFor(const std::string& typed, std::span<const Named> candidates) {
  const std::string bare = withoutSigns(typed);
  for (const Named& one : candidates) {
    if (!bare.empty() && withoutSigns(one.name) == bare) {
      return label("; '%1' differs in its blanks and signs alone", {printable(one.name)});
    }
  }
  std::vector<std::pair<double, std::string_view>> scored;
  for (const Named& one : candidates) {
    const double score = similarityWithString(typed, one.name);
    if (score > 0) scored.emplace_back(score, one.name);
  }
  const std::size_t count = std::min(scored.size(), mostHints);
  std::ranges::partial_sort(scored, scored.begin() + static_cast<std::ptrdiff_t>(count),
                            std::greater(), &std::pair<double, std::string_view>::first);
  std::string names;
  for (std::size_t i = 0; i < count; ++i) {
    names += (i == 0 ? "'" : ", '") + printable(scored[i].second) + "'";
  }
  return names.empty() ? "" : label("; the nearest names are %1", {names});
}

}  // namespace

bool isUUID(std::string_view text) {
  constexpr std::string_view form = "00000000-0000-0000-0000-000000000000";
  return text.size() == form.size() && std::ranges::equal(text, form, [](char c, char place) {
           return place == '-' ? c == '-' : std::isxdigit(static_cast<unsigned char>(c)) != 0;
         });
}

std::string folded(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    const auto sign = std::ranges::find_if(
        signsAlike, [text](const Sign& one) { return text.starts_with(one.written); });
    const bool isSign = sign != std::end(signsAlike);
    plain += isSign ? sign->meant : text.substr(0, 1);
    text.remove_prefix(isSign ? sign->written.size() : 1);
  }
  return uppercaseString(plain);
}

std::size_t positionMeant(const std::string& typed, std::span<const Named> candidates,
                          std::string_view what) {
  const std::vector<std::size_t> found = positionsNamed(typed, candidates);
  if (found.size() == 1) return found.front();
  if (found.empty()) {
    throw InputError(label("no %1 is named '%2'", {label(what), printable(typed)}) +
                     hintFor(typed, candidates));
  }
  std::string message = label("'%1' may be any of these:", {printable(typed)});
  for (std::size_t i = 0; i < found.size() && i < mostNamed; ++i) {
    const Named& one = candidates[found[i]];
    message += "\n  " + printable(one.name) + "  " + printable(one.uuid);
  }
  if (found.size() > mostNamed) {
    message += "\n  " + label("and %1 more", {std::to_string(found.size() - mostNamed)});
  }
  throw InputError(message);
}

}  // namespace zym::host
