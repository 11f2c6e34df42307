#include "zymcore/interchange/beerxml/ZYMBeerXML.h"

#include <algorithm>
#include <span>
#include <string>
#include <string_view>

#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/interchange/ParsedRecipeKeys.h"
#include "zymcore/interchange/beerxml/NSXMLNodeExtensions.h"
#include "zymcore/platform/formats/NSXMLDocument.h"
#include "zymcore/platform/values/NSCocoaErrors.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym {
namespace {

// A required tag that isn't there.
struct Missing {
  std::string_view tag;
  std::string_view parent;
};
using Outcome = std::optional<Missing>;

// The first child of that name.
std::optional<NSXMLNode> child(const NSXMLNode& element, std::string_view name) noexcept {
  return siblingWithName(element.children().firstObject(), name);
}

double thousandfold(const NSXMLNode& element) noexcept {
  return doubleValue(element.stringValue()) * 1000.0;
}

// ---- What becomes of a tag: it is put into the recipe under a key.

Outcome text(const NSXMLNode& element, KeyName key, PlistDictionary& recipe) {
  recipe.set(key, element.stringValue());
  return std::nullopt;
}

// From litres.
Outcome millilitres(const NSXMLNode& element, KeyName key, PlistDictionary& recipe) {
  recipe.setNumber(key, thousandfold(element));
  return std::nullopt;
}

Outcome tasteNotes(const NSXMLNode& element, KeyName key, PlistDictionary& recipe) {
  recipe.set(key,
             std::string(recipe.stringValue(key)) + "\n\n" + std::string(element.stringValue()));
  return std::nullopt;
}

// The recipe keeps the lowest attenuation as that yeast spells it.
Outcome yeasts(const NSXMLNode& element, KeyName key, PlistDictionary& recipe) {
  struct Tag {
    std::string_view tag;
    KeyName key;
  };
  constexpr Tag tags[] = {{"NAME", parsedKeys::YEAST_NAME},
                          {"TYPE", parsedKeys::YEAST_TYPE},
                          {"FORM", parsedKeys::YEAST_FORM}};

  PlistArray records;
  for (const NSXMLNode& yeast : element.children()) {
    if (const auto attenuation = child(yeast, "ATTENUATION")) {
      const bool isLower =
          !recipe.contains(keys::Attenuation) ||
          recipe.floatValue(keys::Attenuation) > floatValue(attenuation->stringValue());
      if (isLower) recipe.set(keys::Attenuation, attenuation->stringValue());
    }
    PlistDictionary record;
    for (const Tag& tag : tags) {
      if (const auto value = child(yeast, tag.tag)) record.set(tag.key, value->stringValue());
    }
    records.append(std::move(record));
  }
  recipe.set(key, std::move(records));
  return std::nullopt;
}

Outcome style(const NSXMLNode& element, KeyName key, PlistDictionary& recipe) {
  const auto name = child(element, "NAME");
  if (!name) return std::nullopt;
  const auto category = child(element, "CATEGORY");
  const std::string start = category ? std::string(category->stringValue()) + "-" : "";
  recipe.set(key, start + std::string(name->stringValue()));
  return std::nullopt;
}

Outcome waters(const NSXMLNode& element, KeyName, PlistDictionary& recipe) {
  struct Ion {
    std::string_view tag;
    KeyName key;
  };
  // Writers mean bicarbonate by CARBONATE, so it wins.
  constexpr Ion ions[] = {
      {"CALCIUM", parsedKeys::CALCIUM},      {"BICARBONATE", parsedKeys::BICARBONATE},
      {"SULFATE", parsedKeys::SULFATE},      {"CHLORIDE", parsedKeys::CHLORIDE},
      {"SODIUM", parsedKeys::SODIUM},        {"MAGNESIUM", parsedKeys::MAGNESIUM},
      {"CARBONATE", parsedKeys::BICARBONATE}};
  constexpr KeyName required[] = {parsedKeys::CALCIUM, parsedKeys::SULFATE, parsedKeys::CHLORIDE,
                                  parsedKeys::MAGNESIUM, parsedKeys::SODIUM};

  const auto water = child(element, "WATER");
  if (!water) return std::nullopt;
  for (const Ion& ion : ions) {
    if (const auto value = child(*water, ion.tag)) recipe.set(ion.key, value->stringValue());
  }
  for (const KeyName ion : required) {
    if (!recipe.contains(ion)) return Missing{ion.text(), "WATER"};
  }
  return std::nullopt;
}

// ---- Lists: a record for each child, of the tags that are accepted; those that lack a required
// one are dropped.

using Keys = std::span<const KeyName>;

void readTags(const NSXMLNode& element, Keys accepted, PlistDictionary& record) {
  for (const NSXMLNode& tag : element.children()) {
    const auto key = std::ranges::find(accepted, tag.name(), &KeyName::text);
    if (key == accepted.end()) continue;
    if (key->text() == parsedKeys::AMOUNT.text()) {
      record.setNumber(*key, thousandfold(tag));  // from kilograms
    } else {
      record.set(*key, tag.stringValue());
    }
  }
}

void appendIfComplete(PlistArray& records, PlistDictionary record, Keys required) {
  const auto isThere = [&](KeyName key) { return record.contains(key); };
  if (std::ranges::all_of(required, isThere)) records.append(std::move(record));
}

constexpr KeyName fermentableTags[] = {
    parsedKeys::NAME,   parsedKeys::TYPE,     parsedKeys::AMOUNT,
    parsedKeys::YIELD,  parsedKeys::COLOR,    parsedKeys::ADD_AFTER_BOIL,
    parsedKeys::ORIGIN, parsedKeys::MOISTURE, parsedKeys::WORTMEISTER_UUID};
constexpr KeyName fermentableNeeds[] = {parsedKeys::NAME, parsedKeys::TYPE, parsedKeys::AMOUNT,
                                        parsedKeys::YIELD, parsedKeys::COLOR};

constexpr KeyName hopTags[] = {parsedKeys::NAME,
                               parsedKeys::ORIGIN,
                               parsedKeys::ALPHA,
                               parsedKeys::AMOUNT,
                               parsedKeys::USE,
                               parsedKeys::TIME,
                               parsedKeys::FORM,
                               parsedKeys::WORTMEISTER_FORM,
                               parsedKeys::WORTMEISTER_UUID};
constexpr KeyName hopNeeds[] = {parsedKeys::NAME, parsedKeys::ALPHA, parsedKeys::AMOUNT,
                                parsedKeys::USE, parsedKeys::TIME};

// No tag can have blanks in its name, so that all amounts count as weights.
constexpr KeyName miscTags[] = {parsedKeys::NAME,
                                parsedKeys::TYPE,
                                parsedKeys::USE,
                                parsedKeys::TIME,
                                parsedKeys::AMOUNT,
                                parsedKeys::AMOUNT_IS_WEIGHT,
                                parsedKeys::WORTMEISTER_UUID};
constexpr KeyName miscNeeds[] = {parsedKeys::NAME, parsedKeys::TYPE, parsedKeys::AMOUNT,
                                 parsedKeys::USE, parsedKeys::TIME};

constexpr KeyName stepTags[] = {parsedKeys::NAME, parsedKeys::TYPE, parsedKeys::STEP_TEMP,
                                parsedKeys::STEP_TIME};

Outcome additions(const NSXMLNode& element, KeyName key, Keys accepted, Keys required,
                  PlistDictionary& recipe) {
  PlistArray records;
  for (const NSXMLNode& each : element.children()) {
    PlistDictionary record{{parsedKeys::AMOUNT, "0.0"}};
    readTags(each, accepted, record);
    // What is in the mash stays in the kettle to the end.
    if (key.text() == parsedKeys::HOPS.text() && record.stringValue(parsedKeys::USE) == "Mash") {
      record.setOrRemove(parsedKeys::TIME, recipe.find(keys::BoilDuration));
    }
    appendIfComplete(records, std::move(record), required);
  }
  recipe.set(key, std::move(records));
  return std::nullopt;
}

Outcome fermentables(const NSXMLNode& element, KeyName key, PlistDictionary& recipe) {
  return additions(element, key, fermentableTags, fermentableNeeds, recipe);
}

Outcome hops(const NSXMLNode& element, KeyName key, PlistDictionary& recipe) {
  return additions(element, key, hopTags, hopNeeds, recipe);
}

Outcome miscs(const NSXMLNode& element, KeyName key, PlistDictionary& recipe) {
  return additions(element, key, miscTags, miscNeeds, recipe);
}

Outcome mash(const NSXMLNode& element, KeyName key, PlistDictionary& recipe) {
  const auto name = child(element, "NAME");
  recipe.set(parsedKeys::MASHNAME, name ? name->stringValue() : " No Chosen Schedule");
  PlistArray records;
  if (const auto steps = child(element, "MASH_STEPS")) {
    for (const NSXMLNode& each : steps->children()) {
      PlistDictionary step;
      readTags(each, stepTags, step);
      appendIfComplete(records, std::move(step), stepTags);
    }
  }
  recipe.set(key, std::move(records));
  return std::nullopt;
}

// ---- The recipe

// What a recipe has where its file doesn't say otherwise.
PlistDictionary initialRecipe() {
  return {{keys::VolumeWaterAdded, "0.0"},
          {keys::Notes, ""},
          {parsedKeys::STYLENAME, parsedKeys::noStyle},
          {keys::BoilDuration, "60"},
          {parsedKeys::HOPS, PlistArray()},
          {parsedKeys::MISCS, PlistArray()}};
}

enum class IfMissing { Fine, Fails };

struct Row {
  std::string_view tag;
  KeyName key;
  IfMissing ifMissing;
  Outcome (*read)(const NSXMLNode& element, KeyName key, PlistDictionary& recipe);
};

// In this order: some read what those before have put, and the first that fails is the reason.
constexpr Row rows[] = {
    {"NAME", keys::RecipeTitle, IfMissing::Fails, text},
    {"WORTMEISTER_ACID", keys::Acid, IfMissing::Fine, text},
    {"TYPE", parsedKeys::TYPE, IfMissing::Fails, text},
    {"EFFICIENCY", keys::MashEfficiency, IfMissing::Fine, text},
    {"PRIMARY_TEMP", keys::FermentationTemperature, IfMissing::Fine, text},
    {"AGE", parsedKeys::AGE, IfMissing::Fine, text},
    {"FORCED_CARBONATION", parsedKeys::FORCED_CARBONATION, IfMissing::Fine, text},
    {"BATCH_SIZE", keys::FinalBatchVolume, IfMissing::Fails, millilitres},
    {"BATCH_SIZE", keys::FinalWortVolume, IfMissing::Fails, millilitres},
    {"BATCH_SIZE", keys::VolumeAtPitching, IfMissing::Fails, millilitres},
    {"BATCH_SIZE", keys::VolumeToFermenter, IfMissing::Fails, millilitres},
    {"BOIL_SIZE", keys::PreBoilWortVolume, IfMissing::Fails, millilitres},
    {"PRIMING_SUGAR_NAME", parsedKeys::PRIMING_SUGAR_NAME, IfMissing::Fine, text},
    {"NOTES", keys::Notes, IfMissing::Fine, text},
    {"TASTE_NOTES", keys::Notes, IfMissing::Fine, tasteNotes},
    {"YEASTS", keys::YeastIngredients, IfMissing::Fails, yeasts},
    {"STYLE", parsedKeys::STYLENAME, IfMissing::Fine, style},
    {"BOIL_TIME", keys::BoilDuration, IfMissing::Fine, text},
    {"WATERS", parsedKeys::CALCIUM, IfMissing::Fine, waters},
    {"WORTMEISTER_CACO3", keys::CaCO3, IfMissing::Fine, text},
    {"WORTMEISTER_CACL2", keys::CaCl2, IfMissing::Fine, text},
    {"WORTMEISTER_CASO4", keys::CaSO4, IfMissing::Fine, text},
    {"WORTMEISTER_MGSO4", keys::MgSO4, IfMissing::Fine, text},
    {"WORTMEISTER_NACL", keys::NaCl, IfMissing::Fine, text},
    {"WORTMEISTER_NAHCO3", keys::NaHCO3, IfMissing::Fine, text},
    {"WORTMEISTER_CARBONATION", keys::Carbonation, IfMissing::Fine, text},
    {"WORTMEISTER_CONDITIONING", keys::Conditioning, IfMissing::Fine, text},
    {"FERMENTABLES", parsedKeys::FERMENTABLES, IfMissing::Fails, fermentables},
    {"HOPS", parsedKeys::HOPS, IfMissing::Fine, hops},
    {"MISCS", parsedKeys::MISCS, IfMissing::Fine, miscs},
    {"MASH", parsedKeys::MASHSTEPS, IfMissing::Fine, mash},
};

Outcome readRecipe(const NSXMLNode& root, PlistDictionary& recipe) {
  const auto recipes = siblingWithName(root, "RECIPES");
  if (!recipes) return Missing{"RECIPES", "the document"};
  const auto element = child(*recipes, "RECIPE");
  if (!element) return Missing{"RECIPE", "RECIPES"};
  for (const Row& row : rows) {
    const auto tag = child(*element, row.tag);
    if (!tag && row.ifMissing == IfMissing::Fails) return Missing{row.tag, "RECIPE"};
    if (!tag) continue;
    if (const Outcome missing = row.read(*tag, row.key, recipe)) return missing;
  }
  return std::nullopt;
}

}  // namespace

std::optional<PlistDictionary> ZYMBeerXML::parseFileData(const NSData& data, NSError* error) {
  NSError damage;
  const auto document = NSXMLDocument::initWithData_options(data, NSXMLDocumentTidyXML, &damage);
  if (!document) {
    if (error) *error = std::move(damage);
    return std::nullopt;
  }
  PlistDictionary recipe = initialRecipe();
  const Outcome missing = readRecipe(document->rootElement(), recipe);
  if (!missing) return recipe;
  std::string reason = "no " + std::string(missing->tag) + " in " + std::string(missing->parent);
  if (!damage.localizedDescription.empty()) reason += " (" + damage.localizedDescription + ")";
  fail(error, NSCocoaErrorDomain, NSFileReadCorruptFileError, std::move(reason));
  return std::nullopt;
}

}  // namespace zym
