#include <cstring>

#include "tests/interchange/ExchangeTest.h"
#include "tests/support/TextTable.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/interchange/ParsedRecipeKeys.h"
#include "zymcore/interchange/rec/RecLayout.h"
#include "zymcore/interchange/rec/ZYMRecFile.h"
#include "zymcore/platform/host/NSUserDefaults.h"

namespace zym {
namespace {

// The layout once more, by its offsets alone.
constexpr std::size_t hopsAt = 0x485;
constexpr std::size_t hopSize = 0x27b;
constexpr std::size_t fermentableSize = 0x211;
constexpr std::size_t otherSize = 0x24d;
constexpr std::size_t tailSize = 0x5d80;

/// The bytes of a file of that many records, all zero but for the counts.
class Bytes {
 public:
  Bytes(std::uint32_t hops, std::uint32_t fermentables, std::uint32_t others)
      : fermentablesAt(hopsAt + hops * hopSize),
        othersAt(fermentablesAt + fermentables * fermentableSize),
        tailAt(othersAt + others * otherSize),
        bytes(tailAt + tailSize, '\0') {
    put(0x55, hops);
    put(0x59, fermentables);
    put(0x5d, others);
  }
  template <class Number>
  Bytes& put(std::size_t at, Number number) {
    std::memcpy(&bytes[at], &number, sizeof number);
    return *this;
  }
  Bytes& put(std::size_t at, const char* text) {
    std::memcpy(&bytes[at], text, std::strlen(text));
    return *this;
  }

  std::size_t fermentablesAt, othersAt, tailAt;
  std::string bytes;
};

template <class Number>
Number at(std::string_view bytes, std::size_t offset) {
  Number number;
  std::memcpy(&number, bytes.data() + offset, sizeof number);
  return number;
}
std::string textAt(std::string_view bytes, std::size_t offset) {
  return bytes.data() + offset;
}

std::string valueAt(const PlistDictionary& record, KeyName key) {
  const std::string* text = record.string(key);
  return text ? *text : "absent";
}

PlistDictionary parsed(const Bytes& file) {
  return ZYMRecFile::parseFileData(NSData(file.bytes)).value();
}
PlistDictionary first(const PlistDictionary& recipe, KeyName list) {
  return *recipe.array(list)->find(0)->dictionary();
}
void expect(const PlistDictionary& record, const char* table) {
  for (const auto& [key, value] : rowsOf(table))
    EXPECT_EQ(valueAt(record, KeyName(key)), value) << key;
}

// 5 gallons are 18927.05 ml, 6.5 are 24605.165 and 5.5 are 20819.755, each to the nearest float.
TEST(RecFile, ReadsTheRecipe) {
  Bytes file(0, 0, 0);
  file.put(0, "Dubbel").put(0x61, 6.5F).put(0x65, 5.0F).put(0x71, 0.725F).put(0x75, 90);
  file.put(0x7d, std::uint8_t{1}).put(0x7e, "Belgian Ale").put(0x1cf, 68.5F);
  file.put(file.tailAt, "Trappist").put(file.tailAt + 0x37, "Lab").put(file.tailAt + 0x6e, "3787");
  file.put(file.tailAt + 0x87, std::uint8_t{1})
      .put(file.tailAt + 0x1c7, 71U)
      .put(file.tailAt + 0x1cb, 76U);
  file.put(file.tailAt + 0x1f4, 1.5F).put(file.tailAt + 0x1f8, 2.5F).put(file.tailAt + 0x1fc, 3.5F);
  file.put(file.tailAt + 0x204, 4.5F).put(file.tailAt + 0x208, 5.5F).put(file.tailAt + 0x20c, 6.5F);
  file.put(file.tailAt + 0x2f5, "Caf\xe9 \x93rich\x94");
  const char* const texts = R"(RecipeTitle -> Dubbel | MashEfficiency -> 72.500000 |
      BoilDuration -> 90 | TYPE -> Partial Mash | STYLENAME -> Belgian Ale | Notes -> Café “rich” |
      FermentationTemperature -> 68.500000 | FinalBatchVolume -> 18927.050781 |
      VolumeAtPitching -> 18927.050781 | PreBoilWortVolume -> 24605.164062 |
      FinalWortVolume -> 18927.050781 | VolumeToFermenter -> 18927.050781 |
      VolumeWaterAdded -> 0.000000 | Attenuation -> 73.500000 | CALCIUM -> 1.500000 |
      MAGNESIUM -> 2.500000 | SODIUM -> 3.500000 | SULFATE -> 4.500000 | CHLORIDE -> 5.500000 |
      BICARBONATE -> 6.500000)";
  expect(parsed(file), texts);
  expect(first(parsed(file), keys::YeastIngredients), R"(YEAST NAME -> Lab 3787-Trappist |
      YEAST TYPE -> Lager | YEAST FORM -> Liquid)");
  // One of ours is in another encoding.
  file.put(file.tailAt + 0x1d9, "The Brewer's Chosen Water")
      .put(file.tailAt + 0x2f5, "Caf\x8e \xd2rich\xd3");
  expect(parsed(file), texts);

  file.put(0x65, 6.5F)
      .put(0x61, 5.5F)
      .put(0x7d, std::uint8_t{9})
      .put(file.tailAt + 0x87, std::uint8_t{0});
  file.put(file.tailAt + 0x1c7, 0xFFFFFFFFU).put(file.tailAt + 0x1cb, 5U);
  expect(parsed(file), R"(TYPE -> absent | FinalBatchVolume -> 24605.164062 |
      PreBoilWortVolume -> 20819.755859 | FinalWortVolume -> 20819.755859 |
      VolumeToFermenter -> 20819.755859 | VolumeWaterAdded -> 3785.408203 | Attenuation -> 2.000000)");
  expect(first(parsed(file), keys::YeastIngredients), "YEAST TYPE -> Ale | YEAST FORM -> Dry");
  file.put(file.tailAt + 0x87, std::uint8_t{2});
  expect(first(parsed(file), keys::YeastIngredients), "YEAST TYPE -> Other | YEAST FORM -> Liquid");
}

TEST(RecFile, ReadsHopsByTheirCodes) {
  const struct {
    std::int16_t minutes;
    const char* use;
    std::uint8_t form;
    const char* expected;
  } cases[] = {
      {60, "Boil", 3, "Whole Hop"},    {0, "Aroma", 9, "Whole Hop"},
      {-5, "Dry Hop", 10, "absent"},   {91, "First Wort", 11, "Pellet"},
      {92, "Mash", 19, "Pellet"},      {90, "Boil", 20, "absent"},
      {93, "Boil", 21, "Pellet"},      {1, "Boil", 35, "Pellet"},
      {-1, "Boil", 0xFF, "Whole Hop"},
  };
  for (const auto& c : cases) {
    Bytes file(2, 0, 0);
    file.put(0x75, 90).put(hopsAt, "Saaz").put(hopsAt + hopSize, "Last");
    file.put(hopsAt + 0x51, c.form).put(hopsAt + 0x26c, 3.5F).put(hopsAt + 0x271, 2.0F);
    file.put(hopsAt + 0x275, c.minutes);
    const PlistDictionary hop = first(parsed(file), parsedKeys::HOPS);
    expect(hop, "NAME -> Saaz | ALPHA -> 3.500000 | AMOUNT -> 56.700000");
    EXPECT_EQ(valueAt(hop, parsedKeys::USE), c.use) << c.minutes;
    EXPECT_EQ(valueAt(hop, parsedKeys::FORM), c.expected) << int{c.form};
    EXPECT_EQ(hop.doubleValue(parsedKeys::TIME), c.minutes);
    EXPECT_EQ(parsed(file).array(parsedKeys::HOPS)->size(), 2U);
  }
  // Tested after those, and independently of them.
  Bytes unboiled(1, 0, 0);
  EXPECT_EQ(valueAt(first(parsed(unboiled.put(0x75, -1)), parsedKeys::HOPS), parsedKeys::USE),
            "First Wort");
}

TEST(RecFile, ReadsFermentablesAndOthers) {
  const char* const kinds[] = {"absent", "Grain", "Extract", "Sugar", "Adjunct", "absent"};
  for (std::uint8_t kind = 0; kind < std::size(kinds); ++kind) {
    Bytes file(1, 1, 1);
    const std::size_t at = file.fermentablesAt;
    file.put(at, "Munich").put(at + 0x6e, "Germany").put(at + 0xa5, kind).put(at + 0xa7, 1.0F);
    file.put(at + 0xab, 9.0F).put(at + 0xaf, kind < 3 ? 8.0F : 12.5F).put(at + 0x209, 2.0F);
    const PlistDictionary malt = first(parsed(file), parsedKeys::FERMENTABLES);
    expect(malt, R"(NAME -> Munich | ORIGIN -> Germany | YIELD -> 0.000000 | COLOR -> 9.000000 |
        AMOUNT -> 907.180000)");
    EXPECT_EQ(valueAt(malt, parsedKeys::TYPE), kinds[kind]);
    EXPECT_EQ(valueAt(malt, parsedKeys::MOISTURE), kind < 3 ? "8.000000" : "4.000000");
  }
  // (1.0375 - 1) / 0.00046, with the float next to 1.0375.
  Bytes strong(0, 1, 0);
  strong.put(strong.fermentablesAt + 0xa7, 1.0375F)
      .put(strong.fermentablesAt + 0xaf, std::nanf(""));
  EXPECT_NEAR(first(parsed(strong), parsedKeys::FERMENTABLES).doubleValue(parsedKeys::YIELD),
              81.5217, 1e-3);
  expect(first(parsed(strong), parsedKeys::FERMENTABLES), "MOISTURE -> 4.000000");

  const struct {
    std::uint8_t use, unit;
    const char* expected;
    double grams;
  } cases[] = {{0, 0, "Boil", 56.7}, {1, 1, "Primary", 2}, {2, 2, "Mash", 907.18},
               {3, 3, "absent", 10}, {0, 4, "Boil", 40},   {0, 5, "Boil", 2}};
  for (const auto& c : cases) {
    Bytes file(0, 1, 1);
    file.put(file.othersAt, "Moss")
        .put(file.othersAt + 0x3c, c.use)
        .put(file.othersAt + 0x3e, c.unit);
    const PlistDictionary other =
        first(parsed(file.put(file.othersAt + 0x241, 2.0F)), parsedKeys::MISCS);
    EXPECT_EQ(valueAt(other, parsedKeys::NAME), "Moss");
    EXPECT_EQ(valueAt(other, parsedKeys::USE), c.expected);
    EXPECT_DOUBLE_EQ(other.doubleValue(parsedKeys::AMOUNT), c.grams);
  }
}

std::string stepsOf(const Bytes& file) {
  std::string text;
  const PlistDictionary recipe = parsed(file);
  for (const PlistDictionary& step : recipe.rows(parsedKeys::MASHSTEPS)) {
    for (const KeyName key :
         {parsedKeys::NAME, parsedKeys::TYPE, parsedKeys::STEP_TEMP, parsedKeys::STEP_TIME}) {
      text += valueAt(step, key) + ",";
    }
    text += ";";
  }
  return text;
}

// 152 °F are 66.67 °C, 168 are 75.56, 20 are -6.67.
TEST(RecFile, ReadsTheMash) {
  Bytes file(0, 0, 0);
  const std::size_t tail = file.tailAt;
  file.put(tail + 0x2d8, 152U).put(tail + 0x2dc, 60U).put(tail + 0x2e0, 152U).put(tail + 0x2e4, 5U);
  EXPECT_EQ(stepsOf(file), "Saccharification Rest,Rest,66,60,;Mash Out,Rest,66,5,;");
  EXPECT_EQ(stepsOf(file.put(tail + 0x2e0, 151U)), "Saccharification Rest,Rest,66,60,;");
  for (std::size_t i = 0; i < 4; ++i) {
    const std::size_t step = tail + 0x2378 + i * 0x124;
    file.put(step, ("S" + std::to_string(i)).c_str())
        .put(step + 0xff, static_cast<std::uint8_t>(i));
    file.put(step + 0x100, i == 0 ? 20U : 168U).put(step + 0x10c, 30U).put(step + 0x110, 10U);
  }
  EXPECT_EQ(stepsOf(file.put(tail + 0x236c, 4U)),
            "S0,Infusion,-6,10,;S0,Rest,-6,30,;S1,Direct Heat,75,10,;S1,Rest,75,30,;"
            "S2,Decoction,75,10,;S2,Rest,75,30,;S3,absent,75,10,;S3,Rest,75,30,;");
}

// Every prefix is a recipe or none; counts that lie are found out before they cost anything.
TEST(RecFile, RefusesWhatIsTooShort) {
  Bytes file(1, 2, 1);
  file.put(file.tailAt + 0x236c, 2U);
  const std::size_t needed = file.tailAt + 0x2378 + 2 * 0x124;
  for (std::size_t length = 0; length <= file.bytes.size(); ++length) {
    NSError error;
    const auto recipe = ZYMRecFile::parseFileData(NSData(file.bytes.substr(0, length)), &error);
    ASSERT_EQ(recipe.has_value(), length >= needed) << length;
    ASSERT_EQ(error.localizedDescription.empty(), recipe.has_value());
  }
  for (const std::size_t count :
       {std::size_t{0x55}, std::size_t{0x59}, std::size_t{0x5d}, file.tailAt + 0x236c}) {
    for (const std::uint32_t lie : {1000U, 0x7FFFFFFFU, 0xFFFFFFFFU, 0x98765432U}) {
      Bytes lying = file;
      EXPECT_FALSE(ZYMRecFile::parseFileData(NSData(lying.put(count, lie).bytes)));
    }
  }
}

TEST(RecFile, EndsATextWithItsField) {
  Bytes file(1, 0, 0);
  std::fill(file.bytes.begin(), file.bytes.begin() + 0x55, 'a');
  std::fill(file.bytes.begin() + hopsAt, file.bytes.end(), 'b');
  file.put(file.tailAt + 0x236c, 0U).put(hopsAt + 0x271, std::numeric_limits<float>::infinity());
  const PlistDictionary recipe = parsed(file);
  EXPECT_EQ(recipe.stringValue(keys::RecipeTitle), std::string(0x55, 'a'));
  EXPECT_EQ(first(recipe, parsedKeys::HOPS).stringValue(parsedKeys::NAME), std::string(0x37, 'b'));
  EXPECT_EQ(recipe.stringValue(keys::Notes), std::string(0xfbc, 'b'));
  EXPECT_EQ(first(recipe, parsedKeys::HOPS).doubleValue(parsedKeys::AMOUNT), 0);
}

// ---- Writing

class RecWriterTest : public ExchangeTest {
 protected:
  static std::string written(const PlistDictionary& recipe) {
    return std::string(ZYMRecFile::dataForRecipe(recipe).view());
  }
  static PlistDictionary withOne(KeyName list, PlistDictionary addition) {
    return {{keys::BoilDuration, "60"}, {list, PlistArray{std::move(addition)}}};
  }
};

TEST_F(RecWriterTest, WritesTheRecipe) {
  PlistDictionary recipe = recipes().emptyRecipe();
  const auto style =
      ZYMStyles::sharedInstance().styleWithName_inGuidelines("American Light Lager", 1);
  const PlistDictionary changes{
      {keys::RecipeTitle, "Café"},
      {keys::MashType, words::ExtractWithMiniMash},
      {keys::MashEfficiency, "72.5"},
      {keys::BoilDuration, "75"},
      {keys::FinalBatchVolume, "18927.05"},
      {keys::FinalWortVolume, "20819.755"},
      {keys::StyleUUID, style->stringValue(keys::UUID)},
      {keys::StyleGuidelinesSource, 1},
      {keys::FermentationTemperature, "20"},
      {keys::MashpH, "5.25"},
      {keys::Notes, "“Rich”"},
      {keys::Profile, PlistDictionary{{keys::WaterGrainRatio, "2"}}},
      {keys::YeastIngredients,
       PlistArray{PlistDictionary{{keys::Name, "Wyeast Old 2206-Bavarian Lager"},
                                  {keys::Description, "Flocculation: High"}}}}};
  for (const PlistEntry& change : changes) recipe.set(change.key, change.value);
  const std::string bytes = written(recipe);
  ASSERT_EQ(bytes.size(), 0x485 + tailSize);
  EXPECT_EQ(textAt(bytes, 0), "Caf\x8e");
  EXPECT_FLOAT_EQ(at<float>(bytes, 0x61), 5.0F);
  EXPECT_FLOAT_EQ(at<float>(bytes, 0x65), 5.5F);
  EXPECT_FLOAT_EQ(at<float>(bytes, 0x71), 0.725F);
  EXPECT_EQ(at<std::int32_t>(bytes, 0x75), 75);
  EXPECT_EQ(bytes[0x7d], 1);
  EXPECT_EQ(textAt(bytes, 0x7e), "American Light Lager");
  EXPECT_EQ(textAt(bytes, 0xb5), "");
  const std::pair<std::size_t, float> limits[] = {
      {0xed, 28.0F}, {0xf1, 40.0F},  {0xf5, 7.0F},  {0xf9, 10.0F}, {0xfd, 0.0F},
      {0x105, 8.0F}, {0x109, 12.0F}, {0x10d, 2.0F}, {0x111, 3.0F}, {0x1cf, 0.0F}};
  for (const auto& [offset, value] : limits)
    EXPECT_NEAR(at<float>(bytes, offset), value, 1e-4) << offset;
  EXPECT_EQ(bytes.substr(0x480, 5), std::string("\1\0\0\0\1", 5));
  const std::string_view tail = std::string_view(bytes).substr(0x485);
  EXPECT_EQ(textAt(tail, 0), "Old Bavarian Lager");
  EXPECT_EQ(textAt(tail, 0x37), "Wyeast");
  EXPECT_EQ(textAt(tail, 0x6e), "2206");
  EXPECT_EQ(tail.substr(0x87, 2), "\1\1");
  EXPECT_FLOAT_EQ(at<float>(tail, 0x1cf), 68.0F);
  EXPECT_EQ(tail[0x1d3], 0);
  EXPECT_EQ(textAt(tail, 0x1d9), "The Brewer's Chosen Water");
  EXPECT_FLOAT_EQ(at<float>(tail, 0x210), 5.25F);
  EXPECT_EQ(textAt(tail, 0x214), "Known for");
  EXPECT_FLOAT_EQ(at<float>(tail, 0x2f0), 4.1727109F);  // 2 x 946.35 / 453.59
  EXPECT_EQ(textAt(tail, 0x2f5), "\xd2Rich\xd3");
  EXPECT_EQ(at<std::uint32_t>(tail, 0x2370), 68U);
}

TEST_F(RecWriterTest, WritesAdditions) {
  const struct {
    std::string_view when;
    std::int16_t minutes;
    const char* alpha;
    int kind;
    std::string_view form;
    int formCode;
  } hops[] = {
      {words::FirstWortHopped, 61, "4.99", 2, words::LooseWholeHops, 3},
      {words::InMash, 62, "5", 3, words::LoosePelletHops, 35},
      {words::DryHopped, -5, "8.9", 3, words::BaggedPelletHops, 35},
      {"15 Min From End", 15, "9.0", 1, words::PelletizedHops, 35},
  };
  for (const auto& c : hops) {
    const std::string bytes = written(withOne(keys::HopIngredients, {{keys::Variety, "Saaz"},
                                                                     {keys::When, c.when},
                                                                     {keys::Minutes, "15"},
                                                                     {keys::Alpha, c.alpha},
                                                                     {keys::Form, c.form},
                                                                     {keys::Amount, "56.7"}}));
    EXPECT_EQ(textAt(bytes, hopsAt), "Saaz");
    EXPECT_EQ(at<std::int16_t>(bytes, hopsAt + 0x275), c.minutes);
    EXPECT_EQ(bytes[hopsAt + 0x50], c.kind) << c.alpha;
    EXPECT_EQ(bytes[hopsAt + 0x51], c.formCode) << c.form;
    EXPECT_FLOAT_EQ(at<float>(bytes, hopsAt + 0x37), floatValue(c.alpha));
    EXPECT_FLOAT_EQ(at<float>(bytes, hopsAt + 0x26c), floatValue(c.alpha));
    EXPECT_FLOAT_EQ(at<float>(bytes, hopsAt + 0x271), 2.0F);
    EXPECT_FLOAT_EQ(at<float>(bytes, hopsAt + 0x52), 0.5F);
  }
  const struct {
    const char* ingredient;
    const char* isGrain;
    const char* name;
    const char* origin;
    int kind;
  } malts[] = {
      {"UK Pale Malt", "1", "Pale Malt ", "UK", 1},
      {"Vienna", "1", " ", "Vienna", 1},
      {"", "0", " ", "", 4},
      {"Extract - Light Malt", "0", "Light Malt ", "", 2},
      {"Sugar Candi", "0", "Candi ", "", 3},
      {"Dry Extract Sugar", "1", "Extract Sugar ", "Dry", 3},
  };
  for (const auto& c : malts) {
    const std::string bytes =
        written(withOne(keys::FermentableIngredients, {{keys::Ingredient, c.ingredient},
                                                       {keys::IsGrain, c.isGrain},
                                                       {keys::Extract, "80"},
                                                       {keys::Color, "3"},
                                                       {keys::Moisture, "4"},
                                                       {keys::Amount, "907.18"}}));
    EXPECT_EQ(textAt(bytes, hopsAt), c.name) << c.ingredient;
    EXPECT_EQ(textAt(bytes, hopsAt + 0x6e), c.origin) << c.ingredient;
    EXPECT_EQ(bytes[hopsAt + 0xa5], c.kind) << c.ingredient;
    EXPECT_EQ(bytes[hopsAt + 0xa6], *c.isGrain - '0');
    const std::pair<std::size_t, float> numbers[] = {
        {0xa7, 1.0368F}, {0xab, 3.0F}, {0xaf, 4.0F}, {0x201, 0.8F}, {0x209, 2.0F}};
    for (const auto& [offset, value] : numbers)
      EXPECT_FLOAT_EQ(at<float>(bytes, hopsAt + offset), value);
  }
  const struct {
    std::string_view when;
    int minutes, use, isTimed;
  } others[] = {
      {words::InMash, 45, 2, 1}, {words::InBoil, 60, 0, 1}, {words::InDispenseVessel, 0, 1, 0}};
  for (const std::int64_t units : {1, 2}) {
    NSUserDefaults::standardUserDefaults().setObject_forKey(units, keys::Units);
    for (const auto& c : others) {
      PlistDictionary recipe =
          withOne(keys::OtherIngredients,
                  {{keys::Ingredient, "Moss"}, {keys::When, c.when}, {keys::Amount, "56.7"}});
      recipe.set(
          keys::MashSchedule,
          PlistDictionary{{keys::Steps, PlistArray{PlistDictionary{{keys::Duration, "45"}}}}});
      const std::string bytes = written(recipe);
      EXPECT_EQ(at<std::int32_t>(bytes, hopsAt + 0x38), c.minutes);
      EXPECT_EQ(bytes.substr(hopsAt + 0x3c, 3),
                std::string({char(c.use), char(c.isTimed), char(units - 1)}));
      EXPECT_FLOAT_EQ(at<float>(bytes, hopsAt + 0x241), units == 2 ? 56.7F : 2.0F);
      EXPECT_EQ(bytes[hopsAt + 0x37], 3);
    }
  }
}

PlistDictionary mashOf(std::initializer_list<std::pair<std::string_view, const char*>> steps) {
  PlistArray list;
  for (const auto& [type, temperature] : steps) {
    list.append(PlistDictionary{
        {keys::StepType, type}, {keys::Temperature, temperature}, {keys::Duration, "20"}});
  }
  return {{keys::MashSchedule, PlistDictionary{{keys::ScheduleName, "Mine"}, {keys::Steps, list}}}};
}

TEST_F(RecWriterTest, WritesTheMash) {
  const std::string simple = written(mashOf({{words::RestAt, "66.7"}, {words::MashOut, "76"}}));
  const std::size_t tail = 0x485;
  const std::pair<std::size_t, std::uint32_t> rests[] = {
      {0x2d8, 152}, {0x2dc, 20}, {0x2e0, 168}, {0x2e4, 20}, {0x236c, 2}};
  for (const auto& [offset, value] : rests)
    EXPECT_EQ(at<std::uint32_t>(simple, tail + offset), value) << offset;
  const std::string all = written(mashOf({{words::HeatToStrike, "40"},
                                          {words::RestAt, "50"},
                                          {words::RaiseByInfusion, "60"},
                                          {words::PullDecoction, "70"},
                                          {words::MashOut, "76"},
                                          {words::RaiseByDirectHeating, "-20"}}));
  const std::tuple<const char*, int, std::uint32_t> steps[] = {{"Rest", 0, 122},
                                                               {"Infusion", 0, 140},
                                                               {"Decoction", 2, 158},
                                                               {"Direct Heating", 1, 168},
                                                               {"Raise and Mash Out", 0, 0}};
  EXPECT_EQ(at<std::uint32_t>(all, tail + 0x2d8), 0U);
  EXPECT_EQ(at<std::uint32_t>(all, tail + 0x236c), 5U);
  for (std::size_t i = 0; i < 5; ++i) {
    const auto& [name, kind, temperature] = steps[i];
    const std::size_t step = tail + 0x2378 + i * 0x124;
    EXPECT_EQ(textAt(all, step), name);
    EXPECT_EQ(all[step + 0xff], kind);
    EXPECT_EQ(at<std::uint32_t>(all, step + 0x100), temperature);
    EXPECT_EQ(at<std::uint32_t>(all, step + 0x10c), 20U);
    EXPECT_EQ(at<std::uint32_t>(all, step + 0x110), 20U);
  }
  EXPECT_EQ(textAt(all, tail + 0x5c80), "Mine");
}

// A text that doesn't fit leaves its field empty; steps past the room for them are left out.
TEST_F(RecWriterTest, KeepsToTheFields) {
  for (const auto& [title, expected] : {std::pair{std::string(84, 'a'), std::string(84, 'a')},
                                        {std::string(85, 'a'), ""},
                                        {"漢", ""}}) {
    EXPECT_EQ(textAt(written({{keys::RecipeTitle, title}}), 0), expected);
  }
  PlistDictionary many = mashOf({});
  PlistArray steps;
  for (int i = 0; i < 200; ++i)
    steps.append(PlistDictionary{{keys::StepType, words::RestAt}, {keys::Duration, "1e30"}});
  many.editDictionary(keys::MashSchedule)->set(keys::Steps, steps);
  many.set(keys::BoilDuration, "-99999999999");
  const std::string bytes = written(many);
  EXPECT_EQ(bytes.size(), 0x485 + tailSize);
  EXPECT_EQ(at<std::uint32_t>(bytes, 0x485 + 0x236c), 50U);
  EXPECT_EQ(at<std::int32_t>(bytes, 0x75), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(stringByDroppingInvalidUTF8(textAt(bytes, 0x485 + 0x5c80)), "Mine");
}

}  // namespace
}  // namespace zym
