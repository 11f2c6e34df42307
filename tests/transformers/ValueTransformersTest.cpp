#include "tests/support/Defaults.h"
#include "tests/support/Test.h"
#include "tests/support/TextTable.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/transformers/ZYMBeerColorValueTransformer.h"
#include "zymcore/transformers/ZYMDateValueTransformer.h"
#include "zymcore/transformers/ZYMDistanceValueTransformer.h"
#include "zymcore/transformers/ZYMGravityValueTransformer.h"
#include "zymcore/transformers/ZYMHopWeightValueTransformer.h"
#include "zymcore/transformers/ZYMMaltColorValueTransformer.h"
#include "zymcore/transformers/ZYMPercentValueTransformer.h"
#include "zymcore/transformers/ZYMSaltWeightValueTransformer.h"
#include "zymcore/transformers/ZYMTemperatureValueTransformer.h"
#include "zymcore/transformers/ZYMVolumeValueTransformer.h"
#include "zymcore/transformers/ZYMWaterGrainValueTransformer.h"
#include "zymcore/transformers/ZYMWeightValueTransformer.h"

namespace zym {
namespace {

using Volume = ZYMVolumeValueTransformer;
using Weight = ZYMWeightValueTransformer;
using HopWeight = ZYMHopWeightValueTransformer;
using SaltWeight = ZYMSaltWeightValueTransformer;
using WaterGrain = ZYMWaterGrainValueTransformer;
using Distance = ZYMDistanceValueTransformer;
using Gravity = ZYMGravityValueTransformer;
using BeerColor = ZYMBeerColorValueTransformer;
using MaltColor = ZYMMaltColorValueTransformer;
using Temperature = ZYMTemperatureValueTransformer;
using Percent = ZYMPercentValueTransformer;

template <class Transformer>
std::string show(const PlistValue& value) {
  return Transformer::convertForDisplay(&value);
}
template <class Transformer>
std::string store(const PlistValue& text) {
  return Transformer::convertForStorage(&text);
}

constexpr int US = 0;
constexpr int British = 1;
constexpr int Metric = 2;

const std::string endless(400, '9');

class ValueTransformers : public testing::WithDefaults {
 protected:
  /// The first row of a preference begins with it.
  static void check(KeyName key, std::string (*convert)(const PlistValue&), const char* rows) {
    static const std::map<std::string, int> preferences{{"US", US},         {"British", British},
                                                        {"Metric", Metric}, {"0", 0},
                                                        {"1", 1},           {"2", 2},
                                                        {"3", 3},           {"7", 7},
                                                        {"9", 9},           {"-1", -1}};
    for (auto [from, to] : rowsOf(rows)) {
      if (const auto colon = from.find(": "); colon != from.npos) {
        set(key, preferences.at(from.substr(0, colon)));
        from.erase(0, colon + 2);
      }
      if (from.starts_with("endless")) from.replace(0, 7, endless);
      EXPECT_EQ(convert(from == "''" ? "" : from), to) << from;
    }
  }
};

TEST_F(ValueTransformers, Volumes) {
  // 5+: no limit of a style.
  check(keys::Units, show<Volume>, R"(
    US: 1173477.7 -> 10.00 US brl | 1173477.6 -> 310.00 US gals | 3785.41 -> 1.00 US gals |
    3785.40 -> 4.0 qts
    British: 1636592.4 -> 10.00 UK brl | 1636592.3 -> 360.00 UK gals | 4546.09 -> 1.00 UK gals |
    4546.08 -> 8.0 pints
    Metric: 100000 -> 1.00 hl | 99999 -> 100.00 l | 1000 -> 1.00 l | 999 -> 999 ml |
    no number -> 0 ml | -500 -> -500 ml | 5+ -> 5 ml
    3: 1000 -> ''
    -1: 1000 -> '')");
  // 1 imp gal: ends in no such word; 1 brl: by its last letter; 1 l: the blank hides the unit;
  // 0.1 l: in single precision.
  check(keys::Units, store<Volume>, R"(
    US: 5 l -> 5000.000000 | 5 ml -> 5.000000 | 2 hl -> 200000.000000 | 1 pt -> 568.260000 |
    1 PTS -> 568.260000 | 1 UK gals -> 4546.090000 | 1 uk gal -> 4546.090000 |
    1 impgals -> 4546.090000 | 1 imp gals -> 4546.090000 | 1 imp gal -> 3785.410000 |
    1 US brl -> 117347.770000 | 1 UK brl -> 163659.240000 | 1 brl -> 1000.000000 |
    1 litres -> 1000.000000 | 1 liters -> 1000.000000 | 1 pint -> 568.260000 |
    about 2 pints -> 1136.520000 | 1 l  -> 3785.410000 | 0.0999 l -> 0.0 | 0.1 l -> 100.000001 |
    -3 l -> 0.0 | l -> 0.0 | '' -> 0.0 | endless l -> 0.0 | 24.5 -> 92742.545000 |
    25 -> 23658.750000
    British: 1 qts -> 946.350000 | 1 gal -> 3785.410000 | 1 gals -> 3785.410000 |
    1 US gals -> 3785.410000 | 24.5 -> 111379.205000 | 25 -> 14206.500000
    Metric: 99.5 -> 99500.000000 | 100 -> 100.000000 | 5 buckets -> 5000.000000
    7: 5 -> 0.000000)");
}

TEST_F(ValueTransformers, Weights) {
  check(keys::Units, show<Weight>, R"(
    Metric: 1000000 -> 1.00 m. ton | 999999.9 -> 1000.000 kg | 1234.5 -> 1.235 kg |
    1000 -> 1.000 kg | 999.4 -> 999 g | 10 -> 10 g | 9.125 -> 9.13 g
    US: 453.59 -> 1lb 0oz | 439.4250 -> 15.50 oz | 439.7085 -> 1lb 0oz | 453.6000 -> 1lb 0oz |
    538.6500 -> 1lb 3oz
    British: 895.8600 -> 2lb 0oz
    9: 28.35 -> 1.00 oz)");
  // 0.00005 g: too little for a unit.
  check(keys::Units, store<Weight>, R"(
    US: 5 g -> 5.000000 | 5.5 kg -> 5500.000000 | 19.5 -> 8845.005000 | 20 -> 567.000000 |
    0 kg -> 0.000000 | nothing -> 0.0 | endless kg -> 0.0
    Metric: 2 lb -> 907.180000 | 2 lbs -> 907.180000 | 2 oz -> 56.700000 |
    2 m. ton -> 2000000.000000 | 5lb 3oz -> 2353.050000 | 5 pounds, 3 -> 2353.050000 |
    5 3 kg -> 2353.050000 | 0 0.5 kg -> 14.175000 | 99.5 -> 99500.000000 | 100 -> 100.000000 |
    0.0001 g -> 0.000100 | 0.00005 g -> 0.050000)");
}

TEST_F(ValueTransformers, HopsAndSaltsHaveUnitsOfTheirOwn) {
  set(keys::HopUnits, Metric);
  check(keys::Units, show<HopWeight>, R"(US: 28.35 -> 28 g)");
  check(keys::Units, show<SaltWeight>, R"(US: 2.5 -> 2.50 g)");
  check(keys::Units, store<HopWeight>, R"(US: 28 -> 793.800000 | 5 -> 2267.950000)");
  check(keys::Units, store<SaltWeight>, R"(US: 2.5 -> 2.500000 | 1 oz -> 28.350000)");
  const PlistValue ounce = "28.35";
  EXPECT_EQ(HopWeight().transformedValue(&ounce), PlistValue("1.00 oz"));
  EXPECT_EQ(SaltWeight().transformedValue(&ounce), PlistValue("1.00 oz"));
  const PlistValue bare = "1";
  EXPECT_EQ(SaltWeight().reverseTransformedValue(&bare), PlistValue("453.590000"));
  // Asked for directly, each goes by its own.
  struct Preferring {
    std::string (*store)(const PlistValue*, bool);
    int units, hopUnits;
    const char *small, *any;
  };
  for (const Preferring& row : {Preferring{Weight::convertForStorage_preferSmallUnits, US, Metric,
                                           "28.350000", "453.590000"},
                                Preferring{Weight::convertForStorage_preferSmallUnits, Metric, US,
                                           "1.000000", "1000.000000"},
                                Preferring{HopWeight::convertForStorage_preferSmallUnits, US,
                                           Metric, "1.000000", "1000.000000"},
                                Preferring{HopWeight::convertForStorage_preferSmallUnits, Metric,
                                           US, "28.350000", "453.590000"},
                                Preferring{SaltWeight::convertForStorage_preferSmallUnits, US, US,
                                           "1.000000", "1000.000000"}}) {
    set(keys::Units, row.units);
    set(keys::HopUnits, row.hopUnits);
    EXPECT_EQ(row.store(&bare, true), row.small);
    EXPECT_EQ(row.store(&bare, false), row.any);
  }
}

TEST_F(ValueTransformers, Gravities) {
  check(keys::GravityUnits, show<Gravity>, R"(
    0: 1.0504 -> 1.050 SG | 1.060+ -> 1.060+ SG
    1: 1.040 -> 10.0 P | 1.040+ -> 10.0+ P
    2: 1.040 -> '')");
  // -0.55 sg: no gravity, so Plato; 260 P: beyond all number.
  check(keys::GravityUnits, store<Gravity>, R"(
    0: 1.05 -> 1.050000 | 1050 -> 1.050000 | 1000 -> 1.000000 | 999 -> 999.000000 |
    10 P -> 1.040000 | 10 plato -> 1.040000 | 10.4 Brix -> 1.040031 | 260 P -> -1.000000
    1: 1000 SG -> 1000.000000 | 1001 sg -> 1.001000 | 10 -> 1.040000 | -0.45 sg -> -0.450000 |
    -0.55 sg -> 0.997889 | 260 -> -1.000000
    2: 1.05 -> -1.000000)");
}

TEST_F(ValueTransformers, Colours) {
  check(keys::ColorUnit, show<BeerColor>, R"(
    0: 10 -> 10.0 SRM
    1: 10+ -> 19.7+ EBC
    2: 10 -> '')");
  check(keys::ColorUnit, show<MaltColor>, R"(
    0: 60 -> 60.0 ˚L | 60+ -> 60.0+ ˚L
    1: 10 -> 25.2 EBC
    2: 10 -> '')");
  // -0.55 l: no colour, so EBC.
  check(keys::ColorUnit, store<BeerColor>, R"(
    1: 10 SRM -> 10.000000 | 10 L -> 10.000000 | 19.7 -> 10.000000 | -0.45 l -> -0.450000 |
    -0.55 l -> 0.000000
    0: 19.7 EBC -> 10.000000 | 19.7 -> 19.700001 | -3 -> -3.000000
    2: 60 -> -1.000000)");
  // 60 srm: no word of malts.
  check(keys::ColorUnit, store<MaltColor>, R"(
    1: 60 ˚L -> 60.000000 | 60 Lov -> 60.000000 | -0.45 l -> -0.450000 | -0.55 l -> 0.000000 |
    60 srm -> 23.045071
    0: 60 ebc -> 23.045071 | 60 -> 60.000000
    2: 60 -> -1.000000)");
}

TEST_F(ValueTransformers, Temperatures) {
  check(keys::TemperatureUnit, show<Temperature>, R"(
    0: 18.5 -> 19 ˚C
    1: 100 -> 212 ˚F
    2: 100 -> '')");
  // -99.5 c: below all, so Fahrenheit.
  check(keys::TemperatureUnit, store<Temperature>, R"(
    1: 66.5 ˚C -> 66.500000 | 212 -> 100.000000 | -99 c -> -99.000000 | -99.5 c -> -73.055556 |
    -100 c -> -73.333333 | '' -> -17.777778
    0: 212 f -> 100.000000 | -5 -> -5.000000
    2: 20 -> -100.000000)");
}

TEST_F(ValueTransformers, MashThickness) {
  check(keys::Units, show<WaterGrain>, R"(
    US: 2.6 -> 1.25 qts/lb
    British: 2.5 -> 2.00 pts/lb
    Metric: 2.5 -> 2.50 l/kg
    3: 2.5 -> '')");
  check(keys::Units, store<WaterGrain>, R"(
    US: 2.5 l/kg -> 2.500000 | 1 -> 2.086356 | -0.45 l/kg -> -0.450000 | -0.55 l/kg -> -1.147496
    Metric: 2 pts/lb -> 2.505611 | 1 qts/lb -> 2.086356 | 2.5 -> 2.500000
    British: 2 -> 2.505611
    3: 2.5 -> -1.000000)");
}

TEST_F(ValueTransformers, Distances) {
  useLocale("de_DE");
  check(keys::Units, show<Distance>, R"(
    US: 1609.344 -> 5280 ft | 100000000 -> 328083990 ft
    British: 100000000 -> 328083990 ft
    Metric: 12.34 -> 12,3 m
    3: 12.34 -> '')");
  check(keys::Units, store<Distance>, R"(
    US: 12,5 m -> 12.500000 | 12,5 mt -> 12.500000 | 10 -> 3.048000 | 3 metre -> 3.000000 |
    3 metres -> 3.000000 | 3 meters -> 3.000000
    Metric: 10 ft -> 3.048000 | 1000 feet -> 304.800000 | 10 yd -> 9.144000 |
    10 yds -> 9.144000 | 5 -> 5.000000 | 0,05 -> 0.0
    British: 10 -> 3.048000
    3: 5 -> 0.000000)");
}

TEST_F(ValueTransformers, Percentages) {
  EXPECT_EQ(show<Percent>("72.25"), "72.3 %");
  EXPECT_EQ(show<Percent>(72.25), "72.3 %");
  EXPECT_EQ(show<Percent>(PlistArray()), "0");
  EXPECT_EQ(Percent::convertForDisplay(nullptr), "0");
  EXPECT_EQ(store<Percent>("about 75.5 % of 80"), "75.500000");
  EXPECT_EQ(store<Percent>("all"), "");
  EXPECT_EQ(store<Percent>(endless), "");
  EXPECT_EQ(Percent::convertForStorage(nullptr), "0.000000");
  EXPECT_EQ(Percent().reverseTransformedValue(nullptr), PlistValue("0.0"));
  const PlistValue typed = "5";
  EXPECT_EQ(Percent().reverseTransformedValue(&typed), PlistValue("5.000000"));
}

TEST_F(ValueTransformers, Dates) {
  using Date = ZYMDateValueTransformer;
  const PlistValue date =
      NSDate::dateWithTimeIntervalSince1970(1767348000);  // 2026-01-02 10:00 UTC
  const PlistValue text = Date::convertForDisplay(&date);
  EXPECT_EQ(text, PlistValue("Jan 2, 2026"));
  EXPECT_EQ(show<Date>(Date::convertForStorage(&text)), *text.string());
  EXPECT_EQ(show<Date>(*Date().reverseTransformedValue(&text)), *text.string());
  EXPECT_EQ(show<Date>("2026-01-02"), "");
  const PlistValue nonsense = "soon";
  const NSDate before = NSDate::date();
  EXPECT_GE(Date::convertForStorage(&nonsense), before);
  EXPECT_GE(*Date().reverseTransformedValue(nullptr)->date(), before);
}

TEST_F(ValueTransformers, AbsentCountsAsNothingAndOtherKindsAreFaults) {
  set(keys::Units, Metric);
  EXPECT_EQ(Volume::convertForDisplay(nullptr), "0 ml");
  EXPECT_EQ(Volume::convertForStorage(nullptr), "0.0");
  EXPECT_EQ(Weight::convertForStorage(nullptr), "0.000000");
  EXPECT_EQ(Gravity::convertForDisplay(nullptr), "0.000 SG");
  EXPECT_EQ(Volume().reverseTransformedValue(nullptr), std::nullopt);
  EXPECT_EQ(Volume().transformedValueClass(), "NSString");
  EXPECT_TRUE(Volume().allowsReverseTransformation());
  const PlistValue array = PlistArray();
  const PlistValue number = 5;
  EXPECT_EQ(Volume().reverseTransformedValue(&number), std::nullopt);
  const auto reasonOf = [](auto&& call) -> std::string {
    try {
      call();
    } catch (const NSException& fault) {
      return fault.name() + ": " + fault.reason();
    }
    return "none";
  };
  for (auto* show : {Volume::convertForDisplay, HopWeight::convertForDisplay,
                     Distance::convertForDisplay, Gravity::convertForDisplay}) {
    EXPECT_EQ(reasonOf([&] { (void)show(&array); }),
              "NSInternalInconsistencyException: Value (NSArray) does not respond to -floatValue.");
  }
  for (auto* store : {Weight::convertForStorage, Percent::convertForStorage,
                      Distance::convertForStorage, Gravity::convertForStorage}) {
    EXPECT_EQ(reasonOf([&] { (void)store(&number); }),
              "NSInternalInconsistencyException: Value (NSNumber) is not an NSString as Expected.");
  }
}

// Whatever a locale makes of a number, it reads it back.
TEST_F(ValueTransformers, WhatIsShownReadsBack) {
  for (const char* locale : {"en_US", "de_DE", "fr_FR", "sv_SE", "pl_PL", "ar_EG", "de_CH"}) {
    useLocale(locale);
    for (const int units : {US, British, Metric}) {
      for (const KeyName key : {keys::Units, keys::HopUnits}) set(key, units);
      for (const KeyName key : {keys::TemperatureUnit, keys::GravityUnits, keys::ColorUnit}) {
        set(key, units % 2);
      }
      const auto readsBack = [&]<class... Transformer>(std::vector<const char*> all,
                                                       Transformer...) {
        const auto one = [&]<class T>(const char* stored, T) {
          const std::string shown = show<T>(stored);
          EXPECT_EQ(show<T>(store<T>(shown)), shown) << locale << " " << units;
        };
        for (const char* stored : all) (one(stored, Transformer()), ...);
      };
      readsBack({"0.5", "7.25", "812.5", "2500", "18927.25", "250000"}, Volume(), Weight(),
                HopWeight(), SaltWeight(), WaterGrain(), Distance());
      readsBack({"-17.5", "0", "66.5", "100"}, Temperature());
      readsBack({"1.000", "1.0504", "1.112"}, Gravity());
      readsBack({"0.6", "12.35", "500"}, BeerColor(), MaltColor(), Percent());
    }
  }
}

}  // namespace
}  // namespace zym
