#include <sys/stat.h>

#include "tests/app/Program.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/SafeJSON.h"

namespace zym {
namespace {

using test::example;
using test::run;

PlistValue tree(const std::string& json) {
  const auto value = safeJSONObjectWithData_options(json, 0);
  EXPECT_TRUE(value) << json.substr(0, 200);
  return value.value_or(PlistValue(PlistArray()));
}

PlistDictionary dictionary(const std::string& json) {
  const PlistValue value = tree(json);
  return value.dictionary() ? *value.dictionary() : PlistDictionary();
}

std::size_t itemsIn(const std::string& json) {
  const PlistValue value = tree(json);
  return value.array() ? value.array()->size() : 0;
}

std::size_t sheetsIn(const std::string& out) {
  std::size_t count = 0;
  std::istringstream lines(out);
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line.find_first_not_of('=') == std::string::npos) ++count;
  }
  return count;
}

/// The text with one blank for many.
std::string squeezed(const std::string& text) {
  std::string result;
  std::ranges::unique_copy(text, std::back_inserter(result),
                           [](char a, char b) { return a == ' ' && b == ' '; });
  return result;
}

TEST(Calc, PrintsASheetInTheUsersUnits) {
  const struct {
    std::vector<std::string> defaults;
    std::vector<const char*> lines;
  } cases[] = {
      {{},
       {"Dry Stout\n=========\n", "Original gravity 1.039 SG\n", " 44.3 IBU Tinseth\n",
        " 35.9 SRM Morey\n", "After the boil 18.93 l\n",
        " Roasted Barley 454 g 12.5 % 9.4 % 96.9 % 500.0 ˚L"}},
      {{"Units=US", "HopUnits=US", "GravityUnits=Plato"},
       {"Original gravity 9.8 P\n", "After the boil 5.00 US gals\n", "2.25 oz"}},
      {{"Locale=de_DE", "ColorUnit=EBC"},
       {"Stammwürze 1,039 SG\n", "70,7 EBC", "In der Maische/eingeweicht"}},
      {{"HopFormula=rager", "BeerColorFormula=2"}, {" Rager\n", " 35.7 SRM Mosher\n"}},
      {{"MashHopAdjustment=0", "Boiling Point=90"}, {" 34.0 IBU"}},
  };
  for (const auto& one : cases) {
    std::vector<std::string> arguments{"calc", example("dry-stout")};
    for (const std::string& assignment : one.defaults) {
      arguments.insert(arguments.end(), {"--default", assignment});
    }
    const test::Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    for (const char* line : one.lines) EXPECT_THAT(squeezed(outcome.out), HasSubstr(line));
    EXPECT_THAT(outcome.out, Not(HasSubstr("\033")));
  }
}

TEST(Calc, AlignsNumbersAndUnitsByTheirWidthOnTheScreen) {
  const char* document = R"({"RecipeTitle": "x", "YeastIngredients": [
      {"Name": "Kölsch", "Amount": "12", "Attenuation": "7"},
      {"Name": "酵母", "Amount": "1", "Attenuation": "75"}]})";
  EXPECT_THAT(run({"calc", "-"}, document).out, HasSubstr("Yeast\n"
                                                          "            Amount  Attenuation\n"
                                                          "  Kölsch  12 packs        7.0 %\n"
                                                          "  酵母     1 pack        75.0 %\n"));
}

TEST(Calc, PutsTheOutcomeOfABatchBesideThePrediction) {
  const std::string out = squeezed(run({"calc", example("dry-stout-batch")}).out);
  for (const char* line : {"Batch 1 of Dry Stout\n====", "Brewed Mar 15, 2015\n",
                           "Original gravity 1.039 SG 1.041 SG\n",
                           "Mash efficiency 72.0 % 73.8 %\n", "Finished beer 18.93 l 17.20 l\n"}) {
    EXPECT_THAT(out, HasSubstr(line));
  }
}

TEST(Calc, PrintsTheDocumentAsJSONAndNothingElse) {
  const std::string stout = example("dry-stout");
  const test::Outcome one = run({"calc", "--json", stout});
  const PlistDictionary document = dictionary(one.out);
  const PlistDictionary original = dictionary(bytesOf(stout));
  EXPECT_NE(document.stringValue(keys::ExpectedIBU), original.stringValue(keys::ExpectedIBU));
  EXPECT_NE(document.date(keys::DateLastModified), nullptr);
  for (const PlistEntry& entry : original) {
    EXPECT_TRUE(document.contains(entry.key)) << entry.key.text();
  }

  EXPECT_EQ(run({"calc", "--json", "-"}, bytesOf(stout)).out, one.out);
  EXPECT_EQ(itemsIn(run({"calc", stout, example("tripel"), "--json"}).out), 2U);
  EXPECT_EQ(run({"calc", "--json", "-"}, one.out).out, one.out);
}

TEST(Calc, ReportsABadFileAndPrintsTheOthers) {
  const std::vector<std::string> files{example("tripel"), "no-such-file", example("weissbier")};
  std::vector<std::string> arguments{"calc"};
  arguments.insert(arguments.end(), files.begin(), files.end());
  test::Outcome outcome = run(arguments);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(sheetsIn(outcome.out), 2U);
  EXPECT_THAT(outcome.err, HasSubstr("zym: no-such-file: "));

  arguments.push_back("--json");
  outcome = run(arguments);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(itemsIn(outcome.out), 2U);
}

TEST(Calc, TellsBadUsageFromBadInput) {
  const std::string stout = example("dry-stout");
  const std::vector<std::string> wrong[] = {
      {},
      {"brew"},
      {"calc"},
      {"calc", "--xml", stout},
      {"calc", stout, "--default", "Units"},
      {"calc", stout, "--default", "Unit=US"},
      {"calc", stout, "--default", "Units=nautical"},
      {"calc", stout, "--default", "MashHopAdjustment=inf"},
      {"units", "volume"},
      {"units", "area", "5"},
  };
  for (const std::vector<std::string>& arguments : wrong) {
    const test::Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exitCode, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, testing::StartsWith("zym: "));
  }
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"--help"}, {"calc", "--help"}, {"units", "--help"}}) {
    const test::Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, HasSubstr("Usage: zym"));
  }
}

TEST(Calc, RefusesWhatIsNoDocument) {
  const TemporaryFolder folder;
  const std::string fifo = folder / "fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const std::string huge = folder.file("huge", "[");
  std::filesystem::resize_file(huge, 200U << 20U);
  std::string nested;
  for (int i = 0; i < 1'000'000; ++i) nested += R"({"a":)";
  const struct {
    std::string file;
    const char* reason;
  } cases[] = {
      {folder.path(), ""},
      {fifo, ""},
      {huge, "larger than"},
      {folder.file("empty", ""), "empty"},
      {folder.file("blank", " \n"), "JSON"},
      {folder.file("cut", R"({"RecipeTitle": "Pale)"), "JSON"},
      {folder.file("brackets", std::string(30U << 20U, '[')), "JSON"},
      {folder.file("nested", nested), "JSON"},
      {folder.file("latin1", "{\"RecipeTitle\": \"K\xF6lsch\"}"), "JSON"},
      {folder.file("binary", std::string_view("\x00\x01\xFF\xFE", 4)), "JSON"},
      {folder.file("number", "5"), "JSON"},
      {folder.file("numbers", "[1, 2]"), "neither a recipe nor a batch"},
      {folder.file("none", "[]"), "no recipe"},
      {folder.file("other", R"({"name": "Kölsch"})"), "neither a recipe nor a batch"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.file);
    const test::Outcome outcome = run({"calc", one.file});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, testing::StartsWith("zym: " + one.file + ": "));
    EXPECT_THAT(outcome.err, HasSubstr(one.reason));
    EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1);
    EXPECT_LT(outcome.err.size(), 400U);
  }
}

TEST(Calc, ReadsWhatIsMissingAsZero) {
  const struct {
    const char* document;
    const char* line;
  } cases[] = {
      {R"({"RecipeTitle": "Bare"})", "Bare\n====\n"},
      {R"({"RecipeTitle": "Red\u001b[31m\nBeer"})", "Red [31m Beer\n"},
      {R"({"FermentableIngredients": [1, 2], "HopIngredients": {"Amount": "5"}})", "0.0 IBU"},
      {R"({"FinalWortVolume": {"a": 1}, "ExpectedOriginalGravity": [1]})",
       "Original gravity 0.000 SG"},
      {R"({"RecipeTitle": "First", "RecipeTitle": "Second"})", "Second\n"},
      {R"({"Actuals": 5, "ModifiedRecipe": "none", "BatchTitle": 7})", "0.0 IBU"},
      {R"({"Actuals": {}})", "Mash efficiency 0.0 % –\n"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.document);
    const test::Outcome outcome = run({"calc", "-"}, one.document);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_THAT(squeezed(outcome.out), HasSubstr(one.line));
    EXPECT_EQ(run({"calc", "--json", "-"}, one.document).exitCode, 0);
  }
}

/// Copies of the document in which each value in turn is of another kind.
void addSpoiled(const PlistDictionary& document, PlistArray& all,
                const std::function<PlistValue(PlistDictionary)>& embed) {
  const PlistValue others[] = {5,
                               1e300,
                               true,
                               "nan",
                               "1e999 x",
                               NSDate(),
                               NSData(),
                               PlistArray{7},
                               PlistArray{PlistArray{}, "x"},
                               PlistDictionary{{keys::Amount, 7}}};
  for (const PlistEntry& entry : document) {
    for (const PlistValue& other : others) {
      PlistDictionary spoiled = document;
      spoiled.set(entry.key, other);
      all.append(embed(std::move(spoiled)));
    }
  }
}

TEST(Calc, StandsAnyValueInAnyPlace) {
  const PlistDictionary recipe = dictionary(bytesOf(example("american-pale-ale")));
  const PlistDictionary batch = dictionary(bytesOf(example("dry-stout-batch")));
  const auto inArray = [&recipe](KeyName key) {
    return [&recipe, key](PlistDictionary row) {
      PlistDictionary copy = recipe;
      copy.set(key, PlistArray{std::move(row)});
      return PlistValue(copy);
    };
  };
  PlistArray documents;
  addSpoiled(recipe, documents, [](PlistDictionary spoiled) { return PlistValue(spoiled); });
  for (const KeyName key : {keys::FermentableIngredients, keys::HopIngredients,
                            keys::OtherIngredients, keys::YeastIngredients}) {
    addSpoiled(*recipe.rows(key).begin(), documents, inArray(key));
  }
  addSpoiled(batch, documents, [](PlistDictionary spoiled) { return PlistValue(spoiled); });
  addSpoiled(*batch.dictionary(keys::Actuals), documents, [&batch](PlistDictionary actuals) {
    PlistDictionary copy = batch;
    copy.set(keys::Actuals, std::move(actuals));
    return PlistValue(copy);
  });
  const std::size_t count = documents.size();

  const auto json = safeDataWithJSONObject_options(documents, 0);
  ASSERT_TRUE(json);
  const test::Outcome sheets = run({"calc", "-"}, *json);
  EXPECT_EQ(sheets.exitCode, 0) << sheets.err.substr(0, 400);
  EXPECT_EQ(sheetsIn(sheets.out), count);
  const test::Outcome printed = run({"calc", "--json", "-"}, *json);
  EXPECT_EQ(printed.exitCode, 0) << printed.err.substr(0, 400);
  EXPECT_EQ(itemsIn(printed.out), count);
}

}  // namespace
}  // namespace zym
