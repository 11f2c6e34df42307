#include "tests/reports/Pages.h"
#include "zymcore/transformers/ZYMDateValueTransformer.h"

namespace zym {
namespace {

using testing::WithPages;
using StockPages = WithPages;

TEST_F(StockPages, ListItemsWithTheirLots) {
  putTemplate("Inventory Template", listing({"InventoryHeading", "IntroText", "Stock", "haveAll"}) +
                                        marker("ZoomFactor"));
  const PlistValue day = NSDate::dateWithTimeIntervalSinceReferenceDate(0);
  const auto page = [&](std::string_view type, std::string_view amount, const char* form) {
    PlistDictionary lot = R"({"AmountInStock": "1", "BatchName": "L<1>", "Alpha": "4.5"})"_json;
    lot.set(keys::AmountInStock, amount);
    lot.set(keys::DeliveredOn, day);
    if (form) lot.set(keys::Form, form);
    return ZYMHTML::renderToHTMLInventoryItems_ofIngredientType(
        {PlistDictionary{{keys::Ingredient, "A & B"},
                         {keys::AmountInStock, amount},
                         {keys::Batches, PlistArray{lot}}},
         "odd", PlistDictionary{{keys::Ingredient, "C"}}},
        type);
  };
  const auto expected = [](const std::string& item, const std::string& lot,
                           const std::string& none) {
    return "Stock: <ul>\n<li>" + item + " of A &amp; B<br>&nbsp;&nbsp;&nbsp;&nbsp;" + lot +
           "<br></li>&nbsp;<br>\n<li>" + none +
           " of C<br></li>&nbsp;<br>\n</ul>\n\nhaveAll: You have";
  };
  const std::string added = " of \"L&lt;1&gt;\" added Jan 1, 2001";
  EXPECT_THAT(page("Fermentable", "2500", nullptr),
              HasSubstr(expected("2.500 kg", "2.500 kg" + added, "0.00 g")));
  EXPECT_THAT(page("Other", "25", nullptr), HasSubstr(expected("25 g", "25 g" + added, "0.00 g")));
  EXPECT_THAT(page("Yeast", "1", nullptr),
              HasSubstr(expected("1 pack", "1 pack" + added, "0 packs")));
  for (const auto& [form, shown] : {std::pair<const char*, const char*>{nullptr, "Whole"},
                                    {"Pellets", "Pellets"},
                                    {"Plug", "Whole"}}) {
    EXPECT_THAT(
        page("Hop", "25", form),
        HasSubstr(expected(
            "25 g", "25 g of \"L&lt;1&gt;\" (" + std::string(shown) + ", 4.5 %) added Jan 1, 2001",
            "0.00 g")));
  }
  const PlistValue today = NSDate::date();
  const std::string date = ZYMDateValueTransformer::convertForDisplay(&today);
  EXPECT_THAT(page("Hop", "1", nullptr),
              HasSubstr("InventoryHeading: Inventory - Hops as of " + date + "\n"));
  const PlistArray items{R"({"Ingredient": "X", "AmountInStock": "1"})"_json};
  const std::pair<void (*)(const PlistArray&, PlistDictionary&), std::string> processes[] = {
      {ZYMHTML::processFermentableInventoryItems_intoTemplateValues, "Fermentables"},
      {ZYMHTML::processHopInventoryItems_intoTemplateValues, "Hops"},
      {ZYMHTML::processOtherIngredientInventoryItems_intoTemplateValues, "Other Ingredients"},
      {ZYMHTML::processYeastInventoryItems_intoTemplateValues, "Yeasts"}};
  for (const auto& [process, name] : processes) {
    PlistDictionary values;
    process(items, values);
    EXPECT_EQ(values.stringValue(keys::InventoryHeading), "Inventory - " + name + " as of " + date);
    EXPECT_EQ(values.stringValue(keys::Stock).find("1 pack") != std::string::npos,
              name == "Yeasts");
  }
  EXPECT_THAT(page("Beer", "1", nullptr), ::testing::EndsWith("0.75"));
  EXPECT_THAT(page("Beer", "1", nullptr), HasSubstr("InventoryHeading: \nIntroText: You currently "
                                                    "have the following:\nStock: \n"));
  set(keys::HopUnits, 0);
  EXPECT_THAT(page("Hop", "28.35", nullptr), HasSubstr("1.00 oz of A"));
  EXPECT_THAT(page("Fermentable", "28.35", nullptr), HasSubstr("28 g of A"));
}

TEST_F(StockPages, GroupWhatCanBeBrewed) {
  putTemplate(
      "SuggestABeer Template",
      listing({"brewToday", "needOne", "needTwo", "needThree", "readyToGo", "haveAll", "oneNeeded",
               "shortOfOne", "twoNeeded", "shortOfTwo", "threeNeeded", "shortOfThree"}));
  const PlistDictionary groups = R"({"brewToday": [{"RecipeTitle": "A<br>", "Ingredient": []}],
    "needThree": [{"RecipeTitle": "B", "Ingredient": [
      {"IngredientType": "Yeast", "Ingredient": "Y", "Amount": "1.9"},
      {"IngredientType": "Hop", "Ingredient": "H & I", "Amount": "28.35"},
      {"IngredientType": "Other", "Ingredient": "O", "Amount": "28.35"}]}], "needOne": []})"_json;
  set(keys::HopUnits, 0);
  EXPECT_EQ(
      ZYMHTML::renderToHTMLSuggestABeer(groups),
      "brewToday: <ul>\n<li>A&lt;br&gt;</li>\n</ul>\n\n"
      "needOne: <ul><li>No Recipes</li></ul>\n\nneedTwo: <ul><li>No Recipes</li></ul>\n\n"
      "needThree: <ul>\n<li>B\n<ul>\n<li>You require 1 pack of Y</li>\n<li>You require 1.00 oz "
      "of H &amp; I</li>\n<li>You require 28 g of O</li>\n</ul>\n</li>\n</ul>\n\n"
      "readyToGo: Ready to Go\n"
      "haveAll: You have all the ingredients you need to brew these beers.\n"
      "oneNeeded: One Ingredient Needed\n"
      "shortOfOne: You're short of one ingredient each of these beers requires.\n"
      "twoNeeded: Two Ingredients Needed\n"
      "shortOfTwo: You're short of two ingredients each of these beers requires.\n"
      "threeNeeded: Three Ingredients Needed\n"
      "shortOfThree: You're short of three ingredients each of these beers requires.\n");
  EXPECT_EQ(ZYMHTML::renderToHTMLInventoryItems_ofIngredientType({}, "Hop"), "");
}

}  // namespace
}  // namespace zym
