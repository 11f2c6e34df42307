#include <cstring>

#include "tests/interchange/ExchangeTest.h"
#include "tests/support/TextTable.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/SafeJSON.h"
#include "zymcore/interchange/ParsedRecipeKeys.h"
#include "zymcore/interchange/rec/ZYMRecFile.h"
#include "zymcore/platform/host/NSUserDefaults.h"

namespace zym {
namespace {

// The layout once more, by its offsets alone: "r0x61 -> 6.5" is a real at 0x61, "i" a number of
// four bytes, "h" of two, "o" of one, "s" a text.

constexpr std::size_t hops = 0x485, hopSize = 0x27b, fermentableSize = 0x211, otherSize = 0x24d,
                      tailSize = 0x5d80;

template <class Number>
void putNumber(std::string& bytes, std::size_t at, double value) {
  const auto number = static_cast<Number>(value);
  std::memcpy(&bytes[at], &number, sizeof number);
}
void put(std::string& bytes, std::size_t base, const std::string& table) {
  for (const auto& [place, value] : rowsOf(table)) {
    const std::size_t at = base + std::stoul(place.substr(1), nullptr, 0);
    if (place[0] == 's') bytes.replace(at, value.size(), value);
    if (place[0] == 'r') putNumber<float>(bytes, at, std::stod(value));
    if (place[0] == 'i')
      putNumber<std::int64_t>(bytes, at, std::stod(value)), bytes.replace(at + 4, 4, 4, '\0');
    if (place[0] == 'h') putNumber<std::int16_t>(bytes, at, std::stod(value));
    if (place[0] == 'o') bytes[at] = static_cast<char>(std::stoi(value));
  }
}

template <class Number>
double numberAt(const std::string& bytes, std::size_t at) {
  Number number;
  std::memcpy(&number, &bytes[at], sizeof number);
  return number;
}
void expectFields(const std::string& bytes, std::size_t base, const std::string& table) {
  for (const auto& [place, value] : rowsOf(table)) {
    const std::size_t at = base + std::stoul(place.substr(1), nullptr, 0);
    if (place[0] == 's') {
      EXPECT_EQ(&bytes[at], value) << place;
      continue;
    }
    const double found = place[0] == 'r'   ? numberAt<float>(bytes, at)
                         : place[0] == 'i' ? numberAt<std::int32_t>(bytes, at)
                         : place[0] == 'h' ? numberAt<std::int16_t>(bytes, at)
                                           : numberAt<std::uint8_t>(bytes, at);
    const double expected = std::stod(value);
    EXPECT_NEAR(found, expected, place[0] == 'r' ? 2e-5 * (1 + expected) : 0) << place;
  }
}

std::string fileOf(std::size_t hopCount, std::size_t fermentables, std::size_t others) {
  std::string bytes(
      hops + hopCount * hopSize + fermentables * fermentableSize + others * otherSize + tailSize,
      '\0');
  put(bytes, 0,
      "o0x55 -> " + std::to_string(hopCount) + " | o0x59 -> " + std::to_string(fermentables) +
          " | o0x5d -> " + std::to_string(others));
  return bytes;
}
PlistDictionary parsed(const std::string& bytes) {
  return ZYMRecFile::parseFileData(NSData(bytes)).value();
}
PlistDictionary first(const std::string& bytes, KeyName list) {
  return *parsed(bytes).array(list)->find(0)->dictionary();
}
void expect(const PlistDictionary& record, const std::string& table) {
  for (const auto& [key, value] : rowsOf(table)) {
    const std::string* text = record.string(KeyName(key));
    EXPECT_EQ(text ? *text : "absent", value) << key;
  }
}

// 5 gallons are 18927.05 ml, 6.5 are 24605.165 and 5.5 are 20819.755, each to the nearest float.
TEST(RecFile, ReadsTheRecipe) {
  std::string file = fileOf(0, 0, 0);
  put(file, 0,
      R"(s0 -> Dubbel | r0x61 -> 6.5 | r0x65 -> 5 | r0x71 -> 0.725 | i0x75 -> 90 | o0x7d -> 1 |
      s0x7e -> Belgian Ale | r0x1cf -> 68.5)");
  put(file, hops,
      R"(s0 -> Trappist | s0x37 -> Lab | s0x6e -> 3787 | o0x87 -> 1 | o0x1c7 -> 71 | o0x1cb -> 76 |
      r0x1f4 -> 1.5 | r0x1f8 -> 2.5 | r0x1fc -> 3.5 | r0x204 -> 4.5 | r0x208 -> 5.5 | r0x20c -> 6.5)");
  put(file, hops, "s0x2f5 -> Caf\xe9 \x93rich\x94");
  const char* const texts = R"(RecipeTitle -> Dubbel | MashEfficiency -> 72.500000 |
      BoilDuration -> 90 | TYPE -> Partial Mash | STYLENAME -> Belgian Ale | Notes -> Café “rich” |
      FermentationTemperature -> 68.500000 | FinalBatchVolume -> 18927.050781 |
      VolumeAtPitching -> 18927.050781 | PreBoilWortVolume -> 24605.164062 |
      FinalWortVolume -> 18927.050781 | VolumeToFermenter -> 18927.050781 |
      VolumeWaterAdded -> 0.000000 | Attenuation -> 73.500000 | CALCIUM -> 1.500000 |
      MAGNESIUM -> 2.500000 | SODIUM -> 3.500000 | SULFATE -> 4.500000 | CHLORIDE -> 5.500000 |
      BICARBONATE -> 6.500000)";
  expect(parsed(file), texts);
  expect(first(file, keys::YeastIngredients),
         "YEAST NAME -> Lab 3787-Trappist | YEAST TYPE -> Lager | YEAST FORM -> Liquid");
  // One of ours is in another encoding.
  put(file, hops, "s0x1d9 -> The Brewer's Chosen Water | s0x2f5 -> Caf\x8e \xd2rich\xd3");
  expect(parsed(file), texts);

  put(file, 0, "r0x65 -> 6.5 | r0x61 -> 5.5 | o0x7d -> 9");
  put(file, hops, "o0x87 -> 0 | s0x1c7 -> \xff\xff\xff\xff | o0x1cb -> 5");
  expect(parsed(file), R"(TYPE -> absent | FinalBatchVolume -> 24605.164062 |
      PreBoilWortVolume -> 20819.755859 | FinalWortVolume -> 20819.755859 |
      VolumeToFermenter -> 20819.755859 | VolumeWaterAdded -> 3785.408203 | Attenuation -> 2.000000)");
  expect(first(file, keys::YeastIngredients), "YEAST TYPE -> Ale | YEAST FORM -> Dry");
  put(file, hops, "o0x87 -> 2");
  expect(first(file, keys::YeastIngredients), "YEAST TYPE -> Other | YEAST FORM -> Liquid");
}

TEST(RecFile, ReadsHopsByTheirCodes) {
  const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
      {"60", "Boil", "3", "Whole Hop"},  {"0", "Aroma", "9", "Whole Hop"},
      {"-5", "Dry Hop", "10", "absent"}, {"91", "First Wort", "11", "Pellet"},
      {"92", "Mash", "19", "Pellet"},    {"90", "Boil", "20", "absent"},
      {"93", "Boil", "21", "Pellet"},    {"1", "Boil", "35", "Pellet"},
      {"-1", "Boil", "255", "Whole Hop"}};
  for (const auto& [minutes, use, code, form] : cases) {
    std::string file = fileOf(2, 0, 0);
    put(file, 0, "i0x75 -> 90");
    put(file, hops,
        std::string("s0 -> Saaz | r0x26c -> 3.5 | r0x271 -> 2 | h0x275 -> ") + minutes +
            " | o0x51 -> " + code);
    expect(first(file, parsedKeys::HOPS),
           std::string("NAME -> Saaz | ALPHA -> 3.500000 | AMOUNT -> 56.700000 | TIME -> ") +
               minutes + ".000000 | USE -> " + use + " | FORM -> " + form);
    EXPECT_EQ(parsed(file).array(parsedKeys::HOPS)->size(), 2U);
  }
  std::string unboiled = fileOf(1, 0, 0);
  put(unboiled, 0, "s0x75 -> \xff\xff\xff\xff");
  expect(first(unboiled, parsedKeys::HOPS), "TIME -> 0.000000 | USE -> First Wort");
}

TEST(RecFile, ReadsFermentablesAndOthers) {
  const std::tuple<int, const char*, const char*, const char*> malts[] = {
      {0, "10", "absent", "10.000000"},    {1, "10", "Grain", "10.000000"},
      {2, "10", "Extract", "10.000000"},   {3, "10.05", "Sugar", "4.000000"},
      {4, "10.05", "Adjunct", "4.000000"}, {5, "nan", "absent", "4.000000"}};
  std::string file = fileOf(0, 1, 1);
  put(file, hops, "s0 -> Munich | s0x6e -> Germany | r0xa7 -> 1 | r0xab -> 9 | r0x209 -> 2");
  for (const auto& [kind, given, word, moisture] : malts) {
    put(file, hops, "o0xa5 -> " + std::to_string(kind) + " | r0xaf -> " + given);
    expect(first(file, parsedKeys::FERMENTABLES),
           std::string("NAME -> Munich | ORIGIN -> Germany | YIELD -> 0.000000 | COLOR -> 9.000000 "
                       "| AMOUNT -> 907.180000 | TYPE -> ") +
               word + " | MOISTURE -> " + moisture);
  }
  put(file, hops, "r0xa7 -> 1.0375");  // (1.0375 - 1) / 0.00046
  EXPECT_NEAR(first(file, parsedKeys::FERMENTABLES).doubleValue(parsedKeys::YIELD), 81.5217, 1e-3);
  const std::tuple<const char*, const char*, const char*, const char*> others[] = {
      {"0", "Boil", "0", "56.700000"},  {"1", "Primary", "1", "2.000000"},
      {"2", "Mash", "2", "907.180000"}, {"3", "absent", "3", "10.000000"},
      {"0", "Boil", "4", "40.000000"},  {"0", "Boil", "5", "2.000000"}};
  for (const auto& [use, word, unit, grams] : others) {
    put(file, hops + fermentableSize,
        std::string("s0 -> Moss | r0x241 -> 2 | o0x3c -> ") + use + " | o0x3e -> " + unit);
    expect(first(file, parsedKeys::MISCS),
           std::string("NAME -> Moss | USE -> ") + word + " | AMOUNT -> " + grams);
  }
}

// 152 °F are 66.67 °C, 168 are 75.56, 20 are -6.67.
TEST(RecFile, ReadsTheMash) {
  const auto stepsOf = [](const std::string& bytes) {
    std::string text;
    const PlistDictionary recipe = parsed(bytes);
    for (const PlistDictionary& step : recipe.rows(parsedKeys::MASHSTEPS)) {
      for (const KeyName key :
           {parsedKeys::NAME, parsedKeys::TYPE, parsedKeys::STEP_TEMP, parsedKeys::STEP_TIME}) {
        text += std::string(step.stringValue(key)) + ",";
      }
    }
    return text;
  };
  std::string file = fileOf(0, 0, 0);
  put(file, hops, "i0x2d8 -> 152 | i0x2dc -> 60 | i0x2e0 -> 152 | i0x2e4 -> 5");
  EXPECT_EQ(stepsOf(file), "Saccharification Rest,Rest,66,60,Mash Out,Rest,66,5,");
  put(file, hops, "o0x2e0 -> 151");
  EXPECT_EQ(stepsOf(file), "Saccharification Rest,Rest,66,60,");
  for (std::size_t i = 0; i < 4; ++i) {
    const std::string number = std::to_string(i);
    put(file, hops + 0x2378 + i * 0x124,
        "s0 -> S" + number + " | o0xff -> " + number + " | o0x100 -> " + (i == 0 ? "20" : "168") +
            " | o0x10c -> 30 | o0x110 -> 10");
  }
  // More minutes than a signed number holds.
  put(file, hops + 0x2378 + 3 * 0x124, "i0x10c -> 4294967295 | o0x110 -> 10");
  put(file, hops, "o0x236c -> 4");
  EXPECT_EQ(stepsOf(file),
            "S0,Infusion,-6,10,S0,Rest,-6,30,S1,Direct Heat,75,10,S1,Rest,75,30,"
            "S2,Decoction,75,10,S2,Rest,75,30,S3,,75,10,S3,Rest,75,-1,");
}

// Every prefix is a recipe or none; counts that lie are found out before they cost anything.
TEST(RecFile, RefusesWhatIsTooShort) {
  std::string file = fileOf(1, 2, 1);
  const std::size_t tail = file.size() - tailSize;
  put(file, tail, "o0x236c -> 2");
  for (std::size_t length = 0; length <= file.size(); ++length) {
    NSError error;
    const bool isRead =
        ZYMRecFile::parseFileData(NSData(file.substr(0, length)), &error).has_value();
    ASSERT_EQ(isRead, length >= tail + 0x2378 + 2 * 0x124) << length;
    ASSERT_EQ(error.localizedDescription.empty(), isRead);
  }
  for (const std::size_t count :
       {std::size_t{0x55}, std::size_t{0x59}, std::size_t{0x5d}, tail + 0x236c}) {
    for (const std::uint32_t lie : {1000U, 0x7FFFFFFFU, 0xFFFFFFFFU, 0x98765432U}) {
      std::string lying = file;
      putNumber<std::uint32_t>(lying, count, lie);
      EXPECT_FALSE(ZYMRecFile::parseFileData(NSData(lying)));
    }
  }
}

TEST(RecFile, EndsATextWithItsField) {
  std::string file = fileOf(1, 1, 1);
  std::fill(file.begin(), file.begin() + 0x55, 'a');
  std::fill(file.begin() + 0x7e, file.end(), 'b');
  put(file, hops, "r0x271 -> inf");
  put(file, file.size() - tailSize, "i0x236c -> 1");
  const std::string name(0x37, 'b');
  expect(parsed(file), "RecipeTitle -> " + std::string(0x55, 'a') + " | STYLENAME -> " + name +
                           " | Notes -> " + std::string(0xfbc, 'b'));
  for (const KeyName list : {parsedKeys::HOPS, parsedKeys::FERMENTABLES, parsedKeys::MISCS}) {
    expect(first(file, list), "NAME -> " + name);
  }
  expect(first(file, parsedKeys::FERMENTABLES), "ORIGIN -> " + name);
  expect(first(file, parsedKeys::MASHSTEPS), "NAME -> " + std::string(0xff, 'b'));
  expect(first(file, keys::YeastIngredients),
         "YEAST NAME -> " + name + " " + std::string(0x19, 'b') + "-" + name);
  EXPECT_EQ(first(file, parsedKeys::HOPS).doubleValue(parsedKeys::AMOUNT), 0);
}

// ---- Writing

class RecWriterTest : public ExchangeTest {
 protected:
  /// Of a recipe in JSON.
  static std::string written(const std::string& recipe) {
    return std::string(
        ZYMRecFile::dataForRecipe(*safeJSONObjectWithData_options(recipe, 0).value().dictionary())
            .view());
  }
  /// Of a recipe with that one addition.
  static std::string written(KeyName list, const std::string& table) {
    PlistDictionary addition;
    for (const auto& [key, value] : rowsOf(table)) addition.set(KeyName(key), value);
    const PlistDictionary schedule{
        {keys::Steps, PlistArray{PlistDictionary{{keys::Duration, "45"}}}}};
    return std::string(ZYMRecFile::dataForRecipe({{keys::BoilDuration, "60"},
                                                  {keys::MashSchedule, schedule},
                                                  {list, PlistArray{addition}}})
                           .view());
  }
};

TEST_F(RecWriterTest, WritesTheRecipe) {
  const auto style =
      ZYMStyles::sharedInstance().styleWithName_inGuidelines("American Light Lager", 1);
  const std::string bytes = written(R"({"RecipeTitle": "Café", "MashType": "Extract with Mini-mash",
      "MashEfficiency": "72.5", "BoilDuration": "75", "FinalBatchVolume": "18927.05",
      "FinalWortVolume": "20819.755", "VolumeToFermenter": "20000", "VolumeAtPitching": "20000",
      "PreBoilWortVolume": "24000", "StyleGuidelinesSource": 1, "FermentationTemperature": "20",
      "MashpH": "5.25", "Notes": "“Rich”", "CaCl2": "0.0001", "Profile": {"WaterGrainRatio": "2"},
      "YeastIngredients": [{"Name": "Wyeast Old 2206-Bavarian Lager", "Description": "Flocculation: High"}],
      "StyleUUID": ")" + std::string(style->stringValue(keys::UUID)) +
                                    "\"}");
  ASSERT_EQ(bytes.size(), hops + tailSize);
  expectFields(bytes, 0, R"(r0x61 -> 5 | r0x65 -> 5.5 | r0x71 -> 0.725 | i0x75 -> 75 | o0x7d -> 1 |
      s0x7e -> American Light Lager | s0xb5 -> '' | o0xec -> 0 | r0xed -> 28 | r0xf1 -> 40 | r0xf5 -> 7 |
      r0xf9 -> 10 | r0xfd -> 0 | r0x105 -> 8 | r0x109 -> 12 | r0x10d -> 2 | r0x111 -> 3 | r0x1cf -> 0 |
      o0x480 -> 1 | o0x481 -> 0 | o0x484 -> 1)");
  expectFields(bytes, 0, "s0 -> Caf\x8e");
  // 2 x 946.35 / 453.59 quarts a pound; 100 mg/l of calcium chloride are 36.4 and 63.6 of its ions.
  expectFields(
      bytes, hops,
      R"(s0 -> Old Bavarian Lager | s0x37 -> Wyeast | s0x6e -> 2206 | o0x87 -> 1 | o0x88 -> 1 |
      r0x1cf -> 68 | o0x1d3 -> 0 | s0x1d9 -> The Brewer's Chosen Water | r0x1f4 -> 36.4 | r0x1f8 -> 0 |
      r0x200 -> 0 | r0x208 -> 63.6 | r0x210 -> 5.25 | s0x214 -> Known for | r0x2f0 -> 4.172711 | i0x2370 -> 68)");
  expectFields(bytes, hops, "s0x2f5 -> \xd2Rich\xd3");
  expectFields(
      written(
          R"({"MashType": "Extract", "YeastIngredients": [{"Name": "US-05", "Description": "Floculation:Low"}]})"),
      hops, "s0 -> 05 | s0x37 -> US | s0x6e -> '' | o0x87 -> 0 | o0x88 -> 0 | o0x1d3 -> 2");
  expectFields(written(keys::YeastIngredients, "Name -> US-05 | Description -> Floculation:High"),
               hops, "o0x1d3 -> 0");
  for (const auto& [type, code] :
       rowsOf("Full Mash -> 0 | Extract -> 2 | Extract with Steeped Grains -> 2 | Odd -> 0")) {
    expectFields(written(R"({"MashType": ")" + type + "\"}"), 0, "o0x7d -> " + code);
  }
}

TEST_F(RecWriterTest, WritesAdditions) {
  const struct {
    KeyName list;
    std::string given, fields;
    std::vector<std::pair<std::string, std::string>> cases;
  } kinds[] = {
      {keys::HopIngredients,
       "Variety -> Saaz | Minutes -> 15 | Amount -> 56.7 | ",
       "s0 -> Saaz | r0x271 -> 2 | r0x52 -> 0.5 | ",
       {{"When -> First Wort Hopped | Alpha -> 4.99 | Form -> Loose Whole Hops",
         "h0x275 -> 61 | o0x50 -> 2 | o0x51 -> 3 | r0x37 -> 4.99 | r0x26c -> 4.99"},
        {"When -> In Mash | Alpha -> 5 | Form -> Loose Pellet Hops",
         "h0x275 -> 62 | o0x50 -> 3 | o0x51 -> 35 | r0x37 -> 5 | r0x26c -> 5"},
        {"When -> Dry-Hopped | Alpha -> 8.9 | Form -> Bagged Pellet Hops",
         "h0x275 -> -5 | o0x50 -> 3 | o0x51 -> 35 | r0x37 -> 8.9 | r0x26c -> 8.9"},
        {"When -> 15 Min From End | Alpha -> 9.0 | Form -> Pelletized Hops",
         "h0x275 -> 15 | o0x50 -> 1 | o0x51 -> 35 | r0x37 -> 9 | r0x26c -> 9"}}},
      {keys::FermentableIngredients,
       "Extract -> 80 | Color -> 3 | Moisture -> 4 | Amount -> 907.18 | ",
       "r0xa7 -> 1.0368 | r0xab -> 3 | r0xaf -> 4 | r0x201 -> 0.8 | r0x209 -> 2 | ",
       {{"Ingredient -> UK Pale Malt | IsGrain -> 1",
         "s0 -> Pale Malt  | s0x6e -> UK | o0xa5 -> 1 | o0xa6 -> 1"},
        {"Ingredient -> Vienna | IsGrain -> 1", "s0x6e -> Vienna | o0xa5 -> 1 | o0xa6 -> 1"},
        {"Ingredient -> '' | IsGrain -> 0", "s0x6e -> '' | o0xa5 -> 4 | o0xa6 -> 0"},
        {"Ingredient -> Extract - Light Malt | IsGrain -> 0",
         "s0 -> Light Malt  | s0x6e -> '' | o0xa5 -> 2 | o0xa6 -> 0"},
        {"Ingredient -> Sugar | IsGrain -> 0", "s0 ->   | s0x6e -> '' | o0xa5 -> 3"},
        {"Ingredient -> Sugar Candi | IsGrain -> 0",
         "s0 -> Candi  | s0x6e -> '' | o0xa5 -> 3 | o0xa6 -> 0"},
        {"Ingredient -> Dry Extract Sugar | IsGrain -> 1",
         "s0x6e -> Dry | o0xa5 -> 3 | o0xa6 -> 1"},
        {"IsGrain -> 1 | MustBeMashed -> 0", "o0xa6 -> 0"}}},
      {keys::OtherIngredients,
       "Ingredient -> Moss | Amount -> 56.7 | ",
       "s0 -> Moss | o0x37 -> 3 | o0x3e -> 0 | r0x241 -> 2 | ",
       {{"When -> In Mash", "i0x38 -> 45 | o0x3c -> 2 | o0x3d -> 1"},
        {"When -> In Boil", "i0x38 -> 60 | o0x3c -> 0 | o0x3d -> 1"},
        {"When -> In Dispense Vessel", "i0x38 -> 0 | o0x3c -> 1 | o0x3d -> 0"}}},
  };
  NSUserDefaults::standardUserDefaults().setObject_forKey(1, keys::Units);
  for (const auto& kind : kinds) {
    for (const auto& [given, fields] : kind.cases) {
      SCOPED_TRACE(given);
      expectFields(written(kind.list, kind.given + given), hops, kind.fields + fields);
    }
  }
  NSUserDefaults::standardUserDefaults().setObject_forKey(2, keys::Units);
  expectFields(written(keys::OtherIngredients, kinds[2].given + "When -> In Boil"), hops,
               "o0x3e -> 1 | r0x241 -> 56.7");
}

TEST_F(RecWriterTest, WritesTheMash) {
  expectFields(written(R"({"MashSchedule": {"Steps": [
      {"StepType": "Rest at", "Temperature": "66.7", "Duration": "60"},
      {"StepType": "Raise to and Mash out at", "Temperature": "76", "Duration": "5"}]}})"),
               hops, "i0x2d8 -> 152 | i0x2dc -> 60 | i0x2e0 -> 168 | i0x2e4 -> 5 | i0x236c -> 2");
  const std::string all = written(R"({"MashSchedule": {"ScheduleName": "Mine", "Steps": [
      {"StepType": "Heat to strike and dough in"}, {"StepType": "Rest at", "Temperature": "50", "Duration": "20"},
      {"StepType": "Raise by infusion to", "Temperature": "60"},
      {"StepType": "Pull decoction, boil, add back raising mash to", "Temperature": "70"},
      {"StepType": "Raise to and Mash out at", "Temperature": "76"},
      {"StepType": "Raise by direct heating to", "Temperature": "-20"}]}})");
  expectFields(
      all, hops,
      "i0x2d8 -> 0 | i0x2e0 -> 0 | i0x236c -> 5 | s0x5c80 -> Mine | i0x2484 -> 20 | i0x2488 -> 20");
  const char* const steps[] = {"s0 -> Rest | o0xff -> 0 | i0x100 -> 122",
                               "s0 -> Infusion | o0xff -> 0 | i0x100 -> 140",
                               "s0 -> Decoction | o0xff -> 2 | i0x100 -> 158",
                               "s0 -> Direct Heating | o0xff -> 1 | i0x100 -> 168",
                               "s0 -> Raise and Mash Out | o0xff -> 0 | i0x100 -> 0"};
  for (std::size_t i = 0; i < 5; ++i) expectFields(all, hops + 0x2378 + i * 0x124, steps[i]);
}

// A text that doesn't fit leaves its field empty; steps past the room for them are left out.
TEST_F(RecWriterTest, KeepsToTheFields) {
  for (const auto& [title, expected] : {std::pair{std::string(84, 'a'), std::string(84, 'a')},
                                        {std::string(85, 'a'), ""},
                                        {"漢", ""}}) {
    EXPECT_EQ(&written("{\"RecipeTitle\": \"" + title + "\"}")[0], expected);
  }
  std::string steps;
  for (int i = 0; i < 200; ++i) steps += R"({"StepType": "Rest at", "Duration": "1e30"},)";
  const std::string bytes = written(R"({"BoilDuration": "-99999999999",
      "MashSchedule": {"ScheduleName": "Mine", "Steps": [)" +
                                    steps + "7]}}");
  EXPECT_EQ(bytes.size(), hops + tailSize);
  expectFields(bytes, 0, "i0x75 -> -2147483648");
  expectFields(bytes, hops, "i0x236c -> 50 | s0x5c80 -> Mine");
}

}  // namespace
}  // namespace zym
