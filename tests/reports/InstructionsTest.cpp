#include "tests/reports/Pages.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/transformers/ZYMTemperatureValueTransformer.h"
#include "zymcore/transformers/ZYMVolumeValueTransformer.h"

namespace zym {
namespace {

using testing::WithPages;

constexpr const char* templates[] = {"Full Mash Template", "Full Mash Template-Batch Sparge",
                                     "Extract Template", "Steeped Template", "Mini Mash Template"};
constexpr const char* workedOutKeys[] = {
    "StrikeWaterVolume",        "StrikeWaterTemperature", "SubsequentMashSteps", "BatchSpargeSteps",
    "BatchSpargeMashFinalLine", "SpargeVolume",           "TotalWaterRequired",  "CarbonationText"};

class Instructions : public WithPages {
 protected:
  void putTemplates(const std::string& text) const {
    for (const char* name : templates) putTemplate(name, text);
  }
  /// The lines "key: value", or "key, key: value, value", are those of the page; a "|" stands for a
  /// line feed.
  void expect(const PlistDictionary& batch, const std::string& lines) const {
    std::istringstream all(lines);
    std::string text;
    for (std::string line; std::getline(all, line);) {
      const std::string names = line.substr(0, line.find(": "));
      text += names + ": " + std::regex_replace(names, std::regex("\\w+"), marker("$&")) + "\x1e";
    }
    putTemplates(text);
    std::string page = ZYMHTML::renderToHTMLBatchInstructions(batch);
    std::replace(page.begin(), page.end(), '\n', '|');
    std::replace(page.begin(), page.end(), '\x1e', '\n');
    EXPECT_EQ(page, lines);
  }
};

struct Step {
  std::string_view type;
  double temperature, minutes;
};
/// A brew in plain numbers: g, ml, °C.
struct Brew {
  struct {
    double grain, ratio, tun, room, preBoil, added;
  } of;
  std::string_view mashType, sparge;
  std::vector<Step> steps;
  std::string_view carbonation = words::Nothing;
  double volumes = 0, fermentation = 0;

  [[nodiscard]] PlistDictionary batch() const {
    PlistDictionary recipe =
        R"({"VolumeToFermenter": "0", "MashSchedule": {}, "FermentableIngredients": [
        {"When": "In Mash/Steeped"}, {"Amount": "777", "When": "End Of Boil"}]})"_json;
    recipe.editRows(keys::FermentableIngredients).begin()->set(keys::Amount, of.grain);
    PlistArray rows;
    for (const auto& [type, temperature, minutes] : steps) {
      rows.append(PlistDictionary{
          {keys::StepType, type}, {keys::Temperature, temperature}, {keys::Duration, minutes}});
    }
    recipe.editDictionary(keys::MashSchedule)->set(keys::Steps, std::move(rows));
    recipe.set(keys::MashType, mashType);
    recipe.set(keys::PreBoilWortVolume, of.preBoil);
    recipe.set(keys::VolumeAtPitching, of.added);
    recipe.set(keys::Carbonation, carbonation);
    recipe.set(keys::CarbonationVolumes, volumes);
    recipe.set(keys::FermentationTemperature, fermentation);
    return {{keys::WaterGrainRatio, of.ratio},
            {keys::MTThermalMass, of.tun},
            {keys::RoomTemperature, of.room},
            {keys::SpargeMethod, sparge},
            {keys::ModifiedRecipe, std::move(recipe)}};
  }
};

std::string ml(double volume) {
  const PlistValue value(volume);
  return ZYMVolumeValueTransformer::convertForDisplay(&value);
}
std::string celsius(double degrees) {
  const PlistValue value(degrees);
  return ZYMTemperatureValueTransformer::convertForDisplay(&value);
}
std::string minutes(double number) {
  return std::to_string(std::lround(number));
}

std::string number(double value) {
  return localizedStringFromFloat_decimalPlaces(static_cast<float>(value), 1);
}

/// How much carbon dioxide is to be made, beside what the beer holds at the end.
std::string carbonated(const Brew& brew) {
  if (brew.carbonation == words::Nothing || brew.volumes <= 0.01) return "";
  const std::string start = "Carbonate to " + number(brew.volumes) + " volumes using ";
  if (brew.carbonation == words::ForceCarbonated) {
    const double psi = std::max(0.0, brew.volumes - 1.1275) / 0.07935;
    return start + minutes(psi) + " psi/" + minutes(psi * 6.8947573) + " kPa at 10˚C/50˚F.";
  }
  const double kelvin = brew.fermentation + 273.15;
  const double held = 14.7 / 0.655 * std::pow(kelvin, 89.892) *
                      std::exp(21541.52 / kelvin - 574.70126) /
                      std::exp(0.000147759 * kelvin * kelvin);
  const double sugar = 4 * (brew.volumes - held);
  if (sugar < 0.2) return "The desired carbonation level is below that possible from priming";
  static const std::map<std::string_view, std::pair<double, std::string>> primings = {
      {words::PrimedWithSugar, {1, "sugar."}},
      {words::PrimedWithHoney, {1.4, "honey."}},
      {words::PrimedWithDME, {1.3, "dry malt extract."}}};
  const auto priming = primings.find(brew.carbonation);
  if (priming == primings.end()) return start + "krausen.";
  const double grams = sugar * priming->second.first;
  return start + number(grams) + " g/l (" + number(grams / 8) + " oz/gal) of " +
         priming->second.second;
}

/// The same worked out as what is warm gives to what is cold.
std::vector<std::string> workedOut(const Brew& brew, double boil) {
  double water = brew.of.grain * brew.of.ratio;
  const double solids = 0.32 * brew.of.grain + brew.of.tun;
  const double first = brew.steps.empty() ? brew.of.room : brew.steps[0].temperature;
  std::vector<std::string> texts = {ml(water),
                                    celsius(first + solids * (first - brew.of.room) / water)};
  const bool isMash =
      brew.mashType == words::FullMash || brew.mashType == words::ExtractWithMiniMash;
  std::string steps;
  for (std::size_t i = 1; isMash && i < brew.steps.size(); ++i) {
    const auto& [type, to, time] = brew.steps[i];
    const double warmth = (solids + water) * (to - brew.steps[i - 1].temperature);
    const std::string raise = "<p>Raise the temperature to " + celsius(to);
    if (type == words::RestAt) {
      steps += " and then rest at " + celsius(to) + " for " + minutes(time) + " minutes.</p>";
    } else if (type == words::RaiseByInfusion) {
      steps += raise + " by adding " + ml(warmth / (boil - to)) + " of boiling water";
      water += warmth / (boil - to);
    } else if (type == words::PullDecoction) {
      steps += "<p>Pull a decoction of " + ml(warmth / (boil - brew.steps[i - 1].temperature)) +
               ", raise to boil, and boil for a total of " + minutes(time) +
               " minutes. Add back to mash to raise the temperature to " + celsius(to);
    } else if (type == words::RaiseByDirectHeating) {
      steps += raise + " by direct heating over " + minutes(time) + " minutes,";
    } else if (type == words::MashOut) {
      steps += raise + " over " + minutes(time) + " minutes and mash out.</p>";
    }
  }
  texts.push_back(steps);
  std::string lines, last, fly;
  const double drained = water - brew.of.grain;
  if (isMash && brew.sparge == words::BatchSparge) {
    const std::string at = celsius(brew.steps.empty() ? 0 : brew.steps.back().temperature);
    const double wanted = brew.of.preBoil - std::max(drained, brew.of.preBoil / 2);
    lines = drained > brew.of.preBoil / 2 ? "<p>Run off the hot wort and collect.</p>\n"
                                          : "<p>Add " + ml(brew.of.preBoil / 2 - drained) +
                                                " of water at " + at + ", mix and run off.</p>\n";
    water += std::max(0.0, brew.of.preBoil / 2 - drained);
    if (wanted > 0) {
      lines += "<p>Add a further " + ml(wanted) + " of water at " + at + " and mix.</p>\n";
      water += wanted;
    }
    last = "<p>Run off to collect a total of " + ml(brew.of.preBoil) + " of wort.</p>";
  } else if (isMash && brew.sparge == words::NoSparge) {
    last = "<p>Remove grains to leave " + ml(brew.of.preBoil) + " of wort.</p>";
  } else if (isMash && brew.sparge == words::FlySparge) {
    fly = ml(brew.of.preBoil - drained);
    water = brew.of.preBoil + brew.of.grain;
  }
  texts.insert(texts.end(), {lines, last, fly,
                             ml(brew.of.added + std::max(brew.of.grain + brew.of.preBoil, water)),
                             carbonated(brew)});
  return texts;
}

TEST_F(Instructions, AgreeWithASecondWritingOverManyBrews) {
  std::string all;
  for (const char* key : workedOutKeys) all += marker(key) + "|";
  putTemplates(all);
  std::mt19937 random(11);
  const auto between = [&](int from, int to) {
    return from + static_cast<int>(random() % static_cast<unsigned>(to - from));
  };
  for (int i = 0; i < 10000; ++i) {
    const double boil = between(90, 101);
    set(keys::BoilingPoint, boil);
    Brew brew{{between(500, 9000) + 0.3, between(15, 45) / 10.0, between(0, 3000) + 0.7,
               between(-5, 30) + 0.1, between(8000, 60000) + 0.9, random() % 3 ? 0 : 3210.5},
              words::mashTypes[random() % 4],
              words::spargeMethods[random() % 3],
              {},
              words::carbonations[random() % 6],
              between(0, 400) / 100.0,
              between(-2, 30) + 0.3};
    double temperature = between(35, 60) + 0.2;
    for (int steps = between(0, 7); steps > 0; --steps, temperature += between(1, 7)) {
      brew.steps.push_back({words::stepTypes[random() % 6], temperature, between(0, 90) * 1.0});
    }
    std::string expected;
    for (const std::string& text : workedOut(brew, boil)) expected += text + "|";
    ASSERT_EQ(ZYMHTML::renderToHTMLBatchInstructions(brew.batch()), expected) << i;
  }
}

// Worked out by hand; the arithmetic stands beside each.
TEST_F(Instructions, GiveTextbookMashes) {
  const Brew infusion{{5000, 2.5, 1500, 20, 27000, 0},
                      words::FullMash,
                      words::FlySparge,
                      {{words::HeatToStrike, 66, 60}}};
  // 66 + 46 * (1600 + 1500) / 12500; 27 - (12.5 - 5); 12.5 + 19.5
  expect(infusion.batch(), R"(StrikeWaterTemperature: 77 ˚C
SpargeVolume: 19.50 l
TotalWaterRequired: 32.00 l
SubsequentMashSteps: 
AllowTemperatureToStabilizeAtRestFor: Allow the temperature to stabilize at 66 ˚C. Allow to rest at this temperature for 60 minutes.
)");
  const Brew steps{{4000, 2, 0, 15, 25000, 0},
                   words::FullMash,
                   words::BatchSparge,
                   {{words::HeatToStrike, 50, 15},
                    {words::RaiseByInfusion, 65, 0},
                    {words::RaiseByInfusion, 72, 0}}};
  // 15 * 9280 / 35 = 3977; 7 * 13257 / 28 = 3314; 4000 + 12500 - 15291 = 1209
  expect(
      steps.batch(),
      R"(SubsequentMashSteps: <p>Raise the temperature to 65 ˚C by adding 3.98 l of boiling water<p>Raise the temperature to 72 ˚C by adding 3.31 l of boiling water
BatchSpargeSteps: <p>Add 1.21 l of water at 72 ˚C, mix and run off.</p>|<p>Add a further 12.50 l of water at 72 ˚C and mix.</p>|
)");
  const Brew decoction{{4500, 3, 1000, 18, 26000, 0},
                       words::FullMash,
                       words::NoSparge,
                       {{words::HeatToStrike, 52, 15},
                        {words::PullDecoction, 65, 20},
                        {words::RestAt, 65, 30},
                        {words::PullDecoction, 76, 10}}};
  // 15940 * 13 / 48 = 4317; 15940 * 11 / 35 = 5010
  expect(
      decoction.batch(),
      R"(SubsequentMashSteps: <p>Pull a decoction of 4.32 l, raise to boil, and boil for a total of 20 minutes. Add back to mash to raise the temperature to 65 ˚C and then rest at 65 ˚C for 30 minutes.</p><p>Pull a decoction of 5.01 l, raise to boil, and boil for a total of 10 minutes. Add back to mash to raise the temperature to 76 ˚C
HeatWaterTo: Heat 13.50 l of water to 58 ˚C.
)");
}

TEST_F(Instructions, AddTheLastMillilitreOfASparge) {
  // 20000 - (27999.1 - 8000)
  const Brew brew{{8000, 3.4998875, 0, 20, 20000, 0}, words::FullMash, words::BatchSparge, {}};
  expect(brew.batch(),
         "BatchSpargeSteps: <p>Run off the hot wort and collect.</p>|"
         "<p>Add a further 1 ml of water at 0 ˚C and mix.</p>|\n");
}

TEST_F(Instructions, SpeakTheUnitsAndLanguageOfTheUser) {
  const Brew brew{{5000, 2.5, 0, 20, 27000, 2000},
                  words::ExtractWithMiniMash,
                  words::BatchSparge,
                  {{words::HeatToStrike, 60, 20},
                   {words::RaiseByDirectHeating, 70, 12},
                   {words::RestAt, 70, 30},
                   {words::MashOut, 77, 5}},
                  words::ForceCarbonated,
                  2.5};
  set(keys::Units, 0);
  set(keys::TemperatureUnit, 1);
  expect(
      brew.batch(),
      R"(SubsequentMashSteps: <p>Raise the temperature to 158 ˚F by direct heating over 12 minutes, and then rest at 158 ˚F for 30 minutes.</p><p>Raise the temperature to 171 ˚F over 5 minutes and mash out.</p>
PrepareWaterForTheBoil: Prepare 7.13 US gals of water for the boil.
TotalGrain: 11lb 0oz
)");
  useLocale("de_DE");
  set(keys::Units, 2);
  set(keys::TemperatureUnit, 0);
  expect(
      brew.batch(),
      R"(SubsequentMashSteps: <p>Die Temperatur auf 70 ˚C erhöhen durch direktes Heizen über 12 Minuten, und dann bei 70 ˚C 30 Minuten rasten.</p><p>Die Temperatur auf 77 ˚C erhöhen über 5 Minuten und abmaischen.</p>
AdditionalWaterText:  Dazu voraussichtlich mit 2,00 l Wasser verdünnen.
BatchSpargeMashFinalLine: <p>Abläutern, bis insgesamt 27,00 l Würze gewonnen sind.</p>
CarbonationText: Auf 2,5 Volumen karbonisieren mit 17 psi/119 kPa bei 10 °C.
)");
}

TEST_F(Instructions, SayHowToCarbonate) {
  const std::string tooLow = "The desired carbonation level is below that possible from priming";
  const std::string start = "Carbonate to 2.4 volumes using ";
  const std::tuple<const char*, double, double, std::string> rows[] = {
      // Beer of 20 °C holds 0.854 volumes: (2.4 - 0.854) * 4. Forced: (2.4 - 1.1275) / 0.07935.
      {"Primed With Sugar", 2.4, 20, start + "6.2 g/l (0.8 oz/gal) of sugar."},
      {"Primed With Honey", 2.4, 20, start + "8.7 g/l (1.1 oz/gal) of honey."},
      {"Primed With DME", 2.4, 20, start + "8.0 g/l (1.0 oz/gal) of dry malt extract."},
      {"Krausened with Wort", 2.4, 20, start + "krausen."},
      {"Force Carbonated", 2.4, 20, start + "16 psi/111 kPa at 10˚C/50˚F."},
      {"Primed With Sugar", 0.9, 20, tooLow},
      {"Primed With Sugar", 0.907, 20,
       "Carbonate to 0.9 volumes using 0.2 g/l (0.0 oz/gal) of sugar."},
      {"Primed With Sugar", 2.4, -400, tooLow},
      {"In some way", 2.4, 20, start},
      {"Nothing", 2.4, 20, ""},
      {"Primed With Sugar", 0.01, 20, ""},
      {"Force Carbonated", 0.02, 20, "Carbonate to 0.0 volumes using 0 psi/0 kPa at 10˚C/50˚F."}};
  for (const auto& [how, volumes, celsius, text] : rows) {
    Brew brew{{}, words::Extract, "", {}, how, volumes, celsius};
    expect(brew.batch(), "CarbonationText: " + text + "\n");
  }
}

PlistDictionary fullBatch() {
  return R"({"BatchTitle": "<b>1</b>", "Cost": "1234.000000", "SpargeMethod": "Fly Sparge",
    "WaterGrainRatio": "2.5", "RoomTemperature": "15", "ModifiedRecipe": {
    "PreBoilWortVolume": "31000", "VolumeToFermenter": "24000", "VolumeAtPitching": "24000",
    "FermentationTemperature": "18",
    "RecipeTitle": "Tom & Jerry <3", "MashType": "Full Mash", "TargetWaterProfileUsedUUID": "w",
    "CaSO4InGrammes": "3.5", "MgSO4InGrammes": "0.000001", "NaHCO3InGrammes": "2.5",
    "NaClInGrammes": "1.25", "CaCl2InGrammes": "4.5", "CaCO3InGrammes": "0.75",
    "MashpH": "5.25", "Acid": "LACTIC <Acid>", "BoilDuration": "90", "CarbonationVolumes": "2.45",
    "Carbonation": "Nothing", "Conditioning": "Lagered for 4 weeks", "ExpectedPreBoilGravity": "1.040",
    "ExpectedOriginalGravity": "1.050", "ExpectedFinalGravity": "1.012",
    "FermentableIngredients": [
      {"Ingredient": "Pale <*KEYNAME=FontName>", "Amount": "4000", "When": "In Mash/Steeped",
       "Batches": [{"Amount": "3000", "BatchName": "Sack \"A\""}, {"Amount": "0.01"}]},
      {"Ingredient": "Sugar", "Amount": "300", "When": "Start Of Boil"},
      {"Ingredient": "Honey", "Amount": "200", "When": "End Of Boil"}],
    "HopIngredients": [
      {"Variety": "M", "Amount": "1", "When": "In Mash"},
      {"Variety": "F", "Amount": "2", "When": "First Wort Hopped"},
      {"Variety": "B", "Amount": "30", "When": "60 Min From End",
       "Batches": [{"Amount": "30", "BatchName": "L", "Alpha": "5.5"}]},
      {"Variety": "T", "Amount": "4", "When": "At turn off"},
      {"Variety": "H", "Amount": "5", "When": "In Hop-Back"},
      {"Variety": "I", "Amount": "6", "When": "In Fermenter"},
      {"Variety": "D", "Amount": "7", "When": "Dry-Hopped"}, "no row"],
    "OtherIngredients": [{"Ingredient": "Rice", "Amount": "50", "When": "In Mash"},
      {"Ingredient": "Moss", "Amount": "5", "When": "In Boil"},
      {"Ingredient": "Oak", "Amount": "20", "When": "In Fermenter"}],
    "YeastIngredients": [{"Name": "S", "Amount": "500", "YeastAmountType": "Slurry"},
      {"Name": "P", "Amount": "2", "UsageNote": "1 < 2",
       "Batches": [{"Amount": "1", "BatchName": "Y"}]}],
    "MashSchedule": {"Steps": [{"StepType": "Heat to strike and dough in", "Temperature": "66",
      "Duration": "59.5"}]}}})"_json;
}

TEST_F(Instructions, ListWhatGoesInWhen) {
  ZYMWaters::sharedInstance().addItemsFromArray(
      {PlistDictionary{{keys::UUID, "w"}, {keys::Name, "Burton"}},
       PlistDictionary{{keys::UUID, "n"}, {keys::Name, words::NoWaterProfileChosen}}});
  PlistDictionary batch = fullBatch();
  for (PlistDictionary& malt :
       batch.editDictionary(keys::ModifiedRecipe)->editRows(keys::FermentableIngredients)) {
    for (PlistDictionary& lot : malt.editRows(keys::Batches))
      lot.set(keys::DeliveredOn, NSDate::dateWithTimeIntervalSinceReferenceDate(0));
  }
  // Brix: 1.04 * 258.6 * 0.04 / (1 + 0.87955 * 0.04), likewise of 0.05; the refractometer shows
  // 1.012 at 6.8 * 1.04. The sparge is -(10000 - 4000).
  expect(batch, R"(BatchTitle: &lt;b&gt;1&lt;/b&gt;
RecipeTitle: Tom &amp; Jerry &lt;3
Cost: $12.34
PreBoilGravity: 1.040 SG (10.4 Brix)
PreFermentationGravity: 1.050 SG (12.9 Brix)
FinalGravity: 1.012 SG (7.1 Brix)
CarbonationVolumes: 2.4
FirstRestTime: 60
FirstRestTemperature: 66 ˚C
TotalGrain: 4.000 kg
WaterTreatment: <p>Adjust water profile to match that of Burton.</p>|
SaltAdditions: <p>Add the following salts.</p>|<ul>|<li>3.50 g of gypsum.</li>|<li>2.50 g of baking soda.</li>|<li>1.25 g of table salt.</li>|<li>4.50 g of calcium chloride.</li>|<li>0.75 g of chalk.</li>|</ul>|
MashFermentables: <ul>|<li>4.000 kg of Pale &lt;*KEYNAME=FontName&gt;</li>|&nbsp;&nbsp;&nbsp;&nbsp;3.000 kg of &quot;sack &quot;a&quot;&quot; added to inventory Jan 1, 2001<br>|&nbsp;<br></ul>|
MashOthers: <p>Also add the following during the mash</p>|<ul>|<li>50 g of Rice</li>|<li>1.00 g of M</li>|</ul>|
MashPH: <p>Mash pH should be 5.3 (adjust if necessary with lactic &lt;acid&gt;).</p>|
FirstWortHops: <p>As the wort is coming to boil, add the following 'first wort hops'.</p>|<ul>|<li>2.00 g of F</li>|</ul>|
StartOfBoilFermentables: <p>When the wort is at the boil add the following fermentable ingredients (stirring to avoid scorching).</p>|<ul>|<li>300 g of Sugar</li>|</ul>|
BoilHops: <p>Add the following hops at the times given.</p>|<ul>|<li>30 g of B (60 Min From End)</li>|&nbsp;&nbsp;&nbsp;&nbsp;30 g of &quot;l&quot; (alpha 5.5 %) added to inventory <br>|&nbsp;<br></ul>|
BoilOthers: <p>Also add the following during the boil.</p>|<ul>|<li>5.00 g of Moss</li>|</ul>|
EndOfBoilFermentables: <p>Towards the end of the boil add the following fermentable ingredients (stirring to avoid scorching).</p>|<ul>|<li>200 g of Honey</li>|</ul>|
BoilTime: 90
TurnOffHops: <p>At 'turn off' add the following hops.</p>|<ul>|<li>4.00 g of T</li>|</ul>|
HopbackHops: <p>Drain the hot wort into your hopback containing.</p>|<ul>|<li>5.00 g of H</li>|</ul>|
FermentationHops: <p>In your fermenter place the following hops.</p>|<ul>|<li>6.00 g of I</li>|</ul>|
FermentationOthers: <p>Also add the following.</p>|<ul>|<li>20 g of Oak</li>|</ul>|
DryHops: <p>Dry hop with the following hops.</p>|<ul>|<li>7.00 g of D</li>|</ul>|
Yeasts: |<ul>|<li>500 ml of S</li>|<li>2 packs of P - 1 &lt; 2</li>|&nbsp;&nbsp;&nbsp;&nbsp;1 pack of &quot;y&quot; added to inventory <br>|</ul>|
CarbonationText, AdditionalWaterText: , 
Formula, SummaryText, GravityBeforeBoilText, OriginalGravityText: Tinseth, Summary, Gravity Before Boil, Original Gravity
FinalGravityText, VolumeBeforeBoilText, VolumeAfterBoilText: Final Gravity, Volume Before Boil, Volume After Boil
VolumeTransferredText, WaterAddedToDiluteText, VolumeAtPitchingText: Volume Transferred, Water Added To Dilute, Volume At Pitching
VolumeOfFinishedBeerText, TotalWaterRequiredText, TotalGrainText: Volume Of Finished Beer, Total Water Required, Total Grain
BatchCostText, PreparationText, MashingText, SteepingText, BoilingText: Batch Cost, Preparation, Mashing, Steeping, Boiling
FermentationText, FermentAtWith, RackingAndPackagingText: Fermentation, Ferment at 18 ˚C with, Racking And Packaging
YeastStarterText: If using a yeast starter prepare one a couple of days in advance.
CrushGrainsText: If necessary crush the grains.
PrepareWaterForTheBoil: Prepare 31.00 l of water for the boil.
HeatWaterTo: Heat 10.00 l of water to 73 ˚C.
PrepareWaterAndHeatTo: Prepare 31.00 l of water and heat to 155F/65C.
DoughInTheFollowingFermentables: Dough in the following fermentable ingredients.
SpargeTheGrainsAndTopUp: Sparge the grains and top up if necessary to obtain 31.00 l of wort (requires 25.00 l).
SteepingTheFollowingIngredients: Steep the following ingredients for 30 minutes at 155F/65C.
TakeOutTheGrainsAndRinse: Take out the the grains and rinse to obtain 31.00 l of wort.
BringTheWaterToBoil: Bring the wort to the boil.
BoilTheWort: Boil the wort for a total of 90 minutes.
ChillTheWortToPitching: Chill the wort to the appropriate pitching temperature and rack the wort to your fermenter.
TheDesiredVolumeAtPitching: The desired volume at pitching is 24.00 l.
IfUsingASecondary: If using a secondary, transfer when appropriate.
IfUsingASecondaryTheBeer: If using a secondary, the beer should be lagered for 4 weeks before racking into either bottles or keg.
IfNotUsingASecondaryTheBeer: If not using a secondary, the beer should be racked directly into bottles or keg and lagered for 4 weeks.
)");
  PlistDictionary* recipe = batch.editDictionary(keys::ModifiedRecipe);
  recipe->set(keys::Acid, words::Unadjusted);
  recipe->set(keys::MashType, words::Extract);
  for (const char* water : {"gone", "n"}) {
    recipe->set(keys::TargetWaterProfileUsedUUID, water);
    expect(batch, "MashPH: <p>Mash pH should be 5.3.</p>|\nWaterTreatment: \nSpargeVolume: \n");
  }
  expect({{keys::ModifiedRecipe, R"({"MashType": "Extract", "MgSO4InGrammes": "0.00002"})"_json}},
         "SaltAdditions: <p>Add the following salts.</p>|<ul>|<li>0.00 g of epsom "
         "salts.</li>|</ul>|\n");
  expect({{keys::ModifiedRecipe, PlistDictionary{{keys::MashType, words::Extract}}}},
         "SaltAdditions: \nFirstRestTime: \nBoilHops: \nMashOthers: \nYeasts: |<ul>|</ul>|\n");
}

TEST_F(Instructions, HaveATemplateForEachKindOfMash) {
  for (const char* name : templates) putTemplate(name, name);
  const std::tuple<std::string_view, std::string_view, const char*> rows[] = {
      {words::FullMash, words::FlySparge, templates[0]},
      {words::FullMash, words::NoSparge, templates[1]},
      {words::Extract, words::FlySparge, templates[2]},
      {words::ExtractWithSteepedGrains, words::FlySparge, templates[3]},
      {words::ExtractWithMiniMash, words::FlySparge, templates[4]},
      {"Some", "", ""}};
  for (const auto& [mashType, sparge, name] : rows) {
    EXPECT_EQ(ZYMHTML::renderToHTMLBatchInstructions(Brew{{}, mashType, sparge, {}}.batch()), name);
  }
  const std::pair<std::string, bool> odd[] = {{std::string(32U << 20U, 'x'), true},
                                              {std::string((32U << 20U) + 1, 'x'), false},
                                              {"in ISO-8859-1: \xE4", false}};
  for (const auto& [text, isPage] : odd) {
    putTemplate(templates[2], text);
    const Brew brew{{}, words::Extract, "", {}};
    EXPECT_EQ(ZYMHTML::renderToHTMLBatchInstructions(brew.batch()) == text, isPage);
  }
}

TEST_F(Instructions, ShowNoNumberThatIsNone) {
  const Step over{words::RaiseByInfusion, 100, 1e300};
  std::vector<Step> many(10000, {words::PullDecoction, 1e200, NAN});
  many[1] = over;
  putTemplates(listing({"StrikeWaterTemperature", "SubsequentMashSteps", "BatchSpargeSteps",
                        "SpargeVolume", "TotalWaterRequired", "PreBoilGravity", "FinalGravity",
                        "TotalGrain", "FirstRestTime", "Cost", "CarbonationText"}));
  for (const double volume : {0.0, 1e308, static_cast<double>(NAN)}) {
    for (const std::string_view sparge : words::spargeMethods) {
      for (const auto& steps : {std::vector<Step>(), {over}, {over, over, over}, many}) {
        const Brew brew{{volume, 0, volume, 20, volume, volume},
                        words::FullMash,
                        sparge,
                        steps,
                        words::PrimedWithSugar,
                        volume};
        set(keys::GravityUnits, steps.empty());
        const std::string text = ZYMHTML::renderToHTMLBatchInstructions(brew.batch());
        for (const char* bad : {"nan", "inf", "NaN", "∞", "-0 "}) {
          EXPECT_THAT(text, Not(HasSubstr(bad)));
        }
      }
    }
  }
  EXPECT_EQ(ZYMHTML::renderToHTMLBatchInstructions({}), "");
}

}  // namespace
}  // namespace zym
