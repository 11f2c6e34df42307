#include <sys/stat.h>

#include "tests/app/Program.h"

namespace zym {
namespace {

using test::Outcome;
using ::testing::AllOf;

constexpr const char* ale =
    "<?xml version='1.0' encoding='ISO-8859-1'?><RECIPES><RECIPE><NAME>K\xF6lsch & Co</NAME>"
    "<TYPE>All Grain</TYPE><BATCH_SIZE>20</BATCH_SIZE><BOIL_SIZE>25</BOIL_SIZE>"
    "<EFFICIENCY>72</EFFICIENCY><YEASTS><YEAST><NAME>American Ale</NAME></YEAST></YEASTS>"
    "<FERMENTABLES><FERMENTABLE><NAME>Maris Otter</NAME><TYPE>Grain</TYPE><AMOUNT>5 kg</AMOUNT>"
    "<YIELD>80</YIELD><COLOR>3</COLOR><ORIGIN>England</ORIGIN></FERMENTABLE></FERMENTABLES>"
    "</RECIPE></RECIPES>";

std::string withColour(const std::string& degrees) {
  return std::regex_replace(std::string(ale), std::regex("<COLOR>3<"), "<COLOR>" + degrees + "<");
}

using Import = test::WithProgram;

TEST_F(Import, GoesOnAfterAFileThatFails) {
  const std::string good = folder.file("ale.xml", ale);
  const std::string bad = folder.file("bad.xml", "<RECIPES><RECIPE><NAME>x</NAME>");
  const std::string pipe = folder / "pipe.xml";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const Outcome outcome = zym({"import", bad, folder / "none.xml", pipe, good, good});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("TYPE"), HasSubstr("Kölsch & Co, OG 1.0"),
                                 HasSubstr("2 imported, 3 failed")));
  EXPECT_THAT(zym({"recipes", "--json"}).out, HasSubstr("Kölsch & Co"));
}

TEST_F(Import, EachFileIsOneUndoStep) {
  const std::string file = folder.file("ale.xml", ale);
  const Outcome outcome = test::run({"shell", "--data", folder / "data"},
                                    "import " + file + " " + file + "\nundo\nundo\nundo\n");
  EXPECT_THAT(outcome.out, HasSubstr("Undone: Import Recipe\nUndone: Import Recipe\n"));
  EXPECT_THAT(outcome.err, HasSubstr("nothing to undo"));
  EXPECT_EQ(zym({"recipes", "--json"}).out, "[]\n");
}

TEST_F(Import, ADryRunShowsTheMatchesAndStoresNothing) {
  const std::string file = folder.file("ale.xml", ale);
  const Outcome outcome = zym({"import", "--dry-run", folder.path()});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("UK Pale Malt"), HasSubstr("-> "),
                                 HasSubstr("1 can be imported, 0 failed")));
  EXPECT_EQ(zym({"recipes", "--json"}).out, "[]\n");
  const Outcome odd = zym({"import", "--dry-run", folder.file("odd.xml", withColour("350"))});
  EXPECT_THAT(odd.out, HasSubstr("350.0 ˚L -> 3.0 ˚L  POOR"));
  const Outcome sheet = zym({"calc", file});
  EXPECT_THAT(sheet.out, HasSubstr("Kölsch & Co")) << sheet.err;
}

TEST_F(Import, CalculatesAsItWouldImport) {
  const std::string file = folder.file("ale.xml", ale);
  const auto lineOf = [](const std::string& sheet) {
    const std::size_t at = sheet.find("Original gravity");
    return sheet.substr(at, sheet.find('\n', at) - at);
  };
  const std::string calculated = lineOf(zym({"calc", file}).out);
  EXPECT_EQ(zym({"import", file}).exitCode, 0);
  EXPECT_EQ(lineOf(zym({"show", "Kölsch"}).out), calculated);
  EXPECT_THAT(calculated, Not(HasSubstr("1.000")));
}

}  // namespace
}  // namespace zym
