// Pages as a brewer sees them: valid, safe whatever a document holds, and printed.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <regex>

#include "tests/app/Program.h"

namespace zym {
namespace {

using test::Outcome;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* hostileTitle = "<script>X</script> Tom & Jerry <3 \"q\" <*KEYNAME=StyleName>";

class Pages : public ::testing::Test {
 protected:
  Outcome zym(std::vector<std::string> arguments, const std::string& locale = "C") const {
    arguments.insert(arguments.end(), {"--data", folder / "data"});
    return test::run(arguments, "", locale);
  }
  std::string output(std::vector<std::string> arguments, const std::string& locale = "C") const {
    const Outcome outcome = zym(std::move(arguments), locale);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    return outcome.out;
  }
  /// What a command says of the bytes, which it names "page".
  std::string saidBy(const std::string& command, const std::string& bytes) const {
    putFile(folder / "page", bytes);
    (void)::system(("cd " + folder.path() + " && " + command + " >said 2>&1").c_str());
    std::ifstream file(folder / "said", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::string faultsOf(const std::string& page) const {
    return saidBy("tidy -q -e --drop-empty-elements no --show-body-only no page", page);
  }
  /// A recipe of a malt and a hop, and a batch of it.
  void newRecipe() const {
    (void)output({"new", "fermentable", "Zymmalt", "Extract=80"});
    (void)output({"new", "hop", "Zymhop", "Alpha=5"});
    (void)output({"new", "recipe", "Ale"});
    (void)output({"add", "Ale", "fermentable", "Zymmalt", "4 kg"});
    (void)output({"add", "Ale", "hop", "Zymhop", "60 g"});
    (void)output({"brew", "Ale"});
  }

  TemporaryFolder folder;
};

TEST_F(Pages, AreValidInEachLanguage) {
  newRecipe();
  (void)output({"stock", "add", "Zymhop", "100 g", "--lot", "<b>A & B</b>"});
  const std::vector<std::string> commands[] = {
      {"page", "Ale"},     {"page", "Batch 1 of Ale"},         {"page", "stock", "hops"},
      {"page", "suggest"}, {"instructions", "Batch 1 of Ale"}, {"page", "stock", "yeast"},
  };
  for (const auto& command : commands) {
    for (const char* locale : {"C", "de_DE.UTF-8"}) {
      const std::string page = output(command, locale);
      EXPECT_EQ(faultsOf(page), "") << command[0] << " " << command[1];
      EXPECT_THAT(page, AllOf(HasSubstr("default-src 'none'"), Not(HasSubstr("<*KEYNAME")),
                              Not(HasSubstr(">nan")), Not(HasSubstr("<b>A"))));
    }
  }
  EXPECT_THAT(output({"page", "Ale"}, "de_DE.UTF-8"), HasSubstr("Rezept\u00fcbersicht"));
}

TEST_F(Pages, TextsOfADocumentAreNeverMarkup) {
  newRecipe();
  for (const char* key : {"Notes", "RecipeTitle"}) {
    (void)output({"edit", "Ale", std::string(key) + "=" + hostileTitle});
  }
  const std::string page = output({"page", hostileTitle});
  EXPECT_EQ(faultsOf(page), "");
  EXPECT_THAT(page, AllOf(HasSubstr("&lt;script&gt;X&lt;/script&gt; Tom &amp; Jerry &lt;3"),
                          Not(HasSubstr("<script"))));
  (void)output({"print", hostileTitle, "-o", folder / "page.pdf"});
  EXPECT_THAT(saidBy("pdftotext -layout page.pdf -", ""), HasSubstr("Tom & Jerry <3 \"q\" <*KEYN"));
  // The glass is full of the beer.
  static const std::regex colour("--beer:#([0-9a-f]{2})([0-9a-f]{2})([0-9a-f]{2})\"");
  std::smatch found;
  ASSERT_TRUE(std::regex_search(page, found, colour));
  std::string pixels;
  for (int i = 0; i < 8; ++i) {
    for (std::size_t part = 1; part <= 3; ++part) {
      pixels += static_cast<char>(std::stoi(found[part].str(), nullptr, 16));
    }
  }
  EXPECT_THAT(saidBy("pdftoppm -r 60 page.pdf", ""), HasSubstr(pixels));
  (void)output({"edit", hostileTitle, "Notes=Mash\x1b[2J\nwell"});
  EXPECT_THAT(output({"clipboard", hostileTitle}),
              AllOf(HasSubstr(hostileTitle), HasSubstr("Mash [2J\nwell\n")));
}

TEST_F(Pages, ArePrintedEachAsItsOwnFile) {
  newRecipe();
  (void)output({"copy", "Ale"});
  const Outcome printed =
      zym({"print", "Ale", "no such beer", "Batch 1 of Ale", "-o", folder.path()});
  EXPECT_EQ(printed.exitCode, 1);
  EXPECT_THAT(printed.err, HasSubstr("no such beer"));
  for (const char* name : {"Ale.pdf", "Batch\\ 1\\ of\\ Ale.pdf"}) {
    EXPECT_THAT(saidBy(std::string("pdfinfo ") + name, ""), HasSubstr("Pages:           1\n"));
  }
  EXPECT_THAT(zym({"print", "Ale", "-o", folder / "none/a.pdf"}).err, HasSubstr("can't write"));
  EXPECT_EQ(zym({"print", "Ale", "Batch 1 of Ale", "-o", folder / "a.pdf"}).exitCode, 2);
}

TEST_F(Pages, SayWhatCanBeBrewedAndWhatIsToBeBought) {
  newRecipe();
  (void)output({"remove", "Batch 1 of Ale", "--force"});
  (void)output({"new", "supplier", "The Shop"});
  (void)output({"stock", "add", "Zymmalt", "5 kg"});
  (void)output({"stock", "add", "Zymhop", "45 g"});
  EXPECT_EQ(output({"suggest", "--tsv"}), "Ale\t15 g of Zymhop\n");
  EXPECT_EQ(output({"suggest", "--missing", "0", "--tsv"}), "");
  EXPECT_THAT(output({"page", "suggest"}), HasSubstr("You require 15 g of Zymhop"));
  // Two brews of one sack.
  (void)output({"copy", "Ale"});
  EXPECT_EQ(output({"shopping", "Ale", "Ale-copy", "--tsv"}), "Zymmalt\t3.000 kg\nZymhop\t75 g\n");
  (void)output({"shopping", "Ale", "--order", "The Shop"});
  EXPECT_THAT(output({"stock", "hops"}), HasSubstr("15 g"));
  EXPECT_EQ(zym({"suggest", "--missing", "4"}).exitCode, 2);
  // A recipe that can't be read is named, and hides no other.
  EXPECT_EQ(
      saidBy(
          "sqlite3 data/Wortmeister.sqlite \"update [ZYMRecipeEntity.data] set value = zeroblob(1)"
          " where _key = (select _key from ZYMRecipeEntity where name = 'Ale-copy')\"",
          ""),
      "");
  const Outcome outcome = zym({"suggest", "--tsv"});
  EXPECT_EQ(outcome.out, "Ale\t15 g of Zymhop\n");
  EXPECT_THAT(outcome.err, HasSubstr("Ale-copy"));
  EXPECT_EQ(zym({"page", "stock", "beer"}).exitCode, 2);
}

}  // namespace
}  // namespace zym
