#include "app/session/Defaults.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iostream>
#include <optional>
#include <span>
#include <string_view>

#include "app/terminal/Faults.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/ZYMStyles.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/text/NSLocale.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/platform/values/PlistDictionary.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym::host {
namespace {

using Words = std::span<const std::string_view>;

constexpr std::string_view systems[] = {"US", "British", "metric"};
constexpr std::string_view gravities[] = {"SG", "Plato"};
constexpr std::string_view colors[] = {"SRM", "EBC"};
constexpr std::string_view temperatures[] = {"Celsius", "Fahrenheit"};

constexpr std::string_view guidelines[] = {"2008", "2015"};

/// The numbers that a default can be.
struct Bounds {
  double least, most;
};
constexpr Bounds factor{0, 10};

struct Default {
  KeyName key;
  double initial;
  Words words;  // what the numbers from 0 on stand for
  std::string_view meaning;
  Bounds bounds = {};  // where it has no words
};

// The five factors correct bitterness formulas that were fitted to whole hops, loose in the kettle.
const Default defaults[] = {
    {keys::Units, 2, systems, "weights and volumes"},
    {keys::HopUnits, 2, systems, "weights of hops"},
    {keys::GravityUnits, 0, gravities, "gravities"},
    {keys::ColorUnit, 0, colors, "colours of malt and beer"},
    {keys::TemperatureUnit, 0, temperatures, "temperatures"},
    {keys::HopFormula, 0, words::hopFormulas, "bitterness formula"},
    {keys::BeerColorFormula, 0, words::beerColorFormulas, "colour formula"},

    {ZYMPreferredStyleGuidelinesKey, 1, guidelines, "BJCP style guidelines"},

    // Milled lupulin glands give up their resins sooner: 10 to 15 % more is used, says G. Tinseth
    // of his own measurements ("Glenn's Hop Utilization Numbers", The Hop Page, 1995); the lower
    // end.
    {keys::PelletHopAdjustment, 1.10, {}, "utilisation of loose pellets", factor},
    // A bag keeps wort from moving through the hops; M. Garetz ("Using Hops", 1994) allows for it,
    // and a tenth is the usual figure.
    {keys::BaggedHopAdjustment, 0.90, {}, "utilisation of whole hops in a bag", factor},
    // Both at once: 1.10 x 0.90.
    {keys::BaggedPelletHopAdjustment, 0.99, {}, "utilisation of pellets in a bag", factor},
    // F. Preis and W. Mitter ("The re-discovery of first wort hopping", Brauwelt International,
    // 1995) measured more bitterness than from the same hops in the boil; a tenth is the usual
    // allowance.
    {keys::FirstWortHopAdjustment, 1.10, {}, "bitterness of first wort hops", factor},
    // Most of the resin stays behind with the spent grain. Brewers who mash with hops reckon with
    // four fifths lost; no measurement has been published that would bear more digits.
    {keys::MashHopAdjustment, 0.20, {}, "bitterness of hops in the mash", factor},

    // At sea level, under the standard atmosphere of 1013.25 hPa.
    {keys::BoilingPoint, 100, {}, "boiling point of water in °C", {60, 110}},
    // Brewing hydrometers outside the United States are made for 20 °C.
    {keys::HydrometerCalibrationTemp, 20, {}, "°C at which the hydrometer reads true", {0, 50}},
};

constexpr KeyName localeKey{"Locale"};

bool equalButForCase(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; };
  return std::ranges::equal(a, b, {}, lower, lower);
}

bool canBe(const Default& known, double number) {
  if (known.words.empty()) return number >= known.bounds.least && number <= known.bounds.most;
  return number >= 0 && number < static_cast<double>(known.words.size()) &&
         number == std::floor(number);
}

std::optional<double> numberOf(std::string_view text, const Default& known) {
  for (std::size_t i = 0; i < known.words.size(); ++i) {
    if (equalButForCase(text, known.words[i])) return static_cast<double>(i);
  }
  double number = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (fault != std::errc() || end != text.data() + text.size() || !canBe(known, number)) {
    return std::nullopt;
  }
  return number;
}

const Default& defaultNamed(std::string_view key) {
  const auto found =
      std::ranges::find(defaults, key, [](const Default& d) { return d.key.text(); });
  if (found == std::end(defaults)) {
    throw UsageError(label("unknown default '%1'", {printable(key)}));
  }
  return *found;
}

void setLocale(std::string_view identifier) {
  NSLocale::setCurrentLocale(identifier);
  createFormatter();
}

std::string choices(Words words) {
  std::string text;
  for (const std::string_view word : words) text.append(text.empty() ? "" : ", ").append(word);
  return text;
}

std::string possible(const Default& known) {
  if (!known.words.empty()) return label("choose %1", {choices(known.words)});
  return label("give a number from %1 to %2",
               {shortestNumberText(known.bounds.least), shortestNumberText(known.bounds.most)});
}

double valueOf(const Default& known, std::string_view text) {
  const std::optional<double> number = numberOf(text, known);
  if (!number) {
    throw UsageError(label("'%1' is no value for %2; %3",
                           {printable(text), std::string(known.key.text()), possible(known)}));
  }
  return *number;
}

/// Kept values that their keys can't have, such as those of another program, with what is taken in
/// their place.
PlistDictionary replacements;

}  // namespace

void registerInitialDefaults() {
  PlistDictionary values;
  for (const Default& one : defaults) values.set(one.key, one.initial);
  NSUserDefaults::standardUserDefaults().registerDefaults(values);
}

void setDefaultsForThisRun(const std::vector<std::string>& assignments) {
  PlistDictionary values = replacements;
  for (const std::string& assignment : assignments) {
    const std::size_t equals = assignment.find('=');
    if (equals == std::string::npos) {
      throw UsageError(label("'%1' is not of the form KEY=VALUE", {printable(assignment)}));
    }
    const std::string_view key = std::string_view(assignment).substr(0, equals);
    const std::string_view value = std::string_view(assignment).substr(equals + 1);
    if (key == localeKey.text()) {
      setLocale(value);
      continue;
    }
    const Default& known = defaultNamed(key);
    values.set(known.key, valueOf(known, value));
  }
  NSUserDefaults::standardUserDefaults().setArguments(values);
}

void keepDefault(const std::string& key, const std::string& value) {
  NSUserDefaults& defaultsOfUser = NSUserDefaults::standardUserDefaults();
  if (key == localeKey.text()) {
    defaultsOfUser.setObject_forKey(value, localeKey);
  } else {
    const Default& known = defaultNamed(key);
    defaultsOfUser.setObject_forKey(valueOf(known, value), known.key);
    replacements.remove(known.key);
    defaultsOfUser.setArguments(replacements);
  }
  if (!defaultsOfUser.synchronize()) throw InputError(label("the settings can't be written"));
}

void passOverImpossibleDefaults() {
  NSUserDefaults& defaultsOfUser = NSUserDefaults::standardUserDefaults();
  replacements = {};
  for (const Default& one : defaults) {
    const auto kept = defaultsOfUser.objectForKey(one.key);
    const std::string* text = kept ? kept->string() : nullptr;
    const double value = defaultsOfUser.doubleForKey(one.key);
    // Text that is no number reads as 0.
    if (text ? numberOf(*text, one) == value : canBe(one, value)) continue;
    replacements.set(one.key, one.initial);
    std::cerr << "zym: "
              << label("%1 is set to %2, which it can't be; %3",
                       {std::string(one.key.text()),
                        text ? printable(*text) : shortestNumberText(value), possible(one)})
              << '\n';
  }
  defaultsOfUser.setArguments(replacements);
}

void useKeptLocale() {
  const auto locale = NSUserDefaults::standardUserDefaults().stringForKey(localeKey);
  if (locale) setLocale(*locale);
}

std::string settingsInForce() {
  const NSUserDefaults& defaultsOfUser = NSUserDefaults::standardUserDefaults();
  std::string text;
  const auto line = [&text](std::string_view key, const std::string& value) {
    text.append(padded(key, 27)).append(value).append("\n");
  };
  for (const Default& one : defaults) {
    const double value = defaultsOfUser.doubleForKey(one.key);
    const bool isWord = value >= 0 && value < static_cast<double>(one.words.size());
    line(one.key.text(), isWord ? std::string(one.words[static_cast<std::size_t>(value)])
                                : shortestNumberText(value));
  }
  line(localeKey.text(), printable(NSLocale::currentLocale().localeIdentifier()));
  return text;
}

std::string defaultsHelp() {
  std::string text = "Defaults, their meaning and [initial value]:\n";
  const auto line = [&text](std::string_view key, const std::string& meaning) {
    text.append("  ").append(padded(key, 27)).append(meaning).append("\n");
  };
  for (const Default& one : defaults) {
    std::string meaning(one.meaning);
    if (one.words.empty()) {
      meaning.append(" [").append(shortestNumberText(one.initial));
    } else {
      meaning.append(": ").append(choices(one.words)).append(" [");
      meaning.append(one.words[static_cast<std::size_t>(one.initial)]);
    }
    line(one.key.text(), meaning + "]");
  }
  line(localeKey.text(), "language and form of numbers, such as de_DE [the environment's]");
  return text;
}

}  // namespace zym::host
