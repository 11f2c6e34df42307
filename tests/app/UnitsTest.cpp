#include "tests/app/Program.h"

namespace zym {
namespace {

TEST(Units, AreReadAndShownAsTheUserChose) {
  const struct {
    const char* defaults;  // KEY=VALUE separated by blanks
    const char* kind;
    const char* typed;
    const char* stored;
    const char* shown;
  } cases[] = {
      {"", "volume", "20 l", "20000.000000 ml", "20.00 l"},
      {"", "volume", "500", "500.000000 ml", "500 ml"},
      {"", "volume", "5 gal", "18927.050000 ml", "18.93 l"},
      {"Units=US", "volume", "5", "18927.050000 ml", "5.00 US gals"},
      {"Units=US", "volume", "2 qts", "1892.700000 ml", "2.0 qts"},
      {"Units=British", "volume", "5", "22730.450000 ml", "5.00 UK gals"},
      {"Units=british", "volume", "30", "17047.800000 ml", "3.75 UK gals"},
      {"Locale=de_DE", "volume", "4,5 l", "4500.000000 ml", "4,50 l"},
      {"", "weight", "4.5 kg", "4500.000000 g", "4.500 kg"},
      {"Units=US", "weight", "5lb 3oz", "2353.050000 g", "5lb 3oz"},
      {"Units=British", "weight", "10", "4535.900000 g", "10lb 0oz"},
      {"Locale=de_DE", "weight", "0,25 kg", "250.000000 g", "250 g"},
      {"", "hopweight", "28 g", "28.000000 g", "28 g"},
      {"HopUnits=US", "hopweight", "1 oz", "28.350000 g", "1.00 oz"},
      {"HopUnits=US", "hopweight", "20", "20000.000000 g", "44lb 1oz"},
      {"Units=US", "saltweight", "5", "5.000000 g", "5.00 g"},
      {"Locale=de_DE", "saltweight", "2,5", "2.500000 g", "2,50 g"},
      {"", "gravity", "1050", "1.050000 SG", "1.050 SG"},
      {"", "gravity", "12 P", "1.048387 SG", "1.048 SG"},
      {"GravityUnits=Plato", "gravity", "12", "1.048387 SG", "12.0 P"},
      {"GravityUnits=1 Locale=de_DE", "gravity", "1,048387 SG", "1.048387 SG", "12,0 P"},
      {"", "beercolor", "12", "12.000000 SRM", "12.0 SRM"},
      {"ColorUnit=EBC", "beercolor", "19.7", "10.000000 SRM", "19.7 EBC"},
      {"", "maltcolor", "25 ebc", "9.929393 °L", "9.9 ˚L"},
      {"ColorUnit=EBC Locale=de_DE", "maltcolor", "25,0", "9.929393 °L", "25,0 EBC"},
      {"", "temperature", "67", "67.000000 °C", "67 ˚C"},
      {"", "temperature", "-5", "-5.000000 °C", "-5 ˚C"},
      {"TemperatureUnit=Fahrenheit", "temperature", "152", "66.666667 °C", "152 ˚F"},
      {"", "watergrain", "2.5", "2.500000 l/kg", "2.50 l/kg"},
      {"Units=US", "watergrain", "1.25", "2.607944 l/kg", "1.25 qts/lb"},
      {"Units=British Locale=de_DE", "watergrain", "2", "2.505611 l/kg", "2,00 pts/lb"},
      {"", "distance", "300 m", "300.000000 m", "300.0 m"},
      {"Units=US", "distance", "1000", "304.800000 m", "1000 ft"},
      {"", "percent", "72.5", "72.500000 %", "72.5 %"},
      {"Locale=de_DE", "percent", "72,5 %", "72.500000 %", "72,5 %"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(std::string(one.defaults) + " " + one.kind + " " + one.typed);
    std::vector<std::string> arguments{"units", one.kind, one.typed};
    std::istringstream defaults(one.defaults);
    for (std::string assignment; defaults >> assignment;) {
      arguments.insert(arguments.end(), {"--default", assignment});
    }
    const test::Outcome outcome = test::run(arguments);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    const bool isGerman = std::string_view(one.defaults).find("de_DE") != std::string_view::npos;
    EXPECT_EQ(outcome.out, (isGerman ? "getippt      " : "typed   ") + std::string(one.typed) +
                               (isGerman ? "\ngespeichert  " : "\nstored  ") + one.stored +
                               (isGerman ? "\ngezeigt      " : "\nshown   ") + one.shown + "\n");
  }
}

TEST(Units, FollowTheLocaleOfTheEnvironment) {
  EXPECT_EQ(test::run({"units", "volume", "4,5 l"}, "", "de_DE.UTF-8").out,
            "getippt      4,5 l\ngespeichert  4500.000000 ml\ngezeigt      4,50 l\n");
}

}  // namespace
}  // namespace zym
