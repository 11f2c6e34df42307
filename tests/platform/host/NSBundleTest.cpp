#include "tests/support/TemporaryFolder.h"
#include "tests/support/Test.h"
#include "zymcore/platform/formats/XMLPropertyList.h"
#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/text/NSLocale.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/platform/values/ProcessTearDown.h"

namespace zym {
namespace {

void putTable(const std::string& path, const PlistDictionary& table) {
  putFile(path, XMLPropertyList::write(table).value());
}

class NSBundleTest : public testing::Test {
 protected:
  ~NSBundleTest() override { NSLocale::setCurrentLocale(""); }

  [[nodiscard]] std::string translated(const char* locale, const char* key, const char* value = "",
                                       const char* table = "") const {
    NSLocale::setCurrentLocale(locale);
    return bundle.localizedStringForKey_value_table(key, value, table);
  }

  TemporaryFolder folder;
  NSBundle bundle{folder / "resources", "org.example.host", "1.2"};
};

TEST_F(NSBundleTest, FindsItsResourcesAndNoOthers) {
  putFile(folder / "secret.txt", "");
  putFile(folder / "resources/sheet.html", "");
  putFile(folder / "resources/styles/2021.xml", "");
  putFile(folder / "resources/README", "");
  EXPECT_EQ(bundle.pathForResource_ofType("sheet", "html"), folder / "resources/sheet.html");
  EXPECT_EQ(bundle.pathForResource_ofType("README", ""), folder / "resources/README");
  EXPECT_EQ(bundle.pathForResource_ofType_inDirectory("2021", "xml", "styles"),
            folder / "resources/styles/2021.xml");
  EXPECT_EQ(bundle.pathForResource_ofType("styles/2021", "xml"),
            folder / "resources/styles/2021.xml");
  for (const char* name :
       {"../secret", "styles/../../secret", "/etc/../secret", "absent", "", ".."}) {
    EXPECT_EQ(bundle.pathForResource_ofType(name, "txt"), std::nullopt) << name;
  }
  EXPECT_EQ(bundle.pathForResource_ofType_inDirectory("secret", "txt", ".."), std::nullopt);
  EXPECT_EQ(bundle.pathForResource_ofType("..", ""), std::nullopt);
  EXPECT_EQ(NSBundle().pathForResource_ofType("passwd", ""), std::nullopt);
}

TEST_F(NSBundleTest, TranslatesIntoTheLanguageOfTheLocale) {
  putTable(folder / "resources/de.lproj/Localizable.strings",
           {{KeyName("Beta"), "Betha"}, {KeyName("Alpha"), "Alfa"}});
  putTable(folder / "resources/de-AT.lproj/Localizable.strings", {{KeyName("Beta"), "Betta"}});
  putTable(folder / "resources/de.lproj/Other.strings", {{KeyName("Beta"), "Gamma"}});
  EXPECT_EQ(translated("de_DE", "Beta"), "Betha");
  EXPECT_EQ(translated("de_AT", "Beta"), "Betta");
  EXPECT_EQ(translated("de_AT", "Alpha"), "Alfa");
  EXPECT_EQ(translated("de_DE", "Beta", "", "Other"), "Gamma");
  EXPECT_EQ(translated("de_DE", "None", "given"), "given");
  EXPECT_EQ(translated("de_DE", "None"), "None");
  EXPECT_EQ(translated("fr_FR", "Beta"), "Beta");
  EXPECT_EQ(translated("de_DE", "Beta", "", "../de.lproj/Other"), "Beta");
}

TEST_F(NSBundleTest, DoesWithoutATableItCannotRead) {
  std::string log;
  setNSLogSink([&](std::string_view line) { log += line; });
  putFile(folder / "resources/de.lproj/Localizable.strings", "<plist><dict><key>");
  EXPECT_EQ(translated("de_DE", "Key"), "Key");
  EXPECT_THAT(log, testing::HasSubstr("Localizable.strings can't be used"));
  setNSLogSink(nullptr);
}

TEST_F(NSBundleTest, IsChosenByTheHost) {
  EXPECT_EQ(NSBundle::mainBundle().bundleIdentifier(), "");
  NSBundle::setMainBundle(bundle);
  EXPECT_EQ(NSBundle::mainBundle().bundleIdentifier(), "org.example.host");
  EXPECT_EQ(NSBundle::mainBundle().version(), "1.2");
  EXPECT_EQ(NSBundle::mainBundle().resourcePath(), folder / "resources");
  NSLocale::setCurrentLocale("de_AT");
  tearDownProcess();
  EXPECT_EQ(NSBundle::mainBundle().bundleIdentifier(), "");
  EXPECT_NE(NSLocale::currentLocale(), NSLocale("de_AT"));
}

TEST(NSLocale, NamesItsLanguagesFromTheMostSpecial) {
  EXPECT_THAT(NSLocale("zh-Hant-TW").languageIdentifiers(),
              ElementsAre("zh_Hant_TW", "zh-Hant-TW", "zh_Hant", "zh-Hant", "zh"));
  EXPECT_THAT(NSLocale("de_DE.UTF-8").languageIdentifiers(), ElementsAre("de_DE", "de-DE", "de"));
  EXPECT_NO_THROW((void)NSLocale(std::string(10'000, 'x')).decimalSeparator());
  EXPECT_EQ(NSLocale("").decimalSeparator(), ".");
}

}  // namespace
}  // namespace zym
