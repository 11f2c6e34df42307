#include <algorithm>
#include <array>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "zymcore/calculations/ZYMUnitConverter.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/interchange/internal/RecipeToExport.h"
#include "zymcore/interchange/rec/RecLayout.h"
#include "zymcore/interchange/rec/ZYMRecFile.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym {
namespace {

using Units = ZYMUnitConverter;

template <class Number>
Number limited(std::int64_t number) noexcept {
  return static_cast<Number>(std::clamp<std::int64_t>(number, std::numeric_limits<Number>::min(),
                                                      std::numeric_limits<Number>::max()));
}

float narrowed(double number) noexcept {
  return static_cast<float>(number);
}

std::uint32_t fahrenheit(double celsius) noexcept {
  return limited<std::uint32_t>(integerValue(Units::convertCelciusToFahrenheit(celsius)));
}

std::vector<std::string> wordsOf(std::string_view text) {
  std::vector<std::string> result;
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t end = std::min(text.find(' ', at), text.size());
    result.emplace_back(text.substr(at, end - at));
    at = end + 1;
  }
  return result;
}

std::string joined(const std::vector<std::string>& words, std::size_t from, std::size_t end) {
  std::string result;
  for (std::size_t i = from; i < end; ++i) result += (i > from ? " " : "") + words[i];
  return result;
}

// ---- Records

std::uint8_t mashKindOf(std::string_view mashType) {
  constexpr std::uint8_t kinds[] = {0, 2, 2, 1};  // in the order of the words
  const std::int64_t position = words::positionOf(mashType, words::mashTypes);
  return position == NSNotFound ? 0 : kinds[position];
}

void writeStyle(const PlistDictionary& recipe, RecHeader& header) {
  const StyleToExport style(recipe, recipe.integerValue(keys::StyleGuidelinesSource));
  const auto points = [&](KeyName key) { return (style.record.doubleValue(key) - 1.0) * 1000.0; };
  header.style = style.name;
  header.styleCategory = style.category;
  header.isLager = style.record.stringValue(keys::Type) == words::Lager ? 1 : 0;
  header.minGravityPoints = narrowed(points(keys::MinOG));
  header.maxGravityPoints = narrowed(points(keys::MaxOG));
  header.minFinalGravityPoints = narrowed(points(keys::MinOG) * 0.25);
  header.maxFinalGravityPoints = narrowed(points(keys::MaxOG) * 0.25);
  header.minIBU = style.record.floatValue(keys::MinIBU);
  header.maxIBU = style.record.floatValue(keys::MaxIBU);
  header.minColor = style.record.floatValue(keys::MinColor);
  header.maxColor = style.record.floatValue(keys::MaxColor);
  header.styleNumber = limited<std::uint8_t>(integerValue(style.categoryNumber));
}

RecHeader headerOf(const PlistDictionary& recipe) {
  const auto gallons = [&](KeyName key) {
    return narrowed(Units::convertMillilitresToUSGallons(recipe.doubleValue(key)));
  };
  RecHeader header;
  header.title = recipe.stringValue(keys::RecipeTitle);
  header.volumeA = gallons(keys::FinalBatchVolume);
  header.volumeB = gallons(keys::FinalWortVolume);
  header.gravityPoints =
      narrowed((recipe.doubleValue(keys::ExpectedOriginalGravity) - 1.0) * 1000.0);
  header.bitterness = recipe.floatValue(keys::ExpectedIBU);
  header.efficiency = narrowed(recipe.doubleValue(keys::MashEfficiency) / 100.0);
  header.boilMinutes = limited<std::int32_t>(recipe.integerValue(keys::BoilDuration));
  header.mashKind = mashKindOf(recipe.stringValue(keys::MashType));
  writeStyle(recipe, header);
  return header;
}

std::int16_t minutesOf(const PlistDictionary& hop, std::int64_t boilMinutes) {
  const std::string_view when = hop.stringValue(keys::When);
  std::int64_t minutes = hop.integerValue(keys::Minutes);
  if (when == words::FirstWortHopped) minutes = boilMinutes + 1;
  if (when == words::InMash) minutes = boilMinutes + 2;
  if (when == words::DryHopped) minutes = -5;
  return limited<std::int16_t>(minutes);
}

RecHop hopOf(const PlistDictionary& addition, std::int32_t boilMinutes) {
  constexpr std::uint8_t whole = 3;
  constexpr std::uint8_t pellet = 35;
  constexpr std::string_view pellets[] = {words::LoosePelletHops, words::BaggedPelletHops,
                                          words::PelletizedHops};
  const std::int64_t alpha = addition.integerValue(keys::Alpha);
  RecHop hop;
  hop.variety = addition.stringValue(keys::Variety);
  hop.libraryAlpha = hop.alpha = addition.floatValue(keys::Alpha);
  hop.kind = alpha < 5 ? 2 : alpha < 9 ? 3 : 1;
  hop.form =
      words::positionOf(addition.stringValue(keys::Form), pellets) == NSNotFound ? whole : pellet;
  hop.ounces = narrowed(Units::convertGrammesToOunces(addition.doubleValue(keys::Amount)));
  hop.minutes = minutesOf(addition, boilMinutes);
  hop.ibu = addition.floatValue(keys::IBUForAddition);
  return hop;
}

// The first word is the origin, unless it is one that an import has put there.
void divideName(std::string_view ingredient, RecFermentable& fermentable) {
  std::vector<std::string> words = wordsOf(ingredient);
  if (words.size() == 1) words.emplace_back();
  if (words[0] != "Extract" && words[0] != "Sugar") {
    fermentable.origin = words[0];
  } else if (words[1] == "-") {
    words.erase(words.begin() + 1);
  }
  for (std::size_t i = 1; i < words.size(); ++i) fermentable.name += words[i] + " ";
}

std::uint8_t fermentableKindOf(const PlistDictionary& addition) {
  const std::string_view name = addition.stringValue(keys::Ingredient);
  if (containsSubstring(name, "Sugar")) return 3;
  if (containsSubstring(name, "Extract")) return 2;
  return addition.boolValue(keys::IsGrain) ? 1 : 4;
}

RecFermentable fermentableOf(const PlistDictionary& addition) {
  const double extract = addition.doubleValue(keys::Extract);
  const KeyName mashed = addition.contains(keys::MustBeMashed) ? keys::MustBeMashed : keys::IsGrain;
  RecFermentable fermentable;
  divideName(addition.stringValue(keys::Ingredient), fermentable);
  fermentable.kind = fermentableKindOf(addition);
  fermentable.mustBeMashed = addition.boolValue(mashed) ? 1 : 0;
  fermentable.gravity = narrowed(extract * 0.00046 + 1.0);
  fermentable.color = addition.floatValue(keys::Color);
  fermentable.moisture = addition.floatValue(keys::Moisture);
  fermentable.yield = narrowed(extract / 100.0);
  fermentable.pounds = narrowed(Units::convertGrammesToPounds(addition.doubleValue(keys::Amount)));
  return fermentable;
}

RecOther otherOf(const PlistDictionary& addition, const RecipeToExport& exported,
                 std::int32_t boilMinutes) {
  constexpr std::int64_t metric = 2;
  const std::string_view when = addition.stringValue(keys::When);
  const bool isInMash = when == words::InMash;
  const bool isInBoil = when == words::InBoil;
  const std::int64_t units = NSUserDefaults::standardUserDefaults().integerForKey(keys::Units);
  const bool inOunces = units >= 0 && units < metric;
  RecOther other;
  other.name = addition.stringValue(keys::Ingredient);
  other.minutes = isInMash   ? limited<std::int32_t>(exported.mashMinutes())
                  : isInBoil ? boilMinutes
                             : 0;
  other.use = isInMash ? 2 : isInBoil ? 0 : 1;
  other.isTimed = isInMash || isInBoil ? 1 : 0;
  other.unit = inOunces ? 0 : 1;
  const double grams = addition.doubleValue(keys::Amount);
  other.amount = narrowed(inOunces ? Units::convertGrammesToOunces(grams) : grams);
  return other;
}

// ---- Tail

// "Laboratory 1056 - American Ale": the last word before the dash is the number.
void divideYeastName(std::string_view fullName, RecTail& tail) {
  const std::size_t dash = std::min(fullName.find('-'), fullName.size());
  std::vector<std::string> words = wordsOf(trimWhiteSpace(fullName.substr(0, dash)));
  const std::string rest = dash < fullName.size() ? trimWhiteSpace(fullName.substr(dash + 1)) : "";
  tail.laboratory = words.front();
  if (words.size() > 1) tail.productNumber = words.back();
  tail.yeast = words.size() > 2 ? joined(words, 1, words.size() - 1) : "";
  if (!rest.empty()) tail.yeast += (tail.yeast.empty() ? "" : " ") + rest;
}

std::uint8_t flocculationOf(std::string_view description) {
  const auto tells = [&](std::string_view a, std::string_view b) {
    return containsSubstring(description, a) || containsSubstring(description, b);
  };
  if (tells("lation: Low", "lation:Low")) return 2;
  return tells("lation: High", "lation:High") ? 0 : 1;
}

void writeYeast(const PlistDictionary& recipe, RecTail& tail) {
  const PlistRows yeasts = recipe.rows(keys::YeastIngredients);
  const PlistDictionary yeast =
      yeasts.begin() == yeasts.end() ? PlistDictionary() : *yeasts.begin();
  const std::string_view name = yeast.stringValue(keys::Name);
  divideYeastName(name, tail);
  tail.yeastKind = containsSubstring(name, "LAGER") ? 1 : 0;
  tail.isLiquid = containsSubstring(name, "WYEAST") || containsSubstring(name, "WHITE") ? 1 : 0;
  tail.lowAttenuation = tail.highAttenuation =
      static_cast<std::uint32_t>(limited<std::int32_t>(recipe.integerValue(keys::Attenuation)));
  tail.fermentationFahrenheit = narrowed(
      Units::convertCelciusToFahrenheit(recipe.doubleValue(keys::FermentationTemperature)));
  tail.flocculation = flocculationOf(yeast.stringValue(keys::Description));
}

void writeWater(const RecipeToExport& exported, RecTail& tail) {
  tail.water = RecFile::ownWater;
  tail.waterIsKnownFor = "Known for";
  const std::pair<float RecTail::*, const Ion&> concentrations[] = {
      {&RecTail::calcium, ions::calcium},   {&RecTail::magnesium, ions::magnesium},
      {&RecTail::sodium, ions::sodium},     {&RecTail::sulfate, ions::sulfate},
      {&RecTail::chloride, ions::chloride}, {&RecTail::bicarbonate, ions::bicarbonate}};
  for (const auto& [member, ion] : concentrations) {
    tail.*member = narrowed(exported.concentrationOf(ion));
  }
}

/// What a type of mash step is in this format.
struct Step {
  std::string_view word;
  std::string_view name;
  std::uint8_t kind;
};
// The names of the last two are crossed, and always were.
constexpr Step steps[] = {
    {words::RestAt, "Rest", 0},
    {words::RaiseByInfusion, "Infusion", 0},
    {words::PullDecoction, "Decoction", 2},
    {words::MashOut, "Direct Heating", 1},
    {words::RaiseByDirectHeating, "Raise and Mash Out", 0},
};

std::vector<RecStep> stepsOf(const PlistDictionary& schedule) {
  std::vector<RecStep> result;
  for (const PlistDictionary& step : schedule.rows(keys::Steps)) {
    const Step* known = std::ranges::find(steps, step.stringValue(keys::StepType), &Step::word);
    if (known == std::end(steps)) continue;
    const auto minutes = limited<std::uint32_t>(step.integerValue(keys::Duration));
    result.push_back({std::string(known->name), known->kind,
                      fahrenheit(step.doubleValue(keys::Temperature)), minutes, minutes});
  }
  return result;
}

// Of one rest, and of what ends it; nothing of any other mash.
void writeSimpleMash(const PlistDictionary& schedule, RecTail& tail) {
  const PlistArray* all = schedule.array(keys::Steps);
  if (!all || all->size() > 2) return;
  RecTail simple;
  for (const PlistDictionary& step : PlistRows(all)) {
    const std::string_view type = step.stringValue(keys::StepType);
    if (type != words::RestAt && type != words::MashOut) return;
    const bool isRest = type == words::RestAt;
    (isRest ? simple.restFahrenheit : simple.mashOutFahrenheit) =
        fahrenheit(step.doubleValue(keys::Temperature));
    (isRest ? simple.restMinutes : simple.mashOutMinutes) =
        limited<std::uint32_t>(step.integerValue(keys::Duration));
  }
  for (const auto member : {&RecTail::restFahrenheit, &RecTail::restMinutes,
                            &RecTail::mashOutFahrenheit, &RecTail::mashOutMinutes}) {
    tail.*member = simple.*member;
  }
}

RecTail tailOf(const RecipeToExport& exported, const PlistDictionary& schedule) {
  const PlistDictionary& recipe = exported.recipe();
  RecTail tail;
  writeYeast(recipe, tail);
  writeWater(exported, tail);
  tail.mashpH = recipe.floatValue(keys::MashpH);
  writeSimpleMash(schedule, tail);
  tail.quartsPerPound = narrowed(exported.profile().doubleValue(keys::WaterGrainRatio) *
                                 Units::millilitresInUSQuart / Units::grammesInPound);
  tail.notes = recipe.stringValue(keys::Notes);
  tail.schedule = schedule.stringValue(keys::ScheduleName);
  return tail;
}

}  // namespace

NSData ZYMRecFile::dataForRecipe(const PlistDictionary& document) {
  const RecipeToExport exported(document);
  const PlistDictionary& recipe = exported.recipe();
  const PlistDictionary* own = recipe.dictionary(keys::MashSchedule);
  const PlistDictionary schedule = own ? *own : PlistDictionary();
  RecFile file;
  file.header = headerOf(recipe);
  for (const PlistDictionary& hop : recipe.rows(keys::HopIngredients)) {
    file.hops.push_back(hopOf(hop, file.header.boilMinutes));
  }
  for (const PlistDictionary& fermentable : recipe.rows(keys::FermentableIngredients)) {
    file.fermentables.push_back(fermentableOf(fermentable));
  }
  for (const PlistDictionary& other : recipe.rows(keys::OtherIngredients)) {
    file.others.push_back(otherOf(other, exported, file.header.boilMinutes));
  }
  file.tail = tailOf(exported, schedule);
  file.steps = stepsOf(schedule);
  return NSData(file.write());
}

NSData ZYMRecFile::dataForItem(const PlistDictionary& item) {
  return dataForRecipe(item);
}

}  // namespace zym
