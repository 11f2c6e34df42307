#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <utility>

#include "tests/reference/PlainDocuments.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym::reference {

/// Documents and user defaults as a brewer has them, with a share of what a brewer can't have
/// meant: volumes of zero, numbers that are none, unknown words. The same for the same seed.
class RandomDocuments {
 public:
  explicit RandomDocuments(std::uint32_t seed) : random_(seed) {}

  [[nodiscard]] PlainRecipe recipe();
  [[nodiscard]] PlainBatch batch();
  /// The same values for the library and for the plain structs.
  [[nodiscard]] std::pair<PlistDictionary, PlainDefaults> defaults();

 private:
  [[nodiscard]] std::size_t below(std::size_t limit) { return random_() % limit; }
  [[nodiscard]] bool oneIn(std::size_t count) { return below(count) == 0; }
  template <std::size_t n>
  [[nodiscard]] std::string oneOf(const char* const (&words)[n]) {
    return words[below(n)];
  }
  void startDocument() { oddity_ = oddities[below(std::size(oddities))]; }
  /// A number between the two, written as people and calculations do; or something odd.
  [[nodiscard]] std::string quantity(double from, double to);
  [[nodiscard]] std::string reading(double from, double to);
  [[nodiscard]] std::vector<PlainAllocation> stock();
  [[nodiscard]] PlainFermentable fermentable();
  [[nodiscard]] PlainHop hop();
  [[nodiscard]] PlainRecipe recipeOfSameOddity();
  [[nodiscard]] PlainActuals actuals();
  template <class Row, class Fields>
  void leaveStale(Row& row, const Fields& written);

  // One number in so many is odd; the first never is.
  static constexpr std::size_t oddities[] = {0, 0, 100, 20, 4};

  std::mt19937 random_;
  std::size_t oddity_ = 0;
};

}  // namespace zym::reference
