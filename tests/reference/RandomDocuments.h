#pragma once

#include <cstdint>
#include <initializer_list>
#include <random>
#include <string>
#include <string_view>

#include "zymcore/platform/values/PlistValue.h"

namespace zym::reference {

/// Documents and user defaults as a brewer has them, with a share of what a brewer can't have
/// meant: volumes of zero, numbers that are none, unknown words, keys that are missing. The same
/// for the same seed.
class RandomDocuments {
 public:
  explicit RandomDocuments(std::uint32_t seed) : random_(seed) {}

  [[nodiscard]] PlistDictionary recipe();
  [[nodiscard]] PlistDictionary batch();
  [[nodiscard]] PlistDictionary defaults();

 private:
  struct Range {
    const char* key;
    double from, to;
  };

  [[nodiscard]] std::size_t below(std::size_t limit) { return random_() % limit; }
  [[nodiscard]] bool oneIn(std::size_t count) { return below(count) == 0; }
  [[nodiscard]] std::string oneOf(std::string_view words);
  /// A number between the two, written as people and calculations do; or something odd.
  [[nodiscard]] std::string quantity(double from, double to);
  /// "" is absent or empty.
  void put(PlistDictionary& to, const char* key, const std::string& text);
  [[nodiscard]] PlistDictionary quantities(std::initializer_list<Range> ranges);
  void putRows(PlistDictionary& to, const char* key, std::size_t most, auto row);
  [[nodiscard]] PlistDictionary addition(std::initializer_list<Range> ranges);
  [[nodiscard]] PlistDictionary recipeOfSameOddity();

  std::mt19937 random_;
  std::size_t oddity_ = 0;  // one number in so many is odd; 0 for none
};

}  // namespace zym::reference
