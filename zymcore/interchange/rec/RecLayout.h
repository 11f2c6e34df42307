#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zym {

/// Where a member of a record lies in the bytes of a file, and what it is there: a text that ends
/// with a zero in a field of `size` bytes, or a number of the member's type, little-endian.
template <class Record>
struct RecField {
  std::size_t offset;
  std::variant<std::string Record::*, float Record::*, std::uint32_t Record::*,
               std::int32_t Record::*, std::int16_t Record::*, std::uint8_t Record::*>
      member;
  std::size_t size = 0;
};

// The records of a REC file, packed, of which the tables are the layout for reading and for
// writing; what isn't in them is zero. Members that begin with a value are always written so. Texts
// are UTF-8 here. Gallons, quarts, pounds and ounces are American.

struct RecHeader {
  static constexpr std::size_t size = 0x485;

  std::string title;
  std::uint32_t hops = 0;  // counts of the records that follow
  std::uint32_t fermentables = 0;
  std::uint32_t others = 0;
  float volumeA = 0;  // gallons
  float volumeB = 0;
  float gravityPoints = 0;
  float bitterness = 0;
  float efficiency = 0;  // from 0 to 1
  std::int32_t boilMinutes = 0;
  std::uint8_t mashKind = 0;
  std::string style;
  std::string styleCategory;
  std::uint8_t isLager = 0;
  float minGravityPoints = 0;
  float maxGravityPoints = 0;
  float minFinalGravityPoints = 0;
  float maxFinalGravityPoints = 0;
  float minIBU = 0;
  float maxIBU = 0;
  float minColor = 0;
  float maxColor = 0;
  float fermentationTemperature = 0;  // read and never written: another field has it as well
  std::uint8_t styleNumber = 0;
  std::uint8_t isComplete = 1;

  bool operator==(const RecHeader&) const = default;
};

struct RecHop {
  static constexpr std::size_t size = 0x27b;

  std::string variety;
  float libraryAlpha = 0;
  std::uint8_t kind = 0;  // 1 bittering, 2 aroma, 3 both
  std::uint8_t form = 0;
  float storage = 0.5F;
  float alpha = 0;  // percent
  float ounces = 0;
  std::int16_t minutes = 0;
  float ibu = 0;

  bool operator==(const RecHop&) const = default;
};

struct RecFermentable {
  static constexpr std::size_t size = 0x211;

  std::string name;
  std::string origin;
  std::uint8_t kind = 0;
  std::uint8_t mustBeMashed = 0;
  float gravity = 0;  // SG of a pound in a gallon
  float color = 0;    // degrees Lovibond
  float moisture = 0;
  float yield = 0;  // from 0 to 1
  float pounds = 0;

  bool operator==(const RecFermentable&) const = default;
};

struct RecOther {
  static constexpr std::size_t size = 0x24d;

  std::string name;
  std::uint8_t kind = 3;
  std::int32_t minutes = 0;
  std::uint8_t use = 0;
  std::uint8_t isTimed = 0;
  std::uint8_t unit = 0;
  float amount = 0;

  bool operator==(const RecOther&) const = default;
};

struct RecStep {
  static constexpr std::size_t size = 0x124;
  /// As many as there is room for.
  static constexpr std::size_t most = 50;

  std::string name;
  std::uint8_t kind = 0;
  std::uint32_t fahrenheit = 0;
  std::uint32_t restMinutes = 0;
  std::uint32_t stepMinutes = 0;

  bool operator==(const RecStep&) const = default;
};

struct RecTail {
  static constexpr std::size_t size = 0x5d80;
  static constexpr std::size_t steps = 0x2378;  // where they begin

  std::string yeast;
  std::string laboratory;
  std::string productNumber;
  std::uint8_t yeastKind = 0;
  std::uint8_t isLiquid = 0;
  std::uint32_t lowAttenuation = 0;  // percent
  std::uint32_t highAttenuation = 0;
  float fermentationFahrenheit = 0;
  std::uint8_t flocculation = 0;
  std::string water;
  float calcium = 0;  // mg/l
  float magnesium = 0;
  float sodium = 0;
  float sulfate = 0;
  float chloride = 0;
  float bicarbonate = 0;
  float mashpH = 0;
  std::string waterIsKnownFor;
  std::uint32_t restFahrenheit = 0;  // of a mash of one rest
  std::uint32_t restMinutes = 0;
  std::uint32_t mashOutFahrenheit = 0;
  std::uint32_t mashOutMinutes = 0;
  float quartsPerPound = 0;
  std::string notes;
  std::uint32_t stepCount = 0;
  std::uint32_t grainFahrenheit = 68;
  std::string schedule;

  bool operator==(const RecTail&) const = default;
};

/// A whole file.
struct RecFile {
  RecHeader header;
  std::vector<RecHop> hops;
  std::vector<RecFermentable> fermentables;
  std::vector<RecOther> others;
  RecTail tail;
  std::vector<RecStep> steps;

  /// Absent for bytes too few for the counts in them; nothing else is checked, since there is
  /// nothing to tell such a file by. A field of the tail behind the steps may be missing.
  [[nodiscard]] static std::optional<RecFile> read(std::string_view bytes);
  /// With the counts of what there is; steps past the room for them are left out. A text that has
  /// no place in its field leaves it empty.
  [[nodiscard]] std::string write() const;

  /// The water that this writer names, by which it knows its own files.
  static constexpr std::string_view ownWater = "The Brewer's Chosen Water";

  bool operator==(const RecFile&) const = default;
};

}  // namespace zym
