#include "tests/support/Test.h"
#include "tests/support/TextTable.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/interchange/ParsedRecipeKeys.h"
#include "zymcore/interchange/beerxml/ZYMBeerXML.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {
namespace {

const std::filesystem::path fixtures = std::filesystem::path(ZYM_FIXTURES) / "beerxml";

NSData contentsOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  EXPECT_TRUE(stream) << file;
  return NSData(std::string(std::istreambuf_iterator<char>(stream), {}));
}

// The text at a place such as "HOPS/0/TIME"; absent when there is none.
std::optional<std::string> textAt(const PlistDictionary& recipe, std::string_view path) {
  const std::size_t slash = path.find('/');
  const KeyName key(path.substr(0, slash));
  if (slash == std::string_view::npos) {
    const std::string* const text = recipe.string(key);
    return text ? std::optional(*text) : std::nullopt;
  }
  const PlistArray* const rows = recipe.array(key);
  const PlistValue* const row =
      rows ? rows->find(static_cast<std::size_t>(path[slash + 1] - '0')) : nullptr;
  if (!row || !row->dictionary()) return std::nullopt;
  return textAt(*row->dictionary(), path.substr(slash + 3));
}

std::string sizesOf(const PlistDictionary& recipe) {
  std::string sizes;
  for (const KeyName key : {parsedKeys::FERMENTABLES, parsedKeys::HOPS, parsedKeys::MISCS,
                            keys::YeastIngredients, parsedKeys::MASHSTEPS}) {
    const PlistArray* const rows = recipe.array(key);
    sizes += rows ? std::to_string(rows->size()) : "-";
  }
  return sizes;
}

struct Reading {
  const char* file;
  const char* title;
  const char* style;
  // Fermentables, hops, miscellaneous items, yeasts and steps; "-" where the key is absent.
  const char* sizes;
  const char* notes;
  const char* place;
  std::optional<const char*> text;
};

constexpr const char* amber = "Amber Ale-American Amber Ale";
constexpr const char* usual = "1201-";
constexpr const char* cold = "Brewed on a cold day.";
constexpr const char* accented = "Märzen von Café Brûlé";
constexpr const char* forJoerg = "Gebraut für Jörg, 18 °C.";
constexpr const char* pub = "Brewer’s “Best” – 5 €";

constexpr Reading readings[] = {
    // Whole files.
    {"minimal", "Least", " No Style Chosen", "0000-", "", "BoilDuration", "60"},
    {"two_recipes", "First", amber, usual, cold, "FinalBatchVolume", "20000.000000"},
    {"complete", "Märzen \"Gold\"", "European Amber Lager-Oktoberfest", "23232",
     "Decoct once.\n\nBready.", "BICARBONATE", "20"},
    {"misordered", "Backwards", "Vienna Lager", "11001", "\n\nClean.", "HOPS/0/TIME", "80"},
    {"units_in_numbers", "Units", amber, usual, cold, "VolumeToFermenter", "5000.000000"},
    {"unknown_words", "Words", "-", usual, cold, "YeastIngredients/0/YEAST FORM", "Culture"},
    {"display_tags", "Shown", amber, usual, cold, "FinalWortVolume", "20000.000000"},
    {"comments", "Commented", amber, usual, "ABD", "TYPE", "All Grain"},
    {"style_without_name", "Plain", " No Style Chosen", "12010", cold, "MASHNAME", ""},
    {"no_mash_name", "Nameless", " No Style Chosen", "12010", cold, "MASHNAME",
     " No Chosen Schedule"},
    {"waters_empty", "Dry", amber, usual, cold, "CALCIUM", std::nullopt},
    {"water_without_bicarbonate", "Soft", amber, usual, cold, "SODIUM", " 6 "},
    {"carriage_returns", "Old Mac", amber, usual, "One\ntwo\nthree", "BoilDuration", "75"},
    {"windows_line_ends", "Windows", amber, usual, "One\ntwo", "BoilDuration", "75"},
    // Encodings that aren't as they say.
    {"windows1252", pub, amber, usual, "Œuvre, Žatec…", "TYPE", "All Grain"},
    {"windows1252_declared_latin1", pub, amber, usual, "»Spaß« muss sein…", "TYPE", "All Grain"},
    {"windows1250_declared", "Světlý ležák", amber, usual, "Žatecký chmel, příjemně hořký", "TYPE",
     "All Grain"},
    // What surrounds the recipe.
    {"several_roots", "Second root", amber, usual, cold, "TYPE", "All Grain"},
    {"document_type", "Typed", amber, usual, cold, "TYPE", "All Grain"},
    {"entities_declared", "Laughs", amber, usual, "&m; &x; end", "TYPE", "All Grain"},
    {"namespaces", "Spaced", amber, usual, cold, "TYPE", "All Grain"},
    // Damage in it.
    {"stray_marks", "Malt & Hops", amber, usual,
     "If a < b then <3 hops, 5 <x and y> z; AT&T; R&D <-- here >> ]]> end", "TYPE", "All Grain"},
    {"control_characters", "Bell and nul", amber, usual, "Tab gone, so are these three, ü not",
     "TYPE", "All Grain"},
    {"cdata", "Rye & <Oats>", amber, usual, "Before a < b && c after", "TYPE", "All Grain"},
    {"cdata_unclosed", "Open", amber, usual, "Never closed, a & b", "TYPE", "All Grain"},
    {"html_entities", "Münchner Café & Bräu", amber, usual, "68\u00A0°C… ½ l, &unknown; Ω€", "TYPE",
     "All Grain"},
    {"attributes", "Loose", amber, usual, cold, "HOPS/1/NAME", "Fuggle"},
    {"crossed_tags", "Amber Ale", amber, usual, "Some bold words", "Attenuation", "75.0"},
    {"unclosed_leaf", "Half open", amber, usual, cold, "TYPE", "All Grain\n  "},
    {"forgotten_ends", "Amber Ale", amber, usual, "Onetwothree", "HOPS/1/NAME", "Fuggle"},
    {"truncated", "Amber Ale", amber, "12011", "Long story", "MASHSTEPS/0/STEP_TEMP", "66"},
    {"truncated_in_tag", "Amber Ale", amber, "12010", "Long story", "MASHNAME", "Single"},
    {"truncated_in_character", accented, amber, usual, "J", "Attenuation", "75.0"},
};

// All of one text, in encodings that mostly aren't as they say, or with something around it.
constexpr const char* alike[] = {
    "utf8_declared_latin1", "latin1_declared_utf8", "latin1_undeclared", "latin1_declared",
    "encoding_system",      "mark_declared_latin1", "one_wrong_byte",    "utf16le_mark",
    "utf16be_mark",         "utf16le_unmarked",     "utf16be_unmarked",  "declaration_late",
    "declaration_broken",   "text_around"};

struct Refusal {
  const char* file;
  const char* reason;
};
constexpr Refusal refusals[] = {
    {"empty", "no element of XML"},
    {"no_xml", "no element of XML"},
    {"lower_case", "no RECIPES in the document"},
    {"only_recipe", "no RECIPES in the document"},
    {"empty_recipes", "no RECIPE in RECIPES"},
    {"empty_recipe", "no NAME in RECIPE"},
    {"no_type", "no TYPE in RECIPE"},
    {"lower_case_tag", "no BATCH_SIZE in RECIPE"},
    {"truncated_early", "no YEASTS in RECIPE (line 20: the text ends within <RECIPE>)"},
    {"water_empty", "no CALCIUM in WATER"},
    {"water_without_sodium", "no SODIUM in WATER"},
};

std::vector<Reading> allReadings() {
  std::vector<Reading> all(std::begin(readings), std::end(readings));
  for (const char* file : alike) {
    all.push_back({file, accented, amber, usual, forJoerg, "TYPE", "All Grain"});
  }
  return all;
}

TEST(BeerXML, ReadsWhatProgramsWrite) {
  for (const Reading& expected : allReadings()) {
    SCOPED_TRACE(expected.file);
    NSError error;
    const auto recipe = ZYMBeerXML::parseFileData(
        contentsOf(fixtures / (std::string(expected.file) + ".xml")), &error);
    ASSERT_TRUE(recipe) << error.localizedDescription;
    EXPECT_EQ(error.localizedDescription, "");
    EXPECT_EQ(recipe->stringValue(keys::RecipeTitle), expected.title);
    EXPECT_EQ(recipe->stringValue(parsedKeys::STYLENAME), expected.style);
    EXPECT_EQ(sizesOf(*recipe), expected.sizes);
    EXPECT_EQ(recipe->stringValue(keys::Notes), expected.notes);
    EXPECT_EQ(textAt(*recipe, expected.place), expected.text) << expected.place;
  }
}

TEST(BeerXML, NamesWhatIsMissing) {
  for (const Refusal& expected : refusals) {
    SCOPED_TRACE(expected.file);
    NSError error;
    EXPECT_FALSE(ZYMBeerXML::parseFileData(
        contentsOf(fixtures / (std::string(expected.file) + ".xml")), &error));
    EXPECT_EQ(error.localizedDescription, expected.reason);
  }
}

TEST(BeerXML, EveryFixtureIsExpected) {
  std::set<std::string> expected;
  for (const Reading& reading : allReadings()) expected.insert(reading.file);
  for (const Refusal& refusal : refusals) expected.insert(refusal.file);
  std::set<std::string> present;
  for (const auto& file : std::filesystem::directory_iterator(fixtures)) {
    present.insert(file.path().stem());
  }
  EXPECT_EQ(present, expected);
}

TEST(BeerXML, KeepsEveryTagOfACompleteRecipe) {
  const auto recipe = ZYMBeerXML::parseFileData(contentsOf(fixtures / "complete.xml"));
  ASSERT_TRUE(recipe);
  const NSData expected = contentsOf(fixtures.parent_path() / "complete.txt");
  for (const auto& [place, text] : rowsOf(std::string(expected.view()))) {
    EXPECT_EQ(textAt(*recipe, place).value_or("absent"), text) << place;
  }
}

TEST(BeerXML, ReadsNumbersAsFarAsTheyGo) {
  const auto recipe = ZYMBeerXML::parseFileData(contentsOf(fixtures / "units_in_numbers.xml"));
  ASSERT_TRUE(recipe);
  EXPECT_EQ(textAt(*recipe, "HOPS/0/AMOUNT"), "1000.000000");
  EXPECT_EQ(textAt(*recipe, "HOPS/1/AMOUNT"), "0.000000");
  EXPECT_EQ(textAt(*recipe, "FERMENTABLES/0/AMOUNT"), "0.000000");
  EXPECT_EQ(textAt(*recipe, "PreBoilWortVolume"), "25500.000000");
}

// Cut anywhere, a file that begins as a recipe gives that recipe or the reason why not.
TEST(BeerXML, SurvivesEveryCut) {
  const NSData whole = contentsOf(fixtures / "complete.xml");
  for (std::size_t length = 0; length < whole.length(); ++length) {
    NSError error;
    const auto recipe = ZYMBeerXML::parseFileData(NSData(whole.view().substr(0, length)), &error);
    ASSERT_EQ(recipe.has_value(), error.localizedDescription.empty()) << length;
    if (recipe) {
      ASSERT_EQ(recipe->stringValue(keys::RecipeTitle), "Märzen \"Gold\"") << length;
    }
  }
}

}  // namespace
}  // namespace zym
