#include "tests/stock/Shelf.h"
#include "tests/support/Json.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/platform/values/ProcessTearDown.h"
#include "zymcore/reports/PageKeys.h"
#include "zymcore/reports/ZYMHTML.h"
#include "zymcore/stock/ZYMSuggestABeerGenerator.h"
#include "zymcore/store/entities/ZYMInventoryEntity.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"

namespace zym {
namespace {

using Generator = ZYMSuggestABeerGenerator;

class Suggestions : public testing::WithShelf {
 protected:
  Suggestions() {
    std::filesystem::create_directory(folder / "bundle");
    for (const auto& entry : std::filesystem::directory_iterator(ZYM_RESOURCES)) {
      if (entry.path().extension() == ".html") continue;
      std::filesystem::create_symlink(entry.path(),
                                      folder / "bundle/" + entry.path().filename().string());
    }
    putFile(folder / "bundle/SuggestABeer Template.html",
            "0<*KEYNAME=brewToday>1<*KEYNAME=needOne>2<*KEYNAME=needTwo>3<*KEYNAME=needThree>");
    NSBundle::setMainBundle(NSBundle(folder / "bundle", "org.zymcore.tests", "1"));
  }
  static void store(PlistDictionary recipe) {
    ZYMRecipeEntity::insertInContext(context()).updateWithDictionaryRepresentation(recipe);
  }
  static std::string shown(const PlistArray& rows) {
    std::string text;
    for (const PlistDictionary& row : PlistRows(&rows)) {
      text.append(row.stringValue(keys::Ingredient)).append(" ");
      text.append(row.stringValue(keys::IngredientType)).append(" ");
      text += std::to_string(row.doubleValue(keys::Amount)).substr(0, 6) + "; ";
    }
    return text;
  }
};

PlistDictionary recipe(std::string_view uuid) {
  PlistDictionary result = R"({"FermentableIngredients": [
      {"UUID": "malt", "Ingredient": "Pale", "Amount": "1000.5", "Color": "3"}],
    "HopIngredients": [{"UUID": "hop", "Variety": "Fuggle", "Amount": "10"},
      {"UUID": "hop", "Variety": "Fuggle", "Amount": "20"},
      {"UUID": "hop", "Variety": "Fuggle", "Amount": "30"}],
    "OtherIngredients": [{"Ingredient": "Moss", "Amount": "5"}],
    "YeastIngredients": [{"UUID": "yeast", "Variety": "V", "Name": "US-05", "Amount": "300",
      "YeastAmountType": "Slurry"}]})"_json;
  result.set(keys::UUID, uuid);
  result.set(keys::RecipeTitle, "Ale " + std::string(uuid));
  return result;
}

TEST_F(Suggestions, CompareARecipeOrABatchWithTheShelf) {
  store(recipe("r"));
  stock("hop", "Hop", {lot("1", "59", 1)});
  stock("malt", "Fermentable", {lot("2", "1000.5", 1)});
  PlistDictionary batch{
      {keys::UUID, "b"}, {keys::ModifiedRecipe, recipe("r")}, {keys::Actuals, PlistDictionary()}};
  ZYMRecipes::sharedInstance().restoreBatch_toRecipeWithUUID(batch, "r");

  EXPECT_EQ(shown(Generator::ingredientsRequiredForRecipeWithUUID_usingContext("r", context())),
            "Pale Fermentable 1000.5; Fuggle Hop 60.000; Moss Other 5.0000; US-05 Yeast 300.00; ");
  const std::string missing = "Fuggle Hop 1.0000; Moss Other 5.0000; US-05 Yeast 300.00; ";
  EXPECT_EQ(shown(Generator::ingredientsNotAvailableForRecipeWithUUID_usingContext("r", context())),
            missing);
  EXPECT_EQ(shown(Generator::ingredientsNotAvailableForRecipeOrBatchWithUUID("b")), missing);
  EXPECT_EQ(shown(Generator::ingredientsNotAvailableForRecipeWithUUID_usingContext("b", context())),
            "");
  EXPECT_EQ(Generator::ingredientsRequiredForRecipeWithUUID_usingContext("b", context()),
            PlistArray());
  EXPECT_EQ(shown(Generator::ingredientsNotAvailableForRecipeOrBatchWithUUID("?")), "");
  EXPECT_EQ(Generator::missingIngredients_inContext({"no row"}, context()), PlistArray());
  EXPECT_EQ(Generator::missingIngredientsArray_missingIngredients({}, 0), PlistArray());
  // A sack can't serve both; each slurry is a pack, and what has no uuid is like no other.
  const PlistDictionary both{
      {keys::Ingredient, Generator::ingredientsNotAvailableForRecipesWithUUIDs({"r", "b", "?"})}};
  EXPECT_EQ(both, R"({"Ingredient": [
      {"UUID": "malt", "IngredientType": "Fermentable", "Amount": "1000.500000"},
      {"UUID": "hop", "IngredientType": "Hop", "Amount": "61.000000"},
      {"IngredientType": "Other", "Amount": "5"},
      {"UUID": "yeast", "IngredientType": "Yeast", "Amount": "2.000000"},
      {"IngredientType": "Other", "Amount": "5"}]})"_json);
  auto* item = ZYMInventoryEntity::onlyObjectWithUUID(nullptr, "malt");
  const PlistDictionary record =
      Generator::dictionaryRepresentationForInventoryEntity_withContext(*item, context());
  EXPECT_EQ(record.stringValue(keys::Ingredient), "Pale Malt");
  EXPECT_EQ(record.doubleValue(keys::AmountInStock), 1000.5);
  EXPECT_TRUE(record.contains(keys::DateLastModified));
  EXPECT_FALSE(record.contains(keys::Batches));
}

// Before the next one, which works after the process was torn down.
TEST_F(Suggestions, CallNobodyOnceTheGeneratorIsGone) {
  for (int i = 0; i < 300; ++i) store(recipe(std::to_string(i)));
  model().save();
  bool isFinished = false;
  auto generator = std::make_unique<Generator>();
  generator->generateWithProgressHandler_completionHandler(
      [&](float done) {
        ASSERT_TRUE(generator);
        if (done > 0) generator.reset();
      },
      [&](const std::string&) { isFinished = true; });
  ASSERT_TRUE(NSRunLoop::mainRunLoop().runUntil([&] { return !generator; }, 30));
  Generator another;
  another.generateWithProgressHandler_completionHandler(nullptr, nullptr);
  tearDownProcess();
  EXPECT_FALSE(isFinished);
  EXPECT_EQ(another.html(), "");
}

TEST_F(Suggestions, GroupRecipesAsThePlainAnswerDoes) {
  std::mt19937 random(3);
  std::map<std::string, double> shelf;
  for (int i = 0; i < 12; ++i) {
    const std::string uuid = std::to_string(i);
    const int grammes = static_cast<int>(random() % 300);
    if (i == 5) continue;
    stock(uuid, i % 2 ? "Other" : "Fermentable", {lot("lot" + uuid, std::to_string(grammes), 1)});
    shelf[uuid] = grammes;
  }
  std::array<std::string, 5> expected;
  constexpr int count = 60;
  for (int i = 0; i < count; ++i) {
    PlistDictionary beer{{keys::UUID, "r" + std::to_string(i)},
                         {keys::RecipeTitle, "Beer " + std::to_string(100 + i)}};
    std::map<std::string, double> needs;
    for (const KeyName key : {keys::FermentableIngredients, keys::OtherIngredients}) {
      PlistArray rows;
      for (std::size_t k = random() % 8; k > 0; --k) {
        const std::string uuid = std::to_string(random() % 6 * 2 + (key.text()[0] == 'O'));
        const int grammes = static_cast<int>(random() % 250);
        needs[uuid] += grammes;
        rows.append(PlistDictionary{{keys::UUID, uuid}, {keys::Amount, std::to_string(grammes)}});
      }
      beer.set(key, std::move(rows));
    }
    std::size_t missing = 0;
    for (const auto& [uuid, grammes] : needs)
      missing += !shelf.contains(uuid) || grammes > shelf[uuid];
    expected[std::min<std::size_t>(missing, 4)] += "Beer " + std::to_string(100 + i) + " ";
    store(beer);
  }
  store({{keys::UUID, "empty"}, {keys::RecipeTitle, "Zzz"}});
  auto& damaged = ZYMRecipeEntity::insertInContext(context());
  damaged.setName("Beer 000");
  damaged.setUuid("damaged");
  damaged.setDocument_forKey(NSData(std::string("junk")), KeyName("data"));
  std::string log;
  setNSLogSink([&](std::string_view line) { log += line; });
  model().save();

  Generator generator;
  std::vector<float> progress;
  std::string page;
  generator.generateWithProgressHandler_completionHandler(
      [&](float done) { progress.push_back(done); }, [&](const std::string& html) { page = html; });
  // Pages can be made here meanwhile.
  const PlistArray entries{R"({"RecipeTitle": "A", "Ingredient": [
      {"IngredientType": "Hop", "Ingredient": "H", "Amount": "28.35"}]})"_json};
  const auto isDone = [&] {
    EXPECT_THAT(ZYMHTML::parseSuggestABeerEntry(&entries), HasSubstr(" of H"));
    return !page.empty();
  };
  ASSERT_TRUE(NSRunLoop::mainRunLoop().runUntil(isDone, 30));
  setNSLogSink(nullptr);
  EXPECT_THAT(log, HasSubstr("damaged"));
  expected[0] += "Zzz ";
  for (int group = 0; group < 4; ++group) {
    const std::size_t from = page.find(std::to_string(group) + "<ul>");
    const std::string part =
        page.substr(from, page.find(std::to_string(group + 1) + "<ul>") - from);
    std::string titles;
    static const std::regex title("<li>(Beer [0-9]+|Zzz)");
    for (std::sregex_iterator at(part.begin(), part.end(), title), end; at != end; ++at) {
      titles += (*at)[1].str() + " ";
    }
    EXPECT_EQ(titles, expected[static_cast<std::size_t>(group)]) << group;
  }
  EXPECT_FALSE(expected[4].empty());
  EXPECT_EQ(progress.size(), count + 3U);
  EXPECT_EQ(progress.front(), 0);
  EXPECT_EQ(progress.back(), 1);
  EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
  EXPECT_EQ(generator.html(), page);
  EXPECT_FALSE(generator.completionHandler());
}

}  // namespace
}  // namespace zym
