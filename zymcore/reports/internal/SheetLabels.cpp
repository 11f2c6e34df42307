#include "zymcore/reports/internal/SheetLabels.h"

#include <string>
#include <vector>

#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym::pages {
namespace {

// Under their own words, without blanks and hyphens, and "Text".
constexpr std::string_view labelsWithColon[] = {
    "Minimum OG",
    "Maximum OG",
    "Minimum FG",
    "Maximum FG",
    "Minimum IBU",
    "Maximum IBU",
    "Minimum Color",
    "Maximum Color",
    "Wort Volume Before Boil",
    "Target Wort Volume Before Boil",
    "Actual Wort Volume Before Boil",
    "Wort Volume After Boil",
    "Target Wort Volume After Boil",
    "Actual Wort Volume After Boil",
    "Volume Transferred",
    "Target Volume Transferred",
    "Actual Volume Transferred",
    "Water Added To Fermenter",
    "Volume At Pitching",
    "Target Volume At Pitching",
    "Actual Volume At Pitching",
    "Volume Of Finished Beer",
    "Target Volume Of Finished Beer",
    "Actual Volume Of Finished Beer",
    "Expected Pre-Boil Gravity",
    "Target Pre-Boil Gravity",
    "Actual Pre-Boil Gravity",
    "Expected OG",
    "Target OG",
    "Actual OG",
    "Expected FG",
    "Target FG",
    "Actual FG",
    "Apparent Attenuation",
    "Target Apparent Attenuation",
    "Actual Apparent Attenuation",
    "Expected ABV",
    "Target ABV",
    "Actual ABV",
    "Expected ABW",
    "Target ABW",
    "Actual ABW",
    "Expected IBU",
    "Target IBU",
    "Actual IBU",
    "Expected Color",
    "Target Color",
    "Actual Color",
    "Mash Efficiency",
    "Target Mash Efficiency",
    "Actual Mash Efficiency",
    "Boil Duration",
    "Fermentation Temperature",
    "Target Profile",
};
constexpr std::string_view labelsWithoutColon[] = {
    "Fermentables",
    "Ingredient",
    "Amount",
    "When",
    "Hops",
    "Variety",
    "Alpha",
    "Form",
    "Other Ingredients",
    "Yeasts",
    "Yeast Strain",
    "Water Profile",
    "Mash Schedule",
    "Mash Type",
    "Schedule Name",
    "Step Type",
    "Temperature",
    "Duration",
    "Step",
    "Recipe Notes",
    "General Notes",
    "Mash Notes",
    "Boil Notes",
    "Fermentation Notes",
    "Packaging Notes",
    "Tasting Notes",
    "Dates",
    "Date Brewed",
    "Date Racked",
    "Date Packaged",
    "Date Ready",
};

// Under a key of their own.
struct NamedLabel {
  std::string_view text;
  KeyName key;
  bool hasColon;
};
constexpr NamedLabel namedLabels[] = {
    {"BU:GU ratio", KeyName("BUGURatioText"), true},
    {"Approx Color", KeyName("ApproxColorText"), true},
    {"Target Fermentation Temp", KeyName("TargetFermentationTemperatureText"), true},
    {"Actual Fermentation Temp", KeyName("ActualFermentationTemperatureText"), true},
    {"pH Adjusted with", KeyName("PhAdjustedWithText"), true},
    {"Total Calcium (ppm)", KeyName("TotalCalciumText"), true},
    {"Total Magnesium (ppm)", KeyName("TotalMagnesiumText"), true},
    {"Total Sodium (ppm)", KeyName("TotalSodiumText"), true},
    {"Total Sulfate (ppm)", KeyName("TotalSulfateText"), true},
    {"Total Chloride (ppm)", KeyName("TotalChlorideText"), true},
    {"Total Bicarbonate (ppm)", KeyName("TotalBicarbonateText"), true},
    {"Selected Style and Target Specs", KeyName("SelectedStyleAndTargetSpecs"), false},
    {"Recipe Overview", KeyName("RecipeOverviewText"), false},
    {"using", KeyName("UsingText"), false},
    {"Mash pH", KeyName("MashPhText"), false},
    {"Used", KeyName("YeastUsageText"), false},
    {"for", KeyName("ForText"), false},
    {"minutes", KeyName("MinutesText"), false},
};

std::string keyOf(std::string_view text) {
  std::string key(text);
  std::erase_if(key, [](char c) { return c == ' ' || c == '-'; });
  return key + "Text";
}

void add(PlistDictionary& values, std::string_view text, KeyName key, bool hasColon) {
  std::string label = Localized_String(text);
  values.set(key, hasColon ? stringByAppendingColon(label) : label);
}

}  // namespace

void addSheetLabels(PlistDictionary& values) {
  for (const std::string_view text : labelsWithColon) {
    add(values, text, KeyName(keyOf(text)), true);
  }
  for (const std::string_view text : labelsWithoutColon) {
    add(values, text, KeyName(keyOf(text)), false);
  }
  for (const NamedLabel& label : namedLabels) {
    add(values, label.text, label.key, label.hasColon);
  }
}

}  // namespace zym::pages
