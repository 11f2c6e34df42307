#include "tests/app/Program.h"

namespace zym {
namespace {

using test::Outcome;
using ::testing::StartsWith;

class Stock : public test::WithProgram {
 protected:
  Stock() {
    (void)output({"new", "hop", "Zymhop", "Alpha=5"});
    (void)output({"new", "fermentable", "Zymmalt", "Extract=80"});
    (void)output({"new", "supplier", "The Shop"});
  }
  std::string output(std::vector<std::string> arguments) const {
    std::string text = WithProgram::output(std::move(arguments));
    // Sums of money have blanks that don't break.
    for (std::size_t at; (at = text.find("\u00a0")) != std::string::npos;) text.replace(at, 2, " ");
    return text;
  }
  /// A recipe of a malt and a bittering hop.
  void newRecipe() const {
    (void)output({"new", "recipe", "Ale"});
    (void)output({"add", "Ale", "fermentable", "Zymmalt", "4 kg"});
    (void)output({"add", "Ale", "hop", "Zymhop", "60 g"});
  }
};

TEST_F(Stock, LotsComeAndGo) {
  (void)output({"stock", "add", "Zymmalt", "5 kg", "--cost", "1.50/kg", "--lot", "Sack"});
  (void)output({"stock", "add", "Zymhop", "100 g", "--cost", "3.20/oz", "--form", "pell", "--lot",
                "A", "--expires", "2001-02-03"});
  EXPECT_THAT(output({"stock", "--lots", "--tsv"}),
              StartsWith("Zymmalt\tSack\t5.000 kg\t$ 1.50/kg\t"));
  const std::string lots = output({"stock", "hops", "--lots", "--tsv"});
  EXPECT_THAT(lots, StartsWith("Zymhop\tA\t"));
  EXPECT_THAT(lots, HasSubstr("expired"));
  EXPECT_THAT(lots, Not(HasSubstr("Sack")));
  // 3.20 for 28.35 g is 0.112875 for one.
  const std::string json = output({"stock", "hops", "--json"});
  EXPECT_THAT(json, HasSubstr("\"Cost\": \"0.112875\""));
  EXPECT_THAT(json, HasSubstr("\"Form\": \"Pellets\""));
  EXPECT_EQ(zym({"stock", "take", "Zymmalt", "5.001 kg"}).exitCode, 1);
  (void)output({"stock", "take", "Zymmalt", "4.8 kg"});
  EXPECT_EQ(output({"stock", "--low", "--tsv"}), "Zymmalt\t200 g\t0.00 g\t$ 0.30\n");
  (void)output({"stock", "edit", "Sack", "cost=2/kg", "amount=1 kg", "name=Rest"});
  EXPECT_THAT(output({"stock", "--tsv"}), StartsWith("Zymmalt\t1.000 kg\t0.00 g\t$ 2.00\n"));
  EXPECT_THAT(zym({"stock", "--tsv"}, "", "de_DE.UTF-8").out, HasSubstr("2,00"));
  (void)output({"stock", "remove", "Rest"});
  EXPECT_EQ(output({"stock", "fermentables"}), "");
}

TEST_F(Stock, RefusesWhatItCannotRead) {
  struct Row {
    std::vector<std::string> words;
    int exitCode;
  };
  for (const Row& row : {Row{{"add", "Zymhop", "many"}, 2}, Row{{"add", "Zymhop", "-5 g"}, 2},
                         Row{{"add", "Zymhop", "5 g", "--cost", "3/bushel"}, 2},
                         Row{{"add", "Zymhop", "5 g", "--cost", "3/pack"}, 2},
                         Row{{"add", "Zymhop", "5 g", "--cost", "dear"}, 2},
                         Row{{"add", "Zymhop", "5 g", "--expires", "soon"}, 2},
                         Row{{"add", "Zymhop", "5 g", "--form", "Brick"}, 2},
                         Row{{"add", "Unheard-of", "5 g"}, 1}, Row{{"take", "Zymhop", "1 g"}, 1},
                         Row{{"edit", "none", "cost=1"}, 1}, Row{{"remove", "none"}, 1}}) {
    std::vector<std::string> words = row.words;
    words.insert(words.begin(), "stock");
    EXPECT_EQ(zym(words).exitCode, row.exitCode) << words[1] << " " << words[2];
  }
  EXPECT_EQ(output({"stock"}), "") << "nothing was stored";
}

TEST_F(Stock, AnUnknownIngredientKeepsItsName) {
  (void)output({"stock", "add", "Zymhop", "5 g", "--lot", "a\tb\n<b>"});
  (void)output({"remove", "hop", "Zymhop"});
  const std::string lots = output({"stock", "--lots", "--tsv"});
  EXPECT_THAT(lots, StartsWith("Zymhop\ta b <b>\t"));
  EXPECT_EQ(std::ranges::count(lots, '\n'), 1);
}

TEST_F(Stock, AnOrderComesInByTheLine) {
  EXPECT_EQ(zym({"order", "The Shop", "Zymhop"}).exitCode, 2);
  EXPECT_EQ(zym({"order", "Nobody", "Zymhop", "1 kg"}).exitCode, 1);
  EXPECT_THAT(output({"order", "The Shop", "Zymhop", "1 kg", "Zymmalt", "2 kg"}),
              StartsWith("The Shop, "));
  EXPECT_EQ(output({"stock", "--tsv"}), "");
  EXPECT_THAT(output({"orders", "--tsv"}), HasSubstr("\t2\t2\n"));
  EXPECT_EQ(output({"order", "deliver", "The Shop", "Zymmalt"}), "2.000 kg Zymmalt\n");
  EXPECT_EQ(output({"stock", "--tsv"}), "Zymmalt\t2.000 kg\t0.00 g\t$ 0.00\n");
  EXPECT_THAT(output({"show", "order", "The Shop"}), HasSubstr("delivered"));
  EXPECT_EQ(output({"order", "deliver", "The Shop"}), "1.000 kg Zymhop\n") << "the rest";
  EXPECT_EQ(zym({"order", "deliver", "The Shop"}).exitCode, 1);
  (void)output({"order", "drop", "The Shop"});
  EXPECT_EQ(output({"orders"}), "");
  EXPECT_THAT(output({"stock", "--tsv"}), HasSubstr("Zymhop\t1.000 kg"));
}

TEST_F(Stock, ABrewTakesWhatWasPlannedAndGivesItBack) {
  newRecipe();
  (void)output({"stock", "add", "Zymmalt", "5 kg", "--cost", "1.50/kg", "--lot", "Sack"});
  (void)output({"stock", "add", "Zymhop", "100 g", "--cost", "30/kg", "--alpha", "10", "--form",
                "whole", "--lot", "Strong"});
  const std::string before = output({"stock", "--lots", "--tsv"});
  const std::string planned = output({"brew", "Ale", "--plan"});
  // Half the weight at twice the alpha: 30 g for 0.90, and 4 kg for 6.00.
  EXPECT_THAT(planned, HasSubstr("30 g of Strong"));
  EXPECT_THAT(planned, HasSubstr("$ 6.90"));
  EXPECT_EQ(output({"stock", "--lots", "--tsv"}), before);
  EXPECT_EQ(output({"batches"}), "");

  const std::string batch = output({"brew", "Ale", "--take"});
  EXPECT_EQ(batch, "Batch 1 of Ale\n");
  EXPECT_THAT(output({"stock", "--tsv"}), HasSubstr("Zymmalt\t1.000 kg"));
  EXPECT_THAT(output({"stock", "--tsv"}), HasSubstr("Zymhop\t70 g"));
  EXPECT_THAT(output({"plan", "Batch 1"}), HasSubstr("taken"));
  (void)output({"stock", "remove", "Strong"});
  (void)output({"return", "Batch 1"});
  EXPECT_THAT(output({"stock", "--tsv"}), HasSubstr("Zymmalt\t5.000 kg"));
  EXPECT_THAT(output({"stock", "--tsv"}), HasSubstr("Zymhop\t30 g")) << "in a lot of its own";
  EXPECT_EQ(zym({"return", "Batch 1"}).exitCode, 1);
}

TEST_F(Stock, OneUndoTakesABrewBack) {
  newRecipe();
  (void)output({"stock", "add", "Zymmalt", "5 kg"});
  const Outcome outcome = test::run({"shell", "--data", data},
                                    "brew Ale --take\nstock --tsv\nundo\nstock --tsv\nbatches\n");
  EXPECT_THAT(outcome.out, HasSubstr("Zymmalt\t1.000 kg"));
  EXPECT_THAT(outcome.out.substr(outcome.out.find("1.000 kg")), HasSubstr("Zymmalt\t5.000 kg"));
  EXPECT_EQ(outcome.out.find("Batch 1"), outcome.out.rfind("Batch 1"));
}

TEST_F(Stock, ThePlanSaysWhatIsShortAndWhatChanged) {
  newRecipe();
  (void)output({"stock", "add", "Zymhop", "500 g", "--form", "pellets"});
  const std::string planned = output({"brew", "Ale", "--plan"});
  EXPECT_THAT(planned, HasSubstr("short"));
  EXPECT_THAT(planned, HasSubstr("changed to Loose"));
  const std::string json = output({"brew", "Ale", "--plan", "--json"});
  EXPECT_THAT(json, HasSubstr("\"Advisories\""));
  EXPECT_THAT(json, HasSubstr("insufficient of the"));
}

}  // namespace
}  // namespace zym
