#include "tests/reports/Pages.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/transformers/ZYMTemperatureValueTransformer.h"
#include "zymcore/transformers/ZYMVolumeValueTransformer.h"

namespace zym {
namespace {

using testing::WithPages;

constexpr const char* mashKeys[] = {
    "StrikeWaterVolume",        "StrikeWaterTemperature", "SubsequentMashSteps", "BatchSpargeSteps",
    "BatchSpargeMashFinalLine", "SpargeVolume",           "TotalWaterRequired"};

class Instructions : public WithPages {
 protected:
  Instructions() {
    for (const char* name : {"Full Mash Template", "Full Mash Template-Batch Sparge",
                             "Extract Template", "Steeped Template", "Mini Mash Template"}) {
      putTemplate(name, "");
    }
  }
  /// Every template gives that value alone.
  std::string value(const PlistDictionary& batch, std::string_view key) {
    const PlistDictionary* recipe = batch.dictionary(keys::ModifiedRecipe);
    const std::string_view type = recipe->stringValue(keys::MashType);
    const bool isFly = batch.stringValue(keys::SpargeMethod) == words::FlySparge;
    putTemplate(type == words::FullMash
                    ? (isFly ? "Full Mash Template" : "Full Mash Template-Batch Sparge")
                : type == words::Extract                  ? "Extract Template"
                : type == words::ExtractWithSteepedGrains ? "Steeped Template"
                                                          : "Mini Mash Template",
                marker(key));
    return ZYMHTML::renderToHTMLBatchInstructions(batch);
  }
};

struct Step {
  std::string_view type;
  double temperature, minutes;
};
/// A mash in plain numbers: g, ml, °C.
struct Brew {
  double grain, ratio, tun, room, preBoil, added;
  std::string_view mashType, sparge;
  std::vector<Step> steps;

  [[nodiscard]] PlistDictionary batch() const {
    PlistArray rows;
    for (const Step& step : steps) {
      rows.append(PlistDictionary{{keys::StepType, step.type},
                                  {keys::Temperature, step.temperature},
                                  {keys::Duration, step.minutes}});
    }
    return {
        {keys::WaterGrainRatio, ratio},
        {keys::MTThermalMass, tun},
        {keys::RoomTemperature, room},
        {keys::SpargeMethod, sparge},
        {keys::ModifiedRecipe,
         PlistDictionary{
             {keys::MashType, mashType},
             {keys::PreBoilWortVolume, preBoil},
             {keys::VolumeToFermenter, 0},
             {keys::VolumeAtPitching, added},
             {keys::FermentableIngredients,
              PlistArray{PlistDictionary{{keys::Amount, grain}, {keys::When, words::InMashSteeped}},
                         PlistDictionary{{keys::Amount, 777}, {keys::When, words::EndOfBoil}}}},
             {keys::MashSchedule, PlistDictionary{{keys::Steps, std::move(rows)}}}}}};
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

/// The same worked out as what is warm gives to what is cold.
std::vector<std::string> workedOut(const Brew& brew, double boil) {
  double water = brew.grain * brew.ratio;
  const double solids = 0.32 * brew.grain + brew.tun;
  const double first = brew.steps.empty() ? brew.room : brew.steps[0].temperature;
  std::vector<std::string> texts = {ml(water),
                                    celsius(first + solids * (first - brew.room) / water)};
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
  const double drained = water - brew.grain;
  if (isMash && brew.sparge == words::BatchSparge) {
    const std::string at = celsius(brew.steps.empty() ? 0 : brew.steps.back().temperature);
    const double wanted = brew.preBoil - std::max(drained, brew.preBoil / 2);
    lines = drained > brew.preBoil / 2 ? "<p>Run off the hot wort and collect.</p>\n"
                                       : "<p>Add " + ml(brew.preBoil / 2 - drained) +
                                             " of water at " + at + ", mix and run off.</p>\n";
    water += std::max(0.0, brew.preBoil / 2 - drained);
    if (wanted > 0) {
      lines += "<p>Add a further " + ml(wanted) + " of water at " + at + " and mix.</p>\n";
      water += wanted;
    }
    last = "<p>Run off to collect a total of " + ml(brew.preBoil) + " of wort.</p>";
  } else if (isMash && brew.sparge == words::NoSparge) {
    last = "<p>Remove grains to leave " + ml(brew.preBoil) + " of wort.</p>";
  } else if (isMash && brew.sparge == words::FlySparge) {
    fly = ml(brew.preBoil - drained);
    water = brew.preBoil + brew.grain;
  }
  texts.insert(texts.end(),
               {lines, last, fly, ml(brew.added + std::max(brew.grain + brew.preBoil, water))});
  return texts;
}

TEST_F(Instructions, AgreeWithASecondWritingOverManyMashes) {
  std::string all;
  for (const char* key : mashKeys) all += marker(key) + "|";
  for (const char* name : {"Full Mash Template", "Full Mash Template-Batch Sparge",
                           "Extract Template", "Steeped Template", "Mini Mash Template"}) {
    putTemplate(name, all);
  }
  std::mt19937 random(11);
  const auto between = [&](int from, int to) {
    return from + static_cast<int>(random() % static_cast<unsigned>(to - from));
  };
  for (int i = 0; i < 10000; ++i) {
    set(keys::BoilingPoint, between(90, 101));
    Brew brew{between(500, 9000) + 0.3,
              between(15, 45) / 10.0,
              between(0, 3000) + 0.7,
              between(-5, 30) + 0.1,
              between(8000, 60000) + 0.9,
              random() % 3 ? 0 : 3210.5,
              words::mashTypes[random() % 4],
              words::spargeMethods[random() % 3],
              {}};
    double temperature = between(35, 60) + 0.2;
    for (int steps = between(0, 7); steps > 0; --steps, temperature += between(1, 7)) {
      brew.steps.push_back({words::stepTypes[random() % 6], temperature, between(0, 90) * 1.0});
    }
    std::string expected;
    for (const std::string& text :
         workedOut(brew, NSUserDefaults::standardUserDefaults().doubleForKey(keys::BoilingPoint))) {
      expected += text + "|";
    }
    ASSERT_EQ(ZYMHTML::renderToHTMLBatchInstructions(brew.batch()), expected) << i;
  }
}

// Worked out by hand; the arithmetic stands beside each.
TEST_F(Instructions, GiveTextbookMashes) {
  const Brew infusion{5000,
                      2.5,
                      1500,
                      20,
                      27000,
                      0,
                      words::FullMash,
                      words::FlySparge,
                      {{words::HeatToStrike, 66, 60}}};
  // 66 + 46 * (1600 + 1500) / 12500; 27 - (12.5 - 5); 12.5 + 19.5
  EXPECT_EQ(value(infusion.batch(), "StrikeWaterTemperature"), "77 ˚C");
  EXPECT_EQ(value(infusion.batch(), "SpargeVolume"), "19.50 l");
  EXPECT_EQ(value(infusion.batch(), "TotalWaterRequired"), "32.00 l");
  EXPECT_EQ(value(infusion.batch(), "SubsequentMashSteps"), "");
  EXPECT_EQ(value(infusion.batch(), "AllowTemperatureToStabilizeAtRestFor"),
            "Allow the temperature to stabilize at 66 ˚C. Allow to rest at this temperature for 60 "
            "minutes.");

  const Brew steps{4000,
                   2,
                   0,
                   15,
                   25000,
                   0,
                   words::FullMash,
                   words::BatchSparge,
                   {{words::HeatToStrike, 50, 15},
                    {words::RaiseByInfusion, 65, 0},
                    {words::RaiseByInfusion, 72, 0}}};
  // 15 * 9280 / 35 = 3977; 7 * 13257 / 28 = 3314; 4000 + 12500 - 15291 = 1209
  EXPECT_EQ(value(steps.batch(), "SubsequentMashSteps"),
            "<p>Raise the temperature to 65 ˚C by adding 3.98 l of boiling water"
            "<p>Raise the temperature to 72 ˚C by adding 3.31 l of boiling water");
  EXPECT_EQ(value(steps.batch(), "BatchSpargeSteps"),
            "<p>Add 1.21 l of water at 72 ˚C, mix and run off.</p>\n"
            "<p>Add a further 12.50 l of water at 72 ˚C and mix.</p>\n");

  const Brew decoction{4500,
                       3,
                       1000,
                       18,
                       26000,
                       0,
                       words::FullMash,
                       words::NoSparge,
                       {{words::HeatToStrike, 52, 15},
                        {words::PullDecoction, 65, 20},
                        {words::RestAt, 65, 30},
                        {words::PullDecoction, 76, 10}}};
  // 15940 * 13 / 48 = 4317; 15940 * 11 / 35 = 5010
  EXPECT_EQ(value(decoction.batch(), "SubsequentMashSteps"),
            "<p>Pull a decoction of 4.32 l, raise to boil, and boil for a total of 20 minutes. Add "
            "back to mash to raise the temperature to 65 ˚C and then rest at 65 ˚C for 30 "
            "minutes.</p><p>Pull a decoction of 5.01 l, raise to boil, and boil for a total of 10 "
            "minutes. Add back to mash to raise the temperature to 76 ˚C");
  EXPECT_EQ(value(decoction.batch(), "HeatWaterTo"), "Heat 13.50 l of water to 58 ˚C.");
}

TEST_F(Instructions, SpeakTheUnitsAndLanguageOfTheUser) {
  const Brew brew{5000,
                  2.5,
                  0,
                  20,
                  27000,
                  2000,
                  words::ExtractWithMiniMash,
                  words::BatchSparge,
                  {{words::HeatToStrike, 60, 20},
                   {words::RaiseByDirectHeating, 70, 12},
                   {words::RestAt, 70, 30},
                   {words::MashOut, 77, 5}}};
  set(keys::Units, 0);
  set(keys::TemperatureUnit, 1);
  EXPECT_EQ(
      value(brew.batch(), "SubsequentMashSteps"),
      "<p>Raise the temperature to 158 ˚F by direct heating over 12 minutes, and then rest at "
      "158 ˚F for 30 minutes.</p><p>Raise the temperature to 171 ˚F over 5 minutes and mash "
      "out.</p>");
  EXPECT_EQ(value(brew.batch(), "PrepareWaterForTheBoil"),
            "Prepare 7.13 US gals of water for the boil.");
  EXPECT_EQ(value(brew.batch(), "TotalGrain"), "11lb 0oz");
  useLocale("de_DE");
  set(keys::Units, 2);
  set(keys::TemperatureUnit, 0);
  EXPECT_EQ(
      value(brew.batch(), "SubsequentMashSteps"),
      "<p>Die Temperatur auf 70 ˚C erhöhen durch direktes Heizen über 12 Minuten, und dann "
      "bei 70 ˚C 30 Minuten rasten.</p><p>Die Temperatur auf 77 ˚C erhöhen über 5 Minuten und "
      "abmaischen.</p>");
  EXPECT_EQ(value(brew.batch(), "AdditionalWaterText"),
            " Dazu voraussichtlich mit 2,00 l Wasser verdünnen.");
  EXPECT_EQ(value(brew.batch(), "BatchSpargeMashFinalLine"),
            "<p>Abläutern, bis insgesamt 27,00 l Würze gewonnen sind.</p>");
}

TEST_F(Instructions, SayHowToCarbonate) {
  const auto text = [&](const char* how, double volumes, double celsius) {
    return value(
        {{keys::ModifiedRecipe, PlistDictionary{{keys::MashType, words::Extract},
                                                {keys::Carbonation, how},
                                                {keys::CarbonationVolumes, volumes},
                                                {keys::FermentationTemperature, celsius}}}},
        "CarbonationText");
  };
  // Beer of 20 °C holds 0.854 volumes: (2.4 - 0.854) * 4. Forced: (2.4 - 1.1275) / 0.07935.
  EXPECT_EQ(text("Primed With Sugar", 2.4, 20),
            "Carbonate to 2.4 volumes using 6.2 g/l (0.8 oz/gal) of sugar.");
  EXPECT_EQ(text("Primed With Honey", 2.4, 20),
            "Carbonate to 2.4 volumes using 8.7 g/l (1.1 oz/gal) of honey.");
  EXPECT_EQ(text("Primed With DME", 2.4, 20),
            "Carbonate to 2.4 volumes using 8.0 g/l (1.0 oz/gal) of dry malt extract.");
  EXPECT_EQ(text("Krausened with Wort", 2.4, 20), "Carbonate to 2.4 volumes using krausen.");
  EXPECT_EQ(text("Force Carbonated", 2.4, 20),
            "Carbonate to 2.4 volumes using 16 psi/111 kPa at 10˚C/50˚F.");
  EXPECT_EQ(text("Force Carbonated", 0.5, 20),
            "Carbonate to 0.5 volumes using 0 psi/0 kPa at 10˚C/50˚F.");
  EXPECT_EQ(text("Primed With Sugar", 0.9, 20),
            "The desired carbonation level is below that possible from priming");
  EXPECT_EQ(text("Primed With Sugar", 2.4, -400),
            "The desired carbonation level is below that possible from priming");
  EXPECT_EQ(text("Nothing", 2.4, 20), "");
  EXPECT_EQ(text("Primed With Sugar", 0.01, 20), "");
}

PlistDictionary fullBatch() {
  return R"({"BatchTitle": "<b>1</b>", "Cost": "1234.000000", "SpargeMethod": "Fly Sparge",
    "WaterGrainRatio": "2.5", "RoomTemperature": "15", "ModifiedRecipe": {
    "RecipeTitle": "Tom & Jerry <3", "MashType": "Full Mash", "TargetWaterProfileUsedUUID": "w",
    "CaSO4InGrammes": "3.5", "CaCO3InGrammes": "0.000001", "NaClInGrammes": "1.25",
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
      {PlistDictionary{{keys::UUID, "w"}, {keys::Name, "Burton"}}});
  PlistDictionary batch = fullBatch();
  PlistDictionary* malt = batch.editDictionary(keys::ModifiedRecipe);
  const std::pair<const char*, const char*> rows[] = {
      {"BatchTitle", "&lt;b&gt;1&lt;/b&gt;"},
      {"RecipeTitle", "Tom &amp; Jerry &lt;3"},
      {"Cost", "$12.34"},
      // 1.04 * 258.6 * 0.04 / (1 + 0.87955 * 0.04), likewise of 0.05
      {"PreBoilGravity", "1.040 SG (10.4 Brix)"},
      {"PreFermentationGravity", "1.050 SG (12.9 Brix)"},
      {"CarbonationVolumes", "2.4"},
      {"FirstRestTime", "60"},
      {"FirstRestTemperature", "66 ˚C"},
      {"WaterTreatment", "<p>Adjust water profile to match that of Burton.</p>\n"},
      {"SaltAdditions",
       "<p>Add the following salts.</p>\n<ul>\n<li>3.50 g of gypsum.</li>\n"
       "<li>1.25 g of table salt.</li>\n</ul>\n"},
      {"MashFermentables",
       "<ul>\n<li>4.000 kg of Pale &lt;*KEYNAME=FontName&gt;</li>\n"
       "&nbsp;&nbsp;&nbsp;&nbsp;3.000 kg of &quot;sack &quot;a&quot;&quot; added "
       "to inventory <br>\n&nbsp;<br></ul>\n"},
      {"MashOthers",
       "<p>Also add the following during the mash</p>\n<ul>\n<li>50 g of Rice</li>\n"
       "<li>1.00 g of M</li>\n</ul>\n"},
      {"MashPH", "<p>Mash pH should be 5.3 (adjust if necessary with lactic &lt;acid&gt;).</p>\n"},
      {"FirstWortHops",
       "<p>As the wort is coming to boil, add the following 'first wort hops'.</p>"
       "\n<ul>\n<li>2.00 g of F</li>\n</ul>\n"},
      {"StartOfBoilFermentables",
       "<p>When the wort is at the boil add the following fermentable ingredients (stirring to "
       "avoid scorching).</p>\n<ul>\n<li>300 g of Sugar</li>\n</ul>\n"},
      {"BoilHops",
       "<p>Add the following hops at the times given.</p>\n<ul>\n<li>30 g of B (60 Min "
       "From End)</li>\n&nbsp;&nbsp;&nbsp;&nbsp;30 g of &quot;l&quot; (alpha 5.5 %) "
       "added to inventory <br>\n&nbsp;<br></ul>\n"},
      {"BoilOthers",
       "<p>Also add the following during the boil.</p>\n<ul>\n<li>5.00 g of Moss</li>"
       "\n</ul>\n"},
      {"EndOfBoilFermentables",
       "<p>Towards the end of the boil add the following fermentable ingredients (stirring to "
       "avoid scorching).</p>\n<ul>\n<li>200 g of Honey</li>\n</ul>\n"},
      {"TurnOffHops",
       "<p>At 'turn off' add the following hops.</p>\n<ul>\n<li>4.00 g of T</li>\n</ul>\n"},
      {"HopbackHops",
       "<p>Drain the hot wort into your hopback containing.</p>\n<ul>\n<li>5.00 g of "
       "H</li>\n</ul>\n"},
      {"FermentationHops",
       "<p>In your fermenter place the following hops.</p>\n<ul>\n<li>6.00 g of "
       "I</li>\n</ul>\n"},
      {"FermentationOthers", "<p>Also add the following.</p>\n<ul>\n<li>20 g of Oak</li>\n</ul>\n"},
      {"DryHops", "<p>Dry hop with the following hops.</p>\n<ul>\n<li>7.00 g of D</li>\n</ul>\n"},
      {"Yeasts",
       "\n<ul>\n<li>500 ml of S</li>\n<li>2 packs of P - 1 &lt; 2</li>\n"
       "&nbsp;&nbsp;&nbsp;&nbsp;1 pack of &quot;y&quot; added to inventory <br>\n</ul>\n"},
      {"BoilTheWort", "Boil the wort for a total of 90 minutes."},
      {"IfUsingASecondaryTheBeer",
       "If using a secondary, the beer should be lagered for 4 weeks "
       "before racking into either bottles or keg."},
      {"IfNotUsingASecondaryTheBeer",
       "If not using a secondary, the beer should be racked "
       "directly into bottles or keg and lagered for 4 weeks."},
      {"IfUsingASecondary", "If using a secondary, transfer when appropriate."},
      {"TakeOutTheGrainsAndRinse", "Take out the the grains and rinse to obtain 0 ml of wort."},
      {"PrepareWaterAndHeatTo", "Prepare 0 ml of water and heat to 155F/65C."},
      {"SteepingTheFollowingIngredients",
       "Steep the following ingredients for 30 minutes at 155F/65C."},
      {"DoughInTheFollowingFermentables", "Dough in the following fermentable ingredients."},
      {"YeastStarterText", "If using a yeast starter prepare one a couple of days in advance."},
      {"CrushGrainsText", "If necessary crush the grains."},
      {"BringTheWaterToBoil", "Bring the wort to the boil."},
      {"ChillTheWortToPitching",
       "Chill the wort to the appropriate pitching temperature and rack "
       "the wort to your fermenter."},
      {"TheDesiredVolumeAtPitching", "The desired volume at pitching is 0 ml."},
      {"FermentAtWith", "Ferment at 0 ˚C with"},
      // -(10000 - 4000)
      {"SpargeTheGrainsAndTopUp",
       "Sparge the grains and top up if necessary to obtain 0 ml of "
       "wort (requires -6000 ml)."},
      {"SummaryText", "Summary"},
      {"GravityBeforeBoilText", "Gravity Before Boil"},
      {"OriginalGravityText", "Original Gravity"},
      {"FinalGravityText", "Final Gravity"},
      {"VolumeBeforeBoilText", "Volume Before Boil"},
      {"WaterAddedToDiluteText", "Water Added To Dilute"},
      {"TotalWaterRequiredText", "Total Water Required"},
      {"RackingAndPackagingText", "Racking And Packaging"},
      {"Formula", "Tinseth"},
      {"CarbonationText", ""},
      {"AdditionalWaterText", ""},
  };
  for (const auto& [key, text] : rows) EXPECT_EQ(value(batch, key), text) << key;
  malt->set(keys::Acid, words::Unadjusted);
  malt->set(keys::TargetWaterProfileUsedUUID, "gone");
  EXPECT_EQ(value(batch, "MashPH"), "<p>Mash pH should be 5.3.</p>\n");
  EXPECT_EQ(value(batch, "WaterTreatment"), "");
  EXPECT_EQ(value({{keys::ModifiedRecipe, PlistDictionary{{keys::MashType, words::Extract}}}},
                  "SaltAdditions"),
            "");
}

TEST_F(Instructions, ShowNoNumberThatIsNone) {
  const Step over{words::RaiseByInfusion, 100, 1e300};
  std::vector<Step> many(10000, {words::PullDecoction, 1e200, NAN});
  many[1] = over;
  for (const char* name : {"Full Mash Template", "Full Mash Template-Batch Sparge"}) {
    putTemplate(name, listing({"StrikeWaterTemperature", "SubsequentMashSteps", "BatchSpargeSteps",
                               "SpargeVolume", "TotalWaterRequired", "PreBoilGravity",
                               "FinalGravity", "TotalGrain", "FirstRestTime", "Cost"}));
  }
  for (const double volume : {0.0, 1e308, static_cast<double>(NAN)}) {
    for (const std::string_view sparge : words::spargeMethods) {
      for (const auto& steps : {std::vector<Step>(), {over}, {over, over, over}, many}) {
        const Brew brew{volume, 0, volume, 20, volume, volume, words::FullMash, sparge, steps};
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
