#include "zymcore/interchange/rec/ZYMRecFile.h"

#include <iterator>
#include <span>
#include <string>
#include <string_view>

#include "zymcore/calculations/ZYMUnitConverter.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/interchange/ParsedRecipeKeys.h"
#include "zymcore/interchange/rec/RecLayout.h"
#include "zymcore/platform/values/NSCocoaErrors.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {
namespace {

using Units = ZYMUnitConverter;

// ---- Words by their codes; a code past the end leaves the key out.

constexpr std::string_view mashKinds[] = {words::FullMash, "Partial Mash", words::Extract};
constexpr std::string_view fermentableKinds[] = {"", "Grain", "Extract", "Sugar", "Adjunct"};
constexpr std::string_view otherUses[] = {"Boil", "Primary", "Mash"};
constexpr std::string_view stepKinds[] = {"Infusion", "Direct Heat", "Decoction"};
constexpr std::string_view rest = "Rest";

void setWord(PlistDictionary& record, KeyName key, std::uint8_t code,
             std::span<const std::string_view> words) {
  if (code < words.size() && !words[code].empty()) record.set(key, words[code]);
}

std::string_view hopForm(std::uint8_t code) {
  const auto form = static_cast<std::int8_t>(code);
  if (form <= 9) return "Whole Hop";
  return form == 10 || form == 20 ? "" : "Pellet";
}

std::string_view hopUse(std::int64_t minutes, std::int64_t boilMinutes) {
  std::string_view use = "Boil";
  if (minutes == 0) use = "Aroma";
  if (minutes == -5) use = "Dry Hop";
  if (minutes == boilMinutes + 1) use = "First Wort";
  if (minutes == boilMinutes + 2) use = "Mash";
  return use;
}

double gramsOfOther(const RecOther& other) {
  const double amount = double{other.amount};
  switch (other.unit) {
    case 0:
      return Units::convertOuncesToGrammes(amount);
    case 2:
      return Units::convertPoundsToGrammes(amount);
    case 3:  // teaspoons
      return amount * 5.0;
    case 4:  // tablespoons
      return amount * 20.0;
    default:
      return amount;
  }
}

// ---- Records

void readVolumes(const RecHeader& header, PlistDictionary& recipe) {
  const auto millilitres = [](float gallons) {
    return static_cast<float>(Units::convertUSGallonsToMillilitres(double{gallons}));
  };
  const float a = millilitres(header.volumeA);
  const float b = millilitres(header.volumeB);
  const float wort = a > b ? b : a;
  recipe.setNumber(keys::FinalBatchVolume, double{b});
  recipe.setNumber(keys::VolumeAtPitching, double{b});
  recipe.setNumber(keys::PreBoilWortVolume, double{a});
  recipe.setNumber(keys::FinalWortVolume, double{wort});
  recipe.setNumber(keys::VolumeToFermenter, double{wort});
  recipe.setNumber(keys::VolumeWaterAdded, a > b ? 0.0 : double{b - a});
}

PlistDictionary parsed(const RecHop& hop, std::int64_t boilMinutes) {
  PlistDictionary record{{parsedKeys::NAME, hop.variety},
                         {parsedKeys::ALPHA, stringWithFormatF(double{hop.alpha})}};
  record.setNumber(parsedKeys::AMOUNT, Units::convertOuncesToGrammes(double{hop.ounces}));
  record.setNumber(parsedKeys::TIME, hop.minutes);
  record.set(parsedKeys::USE, hopUse(hop.minutes, boilMinutes));
  const std::string_view form = hopForm(hop.form);
  if (!form.empty()) record.set(parsedKeys::FORM, form);
  return record;
}

PlistDictionary parsed(const RecFermentable& fermentable) {
  PlistDictionary record{{parsedKeys::NAME, fermentable.name},
                         {parsedKeys::ORIGIN, fermentable.origin}};
  setWord(record, parsedKeys::TYPE, fermentable.kind, fermentableKinds);
  record.setNumber(parsedKeys::YIELD, (double{fermentable.gravity} - 1.0) / 0.00046);
  record.setNumber(parsedKeys::COLOR, double{fermentable.color});
  record.setNumber(parsedKeys::MOISTURE,
                   fermentable.moisture <= 10.0F ? double{fermentable.moisture} : 4.0);
  record.setNumber(parsedKeys::AMOUNT, Units::convertPoundsToGrammes(double{fermentable.pounds}));
  return record;
}

PlistDictionary parsed(const RecOther& other) {
  PlistDictionary record{{parsedKeys::NAME, other.name}};
  setWord(record, parsedKeys::USE, other.use, otherUses);
  record.setNumber(parsedKeys::AMOUNT, gramsOfOther(other));
  return record;
}

void readYeast(const RecTail& tail, PlistDictionary& recipe) {
  const std::string_view type = tail.yeastKind == 0   ? words::Ale
                                : tail.yeastKind == 1 ? words::Lager
                                                      : words::Other;
  PlistDictionary yeast{
      {parsedKeys::YEAST_NAME, tail.laboratory + " " + tail.productNumber + "-" + tail.yeast},
      {parsedKeys::YEAST_TYPE, type},
      // The same byte: what is no ale is taken for liquid.
      {parsedKeys::YEAST_FORM, tail.yeastKind == 0 ? words::Dry : words::Liquid}};
  recipe.set(keys::YeastIngredients, PlistArray{std::move(yeast)});
  const std::uint32_t sum = tail.lowAttenuation + tail.highAttenuation;
  recipe.setNumber(keys::Attenuation, double{static_cast<float>(sum * 0.5)});
}

void readWater(const RecTail& tail, PlistDictionary& recipe) {
  recipe.setNumber(parsedKeys::CALCIUM, double{tail.calcium});
  recipe.setNumber(parsedKeys::MAGNESIUM, double{tail.magnesium});
  recipe.setNumber(parsedKeys::SODIUM, double{tail.sodium});
  recipe.setNumber(parsedKeys::SULFATE, double{tail.sulfate});
  recipe.setNumber(parsedKeys::CHLORIDE, double{tail.chloride});
  recipe.setNumber(parsedKeys::BICARBONATE, double{tail.bicarbonate});
}

PlistDictionary step(std::string_view name, std::string_view type, std::uint32_t fahrenheit,
                     std::uint32_t minutes) {
  const std::int64_t celsius = integerValue(Units::convertFahrenheitToCelcius(fahrenheit));
  PlistDictionary record{
      {parsedKeys::NAME, name},
      {parsedKeys::STEP_TEMP, std::to_string(celsius)},
      // Signed in the notes, whatever they are in the file.
      {parsedKeys::STEP_TIME, std::to_string(static_cast<std::int32_t>(minutes))}};
  if (!type.empty()) record.set(parsedKeys::TYPE, type);
  return record;
}

PlistArray stepsOf(const RecFile& file) {
  PlistArray steps;
  const RecTail& tail = file.tail;
  if (file.steps.empty()) {
    steps.append(step("Saccharification Rest", rest, tail.restFahrenheit, tail.restMinutes));
    if (tail.restFahrenheit <= tail.mashOutFahrenheit) {
      steps.append(step("Mash Out", rest, tail.mashOutFahrenheit, tail.mashOutMinutes));
    }
  }
  for (const RecStep& each : file.steps) {
    const std::string_view kind =
        each.kind < std::size(stepKinds) ? stepKinds[each.kind] : std::string_view();
    steps.append(step(each.name, kind, each.fahrenheit, each.stepMinutes));
    steps.append(step(each.name, rest, each.fahrenheit, each.restMinutes));
  }
  return steps;
}

template <class Record, class... More>
PlistArray parsedAll(const std::vector<Record>& records, const More&... more) {
  std::vector<PlistValue> result;
  result.reserve(records.size());
  for (const Record& record : records) result.emplace_back(parsed(record, more...));
  return PlistArray(std::move(result));
}

}  // namespace

std::optional<PlistDictionary> ZYMRecFile::parseFileData(const NSData& data, NSError* error) {
  const std::optional<RecFile> file = RecFile::read(data.view());
  if (!file) {
    fail(error, NSCocoaErrorDomain, NSFileReadCorruptFileError,
         "the file ends before what it says it holds");
    return std::nullopt;
  }
  const RecHeader& header = file->header;
  PlistDictionary recipe{{keys::RecipeTitle, header.title},
                         {keys::BoilDuration, std::to_string(header.boilMinutes)},
                         {parsedKeys::STYLENAME, header.style},
                         {keys::Notes, file->tail.notes}};
  recipe.setNumber(keys::MashEfficiency, double{header.efficiency * 100.0F});
  recipe.setNumber(keys::FermentationTemperature, double{header.fermentationTemperature});
  setWord(recipe, parsedKeys::TYPE, header.mashKind, mashKinds);
  readVolumes(header, recipe);
  recipe.set(parsedKeys::HOPS, parsedAll(file->hops, std::int64_t{header.boilMinutes}));
  recipe.set(parsedKeys::FERMENTABLES, parsedAll(file->fermentables));
  recipe.set(parsedKeys::MISCS, parsedAll(file->others));
  readYeast(file->tail, recipe);
  readWater(file->tail, recipe);
  recipe.set(parsedKeys::MASHSTEPS, stepsOf(*file));
  return recipe;
}

}  // namespace zym
