#include "tests/app/Program.h"
#include "zymcore/platform/formats/NSJSONSerialization.h"

namespace zym {
namespace {

using test::Outcome;
using ::testing::StartsWith;

using Library = test::WithProgram;

TEST_F(Library, IsFilledOnTheFirstRunAndSaysSo) {
  const Outcome first = zym({"list", "waters"});
  EXPECT_EQ(first.exitCode, 0);
  EXPECT_THAT(first.err, StartsWith("zym: made a new store with "));
  EXPECT_THAT(first.out, HasSubstr("Burton On Trent"));
  const Outcome second = zym({"list", "waters"});
  EXPECT_EQ(second.err, "");
  EXPECT_EQ(second.out, first.out);
}

TEST_F(Library, EveryKindListsAsTextAndAsJSON) {
  for (const char* kind : {"fermentables", "hops", "yeasts", "others", "waters", "suppliers",
                           "schedules", "profiles", "styles"}) {
    (void)output({"list", kind});
    const auto records =
        NSJSONSerialization::JSONObjectWithData_options(output({"list", kind, "--json"}), 0);
    ASSERT_TRUE(records && records->array()) << kind;
  }
}

TEST_F(Library, RecordsAreMadeChangedCopiedAndRemoved) {
  (void)output({"new", "fermentable", "My Malt", "Extract=80", "Color=19.7 EBC", "IsGrain=no"});
  EXPECT_THAT(output({"show", "fermentable", "my m"}), HasSubstr("80.0 %"));
  (void)output({"edit", "fermentable", "My Malt", "Yield=75.5", "Name=Our Malt"});
  const std::string shown = output({"show", "fermentable", "Our Malt", "--json"});
  EXPECT_THAT(shown, HasSubstr("\"Extract\": \"75.500000\""));
  EXPECT_THAT(shown, HasSubstr("\"IsGrain\": \"0\""));
  EXPECT_EQ(output({"copy", "fermentable", "Our Malt"}), "Our Malt-copy\n");
  (void)output({"remove", "fermentable", "Our Malt"});
  const Outcome gone = zym({"show", "fermentable", "Our Malt!"});
  EXPECT_EQ(gone.exitCode, 1);
  EXPECT_THAT(gone.err, HasSubstr("the nearest names are '"));
}

TEST_F(Library, WhatIsAmbiguousNamesTheCandidates) {
  const Outcome outcome = zym({"show", "fermentable", "US Caramel"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.err, HasSubstr("US Caramel 60"));
  EXPECT_THAT(outcome.err, HasSubstr("US Caramel 120"));
  EXPECT_THAT(output({"show", "schedule", "double"}), HasSubstr("Pull decoction"));
}

TEST_F(Library, NearestNamesComeWithTheirScores) {
  EXPECT_THAT(output({"list", "fermentables", "--like", "Marris Oter"}),
              HasSubstr("0.696  UK Maris Otter Pale Malt"));
}

TEST_F(Library, StylesTellWhatIsOpenAndBeginWithBeers) {
  const std::string list = output({"list", "styles"});
  EXPECT_LT(list.find("American Light Lager"), list.find("Dry Mead"));
  EXPECT_LT(list.find("Experimental Beer"), list.find("New World Cider"));
  EXPECT_THAT(output({"show", "style", "Fruit Beer"}),
              AllOf(HasSubstr("OG from      open"), HasSubstr("ABV to       open")));
  EXPECT_THAT(output({"show", "style", "Gueuze"}),
              AllOf(HasSubstr("IBU from     0.0"), Not(HasSubstr("open"))));
}

TEST_F(Library, NothingIsStoredWhenAValueIsRefused) {
  const std::string before = output({"list", "hops"});
  for (const std::vector<std::string>& bad : std::initializer_list<std::vector<std::string>>{
           {"new", "hop", "X", "Alpha=strong"},
           {"new", "hop", "X", "Colour=3"},
           {"new", "hop", "X", "Alpha"},
           {"edit", "profile", "50", "PreferredRecipeType=Mead"},
           {"list", "beers"},
           {"new", "style", "X"},
           {"set", "Units", "furlongs"},
           {"set", "HopFormula", "7"},
           {"set", "GravityUnits", "-1"},
           {"set", "BeerColorFormula", "1.7"},
           {"set", "Boiling Point", "nan"},
           {"set", "MashHopAdjustment", "1e9"},
           {"set", "Nothing", "1"}}) {
    EXPECT_EQ(zym(bad).exitCode, 2) << bad[0] << bad[1];
  }
  EXPECT_EQ(output({"list", "hops"}), before);
}

TEST_F(Library, ANameIsFoundByAWordOfItAndWhateverItsSigns) {
  EXPECT_THAT(output({"show", "yeast", "wlp002"}), HasSubstr("WLP002"));
  EXPECT_THAT(zym({"show", "schedule", "67 °C"}).err, HasSubstr("Single Infusion, 67 ˚C"));
  EXPECT_THAT(zym({"show", "yeast", "LP002"}).err, HasSubstr("no yeast is named"));
  EXPECT_THAT(zym({"show", "hop", "fug-gle"}).err,
              HasSubstr("'Fuggle' differs in its blanks and signs alone"));
  const std::string json = output({"show", "hop", "Fuggle", "--json"});
  const std::size_t at = json.find("\"UUID\": \"") + 9;
  EXPECT_EQ(output({"show", "hop", json.substr(at, 36), "--json"}), json);
}

TEST_F(Library, TheRecordOfNoChoiceKeepsItsNameAndPlace) {
  const std::string before = output({"list", "yeasts"});
  for (const std::vector<std::string>& bad : std::initializer_list<std::vector<std::string>>{
           {"edit", "yeast", " No Chosen Yeast", "Name=None"},
           {"edit", "yeast", "WLP002", "Name= A"},
           {"new", "yeast", " A"},
           {"new", "yeast", "A", "Name= A"},
           {"remove", "yeast", " No Chosen Yeast", "--force"}}) {
    EXPECT_EQ(zym(bad).exitCode, 1) << bad[2];
  }
  EXPECT_EQ(output({"list", "yeasts"}), before);
  (void)output({"edit", "yeast", " No Chosen Yeast", "Description=none"});
  (void)output({"new", "hop", " A"});
}

TEST_F(Library, AKeptSettingThatCannotBeIsPassedOver) {
  (void)output({"set", "HopFormula", "Rager"});
  const std::string file = data + "/Preferences.plist";
  putFile(file, R"(<plist><dict><key>HopFormula</key><integer>7</integer>
                   <key>PelletHopAdjustment</key><string>abc</string></dict></plist>)");
  const Outcome outcome = zym({"settings"});
  EXPECT_THAT(outcome.err, HasSubstr("HopFormula is set to 7, which it can't be; choose Tinseth"));
  EXPECT_THAT(outcome.err, HasSubstr("PelletHopAdjustment is set to abc"));
  EXPECT_THAT(outcome.out, HasSubstr("HopFormula                 Tinseth"));
  const Outcome shell = test::run({"shell", "--data", data}, "set HopFormula Rager\nsettings\n");
  EXPECT_THAT(shell.out, HasSubstr("HopFormula                 Rager"));
}

TEST_F(Library, SettingsAreKept) {
  (void)output({"set", "Units", "US"});
  (void)output({"set", "PreferredStyleGuidelines", "2008"});
  (void)output({"set", "Locale", "de_DE"});
  EXPECT_THAT(output({"settings"}), HasSubstr("Units                      US"));
  EXPECT_THAT(output({"show", "profile", "50"}), HasSubstr("16,64 US gals"));
  EXPECT_THAT(output({"list", "styles"}), HasSubstr("Lite American Lager"));
}

TEST_F(Library, TheDefaultProfileIsChosen) {
  EXPECT_THAT(output({"profile", "default"}), StartsWith("10 l Kitchen, Brew in a Bag"));
  (void)output({"profile", "default", "50"});
  EXPECT_EQ(output({"profile", "default"}), "50 l System\n");
}

TEST_F(Library, TheStoreTellsAboutItself) {
  const std::string info = output({"store", "info"});
  EXPECT_THAT(info, HasSubstr("sound"));
  EXPECT_THAT(info, HasSubstr(data + "/Wortmeister.sqlite"));
  EXPECT_THAT(info, HasSubstr("ZYMHopEntity"));
}

TEST_F(Library, AFileThatIsNoStoreIsNamedAndLeftAlone) {
  std::filesystem::create_directories(data);
  for (const std::string& content :
       {std::string(), std::string("garbage"), std::string(100000, 'x')}) {
    std::ofstream(data + "/Wortmeister.sqlite", std::ios::trunc) << content;
    const Outcome outcome = zym({"list", "hops"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.err, HasSubstr("Wortmeister.sqlite"));
    EXPECT_EQ(bytesOf(data + "/Wortmeister.sqlite"), content);
  }
}

}  // namespace
}  // namespace zym
