#include "tests/app/Program.h"

namespace zym {
namespace {

using test::Outcome;
using ::testing::AllOf;
using ::testing::StartsWith;

using RecipeCommands = test::WithProgram;

TEST_F(RecipeCommands, ARecipeIsWrittenBrewedMeasuredAndPromoted) {
  (void)output({"new", "recipe", "Burton Ale", "Boil=60", "Before the boil=27 l"});
  // By hand: 5,000 g x 78 % x 70 % x 386.5 / 11.5 l; 3 °L x 11.02 lb in 3.038 gal, after Morey.
  EXPECT_EQ(output({"add", "burton", "fermentable", "UK Pale Malt", "5 kg"}),
            "5.000 kg UK Pale Malt, In Mash/Steeped\n"
            "Makes OG 1.092 SG (was 1.000), FG 1.092 SG (was 1.000), alcohol 0.0 %, bitterness 0.0 "
            "IBU, colour 7.7 SRM (was 0.0)\n");
  EXPECT_THAT(
      output({"add", "burton", "hop", "Fuggle", "50 g", "--when", "12", "--form", "bagged p"}),
      StartsWith("50 g Fuggle, 10 Min From End\n"));
  (void)output({"add", "burton", "yeast", "Wyeast 1028 London Ale", "2 packs"});
  EXPECT_THAT(output({"show", "Burton Ale"}),
              AllOf(HasSubstr("27.00 l"), HasSubstr("Bagged Pellet Hops"), HasSubstr("2 packs")));
  EXPECT_THAT(output({"drop", "burton", "hop", "1"}), StartsWith("50 g Fuggle, 10 Min From End\n"));

  EXPECT_EQ(output({"brew", "Burton"}), "Batch 1 of Burton Ale\n");
  (void)output({"measure", "Batch 1", "OG=1.052", "FG=1.011"});
  EXPECT_THAT(output({"show", "batch 1"}), HasSubstr("1.052 SG"));
  EXPECT_THAT(output({"history", "--limit", "1"}),
              AllOf(HasSubstr("Batch 1"), Not(HasSubstr("recipe"))));
  EXPECT_EQ(output({"promote", "Batch 1"}), "Promoted from Batch 1 of Burton Ale\n");
  for (const char* since : {"year", "3", "3 months", "24"}) {
    EXPECT_EQ(output({"batches", "--since", since}), "Batch 1 of Burton Ale\n") << since;
  }
  EXPECT_EQ(output({"batches", "--since", "2999-01-01"}), "");
  (void)output({"group", "new", "Ales"});
  (void)output({"group", "add", "Ales", "Burton"});
  (void)output({"group", "add", "Ales", "Promoted"});
  (void)output({"group", "take", "Ales", "Burton"});
  EXPECT_THAT(output({"recipes", "--group", "Ales", "--json"}),
              AllOf(HasSubstr("Promoted"), Not(HasSubstr("\"Burton Ale\""))));
  (void)output({"remove", "batch", "Batch 1"});
  (void)output({"remove", "Promoted"});
  EXPECT_THAT(output({"recipes"}), Not(HasSubstr("Promoted")));
}

TEST_F(RecipeCommands, SayWhatIsWrongAndStoreNothing) {
  (void)output({"new", "recipe", "Ale"});
  (void)output({"new", "recipe", "Alt"});
  const std::string before = output({"show", "Ale", "--json"});
  EXPECT_THAT(zym({"show", "al"}).err, AllOf(HasSubstr("any of these"), HasSubstr("Alt")));
  EXPECT_THAT(zym({"add", "Ale", "fermentable", "Marris Oter", "5 kg"}).err,
              HasSubstr("'Maris Otter'"));
  for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
           {"add", "Ale", "hop", "Fuggle", "some"},
           {"add", "Ale", "hop", "Fuggle", "5 g", "--when", "In B"},
           {"add", "Ale", "water", "Dublin", "5 l"},
           {"edit", "Ale", "Boil=-5"},
           {"edit", "Ale", "Boil"},
           {"edit", "Ale", "Colour=5"},
           {"new", "recipe", "Bad", "Style=no such style at all"},
           {"measure", "Ale", "OG=1.050"},
           {"batches", "--since", "2026-02-30"},
           {"image", "add", "Ale", test::example("dry-stout.wm2")},
           {"image", "remove", "Ale", "../../x"},
           {"history", "--limit", "-1"},
           {"step", "add", "67", "rest", "warm", "10"},
       }) {
    const Outcome outcome = zym(words);
    EXPECT_GT(outcome.exitCode, 0) << words.back();
    EXPECT_THAT(outcome.err, StartsWith("zym: ")) << words.back();
  }
  EXPECT_EQ(output({"show", "Ale", "--json"}), before);
  EXPECT_THAT(output({"recipes"}), Not(HasSubstr("Bad")));
}

/// The row of a sheet that begins with that label, its blanks made one.
std::string rowOf(const std::string& sheet, const std::string& label) {
  const std::size_t start = sheet.find("  " + label);
  std::string row;
  for (const char c : sheet.substr(start, sheet.find('\n', start) - start)) {
    if (c != ' ' || row.empty() || row.back() != ' ') row += c;
  }
  return start == std::string::npos ? "" : row;
}

// OG 1.050 and FG 1.010 with the library's formulas; a figure that needs a reading that was not
// made is no measurement.
TEST_F(RecipeCommands, ABatchShowsAsMeasuredOnlyWhatWasMeasured) {
  (void)output({"new", "recipe", "Ale"});
  (void)output({"add", "Ale", "fermentable", "UK Pale Malt", "3 kg"});
  (void)output({"add", "Ale", "hop", "Fuggle", "30 g"});
  (void)output({"brew", "Ale"});
  const auto isShown = [&](const char* label) {
    const std::string row = rowOf(output({"show", "Batch 1"}), label);
    EXPECT_NE(row, "") << label;
    return !row.ends_with("–") && !row.ends_with("– ");
  };
  const struct {
    const char* reading;
    bool boil, og, fg, alcohol, efficiency, bitterness, volume;
  } steps[] = {{"", false, false, false, false, false, false, false},
               {"FG=0.998", false, false, true, false, false, false, false},
               {"FG=1.000", false, false, false, false, false, false, false},
               {"Finished beer=9 l", false, false, false, false, false, false, true},
               {"OG=1.050", false, true, false, false, false, true, true},
               {"FG=1.010", false, true, true, true, false, true, true},
               {"Pre-boil reading=1.040", true, true, true, true, true, true, true}};
  for (const auto& step : steps) {
    SCOPED_TRACE(step.reading);
    if (*step.reading != '\0') (void)output({"measure", "Batch 1", step.reading});
    EXPECT_EQ(isShown("Before the boil"), step.boil);
    EXPECT_EQ(isShown("Original gravity"), step.og);
    EXPECT_EQ(isShown("Final gravity"), step.fg);
    EXPECT_EQ(isShown("Apparent attenuation"), step.alcohol);
    EXPECT_EQ(isShown("Alcohol by volume"), step.alcohol);
    EXPECT_EQ(isShown("Mash efficiency"), step.efficiency);
    EXPECT_EQ(isShown("Bitterness"), step.bitterness);
    EXPECT_EQ(isShown("Finished beer"), step.volume);
  }
}

TEST_F(RecipeCommands, ASheetSaysWhatARecipeLacksAndKeepsTheLinesOfNotes) {
  (void)output({"new", "recipe", "Ale", "Notes=First\r\nsecond\n\n  third  word\x1b[2J\n\n",
                "After the boil=0 l"});
  const std::string sheet = output({"show", "Ale"});
  EXPECT_THAT(sheet, AllOf(HasSubstr("Nothing to ferment"), HasSubstr("Nothing to boil"),
                           HasSubstr("No yeast")));
  EXPECT_THAT(sheet, HasSubstr("\nNotes\n  First\n  second\n\n  third word [2J\n"));
  (void)output({"edit", "Ale", "After the boil=12 l"});
  (void)output({"add", "Ale", "fermentable", "UK Pale Malt", "3 kg"});
  (void)output({"add", "Ale", "yeast", "WLP002", "1"});
  EXPECT_THAT(output({"show", "Ale"}),
              AllOf(Not(HasSubstr("Nothing")), Not(HasSubstr("No yeast"))));
}

// 4 g in 10.5 l to the fermenter of 11.5 l boiled and 10.5 l at pitching: 4 x 10.5 / 11.5 / 10.5 g
// a millilitre.
TEST_F(RecipeCommands, SaltsAndWatersAreSetAndShown) {
  (void)output({"new", "recipe", "Ale", "Gypsum=4 g", "Target water=Burton On Trent"});
  EXPECT_THAT(output({"show", "Ale"}),
              AllOf(HasSubstr("Target water  Burton On Trent"), HasSubstr("Gypsum        4.00 g"),
                    Not(HasSubstr("Chalk"))));
  const std::string json = output({"show", "Ale", "--json"});
  EXPECT_THAT(json, AllOf(HasSubstr("\"CaSO4InGrammes\": \"4.000000\""),
                          HasSubstr("\"CaSO4\": \"0.00034782608")));
}

TEST_F(RecipeCommands, StepsOfAScheduleAreAddedEditedMovedAndRemoved) {
  (void)output({"new", "schedule", "Mine"});
  (void)output({"step", "add", "Mine", "heat", "64 C", "30"});
  (void)output({"step", "add", "Mine", "rest", "158 F", "20"});
  (void)output({"step", "add", "Mine", "raise by inf", "68", "5", "--at", "2"});
  (void)output({"step", "move", "Mine", "3", "1"});
  (void)output({"step", "edit", "Mine", "1", "Temperature=50 C", "Duration=10"});
  (void)output({"step", "remove", "Mine", "2"});
  for (const char* bad : {"0", "3"}) {
    EXPECT_EQ(zym({"step", "remove", "Mine", bad}).exitCode, 2) << bad;
  }
  EXPECT_EQ(zym({"step", "remove", " No Chosen Schedule", "1"}).exitCode, 1);
  const std::string sheet = output({"show", "schedule", "Mine"});
  EXPECT_THAT(rowOf(sheet, "Rest at"), " Rest at 50 ˚C 10 min");
  EXPECT_THAT(rowOf(sheet, "Raise"), " Raise by infusion to 68 ˚C 5 min");
  EXPECT_THAT(sheet, Not(HasSubstr("Heat")));
}

TEST_F(RecipeCommands, TheShellUndoesOneLineAtATime) {
  const Outcome outcome = zym({"shell"},
                              "new recipe 'My \"Ale\"' # a remark\n"
                              "edit My\\ \\\"Ale\\\" Efficiency=81 \"Notes=so, so\"\n"
                              "undo\nredo\nundo\n\nshow 'open\nundo\nundo\nredo\nquit\nrecipes\n");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.out,
            "Makes OG 1.000 SG, FG 1.000 SG, alcohol 0.0 %, bitterness 0.0 IBU, colour 0.0 SRM\n"
            "Undone: Update Recipe\nDone again: Update Recipe\nUndone: Update Recipe\n"
            "Undone: Create Recipe\nDone again: Create Recipe\n");
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("a quote is left open"), HasSubstr("nothing to undo")));
  EXPECT_THAT(output({"show", "My", "--json"}), HasSubstr("\"RecipeTitle\": \"My \\\"Ale\\\"\""));
}

}  // namespace
}  // namespace zym
