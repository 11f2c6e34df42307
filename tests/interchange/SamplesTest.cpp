#include "tests/interchange/ExchangeTest.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/interchange/ParsedRecipeKeys.h"
#include "zymcore/interchange/rec/RecLayout.h"
#include "zymcore/interchange/rec/ZYMRecFile.h"

namespace zym {
namespace {

namespace fs = std::filesystem;

/// Files of other programs, which aren't part of this one: in the folder ZYM_SAMPLES, where there
/// is one.
class SamplesTest : public ExchangeTest {
 protected:
  void SetUp() override {
    const char* place = std::getenv("ZYM_SAMPLES");
    if (!place) GTEST_SKIP() << "no samples";
    for (const auto& entry : fs::recursive_directory_iterator(place)) files.push_back(entry.path());
    std::ranges::sort(files);
  }
  std::vector<std::string> files;
};

// BeerXML tells what isn't malt by its name alone.
bool isToldByNames(const PlistDictionary& recipe) {
  bool isTold = true;
  for (const PlistDictionary& each : recipe.rows(keys::FermentableIngredients)) {
    const std::string_view name = each.stringValue(keys::Ingredient);
    isTold &= each.boolValue(keys::IsGrain) || containsSubstring(name, "Extract") ||
              containsSubstring(name, "Sugar");
  }
  return isTold;
}

TEST_F(SamplesTest, TravelInEachFormatWithTheirFigures) {
  constexpr KeyName figures[] = {keys::ExpectedOriginalGravity, keys::ExpectedColor};
  for (const std::string& file : files) {
    if (!file.ends_with(".xml") && !file.ends_with(".rec")) continue;
    SCOPED_TRACE(file);
    PlistDictionary recipe = imported(file);
    ZYMBeerCalculations::recalculateBeerRecipe(recipe);
    for (const ZYMExportFileType type : {ZYMExportFileType::BeerXML, ZYMExportFileType::NativeJSON,
                                         ZYMExportFileType::NativePropertyList}) {
      if (type == ZYMExportFileType::BeerXML && !isToldByNames(recipe)) continue;
      PlistDictionary back = travelled(recipe, type);
      ZYMBeerCalculations::recalculateBeerRecipe(back);
      for (const KeyName figure : figures) {
        // BeerXML has amounts to the milligram.
        EXPECT_NEAR(back.doubleValue(figure), recipe.doubleValue(figure),
                    type == ZYMExportFileType::BeerXML ? 5e-5 : 0);
      }
    }
  }
}

// The figures are those of the report that came with the file.
TEST_F(SamplesTest, TheBinaryRecipeReadsAsItsReportSays) {
  const auto sample = std::ranges::find_if(
      files, [](const std::string& file) { return file.ends_with("PumpkinAle.rec"); });
  ASSERT_NE(sample, files.end());
  const std::string bytes = bytesOf(*sample);
  const std::optional<RecFile> file = RecFile::read(bytes);
  ASSERT_TRUE(file);
  EXPECT_EQ(file->header.styleCategory, "American Amber Ale");
  EXPECT_NEAR(file->header.gravityPoints, 54, 0.5);
  EXPECT_NEAR(file->header.bitterness, 28.5, 0.2);
  const PlistDictionary recipe = *ZYMRecFile::parseFileData(NSData(bytes));
  EXPECT_EQ(recipe.stringValue(keys::RecipeTitle), "Pumpkin Ale");
  EXPECT_EQ(recipe.stringValue(parsedKeys::STYLENAME), "American Pale Ales");
  EXPECT_NEAR(recipe.doubleValue(keys::FinalBatchVolume), 5.5 * 3785.41, 0.01);
  EXPECT_EQ(recipe.doubleValue(keys::MashEfficiency), 75);
  EXPECT_EQ(recipe.doubleValue(keys::BoilDuration), 60);
  const std::tuple<const char*, const char*, double, double, double> malts[] = {
      {"Munich Malt", "Germany", 5, 37, 8},
      {"Wheat Malt", "America", 1, 38, 2},
      {"Victory Malt", "America", 1, 34, 25},
      {"Vienna Malt", "America", 4, 35, 4}};
  ASSERT_EQ(count(recipe, parsedKeys::FERMENTABLES), 4U);
  for (std::size_t i = 0; i < 4; ++i) {
    const auto& [name, origin, pounds, points, color] = malts[i];
    const PlistDictionary& malt = *recipe.array(parsedKeys::FERMENTABLES)->find(i)->dictionary();
    EXPECT_EQ(malt.stringValue(parsedKeys::NAME), name);
    EXPECT_EQ(malt.stringValue(parsedKeys::ORIGIN), origin);
    EXPECT_NEAR(malt.doubleValue(parsedKeys::AMOUNT), pounds * 453.59, 0.01);
    EXPECT_NEAR(malt.doubleValue(parsedKeys::YIELD), points / 0.46, 0.01);
    EXPECT_EQ(malt.doubleValue(parsedKeys::COLOR), color);
  }
  const PlistDictionary& hop = *recipe.rows(parsedKeys::HOPS).begin();
  EXPECT_EQ(hop.stringValue(parsedKeys::NAME), "Mt. Hood");
  EXPECT_EQ(hop.stringValue(parsedKeys::FORM), "Pellet");
  EXPECT_NEAR(hop.doubleValue(parsedKeys::AMOUNT), 28.35, 0.001);
  EXPECT_EQ(hop.doubleValue(parsedKeys::ALPHA), 6.5);
  EXPECT_EQ(hop.doubleValue(parsedKeys::TIME), 60);

  EXPECT_EQ(RecFile::read(file->write()), file) << "every field of the layout";
  EXPECT_EQ(file->write().size(), bytes.size());
}

}  // namespace
}  // namespace zym
