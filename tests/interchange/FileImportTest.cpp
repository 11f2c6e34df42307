#include <sys/stat.h>

#include "tests/support/Child.h"
#include "tests/support/Pictures.h"
#include "tests/support/Store.h"
#include "tests/support/TextTable.h"
#include "zymcore/documents/SafeJSON.h"
#include "zymcore/interchange/ParsedRecipeKeys.h"
#include "zymcore/interchange/operations/ZYMFileImportOperation.h"
#include "zymcore/library/ZYMHops.h"
#include "zymcore/library/ZYMProfiles.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/events/NSOperationQueue.h"
#include "zymcore/transformers/ZYMTemperatureValueTransformer.h"

namespace zym {
namespace {

namespace fs = std::filesystem;

constexpr const char* succeeded = ZYMImportOperationSucceededNotification;
constexpr const char* failed = ZYMImportOperationFailedNotification;

class FileImportTest : public testing::WithStore {
 protected:
  FileImportTest() { seed(); }
  static void seed() {
    model().installInitialState();
    endTurn();
    undoManager().removeAllActions();
  }

  static ZYMRecipes& recipes() { return ZYMRecipes::sharedInstance(); }
  [[nodiscard]] std::string file(const std::string& name, const std::string& text) const {
    std::ofstream(folder / name) << text;
    return folder / name;
  }
  static std::unique_ptr<ZYMFileImportOperation> import(const std::string& path) {
    auto operation = std::make_unique<ZYMFileImportOperation>(path);
    operation->start();
    return operation;
  }
  static PlistDictionary process(PlistDictionary parsed) {
    ZYMFileImportOperation operation;
    return operation.processParsedRecipe(parsed);
  }
  /// The one ingredient of a parsed recipe with one.
  static PlistDictionary ingredient(KeyName key, PlistDictionary in, KeyName documentKey,
                                    const std::string& boil = "60") {
    const PlistDictionary recipe =
        process({{keys::BoilDuration, boil}, {key, PlistArray{std::move(in)}}});
    return *recipe.array(documentKey)->find(0)->dictionary();
  }
  static PlistDictionary hop(const std::string& use, const std::string& time,
                             const std::string& boil) {
    return ingredient(parsedKeys::HOPS,
                      {{parsedKeys::NAME, "Fuggle"},
                       {parsedKeys::USE, use},
                       {parsedKeys::TIME, time},
                       {parsedKeys::AMOUNT, "20.000000"},
                       {parsedKeys::ALPHA, "4.2"}},
                      keys::HopIngredients, boil);
  }
  static PlistDictionary stored(const ZYMFileImportOperation& operation) {
    return recipes().recipeForUUID(operation.uuidOfRecipe().value()).value();
  }
  [[nodiscard]] std::string storeBytes() const {
    std::string bytes;
    for (const char* name : {"data/Wortmeister.sqlite", "data/Wortmeister.sqlite-wal"}) {
      bytes += NSFileManager::contentsAtPath(folder / name, 1 << 30).value_or("none") + "|";
    }
    return bytes;
  }
};

const std::string bitter = R"(<?xml version="1.0"?><RECIPES><RECIPE>
<NAME>Bitter</NAME><TYPE>All Grain</TYPE><BATCH_SIZE>20</BATCH_SIZE><BOIL_SIZE>25</BOIL_SIZE>
<NOTES>Nice.</NOTES><EFFICIENCY>75</EFFICIENCY>
<STYLE><CATEGORY>11A</CATEGORY><NAME>Ordinary Bitter</NAME></STYLE>
<FERMENTABLES><FERMENTABLE><NAME>Maris Otter</NAME><TYPE>Grain</TYPE><ORIGIN>England</ORIGIN>
<AMOUNT>4.5</AMOUNT><YIELD>81</YIELD><COLOR>3</COLOR></FERMENTABLE></FERMENTABLES>
<HOPS><HOP><NAME>Fuggle</NAME><ALPHA>4.5</ALPHA><AMOUNT>0.03</AMOUNT><USE>Boil</USE>
<TIME>60</TIME></HOP></HOPS>
<YEASTS><YEAST><NAME>Bry-97</NAME><TYPE>Ale</TYPE><FORM>Dry</FORM></YEAST></YEASTS>
</RECIPE></RECIPES>)";

NSData picture(int width, int height) {
  const auto black = [](int, int) { return testing::Bytes{0, 0, 0, 255}; };
  return testing::picture(width, height, false, black).PNGRepresentation().value();
}

/// A recipe with two pictures and a batch with one, as this program writes it.
std::string ownFile(const PlistDictionary& changes = {}) {
  PlistDictionary recipe{{keys::RecipeTitle, "Travelled"},
                         {keys::UUID, "FROM-THE-FILE"},
                         {keys::DateLastModified, NSDate::dateWithTimeIntervalSince1970(1e9)},
                         {keys::PreBoilWortVolume, "33333.0"},
                         {keys::Profile, PlistDictionary{{keys::UUID, "UNKNOWN-HERE"}}}};
  PlistDictionary batch{
      {keys::BatchTitle, "First"},        {keys::UUID, "BATCH-IN-FILE"},
      {keys::Actuals, PlistDictionary()}, {keys::SpargeMethod, "Batch Sparge"},
      {keys::WaterGrainRatio, "3.25"},    {keys::MTThermalMass, "700"},
      {keys::ModifiedRecipe, recipe},     {keys::Images, PlistArray{picture(7, 9)}}};
  recipe.set(keys::Batches, PlistArray{batch});
  recipe.set(keys::Images,
             PlistArray{picture(900, 300), NSData("no picture"), "no data", picture(5, 3)});
  for (const PlistEntry& entry : changes) recipe.set(entry.key, entry.value);
  return safeDataWithJSONObject_options(recipe, 0).value();
}

TEST_F(FileImportTest, KnowsFermentablesByTheirNamesHere) {
  const struct {
    const char *name, *origin, *type, *lookedUp, *isGrain;
  } cases[] = {
      {"Crystal 60", "America", "Grain", "US Caramel 60", "1"},
      {"CRYSTAL crystal", "U.S.", "Grain", "US CRYSTAL crystal", "1"},
      {"CRYSTAL crystal", "north america", "Grain", "US Caramel Caramel", "1"},
      {"Crystal 60", "Belgium", "Grain", "Belgium Crystal 60", "1"},
      {"Maris Otter", "England", "Grain", "UK Pale Malt", "1"},
      {"Maris Otter", "UK, England", "Grain", "UK Pale Malt", "1"},
      {"MARIS OTTER Crystal", "America, then Great Britain", "Grain", "UK MARIS OTTER Caramel",
       "1"},
      {"Corn Sugar", nullptr, "Sugar", "Sugar - Corn Sugar/Dextrose", "0"},
      {"Light", nullptr, "Dry Extract", "Extract - Light", "0"},
      {"Light", "", "Sugar Extract", "Sugar - Extract -  Light", "0"},
      {nullptr, "Germany", "Adjunct", "Germany ", "1"},
  };
  for (const auto& c : cases) {
    PlistDictionary in{
        {parsedKeys::TYPE, c.type}, {parsedKeys::AMOUNT, "4500.000000"}, {parsedKeys::YIELD, "70"}};
    if (c.name) in.set(parsedKeys::NAME, c.name);
    if (c.origin) in.set(parsedKeys::ORIGIN, c.origin);
    ZYMFileImportOperation operation;
    const PlistDictionary recipe =
        operation.processParsedRecipe({{parsedKeys::FERMENTABLES, PlistArray{in}}});
    ASSERT_GE(operation.matches().size(), 2U);
    const ImportMatch& match = operation.matches()[1];
    EXPECT_EQ(match.textLookedUp, c.lookedUp);
    EXPECT_EQ(match.nameInFile, c.name ? c.name : "");
    EXPECT_EQ(match.kind, "Fermentable");
    EXPECT_EQ(match.similarity == 1.0, match.nameMatched == c.lookedUp) << match.nameMatched;
    EXPECT_TRUE(match.textLookedUp != "UK Pale Malt" || match.similarity == 1.0);
    const PlistDictionary malt = *recipe.array(keys::FermentableIngredients)->find(0)->dictionary();
    EXPECT_EQ(malt.stringValue(keys::Ingredient), match.nameMatched);
    EXPECT_NE(malt.stringValue(keys::UUID), "");
    EXPECT_EQ(shown(malt, {keys::IsGrain, keys::MustBeMashed, keys::When, keys::Amount,
                           keys::Extract, keys::Moisture}),
              std::string(*c.isGrain == '1' ? "1 1 In Mash/Steeped" : "0 0 Start Of Boil") +
                  " 4500.000000 70 4.0");
  }
}

// Beside the figure of the file stands the library's own, not what the file laid over it.
TEST_F(FileImportTest, TellsTheFiguresOfItsMatches) {
  const auto named = [](const char* name, KeyName key, const char* figure) {
    return PlistDictionary{{parsedKeys::NAME, name}, {key, figure}};
  };
  const auto yeast = PlistDictionary{{parsedKeys::YEAST_NAME, "WLP001 California Ale"}};
  const PlistDictionary parsed{
      {parsedKeys::FERMENTABLES, PlistArray{named("US Caramel 60", parsedKeys::COLOR, "20")}},
      {parsedKeys::HOPS, PlistArray{named("Cascade", parsedKeys::ALPHA, "6.8"),
                                    PlistDictionary{{parsedKeys::NAME, "Cascade"}}}},
      {parsedKeys::MISCS, PlistArray{PlistDictionary{{parsedKeys::NAME, "Irish Moss"}}}},
      {keys::YeastIngredients, PlistArray{yeast}},
      {keys::Attenuation, "72.5"}};
  ZYMFileImportOperation operation;
  const PlistDictionary recipe = operation.processParsedRecipe(parsed);
  EXPECT_EQ(operation.processParsedRecipe(parsed), recipe) << "and tells its matches once";
  const std::vector<ImportMatch>& matches = operation.matches();
  ASSERT_THAT(matches, SizeIs(6));  // the first is the style
  EXPECT_EQ(matches[1].figureInFile, 20);
  EXPECT_EQ(matches[1].figureMatched, 60);
  EXPECT_TRUE(isPoor(matches[1]));
  EXPECT_EQ(
      recipe.array(keys::FermentableIngredients)->find(0)->dictionary()->stringValue(keys::Color),
      "20");
  const auto alpha =
      ZYMHops::sharedInstance()
          .ingredientWithNameMostSimilarToString_matchingKeysAndValues("Cascade", nullptr)
          .doubleValue(keys::Alpha);
  EXPECT_EQ(matches[2].figureInFile, 6.8);
  EXPECT_EQ(matches[2].figureMatched, alpha);
  EXPECT_FALSE(isPoor(matches[2]));
  EXPECT_EQ(matches[3].figureInFile, std::nullopt);
  EXPECT_EQ(matches[4].figureMatched, std::nullopt);
  EXPECT_EQ(matches[5].figureInFile, 72.5);
  EXPECT_EQ(matches[5].figureMatched, 76.5);  // 73 to 80 says the maker

  PlistDictionary withTwo = parsed;
  withTwo.set(keys::YeastIngredients, PlistArray{yeast, yeast});
  ZYMFileImportOperation other;
  (void)other.processParsedRecipe(withTwo);
  EXPECT_EQ(other.matches().back().figureInFile, std::nullopt);
}

TEST(ImportMatch, IsPoorWhereNameOrFigureIsFarOff) {
  const struct {
    std::string_view kind;
    double similarity;
    std::optional<double> inFile;
    std::optional<double> matched;
    bool isPoor;
  } cases[] = {
      {words::Fermentable, 0.39, std::nullopt, std::nullopt, true},
      {words::Fermentable, 0.4, std::nullopt, std::nullopt, false},
      {words::Fermentable, 0.3, 10, 10, true},
      {words::Fermentable, 1, 2, 3.5, false},
      {words::Fermentable, 1, 2, 3.55, true},
      {words::Fermentable, 1, 40, 54, false},
      {words::Fermentable, 1, 40, 54.2, true},
      {words::Fermentable, 1, 60, 20, true},
      {words::Fermentable, 1, 60, std::nullopt, false},
      {words::Hop, 1, 10, 13.5, false},
      {words::Hop, 1, 10, 6, true},
      {words::Yeast, 1, 75, 80, false},
      {words::Yeast, 1, 75, 80.5, true},
  };
  for (const auto& c : cases) {
    ImportMatch match{c.kind, "", "", "", c.inFile, c.matched, c.similarity};
    EXPECT_EQ(isPoor(match), c.isPoor)
        << c.kind << ' ' << c.similarity << ' ' << c.inFile.value_or(-1);
  }
}

TEST_F(FileImportTest, PutsHopsWhereTheyBelong) {
  // Use, minutes and those of the boil.
  const char* const rows = R"(
      Boil, 60, 60 -> 60 Min From End, 60 | Boil, 75, 75 -> All Of Boil, 75
      Boil, 0, 60 -> Dry-Hopped, 0 | Boil, -5, 60 -> Dry-Hopped, 0
      Boil, 33, 60 -> 35 Min From End, 35 | Boil, 65, 90 -> 60 Min From End, 60
      Boil, 500, 60 -> 60 Min From End, 60 | boil, 15 minutes, 60 -> 15 Min From End, 15
      Boil, 120, 120 -> All Of Boil, 120 | Boil, 500, 1000 -> In Mash, 1000
      Boil, 10, -1e300 -> All Of Boil, -1e300
      Boil, 99999999999999999999, 99999999999999999999 -> All Of Boil, 99999999999999999999
      Dry Hop, 5, 60 -> Dry-Hopped, 0 | First Wort, 60, 60 -> First Wort Hopped, 60
      Aroma, 5, 60 -> At turn off, 0 | Mash, 60, 90 -> In Mash, 90
      Aroma in the mash, 60, 90 -> In Mash, 90 | Whirlpool, 60, 90 -> In Mash, 90)";
  for (const auto& [given, placed] : rowsOf(rows)) {
    const std::size_t first = given.find(", ");
    const std::size_t last = given.rfind(", ");
    const PlistDictionary in = hop(
        given.substr(0, first), given.substr(first + 2, last - first - 2), given.substr(last + 2));
    EXPECT_EQ(
        std::string(in.stringValue(keys::When)).append(", ").append(in.stringValue(keys::Minutes)),
        placed)
        << given;
    EXPECT_EQ(shown(in, {keys::Amount, keys::Alpha, keys::Form}), "20.000000 4.2 Loose Whole Hops");
  }
  const PlistDictionary pellets =
      ingredient(parsedKeys::HOPS, {{parsedKeys::NAME, "Fuggle"}, {parsedKeys::FORM, "PELLETS"}},
                 keys::HopIngredients);
  EXPECT_EQ(pellets.stringValue(keys::Form), "Loose Pellet Hops");
}

TEST_F(FileImportTest, TakesOthersAndYeasts) {
  for (const auto& [use, when] : {std::pair("Boil", "In Boil"),
                                  {"mash", "In Mash"},
                                  {"Primary", "In Fermenter"},
                                  {"Secondary", "In Fermenter"},
                                  {"Bottling after Primary", "In Dispense Vessel"},
                                  {"", "In Boil"}}) {
    const PlistDictionary other = ingredient(
        parsedKeys::MISCS,
        {{parsedKeys::NAME, "Irish Moss"}, {parsedKeys::USE, use}, {parsedKeys::AMOUNT, "5"}},
        keys::OtherIngredients);
    EXPECT_EQ(shown(other, {keys::When, keys::Amount}), std::string(when) + " 5") << use;
    EXPECT_THAT(std::string(other.stringValue(keys::Ingredient)), HasSubstr("Irish Moss"));
  }
  EXPECT_NO_THROW(
      (void)ingredient(parsedKeys::MISCS, {{parsedKeys::AMOUNT, "5"}}, keys::OtherIngredients));

  const auto yeast = [](PlistDictionary in) {
    return ingredient(keys::YeastIngredients, std::move(in), keys::YeastIngredients);
  };
  const PlistDictionary known = yeast({{parsedKeys::YEAST_NAME, "Bry-97"},
                                       {parsedKeys::YEAST_TYPE, "Ale"},
                                       {parsedKeys::YEAST_FORM, "Dry"},
                                       {keys::Amount, "7"}});
  EXPECT_THAT(std::string(known.stringValue(keys::Name)), HasSubstr("BRY-97"));
  EXPECT_EQ(known.size(), 6U) << "not the library's record";
  EXPECT_EQ(shown(known, {keys::Amount, keys::YeastAmountType, keys::UsageNote}),
            "1 Commercial Pack ");
  // A form that no yeast has is no filter.
  EXPECT_EQ(yeast({{parsedKeys::YEAST_NAME, "Bry-97"}, {parsedKeys::YEAST_FORM, "Frozen"}})
                .stringValue(keys::Name),
            known.stringValue(keys::Name));
  EXPECT_THAT(*process({{keys::YeastIngredients, PlistArray()}}).array(keys::YeastIngredients),
              IsEmpty());
}

// A record counts as a hundred letters and those of its names.
TEST_F(FileImportTest, NamesHaveABoundTogether) {
  const auto yeastOf = [](std::size_t letters) {
    const PlistDictionary yeast{{parsedKeys::YEAST_NAME, std::string(letters, 'y')}};
    return PlistDictionary{{keys::YeastIngredients, PlistArray{yeast}}};
  };
  EXPECT_NO_THROW((void)process(yeastOf(199'800)));
  EXPECT_EQ(reasonOf([&] { (void)process(yeastOf(199'801)); }), "more names than any recipe has");
}

TEST_F(FileImportTest, ReadsTheRestOfARecipe) {
  const char* const rows = R"(
      TYPE=All Grain -> MashType=Full Mash | TYPE=partial mash -> MashType=Extract with Mini-mash
      TYPE=Extract -> MashType=Extract | FORCED_CARBONATION=FALSE -> Carbonation=Force Carbonated
      PRIMING_SUGAR_NAME=Honey -> Carbonation=Primed With Honey | X=1 -> Carbonation=Nothing
      X=1 -> Conditioning=Matured for 4 weeks | AGE=28 -> Conditioning=Matured for 4 weeks
      STYLENAME= No Style Chosen -> StyleUUID=
      STYLENAME=Munich Helles -> StyleUUID=5006A889-A9E2-56DC-9C1C-BF7694BECA9D
      FermentationTemperature=11.5 -> FermentationTemperature=11.5)";
  for (const auto& [given, expected] : rowsOf(rows)) {
    const std::size_t at = given.find('=');
    const std::size_t end = expected.find('=');
    EXPECT_EQ(process({{KeyName(given.substr(0, at)), given.substr(at + 1)}})
                  .stringValue(KeyName(expected.substr(0, end))),
              expected.substr(end + 1))
        << given;
  }
  EXPECT_TRUE(process({{parsedKeys::STYLENAME, " No Style Chosen"}}).string(keys::StyleUUID));
  // The 14th, the first but one digit; the 15th; the 23rd, by 4.1.
  for (const auto& [days, text] : {std::pair("101", "Matured for 2 weeks"),
                                   {"102", "Matured for 4 months"},
                                   {"161", "Matured for 6 months"}}) {
    EXPECT_EQ(process({{parsedKeys::AGE, days}}).stringValue(keys::Conditioning), text);
  }
  for (const auto& [degrees, text] :
       {std::pair("7.9", "Lagered for 4 weeks"), {"8", "Matured for 4 weeks"}}) {
    EXPECT_EQ(process({{parsedKeys::AGE, "28"}, {parsedKeys::AGE_TEMP, degrees}})
                  .stringValue(keys::Conditioning),
              text);
  }
  for (const char* age : {"soon", "nan", "1e300", "-1e300", "1e999", "-7", ""}) {
    const std::string text(process({{parsedKeys::AGE, age}}).stringValue(keys::Conditioning));
    EXPECT_THAT(text, ::testing::StartsWith("Matured for ")) << age;
  }

  const PlistDictionary step{{parsedKeys::NAME, "Rest"},
                             {parsedKeys::TYPE, "Infusion"},
                             {parsedKeys::STEP_TEMP, "66"},
                             {parsedKeys::STEP_TIME, "60.7"}};
  set(keys::TemperatureUnit, 1);
  const PlistDictionary mashed =
      process({{keys::Notes, "Nice."}, {parsedKeys::MASHSTEPS, PlistArray{step, step, step}}});
  const std::string line =
      "Title: Rest\tType: Infusion\tTemp: " +
      ZYMTemperatureValueTransformer::convertForDisplay(step.find(parsedKeys::STEP_TEMP)) +
      "\tDuration: 60 mins\n";
  EXPECT_EQ(mashed.stringValue(keys::Notes),
            "Nice.\n\nMash Schedule in imported recipe:\n\n" + line + line + line);
  EXPECT_THAT(*mashed.dictionary(keys::MashSchedule)->array(keys::Steps), IsEmpty());
  EXPECT_FALSE(mashed.contains(keys::Profile));
}

TEST_F(FileImportTest, ImportsBeerXMLAsOneUndoStep) {
  const testing::Posts posts{succeeded};
  std::string url;
  const auto token = NSNotificationCenter::defaultCenter().addObserverForName_object(
      succeeded, nullptr,
      [&](const NSNotification& n) { url = n.userInfo.stringValue(ZYMImportOperationURLKey); });
  const std::string path = file("bitter.xml", bitter);
  const auto first = import(path);
  const auto second = import(path);  // in the same turn
  endTurn();
  EXPECT_THAT(posts.names, SizeIs(2));
  EXPECT_EQ(url, path);
  EXPECT_EQ(first->failureReason(), std::nullopt);
  EXPECT_FALSE(context().hasChanges());

  const PlistDictionary a = stored(*first);
  PlistDictionary b = stored(*second);
  EXPECT_EQ(a.stringValue(keys::RecipeTitle), "Bitter");
  EXPECT_EQ(a.stringValue(keys::FinalBatchVolume), "20000.000000");
  EXPECT_NE(a.stringValue(keys::UUID), b.stringValue(keys::UUID));
  for (const KeyName key : {keys::UUID, keys::DateLastModified}) b.set(key, *a.find(key));
  EXPECT_EQ(a, b);
  std::vector<std::string_view> kinds;
  for (const ImportMatch& match : first->matches()) kinds.push_back(match.kind);
  EXPECT_THAT(kinds, ElementsAre("Style", "Fermentable", "Hop", "Yeast"));
  for (const std::size_t left : {1U, 0U}) {
    undoManager().undo();
    EXPECT_THAT(recipes().summariesForAllRecipes(), SizeIs(left));
  }
  EXPECT_FALSE(undoManager().canUndo());
}

TEST_F(FileImportTest, ImportsARecipeWithBatchesAndPicturesAsOneStepAndSave) {
  const testing::Posts posts{CoreDataModelDidSaveNotification, succeeded};
  ZYMFileImportOperation operation(file("own.wm2", ownFile()));
  operation.setPrepareRecipe([](PlistDictionary& recipe) {
    EXPECT_EQ(recipe.dictionary(keys::Profile)->stringValue(keys::UUID), "") << "it is complete";
    recipe.set(keys::ExpectedIBU, "33.000000");
  });
  operation.start();
  endTurn();
  EXPECT_THAT(posts.names, ElementsAre(CoreDataModelDidSaveNotification, succeeded));
  ASSERT_TRUE(operation.uuidOfRecipe()) << operation.failureReason().value_or("");
  EXPECT_THAT(operation.matches(), IsEmpty());
  const std::string uuid = *operation.uuidOfRecipe();
  const PlistDictionary recipe = stored(operation);
  EXPECT_EQ(recipe.stringValue(keys::ExpectedIBU), "33.000000");
  EXPECT_NE(uuid, "FROM-THE-FILE");
  EXPECT_TRUE(*recipe.date(keys::DateLastModified) > NSDate::dateWithTimeIntervalSince1970(1e9))
      << "a picture moves it";
  EXPECT_EQ(recipe.stringValue(keys::PreBoilWortVolume), "33333.0");
  EXPECT_NE(recipe.stringValue(keys::BoilDuration), "") << "what the file lacks";
  EXPECT_EQ(recipe.find(keys::Batches), nullptr);
  EXPECT_EQ(recipe.find(keys::Images), nullptr);
  const PlistDictionary& profile = *recipe.dictionary(keys::Profile);
  EXPECT_EQ(shown(profile, {keys::ProfileName, keys::PreBoilVolume}),
            "Specific to this recipe 33333.0");

  const auto sizesOf = [&](const std::string& owner) {
    std::vector<NSSize> sizes;
    for (std::size_t i = 0; i < recipes().imageUUIDsForItemWithUUID(owner).size(); ++i) {
      sizes.push_back(recipes().largeImageAtIndex_forItemWithUUID(i, owner)->size());
    }
    return sizes;
  };
  EXPECT_THAT(sizesOf(uuid), ElementsAre(NSSize{600, 200}, NSSize{5, 3})) << "the readable ones";
  EXPECT_EQ(recipes().thumbnailImageWithUUID(recipes().imageUUIDsForItemWithUUID(uuid)[0])->size(),
            (NSSize{128, 43}));
  const auto batches = recipes().batchSummariesForRecipeWithUUID(uuid);
  ASSERT_TRUE(batches && batches->size() == 1);
  const std::string batchUUID = batches->front().uuid.value();
  EXPECT_NE(batchUUID, "BATCH-IN-FILE");
  EXPECT_THAT(sizesOf(batchUUID), ElementsAre(NSSize{7, 9}));
  const auto batch = recipes().batchWithUUID(batchUUID);
  EXPECT_EQ(shown(*batch->dictionary(keys::ModifiedRecipe)->dictionary(keys::Profile),
                  {keys::PreferredSpargeMethod, keys::WaterGrainRatio, keys::MTThermalMass}),
            "Batch Sparge 3.25 700");

  EXPECT_EQ(undoManager().undoActionName(), "Import Recipe");
  undoManager().undo();
  EXPECT_THAT(recipes().summariesForAllRecipes(), IsEmpty());
  EXPECT_THAT(*ZYMRecipeBatchEntity::findAllObjects(), IsEmpty());
  EXPECT_THAT(*ZYMImageEntity::findAllObjects(), IsEmpty());
  EXPECT_FALSE(undoManager().canUndo());
}

// Whatever goes wrong after the first change; and the next import works.
TEST_F(FileImportTest, AnImportThatFailsHalfWayLeavesNothing) {
  const std::string good = file("own.wm2", ownFile());
  PlistArray many;
  for (int i = 0; i < 499; ++i) many.append(NSData("no picture"));
  const std::string most = file("most.wm2", ownFile({{keys::Images, many}}));
  many.append(picture(3, 3));  // one too many with that of the batch
  // Two of them are just more than may be decoded.
  const NSData wide(bytesOf(ZYM_FIXTURES "/black-8192-by-4097.png"));
  const PlistArray large{wide, wide};
  const struct {
    std::string path;
    const char* reason;
    std::function<void(PlistDictionary&)> prepare;
  } cases[] = {
      {file("many.wm2", ownFile({{keys::Images, many}})), "more pictures", {}},
      {file("large.wm2", ownFile({{keys::Images, large}})), "more pictures", {}},
      {good, "no host likes it", [](auto&) { throw std::runtime_error("no host likes it"); }},
      {good, "bad_alloc", [](auto&) { throw std::bad_alloc(); }},
  };
  for (const auto& c : cases) {
    const testing::Posts posts{succeeded, failed, CoreDataModelDidSaveNotification};
    ZYMFileImportOperation operation(c.path);
    operation.setPrepareRecipe(c.prepare);
    operation.start();
    endTurn();
    EXPECT_THAT(posts.names, ElementsAre(failed)) << c.path;
    EXPECT_THAT(operation.failureReason().value_or("none"), HasSubstr(c.reason));
    EXPECT_EQ(operation.uuidOfRecipe(), std::nullopt);
    EXPECT_FALSE(context().hasChanges());
    EXPECT_TRUE(fs::is_empty(model().imagesFolderPath()));
    EXPECT_FALSE(undoManager().canUndo()) << c.reason;
    EXPECT_THAT(recipes().summariesForAllRecipes(), IsEmpty());
  }
  EXPECT_TRUE(import(good)->uuidOfRecipe());
  EXPECT_TRUE(import(most)->uuidOfRecipe());
}

TEST_F(FileImportTest, KilledAtAnyMomentIsWholeOrNotAtAll) {
  const std::string own = file("own.wm2", ownFile());
  ZYMCoreDataModel::tearDown();
  for (int i = 0; i < 12; ++i) {
    const std::string data = folder / ("data" + std::to_string(i));
    fs::copy(folder / "data", data, fs::copy_options::recursive);
    Child child([&](int pipe) {
      model().setDataFolder(data);
      (void)context();
      Child::tell(pipe, 1);
      (void)import(own);
      Child::tell(pipe, 2);
      ::pause();
    });
    ASSERT_EQ(child.hear(30000), 1);
    // Somewhere from its first step to behind its last.
    (void)child.hear(8 * i);
    child.kill();
    model().setDataFolder(data);
    const auto rows = recipes().summariesForAllRecipes();
    const std::size_t images = ZYMImageEntity::findAllObjects()->size();
    EXPECT_EQ(images, rows.empty() ? 0U : 3U);
    EXPECT_EQ(ZYMRecipeBatchEntity::findAllObjects()->size(), rows.size());
    // A record whose file is missing would go now.
    for (const ZYMSummary& row : rows) (void)recipes().imageUUIDsForItemWithUUID(*row.uuid);
    for (const ZYMSummary& row : recipes().allBatchSummariesNewestFirst()) {
      (void)recipes().imageUUIDsForItemWithUUID(*row.uuid);
    }
    EXPECT_EQ(ZYMImageEntity::findAllObjects()->size(), images);
    ZYMCoreDataModel::tearDown();
  }
}

TEST_F(FileImportTest, WhatAnObserverOfTheSaveDoesTakesNothingBack) {
  const std::string own = file("own.wm2", ownFile());
  const std::function<void()> deeds[] = {[] { throw std::runtime_error("an observer"); },
                                         [] { (void)recipes().createGroup(); }};
  for (const auto& deed : deeds) {
    bool isDone = false;
    const auto token = NSNotificationCenter::defaultCenter().addObserverForName_object(
        CoreDataModelDidSaveNotification, nullptr, [&](const NSNotification&) {
          if (!std::exchange(isDone, true)) deed();
        });
    const auto operation = import(own);
    EXPECT_TRUE(isDone);
    ASSERT_TRUE(operation->uuidOfRecipe());
    EXPECT_TRUE(recipes().recipeForUUID(*operation->uuidOfRecipe()));
  }
}

TEST_F(FileImportTest, APictureThatCannotBeWrittenStoresNothing) {
  fs::remove_all(model().imagesFolderPath());
  putFile(folder / "data/Images", "in the way");
  const auto operation = import(file("own.wm2", ownFile()));
  EXPECT_EQ(operation->failureReason(), "a picture can't be written");
  EXPECT_FALSE(context().hasChanges());
  EXPECT_THAT(recipes().summariesForAllRecipes(), IsEmpty());
}

TEST_F(FileImportTest, ASaveThatFailsIsNoSuccess) {
  const std::string path = file("own.wm2", ownFile());
  // Another context saves first what is changed here as well.
  ZYMHopEntity::findAllObjects()->front()->setName("ours");
  NSManagedObjectContext other(NSPrivateQueueConcurrencyType);
  other.setPersistentStoreCoordinator(model().persistentStoreCoordinator());
  other.performBlockAndWait([&] {
    (*ZYMHopEntity::findAllObjectsInContext_predicate_sortDescriptor(&other, {}, {}))[0]->setName(
        "theirs");
    EXPECT_TRUE(other.save());
  });
  const testing::Posts posts{succeeded, failed};
  setNSLogSink([](std::string_view) {});
  const auto operation = import(path);
  setNSLogSink({});
  EXPECT_THAT(posts.names, ElementsAre(failed));
  EXPECT_EQ(operation->failureReason(), "the store can't be written");
  EXPECT_EQ(operation->uuidOfRecipe(), std::nullopt);
  EXPECT_TRUE(fs::is_empty(model().imagesFolderPath()));
  EXPECT_THAT(recipes().summariesForAllRecipes(), IsEmpty());
  endTurn();
  context().rollback();
  EXPECT_TRUE(import(path)->uuidOfRecipe());
}

TEST_F(FileImportTest, KeepsAProfileThatIsTheSameHere) {
  const PlistDictionary here = ZYMProfiles::sharedInstance().defaultProfile();
  const auto profileAfter = [&](const PlistDictionary& profile) {
    const auto operation = import(file("own.wm2", ownFile({{keys::Profile, profile}})));
    return *stored(*operation).dictionary(keys::Profile);
  };
  EXPECT_EQ(profileAfter(here).stringValue(keys::UUID), here.stringValue(keys::UUID));
  PlistDictionary other = here;
  other.set(keys::PreBoilVolume, std::to_string(here.doubleValue(keys::PreBoilVolume) + 50));
  EXPECT_EQ(profileAfter(other).stringValue(keys::UUID), "");
  PlistDictionary specific{{keys::UUID, ""}, {keys::ProfileName, "Mine"}};
  EXPECT_EQ(profileAfter(specific).stringValue(keys::ProfileName), "Mine");
}

TEST_F(FileImportTest, AFailureStoresNothing) {
  ASSERT_EQ(::mkfifo((folder / "pipe.xml").c_str(), 0600), 0);
  fs::create_directory(folder / "folder.xml");
  const std::string deep = "{\"a\":" + std::string(600, '[') + std::string(600, ']') + "}";
  const struct {
    std::string path;
    const char* reason;
  } cases[] = {
      {file("bitter.XML", bitter), "\"XML\" is no extension"},
      {file("bitter", bitter), "\"\" is no extension"},
      {file(".xml", bitter), "no extension"},
      {file("bitter.txt", bitter), "\"txt\" is no extension"},
      {folder / "gone.xml", "No such file"},
      {folder / "folder.xml", "Is a directory"},
      {folder / "pipe.xml", "Not a regular file"},
      {file("empty.xml", ""), ""},
      {file("other.xml", "<HTML/>"), "RECIPES"},
      {file("nameless.xml", "<RECIPES><RECIPE><TYPE>x</TYPE></RECIPE></RECIPES>"), "NAME"},
      {file("endless.xml",
            std::regex_replace(bitter, std::regex("Fuggle"), std::string(3'000'000, 'a'))),
       "more names"},
      {file("empty.wm2", ""), ""},
      {file("huge.wm2", ""), "File too large"},
      {file("cut.wm2", ownFile().substr(0, ownFile().size() / 2)), ""},
      {file("list.wm2", "[{}]"), "no recipe, but a list"},
      {file("number.wm2", "7"), ""},
      {file("deep.wm2", deep), ""},
      {file("a.wmr", "x"), ""},
      {file("list.wmr", "<plist><array/></plist>"), "no recipe"},
      {file("a.rec", "x"), "ends before"},
      {file("a.ing", "x"), ""},
      {file("list.ing", "[]"), "list"},
  };
  fs::resize_file(folder / "huge.wm2", (64U << 20U) + 1);
  const std::string before = storeBytes();
  for (const auto& c : cases) {
    const testing::Posts posts{succeeded, failed};
    const auto operation = import(c.path);
    endTurn();
    EXPECT_THAT(posts.names, ElementsAre(failed)) << c.path;
    EXPECT_THAT(operation->failureReason().value_or("none"), HasSubstr(c.reason)) << c.path;
    EXPECT_THAT(*operation->failureReason(), Not(HasSubstr(folder.path())));
    EXPECT_NE(operation->failureReason(), std::nullopt);
    EXPECT_EQ(operation->uuidOfRecipe(), std::nullopt);
    EXPECT_FALSE(context().hasChanges());
    EXPECT_FALSE(undoManager().canUndo());
  }
  EXPECT_EQ(import(folder / "list.wm2")->failureReason(), "no recipe, but a list");
  ZYMFileImportOperation nowhere;
  nowhere.start();
  EXPECT_NE(nowhere.failureReason(), std::nullopt);
  EXPECT_TRUE(storeBytes() == before);
}

TEST_F(FileImportTest, TakesDocumentsOfAnyShape) {
  std::string nested = "1";
  for (int i = 0; i < 505; ++i) nested = "[" + nested + "]";
  for (const std::string& text :
       {std::string("{}"),
        std::string(R"({"UUID":1,"RecipeTitle":[],"Batches":[1,{},{"ModifiedRecipe":7},
             {"ModifiedRecipe":{"Profile":[]},"DateBrewed":"x","Images":{}}],"Images":[null,{},"x"],
             "Profile":"x","HopIngredients":{},"MashSchedule":1,"DateLastModified":true})"),
        std::string(R"({"Batches":{},"Images":"//Data:","Profile":{"UUID":[]}})"),
        "{\"Notes\":" + nested + ",\"Batches\":[{\"Notes\":" + nested + "}]}"}) {
    const testing::Posts posts{succeeded, failed};
    const auto operation = import(file("any.wm2", text));
    endTurn();
    EXPECT_THAT(posts.names, SizeIs(1));
    EXPECT_EQ(operation->uuidOfRecipe().has_value(), posts.names.front() == succeeded)
        << operation->failureReason().value_or("");
    EXPECT_FALSE(context().hasChanges());
    if (operation->uuidOfRecipe()) {
      EXPECT_NO_THROW((void)stored(*operation)) << text.substr(0, 100);
    }
  }
}

TEST_F(FileImportTest, RunsOnTheMainThreadInTheOrderOfTheQueue) {
  const std::string path = file("bitter.xml", bitter);
  ZYMFileImportOperation elsewhere(path);
  bool done = false;
  std::thread thread([&] {
    elsewhere.start();
    NSRunLoop::mainRunLoop().performBlock([&] { done = true; });
  });
  EXPECT_TRUE(NSRunLoop::mainRunLoop().runUntil([&] { return done; }, 60));
  thread.join();
  EXPECT_TRUE(elsewhere.uuidOfRecipe());

  std::vector<std::shared_ptr<ZYMFileImportOperation>> operations;
  for (const std::string& name : {path, path + "gone", path}) {
    operations.push_back(std::make_shared<ZYMFileImportOperation>(name));
    NSOperationQueue::mainQueue().addOperation(operations.back());
  }
  const testing::Posts posts{succeeded, failed};
  operations.back()->cancel();
  NSOperationQueue::mainQueue().waitUntilAllOperationsAreFinished();
  EXPECT_THAT(posts.names, ElementsAre(succeeded, failed));
  EXPECT_THAT(recipes().summariesForAllRecipes(), SizeIs(2));
}

}  // namespace
}  // namespace zym
