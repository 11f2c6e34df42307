#include <gtest/gtest.h>

#include <vector>

#include "tests/support/Defaults.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NumberText.h"
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

class ValueTransformers : public testing::WithDefaults {
 protected:
  using Function = std::string (*)(const PlistValue&);
  struct Row {
    KeyName preference;
    int units;
    Function convert;
    PlistValue from;
    const char* to;
  };
  static void check(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
      set(row.preference, row.units);
      EXPECT_EQ(row.convert(row.from), row.to)
          << row.preference.text() << " " << row.units << " "
          << (row.from.string() ? *row.from.string() : shortestNumberText(row.from.doubleValue()));
    }
  }
};

TEST_F(ValueTransformers, ShowVolumesInTheUnitOfTheirSize) {
  check({{keys::Units, US, show<Volume>, 1173477.7, "10.00 US brl"},
         {keys::Units, US, show<Volume>, 1173477.6, "310.00 US gals"},
         {keys::Units, US, show<Volume>, "3785.41", "1.00 US gals"},
         {keys::Units, US, show<Volume>, "3785.40", "4.0 qts"},
         {keys::Units, British, show<Volume>, "1636592.4", "10.00 UK brl"},
         {keys::Units, British, show<Volume>, "4546.09", "1.00 UK gals"},
         {keys::Units, British, show<Volume>, "4546.08", "8.0 pints"},
         {keys::Units, Metric, show<Volume>, 100000, "1.00 hl"},
         {keys::Units, Metric, show<Volume>, "99999", "100.00 l"},
         {keys::Units, Metric, show<Volume>, "1000", "1.00 l"},
         {keys::Units, Metric, show<Volume>, "999", "999 ml"},
         {keys::Units, Metric, show<Volume>, "no number", "0 ml"},
         {keys::Units, Metric, show<Volume>, "-500", "-500 ml"},
         {keys::Units, 3, show<Volume>, "1000", ""},
         {keys::Units, -1, show<Volume>, "1000", ""}});
}

TEST_F(ValueTransformers, ReadVolumesByTheirUnitWord) {
  check({{keys::Units, US, store<Volume>, "5 l", "5000.000000"},
         {keys::Units, US, store<Volume>, "5 ml", "5.000000"},
         {keys::Units, US, store<Volume>, "2 hl", "200000.000000"},
         {keys::Units, US, store<Volume>, "1 pt", "568.260000"},
         {keys::Units, British, store<Volume>, "1 qts", "946.350000"},
         {keys::Units, US, store<Volume>, "1 PTS", "568.260000"},
         {keys::Units, British, store<Volume>, "1 gal", "3785.410000"},
         {keys::Units, British, store<Volume>, "1 US gals", "3785.410000"},
         {keys::Units, US, store<Volume>, "1 UK gals", "4546.090000"},
         {keys::Units, US, store<Volume>, "1 uk gal", "4546.090000"},
         {keys::Units, US, store<Volume>, "1 impgals", "4546.090000"},
         {keys::Units, US, store<Volume>, "1 imp gals", "4546.090000"},
         {keys::Units, US, store<Volume>, "1 imp gal", "3785.410000"},  // ends in no such word
         {keys::Units, US, store<Volume>, "1 US brl", "117347.770000"},
         {keys::Units, US, store<Volume>, "1 UK brl", "163659.240000"},
         {keys::Units, US, store<Volume>, "1 brl", "1000.000000"},  // by its last letter
         {keys::Units, US, store<Volume>, "1 litres", "1000.000000"},
         {keys::Units, US, store<Volume>, "1 liters", "1000.000000"},
         {keys::Units, US, store<Volume>, "1 pint", "568.260000"},
         {keys::Units, US, store<Volume>, "about 2 pints", "1136.520000"},
         {keys::Units, US, store<Volume>, "1 l ", "3785.410000"},  // the blank hides the unit
         {keys::Units, US, store<Volume>, "0.09 l", "0.0"},
         {keys::Units, US, store<Volume>, "-3 l", "0.0"},
         {keys::Units, US, store<Volume>, "l", "0.0"},
         {keys::Units, US, store<Volume>, "", "0.0"}});
}

TEST_F(ValueTransformers, JudgeABareVolumeByItsSize) {
  check({{keys::Units, US, store<Volume>, "20", "75708.200000"},
         {keys::Units, US, store<Volume>, "30", "28390.500000"},
         {keys::Units, US, store<Volume>, "25", "23658.750000"},
         {keys::Units, British, store<Volume>, "5", "22730.450000"},
         {keys::Units, British, store<Volume>, "40", "22730.400000"},
         {keys::Units, Metric, store<Volume>, "50", "50000.000000"},
         {keys::Units, Metric, store<Volume>, "500", "500.000000"},
         {keys::Units, Metric, store<Volume>, "5 buckets", "5000.000000"},
         {keys::Units, 7, store<Volume>, "5", "0.000000"}});
}

TEST_F(ValueTransformers, ShowWeights) {
  check({{keys::Units, Metric, show<Weight>, 1000000, "1.00 m. ton"},
         {keys::Units, Metric, show<Weight>, "1234.5", "1.235 kg"},
         {keys::Units, Metric, show<Weight>, "999.4", "999 g"},
         {keys::Units, Metric, show<Weight>, "9.125", "9.13 g"},
         {keys::Units, US, show<Weight>, "453.59", "1lb 0oz"},
         {keys::Units, US, show<Weight>, 15.9 * 28.35, "1lb 0oz"},
         {keys::Units, US, show<Weight>, 15.4 * 28.35, "15.40 oz"},
         {keys::Units, US, show<Weight>, 19 * 28.35, "1lb 3oz"},
         {keys::Units, British, show<Weight>, 31.6 * 28.35, "2lb 0oz"},
         {keys::Units, 9, show<Weight>, "28.35", "1.00 oz"}});
}

TEST_F(ValueTransformers, ReadWeights) {
  check({{keys::Units, US, store<Weight>, "5 g", "5.000000"},
         {keys::Units, US, store<Weight>, "5.5 kg", "5500.000000"},
         {keys::Units, Metric, store<Weight>, "2 lb", "907.180000"},
         {keys::Units, Metric, store<Weight>, "2 lbs", "907.180000"},
         {keys::Units, Metric, store<Weight>, "2 oz", "56.700000"},
         {keys::Units, Metric, store<Weight>, "2 m. ton", "2000000.000000"},
         {keys::Units, Metric, store<Weight>, "5lb 3oz", "2353.050000"},
         {keys::Units, Metric, store<Weight>, "5 pounds, 3", "2353.050000"},
         {keys::Units, Metric, store<Weight>, "5 3 kg", "2353.050000"},
         {keys::Units, Metric, store<Weight>, "99", "99000.000000"},
         {keys::Units, Metric, store<Weight>, "100", "100.000000"},
         {keys::Units, US, store<Weight>, "19", "8618.210000"},
         {keys::Units, US, store<Weight>, "20", "567.000000"},
         {keys::Units, US, store<Weight>, "0 kg", "0.000000"},
         {keys::Units, US, store<Weight>, "nothing", "0.0"}});
}

TEST_F(ValueTransformers, HopsAndSaltsHaveUnitsOfTheirOwn) {
  set(keys::HopUnits, Metric);
  check({{keys::Units, US, show<HopWeight>, "28.35", "28 g"},
         {keys::Units, US, store<HopWeight>, "28", "793.800000"},  // by "Units": ounces
         {keys::Units, US, show<SaltWeight>, "2.5", "2.50 g"},
         {keys::Units, US, store<SaltWeight>, "2.5", "2.500000"},
         {keys::Units, US, store<SaltWeight>, "1 oz", "28.350000"}});
  const PlistValue ounce = "28.35";
  EXPECT_EQ(HopWeight().transformedValue(&ounce), PlistValue("1.00 oz"));
  EXPECT_EQ(SaltWeight().transformedValue(&ounce), PlistValue("1.00 oz"));
  const PlistValue bare = "1";
  EXPECT_EQ(SaltWeight().reverseTransformedValue(&bare), PlistValue("453.590000"));
  EXPECT_EQ(Weight::convertForStorage_preferSmallUnits(&bare, true), "28.350000");
}

TEST_F(ValueTransformers, Gravities) {
  check({{keys::GravityUnits, 0, show<Gravity>, "1.0504", "1.050 SG"},
         {keys::GravityUnits, 0, show<Gravity>, "1.060+", "1.060+ SG"},
         {keys::GravityUnits, 1, show<Gravity>, "1.040", "10.0 P"},
         {keys::GravityUnits, 1, show<Gravity>, "1.040+", "10.0+ P"},
         {keys::GravityUnits, 2, show<Gravity>, "1.040", ""},
         {keys::GravityUnits, 0, store<Gravity>, "1.05", "1.050000"},
         {keys::GravityUnits, 0, store<Gravity>, "1050", "1.050000"},
         {keys::GravityUnits, 0, store<Gravity>, "1000", "1.000000"},
         {keys::GravityUnits, 1, store<Gravity>, "1000 SG", "1000.000000"},
         {keys::GravityUnits, 1, store<Gravity>, "1001 sg", "1.001000"},
         {keys::GravityUnits, 1, store<Gravity>, "10", "1.040000"},
         {keys::GravityUnits, 0, store<Gravity>, "10 P", "1.040000"},
         {keys::GravityUnits, 0, store<Gravity>, "10 plato", "1.040000"},
         {keys::GravityUnits, 0, store<Gravity>, "10.4 Brix", "1.040031"},
         {keys::GravityUnits, 2, store<Gravity>, "1.05", "-1.000000"}});
}

TEST_F(ValueTransformers, Colours) {
  check({{keys::ColorUnit, 0, show<BeerColor>, "10", "10.0 SRM"},
         {keys::ColorUnit, 1, show<BeerColor>, "10+", "19.7+ EBC"},
         {keys::ColorUnit, 2, show<BeerColor>, "10", ""},
         {keys::ColorUnit, 0, show<MaltColor>, "60", "60.0 ˚L"},
         {keys::ColorUnit, 1, show<MaltColor>, "10", "25.2 EBC"},
         {keys::ColorUnit, 1, store<BeerColor>, "10 SRM", "10.000000"},
         {keys::ColorUnit, 1, store<BeerColor>, "10 L", "10.000000"},
         {keys::ColorUnit, 0, store<BeerColor>, "19.7 EBC", "10.000000"},
         {keys::ColorUnit, 1, store<BeerColor>, "19.7", "10.000000"},
         {keys::ColorUnit, 1, store<MaltColor>, "60 ˚L", "60.000000"},
         {keys::ColorUnit, 1, store<MaltColor>, "60 Lov", "60.000000"},
         {keys::ColorUnit, 1, store<MaltColor>, "60 srm", "23.045071"},
         {keys::ColorUnit, 2, store<MaltColor>, "60", "-1.000000"}});
}

TEST_F(ValueTransformers, Temperatures) {
  check({{keys::TemperatureUnit, 0, show<Temperature>, "18.5", "19 ˚C"},
         {keys::TemperatureUnit, 1, show<Temperature>, "100", "212 ˚F"},
         {keys::TemperatureUnit, 2, show<Temperature>, "100", ""},
         {keys::TemperatureUnit, 1, store<Temperature>, "66.5 ˚C", "66.500000"},
         {keys::TemperatureUnit, 0, store<Temperature>, "212 f", "100.000000"},
         {keys::TemperatureUnit, 1, store<Temperature>, "212", "100.000000"},
         {keys::TemperatureUnit, 0, store<Temperature>, "-5", "-5.000000"},
         {keys::TemperatureUnit, 1, store<Temperature>, "-100 c", "-73.333333"},
         {keys::TemperatureUnit, 1, store<Temperature>, "", "-17.777778"},
         {keys::TemperatureUnit, 2, store<Temperature>, "20", "-100.000000"}});
}

TEST_F(ValueTransformers, MashThickness) {
  check({{keys::Units, US, show<WaterGrain>, "2.6", "1.25 qts/lb"},
         {keys::Units, British, show<WaterGrain>, "2.5", "2.00 pts/lb"},
         {keys::Units, Metric, show<WaterGrain>, "2.5", "2.50 l/kg"},
         {keys::Units, 3, show<WaterGrain>, "2.5", ""},
         {keys::Units, US, store<WaterGrain>, "2.5 l/kg", "2.500000"},
         {keys::Units, Metric, store<WaterGrain>, "2 pts/lb", "2.505611"},
         {keys::Units, Metric, store<WaterGrain>, "1 qts/lb", "2.086356"},
         {keys::Units, US, store<WaterGrain>, "1", "2.086356"},
         {keys::Units, Metric, store<WaterGrain>, "2.5", "2.500000"},
         {keys::Units, 3, store<WaterGrain>, "2.5", "-1.000000"}});
}

TEST_F(ValueTransformers, Distances) {
  useLocale("de_DE");
  check({{keys::Units, US, show<Distance>, "1609.344", "5280 ft"},
         {keys::Units, Metric, show<Distance>, "12.34", "12,3 m"},
         {keys::Units, 3, show<Distance>, "12.34", ""},
         {keys::Units, US, store<Distance>, "12,5 m", "12.500000"},
         {keys::Units, Metric, store<Distance>, "10 ft", "3.048000"},
         {keys::Units, Metric, store<Distance>, "10 feet", "3.048000"},
         {keys::Units, Metric, store<Distance>, "10 yds", "9.144000"},
         {keys::Units, US, store<Distance>, "10", "3.048000"},
         {keys::Units, US, store<Distance>, "3 metres", "3.000000"},
         {keys::Units, Metric, store<Distance>, "0,05", "0.0"},
         {keys::Units, 3, store<Distance>, "5", "0.000000"}});
}

TEST_F(ValueTransformers, Percentages) {
  EXPECT_EQ(show<Percent>("72.25"), "72.3 %");
  EXPECT_EQ(show<Percent>(72.25), "72.3 %");
  EXPECT_EQ(show<Percent>(PlistArray()), "0");
  EXPECT_EQ(Percent::convertForDisplay(nullptr), "0");
  EXPECT_EQ(store<Percent>("about 75.5 % of 80"), "75.500000");
  EXPECT_EQ(store<Percent>("all"), "");
  EXPECT_EQ(Percent().reverseTransformedValue(nullptr), PlistValue("0.0"));
}

TEST_F(ValueTransformers, Dates) {
  const PlistValue date =
      NSDate::dateWithTimeIntervalSince1970(1767348000);  // 2026-01-02 10:00 UTC
  const std::string shown = ZYMDateValueTransformer::convertForDisplay(&date);
  EXPECT_EQ(shown, "Jan 2, 2026");
  const PlistValue text = shown;
  EXPECT_EQ(show<ZYMDateValueTransformer>(ZYMDateValueTransformer::convertForStorage(&text)),
            shown);
  EXPECT_EQ(show<ZYMDateValueTransformer>("2026-01-02"), "");
  const PlistValue nonsense = "soon";
  const NSDate before = NSDate::date();
  EXPECT_GE(ZYMDateValueTransformer::convertForStorage(&nonsense), before);
  EXPECT_GE(*ZYMDateValueTransformer().reverseTransformedValue(nullptr)->date(), before);
}

TEST_F(ValueTransformers, AbsentCountsAsNothing) {
  set(keys::Units, Metric);
  EXPECT_EQ(Volume::convertForDisplay(nullptr), "0 ml");
  EXPECT_EQ(Volume::convertForStorage(nullptr), "0.0");
  EXPECT_EQ(Weight::convertForStorage(nullptr), "0.000000");
  EXPECT_EQ(Volume().reverseTransformedValue(nullptr), std::nullopt);
}

TEST_F(ValueTransformers, WrongKindsAreFaults) {
  const PlistValue array = PlistArray();
  const PlistValue number = 5;
  const auto reasonOf = [](auto&& call) -> std::string {
    try {
      call();
    } catch (const NSException& fault) {
      return fault.name() + ": " + fault.reason();
    }
    return "none";
  };
  EXPECT_EQ(reasonOf([&] { (void)Volume::convertForDisplay(&array); }),
            "NSInternalInconsistencyException: Value (NSArray) does not respond to -floatValue.");
  EXPECT_EQ(reasonOf([&] { (void)Gravity::convertForStorage(&number); }),
            "NSInternalInconsistencyException: Value (NSNumber) is not an NSString as Expected.");
}

// Whatever a locale makes of a number, it reads it back.
TEST_F(ValueTransformers, WhatIsShownReadsBack) {
  for (const char* locale : {"en_US", "de_DE", "fr_FR", "sv_SE", "pl_PL", "ar_EG", "de_CH"}) {
    useLocale(locale);
    for (const int units : {US, British, Metric}) {
      set(keys::Units, units);
      set(keys::HopUnits, units);
      const int two = units % 2;
      set(keys::TemperatureUnit, two);
      set(keys::GravityUnits, two);
      set(keys::ColorUnit, two);
      const auto readsBack = [&](auto transformer, const char* stored) {
        using Transformer = decltype(transformer);
        const std::string shown = show<Transformer>(stored);
        EXPECT_EQ(show<Transformer>(store<Transformer>(shown)), shown) << locale << " " << units;
      };
      for (const char* stored : {"0.5", "7.25", "812.5", "2500", "18927.25", "250000"}) {
        readsBack(Volume(), stored);
        readsBack(Weight(), stored);
        readsBack(HopWeight(), stored);
        readsBack(SaltWeight(), stored);
        readsBack(WaterGrain(), stored);
        readsBack(Distance(), stored);
      }
      for (const char* stored : {"-17.5", "0", "66.5", "100"}) readsBack(Temperature(), stored);
      for (const char* stored : {"1.000", "1.0504", "1.112"}) readsBack(Gravity(), stored);
      for (const char* stored : {"0.6", "12.35", "500"}) {
        readsBack(BeerColor(), stored);
        readsBack(MaltColor(), stored);
        readsBack(Percent(), stored);
      }
    }
  }
}

}  // namespace
}  // namespace zym
