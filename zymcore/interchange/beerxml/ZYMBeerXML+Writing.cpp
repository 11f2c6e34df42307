#include <algorithm>
#include <cmath>
#include <iterator>
#include <span>
#include <string>
#include <string_view>

#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/interchange/beerxml/ZYMBeerXML.h"
#include "zymcore/interchange/internal/RecipeToExport.h"
#include "zymcore/library/ZYMStyles.h"
#include "zymcore/library/ZYMYeasts.h"
#include "zymcore/platform/text/TextEncoding.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym {
namespace {

/// A record that becomes tags, and the recipe it is of.
struct Source {
  const PlistDictionary& record;
  const RecipeToExport& exported;
};

/// What stands in a tag.
using Form = std::string (*)(const Source& source, KeyName key);

struct Tag {
  std::string_view tag;
  KeyName key;
  Form form;
};

// ---- Forms

std::string asItStands(const Source& source, KeyName key) {
  return textOf(source.record, key);
}

std::string number(const Source& source, KeyName key) {
  return stringWithFormatF(source.record.doubleValue(key));
}

// Of grams or millilitres.
std::string thousandth(const Source& source, KeyName key) {
  return stringWithFormatF(source.record.doubleValue(key) / 1000.0);
}

std::string integer(const Source& source, KeyName key) {
  return std::to_string(source.record.integerValue(key));
}

std::string gravity(const Source& source, KeyName key) {
  return stringWithDecimals(source.record.doubleValue(key), 3) + " sg";
}

template <char... text>
std::string always(const Source& /*source*/, KeyName /*key*/) {
  return {text...};
}
constexpr Form one = always<'1'>;
constexpr Form zero = always<'0'>;
constexpr Form yes = always<'T', 'R', 'U', 'E'>;

// Of tags that stand for themselves.
constexpr KeyName noKey{""};

std::string brewer(const Source& /*source*/, KeyName /*key*/) {
  return "A Wortmeister Touch User";
}

/// What a word of ours is in this format.
struct Translation {
  std::string_view word;
  std::string_view there;
  /// Absent where it is the time of the addition itself.
  Form time = integer;
};

const Translation& translationOf(std::string_view word, std::span<const Translation> table) {
  const auto found = std::ranges::find(table.first(table.size() - 1), word, &Translation::word);
  return *found;  // the last for any other word
}

constexpr Translation mashTypes[] = {
    {words::FullMash, "All Grain"}, {words::Extract, "Extract"}, {"", "Partial Mash"}};

std::string mashType(const Source& source, KeyName key) {
  return std::string(translationOf(source.record.stringValue(key), mashTypes).there);
}

std::string mashMinutes(const Source& source, KeyName /*key*/) {
  return std::to_string(source.exported.mashMinutes());
}

constexpr Translation hopUses[] = {
    {words::FirstWortHopped, "First Wort"}, {words::InHopBack, "Aroma", zero},
    {words::InFermenter, "Aroma", zero},    {words::DryHopped, "Dry Hop", zero},
    {words::InMash, "Mash", mashMinutes},   {"", "Boil"}};

std::string hopUse(const Source& source, KeyName key) {
  return std::string(translationOf(source.record.stringValue(key), hopUses).there);
}

std::string hopTime(const Source& source, KeyName key) {
  return translationOf(source.record.stringValue(key), hopUses).time(source, keys::Minutes);
}

std::string hopForm(const Source& source, KeyName key) {
  const std::string_view form = source.record.stringValue(key);
  return form == words::LoosePelletHops || form == words::BaggedPelletHops ? "Pellet" : "Leaf";
}

bool containsAny(std::string_view text, std::initializer_list<std::string_view> parts) {
  return std::ranges::any_of(
      parts, [text](std::string_view part) { return containsSubstring(text, part); });
}

std::string fermentableType(const Source& source, KeyName key) {
  if (source.record.boolValue(keys::IsGrain)) return "Grain";
  const std::string_view name = source.record.stringValue(key);
  if (containsSubstring(name, "EXTRACT")) {
    return containsAny(name, {"DRY", "SPRAY", "DRIED"}) ? "Dry Extract" : "Extract";
  }
  if (containsSubstring(name, "SUGAR")) return "Sugar";
  return containsSubstring(name, "FLAKED") ? "Adjunct" : "Grain";
}

std::string otherBoilTime(const Source& source, KeyName /*key*/) {
  const std::string_view name = source.record.stringValue(keys::Ingredient);
  if (containsAny(name, {"WHIRLFLOC", "IRISH MOSS", "YEAST NUTRIENT"})) return "15";
  return std::to_string(source.exported.recipe().integerValue(keys::BoilDuration));
}

constexpr Translation otherUses[] = {{words::InDispenseVessel, "Bottling", zero},
                                     {words::InMash, "Mash", mashMinutes},
                                     {words::InFermenter, "Primary", zero},
                                     {"", "Boil", otherBoilTime}};

std::string otherUse(const Source& source, KeyName key) {
  return std::string(translationOf(source.record.stringValue(key), otherUses).there);
}

std::string otherTime(const Source& source, KeyName key) {
  return translationOf(source.record.stringValue(key), otherUses).time(source, key);
}

std::string other(const Source& /*source*/, KeyName /*key*/) {
  return "Other";
}

std::string grainTemperature(const Source& /*source*/, KeyName /*key*/) {
  return "20";
}

std::string finalGravity(const Source& source, KeyName key) {
  return stringWithDecimals((source.record.doubleValue(key) - 1.0) * 0.25 + 1.0, 3);
}

// ---- Tags, in the order in which they are written

constexpr Tag recipeTags[] = {
    {"NAME", keys::RecipeTitle, asItStands},
    {"VERSION", noKey, one},
    {"TYPE", keys::MashType, mashType},
    {"BREWER", noKey, brewer},
    {"BATCH_SIZE", keys::FinalBatchVolume, thousandth},
    {"BOIL_SIZE", keys::PreBoilWortVolume, thousandth},
    {"BOIL_TIME", keys::BoilDuration, integer},
    {"EFFICIENCY", keys::MashEfficiency, asItStands},
    {"NOTES", keys::Notes, asItStands},
    {"PRIMARY_TEMP", keys::FermentationTemperature, asItStands},
    {"EST_OG", keys::ExpectedOriginalGravity, gravity},
    {"EST_FG", keys::ExpectedFinalGravity, gravity},
    {"EST_COLOR", keys::ExpectedColor, asItStands},
    {"IBU", keys::ExpectedIBU, asItStands},
    {"EST_ABV", keys::ExpectedABV, asItStands},
};

constexpr Tag hopTags[] = {
    {"NAME", keys::Variety, asItStands}, {"VERSION", noKey, one},
    {"ALPHA", keys::Alpha, number},      {"AMOUNT", keys::Amount, thousandth},
    {"NOTES", keys::When, asItStands},   {"USE", keys::When, hopUse},
    {"TIME", keys::When, hopTime},       {"FORM", keys::Form, hopForm},
};

constexpr Tag fermentableTags[] = {
    {"NAME", keys::Ingredient, asItStands},
    {"VERSION", noKey, one},
    {"YIELD", keys::Extract, number},
    {"COLOR", keys::Color, number},
    {"AMOUNT", keys::Amount, thousandth},
    {"NOTES", keys::When, asItStands},
    {"TYPE", keys::Ingredient, fermentableType},
};

constexpr Tag otherTags[] = {
    {"NAME", keys::Ingredient, asItStands},
    {"VERSION", noKey, one},
    {"TYPE", noKey, other},
    {"NOTES", keys::When, asItStands},
    {"USE", keys::When, otherUse},
    {"TIME", keys::When, otherTime},
    {"AMOUNT", keys::Amount, thousandth},
    {"AMOUNT_IS_WEIGHT", noKey, yes},
};

// Of the library's record.
constexpr Tag yeastTags[] = {
    {"NAME", keys::Name, asItStands},           {"VERSION", noKey, one},
    {"ATTENUATION", keys::Attenuation, number}, {"FORM", keys::YeastType, asItStands},
    {"TYPE", keys::BeerType, asItStands},
};

constexpr Tag scheduleTags[] = {
    {"NAME", keys::ScheduleName, asItStands},
    {"VERSION", noKey, one},
    {"GRAIN_TEMP", noKey, grainTemperature},
};

constexpr Tag stepTags[] = {
    {"STEP_TEMP", keys::Temperature, asItStands},
    {"STEP_TIME", keys::Duration, asItStands},
    {"RAMP_TIME", noKey, zero},
};

constexpr Tag styleTags[] = {
    {"OG_MIN", keys::MinOG, asItStands},       {"OG_MAX", keys::MaxOG, asItStands},
    {"IBU_MIN", keys::MinIBU, asItStands},     {"IBU_MAX", keys::MaxIBU, asItStands},
    {"COLOR_MIN", keys::MinColor, asItStands}, {"COLOR_MAX", keys::MaxColor, asItStands},
    {"FG_MIN", keys::MinOG, finalGravity},     {"FG_MAX", keys::MaxOG, finalGravity},
};

struct IonTag {
  std::string_view tag;
  const Ion& ion;
};
const IonTag ionTags[] = {
    {"SULFATE", ions::sulfate},   {"CALCIUM", ions::calcium}, {"MAGNESIUM", ions::magnesium},
    {"CHLORIDE", ions::chloride}, {"SODIUM", ions::sodium},   {"BICARBONATE", ions::bicarbonate},
};

/// What a type of mash step is in this format.
struct Step {
  std::string_view word;
  std::string_view type;
  bool bringsWater = false;
};
constexpr Step steps[] = {
    {words::RestAt, "Infusion"},
    {words::RaiseByInfusion, "Infusion", true},
    {words::PullDecoction, "Decoction", true},
    {words::MashOut, "Temperature"},
    {words::RaiseByDirectHeating, "Temperature"},
};

// ---- Writing

// What XML has no form for is left out.
std::string fitForXML(std::string_view text) {
  std::string result = dataUsingLossyASCII(text);
  std::erase_if(result, [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
  });
  return result;
}

class Writer {
 public:
  explicit Writer(const PlistDictionary& document)
      : exported_(document), recipe_(exported_.recipe()) {}

  std::string write() {
    text_ = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<RECIPES>";
    mark(1, "<RECIPE>");
    tags(recipe_, recipeTags, 2);
    list("HOPS", "HOP", keys::HopIngredients, hopTags);
    list("FERMENTABLES", "FERMENTABLE", keys::FermentableIngredients, fermentableTags);
    yeasts();
    list("MISCS", "MISC", keys::OtherIngredients, otherTags);
    mash();
    style();
    waters();
    mark(1, "</RECIPE>");
    return std::move(text_) + "\n</RECIPES>\n";
  }

 private:
  void mark(int level, std::string_view mark) {
    indentXMLBy(text_, level);
    text_ += mark;
  }

  void tag(std::string_view key, std::string_view value, int level) {
    xmlAppendKey_withValue_withIndentation(text_, key, fitForXML(value), level);
  }

  void tags(const PlistDictionary& record, std::span<const Tag> table, int level) {
    const Source source{record, exported_};
    for (const Tag& row : table) tag(row.tag, row.form(source, row.key), level);
  }

  template <class Entries>
  void element(std::string_view name, int level, Entries entries) {
    mark(level, "<" + std::string(name) + ">");
    entries();
    mark(level, "</" + std::string(name) + ">");
  }

  void list(std::string_view name, std::string_view each, KeyName key, std::span<const Tag> table) {
    element(name, 2, [&] {
      for (const PlistDictionary& record : recipe_.rows(key)) {
        element(each, 3, [&] { tags(record, table, 4); });
      }
    });
  }

  void yeasts() {
    element("YEASTS", 2, [&] {
      for (const PlistDictionary& addition : recipe_.rows(keys::YeastIngredients)) {
        element("YEAST", 3, [&] { yeast(addition); });
      }
    });
  }

  void yeast(const PlistDictionary& addition) {
    const std::string* uuid = addition.string(keys::UUID);
    const auto known = uuid ? ZYMYeasts::sharedInstance().itemWithUUID(*uuid) : std::nullopt;
    if (known) {
      tags(*known, yeastTags, 4);
    } else {
      // Only a library tells what a yeast is.
      tag("TYPE", "Ale", 4);
      tag("TYPE", "Dry", 4);
      tag("LABORATORY", "Unknown", 4);
      tag("PRODUCT_ID", "Unknown", 4);
    }
    const double count = addition.doubleValue(keys::Amount);
    const std::string_view name = known ? known->stringValue(keys::Name) : "";
    double amount = count * 0.01;
    bool isWeight = true;
    const auto litres = [&](double value) {
      amount = value;
      isWeight = false;
    };
    if (containsSubstring(name, "WYEAST")) litres(count * 0.135);
    if (containsSubstring(name, "WHITE")) litres(count * 0.035);
    if (addition.stringValue(keys::YeastAmountType) == words::Slurry) litres(count / 1000.0);
    tag("AMOUNT", stringWithFormatF(amount), 4);
    tag("AMOUNT_IS_WEIGHT", isWeight ? "TRUE" : "FALSE", 4);
  }

  void mash() {
    water_ = exported_.profile().doubleValue(keys::WaterGrainRatio) * exported_.mashedGrain();
    const PlistDictionary* own = recipe_.dictionary(keys::MashSchedule);
    const PlistDictionary schedule = own ? *own : PlistDictionary();
    element("MASH", 2, [&] {
      tags(schedule, scheduleTags, 3);
      element("MASH_STEPS", 3, [&] {
        const PlistDictionary* previous = nullptr;
        for (const PlistDictionary& each : schedule.rows(keys::Steps)) {
          element("MASH_STEP", 4, [&] { step(each, previous); });
          previous = &each;
        }
      });
    });
  }

  void step(const PlistDictionary& step, const PlistDictionary* previous) {
    const std::string_view word = step.stringValue(keys::StepType);
    tag("NAME", word, 5);
    tag("VERSION", "1", 5);
    const Step* known = std::ranges::find(steps, word, &Step::word);
    if (known == std::end(steps)) return;
    tag("TYPE", known->type, 5);
    tag("INFUSE_AMOUNT", known->bringsWater ? infusion(step, previous) : "0.0", 5);
    tags(step, stepTags, 5);
  }

  // In litres; joins the water of the mash.
  std::string infusion(const PlistDictionary& step, const PlistDictionary* previous) {
    double amount = 0;
    if (previous) {
      const double grain = exported_.mashedGrain();
      const double mass = exported_.profile().doubleValue(keys::MTThermalMass);
      const double to = step.doubleValue(keys::Temperature);
      const double from = previous->doubleValue(keys::Temperature);
      if (step.stringValue(keys::StepType) == words::RaiseByInfusion) {
        amount = 1000.0 * (((to - from) * (water_ / 1000.0)) / (100.0 - to) + mass / 1000.0 +
                           (grain / 1000.0) * 0.32);
      } else {
        amount = (grain * 0.32 + mass + water_) / ((to - 100.0) / (from - to) + 1.0);
      }
    }
    water_ += amount;
    return stringWithFormatF(amount / 1000.0);
  }

  void style() {
    const bool isOwn = recipe_.contains(keys::StyleGuidelinesSource);
    const std::int64_t guidelines =
        isOwn ? std::clamp<std::int64_t>(recipe_.integerValue(keys::StyleGuidelinesSource), 0, 1)
              : ZYMStyles::userPreferredStyleGuidelines();
    const StyleToExport style(recipe_, guidelines);
    element("STYLE", 2, [&] {
      tag("CATEGORY", style.category, 3);
      tag("NAME", style.name, 3);
      tag("VERSION", "1", 3);
      tag("TYPE", textOf(style.record, keys::Type), 3);
      tag("CATEGORY_NUMBER", style.categoryNumber, 3);
      tag("STYLE_LETTER", style.letter, 3);
      tags(style.record, styleTags, 3);
    });
  }

  double waterUsed() const {
    double amount =
        recipe_.doubleValue(keys::PreBoilWortVolume) - (water_ - exported_.mashedGrain()) + water_;
    const double wort = recipe_.doubleValue(keys::FinalWortVolume);
    const double batch = recipe_.doubleValue(keys::FinalBatchVolume);
    if (wort < batch) amount += batch - wort;
    return amount;
  }

  void waters() {
    element("WATERS", 2, [&] {
      element("WATER", 3, [&] {
        tag("NAME", "The Water Used", 4);
        tag("VERSION", "1", 4);
        tag("AMOUNT", stringWithFormatF(waterUsed() / 1000.0), 4);
        for (const IonTag& row : ionTags) {
          tag(row.tag, stringWithFormatF(exported_.concentrationOf(row.ion)), 4);
        }
      });
    });
  }

  const RecipeToExport exported_;
  const PlistDictionary& recipe_;
  std::string text_;
  double water_ = 0;  // in the mash, ml
};

}  // namespace

NSData ZYMBeerXML::dataForRecipe(const PlistDictionary& recipe) {
  return NSData(Writer(recipe).write());
}

NSData ZYMBeerXML::dataForItem(const PlistDictionary& item) {
  return dataForRecipe(item);
}

}  // namespace zym
