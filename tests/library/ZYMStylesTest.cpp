#include "tests/support/Defaults.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Test.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/library/ZYMStyles.h"
#include "zymcore/platform/formats/NSPropertyListSerialization.h"
#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NSNotFound.h"

namespace zym {
namespace {

class Styles : public testing::WithDefaults {
 protected:
  Styles() { NSBundle::setMainBundle(NSBundle(folder.path(), "org.example", "1")); }
  ~Styles() override {
    ZYMStyles::tearDown();
    NSBundle::setMainBundle(NSBundle());
  }
  void write(const char* name, const PlistValue& content) const {
    std::ofstream(folder / (std::string(name) + ".plist"))
        << *NSPropertyListSerialization::dataWithPropertyList_format(
               content, NSPropertyListFormat::XMLFormat_v1_0);
  }
  static PlistDictionary style(const char* category, const char* name) {
    return {{keys::Category, category}, {keys::Name, name}, {keys::UUID, name}};
  }
  static std::int64_t preferred(const PlistValue& value) {
    set(ZYMPreferredStyleGuidelinesKey, value);
    return ZYMStyles::userPreferredStyleGuidelines();
  }
  const TemporaryFolder folder;
  ZYMStyles& styles = ZYMStyles::sharedInstance();
  const PlistDictionary file{
      {KeyName{"Styles"},
       PlistArray{style("10A", "Weizen"), style("2B", "pils"), style("9A", "Wee Heavy"), "odd",
                  style("10B", "Altbier"), style("2B", "Kellerbier"), style("", "Free"),
                  style("2A", "Lager"), style("C1", "Cider"), style("2B9", "Aged"),
                  style("2B0", "Aalt"), style("2Z", "Aal")}}};
};

TEST_F(Styles, PreferredGuidelines) {
  EXPECT_EQ(ZYMStyles::userPreferredStyleGuidelines(), 1);
  EXPECT_EQ(preferred(7), 1);
  EXPECT_EQ(preferred("0"), 0);
  EXPECT_EQ(preferred(1), 1);
  EXPECT_EQ(preferred(-3), -3);
  EXPECT_EQ(ZYMStyles::titleForStyleGuidelines(5), "BJCP 2015");
  EXPECT_THAT(ZYMStyles::allTitlesForStyleGuidelines(), ElementsAre("BJCP 2008", "BJCP 2015"));
}

TEST_F(Styles, NoChoice) {
  const PlistDictionary none = ZYMStyles::noChosenStyle();
  EXPECT_EQ(none.size(), 15U);
  EXPECT_EQ(*none.string(keys::UUID), "");
  EXPECT_EQ(none.stringValue(keys::Name), "No Style Chosen");
  EXPECT_EQ(none.stringValue(keys::Type), " None");
  EXPECT_EQ(none.stringValue(keys::MinFG), "0");
  EXPECT_EQ(ZYMStyles::fullNameForStyle(none), "No Style Chosen");
}

TEST_F(Styles, SortByCategoryAsABrewerWould) {
  write("BJCPStyles-2015", file);
  EXPECT_THAT(
      styles.allStyleNamesInGuidelines(1),
      ElementsAre("Free", "C1 - Cider", "2A - Lager", "2B - Kellerbier", "2B - pils", "2B0 - Aalt",
                  "2B9 - Aged", "2Z - Aal", "9A - Wee Heavy", "10A - Weizen", "10B - Altbier"));
  EXPECT_EQ(styles.allStyleNamesInGuidelines(99).size(), 11U);
  EXPECT_THAT(styles.allStyleNamesInGuidelines(0), IsEmpty());
}

TEST_F(Styles, LookUpsAndNearestNames) {
  write("BJCPStyles-2008", file);
  EXPECT_EQ(styles.styleWithName_inGuidelines("pils", 0)->stringValue(keys::Category), "2B");
  EXPECT_FALSE(styles.styleWithName_inGuidelines("Pils", 0));
  EXPECT_EQ(styles.styleWithUUID_inGuidelines("Lager", 0)->stringValue(keys::Name), "Lager");
  EXPECT_FALSE(styles.styleWithUUID_inGuidelines("", 0));
  EXPECT_EQ(styles.styleWithNameMostSimilarToString_inGuidelines("Hefeweizen", 0)
                ->stringValue(keys::Name),
            "Weizen");
}

TEST_F(Styles, WithoutAFileThereAreNoneUntilThereIsOne) {
  EXPECT_FALSE(styles.styleWithName_inGuidelines("pils", 0));
  EXPECT_FALSE(styles.styleWithNameMostSimilarToString_inGuidelines("pils", 0));
  std::ofstream(folder / "BJCPStyles-2008.plist") << "damaged";
  EXPECT_FALSE(styles.styleWithName_inGuidelines("pils", 0));
  write("BJCPStyles-2008", PlistDictionary{{KeyName{"Style"}, PlistArray()}});
  EXPECT_FALSE(styles.styleWithName_inGuidelines("pils", 0));
  write("BJCPStyles-2008", file);
  EXPECT_TRUE(styles.styleWithName_inGuidelines("pils", 0));
  write("BJCPStyles-2015", PlistDictionary{{KeyName{"Styles"}, PlistArray()}});
  EXPECT_EQ(
      reasonOf([&] { (void)styles.styleWithNameMostSimilarToString_inGuidelines("pils", 1); }),
      "index -1 beyond bounds for array of styles");
}

}  // namespace
}  // namespace zym
