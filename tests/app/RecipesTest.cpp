#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/Program.h"

namespace zym {
namespace {

using test::Outcome;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

class RecipeCommands : public ::testing::Test {
 protected:
  Outcome zym(std::vector<std::string> arguments, std::string_view input = "") const {
    arguments.insert(arguments.end(), {"--data", folder / "data"});
    return test::run(arguments, input);
  }
  std::string output(std::vector<std::string> arguments) const {
    const Outcome outcome = zym(std::move(arguments));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    return outcome.out;
  }
  TemporaryFolder folder;
};

TEST_F(RecipeCommands, ARecipeIsWrittenBrewedMeasuredAndPromoted) {
  (void)output({"new", "recipe", "Burton Ale", "Boil=60", "Before the boil=27 l"});
  EXPECT_EQ(output({"add", "burton", "fermentable", "UK Pale Malt", "5 kg"}),
            "5.000 kg UK Pale Malt, In Mash/Steeped\n");
  EXPECT_EQ(
      output({"add", "burton", "hop", "Fuggle", "50 g", "--when", "12", "--form", "bagged p"}),
      "50 g Fuggle, 10 Min From End\n");
  (void)output({"add", "burton", "yeast", "Wyeast 1028 London Ale", "2 packs"});
  EXPECT_THAT(output({"show", "Burton Ale"}),
              AllOf(HasSubstr("27.00 l"), HasSubstr("Bagged Pellet Hops"), HasSubstr("2 packs")));
  EXPECT_EQ(output({"drop", "burton", "hop", "1"}), "50 g Fuggle, 10 Min From End\n");

  EXPECT_EQ(output({"brew", "Burton"}), "Batch 1 of Burton Ale\n");
  (void)output({"measure", "Batch 1", "OG=1.052", "FG=1.011"});
  EXPECT_THAT(output({"show", "batch 1"}), HasSubstr("1.052 SG"));
  EXPECT_THAT(output({"history", "--limit", "1"}),
              AllOf(HasSubstr("Batch 1"), Not(HasSubstr("recipe"))));
  EXPECT_EQ(output({"promote", "Batch 1"}), "Promoted from Batch 1 of Burton Ale\n");
  EXPECT_EQ(output({"batches", "--since", "year"}), "Batch 1 of Burton Ale\n");
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
              HasSubstr("UK Maris Otter Pale Malt"));
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
       }) {
    const Outcome outcome = zym(words);
    EXPECT_GT(outcome.exitCode, 0) << words.back();
    EXPECT_THAT(outcome.err, StartsWith("zym: ")) << words.back();
  }
  EXPECT_EQ(output({"show", "Ale", "--json"}), before);
  EXPECT_THAT(output({"recipes"}), Not(HasSubstr("Bad")));
}

TEST_F(RecipeCommands, TheShellUndoesOneLineAtATime) {
  const Outcome outcome = zym({"shell"},
                              "new recipe 'My \"Ale\"' # a remark\n"
                              "edit My\\ \\\"Ale\\\" Efficiency=81 \"Notes=so, so\"\n"
                              "undo\nredo\nundo\n\nshow 'open\nundo\nundo\nredo\nquit\nrecipes\n");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.out,
            "Undone: Update Recipe\nDone again: Update Recipe\nUndone: Update Recipe\n"
            "Undone: Create Recipe\nDone again: Create Recipe\n");
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("a quote is left open"), HasSubstr("nothing to undo")));
  EXPECT_THAT(output({"show", "My", "--json"}), HasSubstr("\"RecipeTitle\": \"My \\\"Ale\\\"\""));
}

}  // namespace
}  // namespace zym
