#include "tests/support/Store.h"
#include "zymcore/library/recipes/ZYMRecipes.h"

namespace zym {
namespace {

class HistoryTest : public testing::WithStore {
 protected:
  static ZYMRecipes& recipes() { return ZYMRecipes::sharedInstance(); }
  [[nodiscard]] std::string file() const { return folder / "data/History.plist"; }
  [[nodiscard]] std::string fileText() const {
    return NSFileManager::contentsAtPath(file(), 1 << 20).value_or("");
  }
  void writeFile(const std::string& text) const {
    (void)model().historyFolderPath();
    std::ofstream(file()) << text;
  }

  static void add(const std::string& uuid) {
    ZYMHistoryItem item;
    item.setUuid(uuid);
    recipes().addHistoryItemToHistory(item);
  }
  static std::vector<std::string> uuidsOf(const std::vector<ZYMHistoryItem>& items) {
    std::vector<std::string> uuids;
    for (const ZYMHistoryItem& item : items) uuids.push_back(item.uuid().value_or("none"));
    return uuids;
  }
  template <class Entity>
  static Entity& insert(const std::string& uuid) {
    auto& entity = Entity::insertInContext(context());
    PlistDictionary record{{keys::UUID, uuid},
                           {keys::Actuals, PlistDictionary()},
                           {keys::ModifiedRecipe, recipes().emptyRecipe()}};
    entity.updateWithDictionaryRepresentation(record);
    return entity;
  }
};

TEST_F(HistoryTest, IsNewestFirstWithoutRepeatsAndShort) {
  EXPECT_THAT(recipes().readHistory(), IsEmpty());
  for (int i = 0; i < 10; ++i) add(std::to_string(i));
  add("4");
  EXPECT_THAT(uuidsOf(recipes().readHistory()),
              ElementsAre("4", "9", "8", "7", "6", "5", "3", "2", "1", "0"));
  add("new");
  EXPECT_THAT(uuidsOf(recipes().readHistory()),
              ElementsAre("new", "4", "9", "8", "7", "6", "5", "3", "2", "1"));

  std::vector<ZYMHistoryItem> tooLong(13);
  recipes().writeHistory(tooLong);
  add("last");
  EXPECT_EQ(recipes().readHistory().size(), 13U) << "one only is taken off";
}

TEST_F(HistoryTest, RemembersWhatWasOpenedAndWhen) {
  const double before = NSDate::date().timeIntervalSince1970();
  recipes().addRecipeToHistory({{keys::UUID, "r"}, {keys::RecipeTitle, "Bock"}});
  recipes().addBatchToHistory({{keys::UUID, "b"}, {keys::BatchTitle, "Bock & <Co>"}});
  recipes().addBatchToHistory({{keys::BatchTitle, PlistArray()}});
  std::vector<std::string> lines;
  for (const ZYMHistoryItem& item : recipes().readHistory()) {
    // A property list tells whole seconds.
    EXPECT_NEAR(item.dateAccessed()->timeIntervalSince1970(), before, 60);
    lines.push_back(item.description());
    lines.back().resize(lines.back().find(" date"));
  }
  EXPECT_THAT(lines, ElementsAre("name: (null) uuid: (null) isBatch: Yes",
                                 "name: Bock & <Co> uuid: b isBatch: Yes",
                                 "name: Bock uuid: r isBatch: No"));
  writeFile(
      "<plist><array><dict><key>NAME</key><string>N</string><key>UUID</key><string>U</string>"
      "<key>ISBATCH</key><true/><key>DATE</key><date>2024-02-29T12:00:59Z</date></dict></array>"
      "</plist>");
  EXPECT_EQ(recipes().readHistory().at(0).description(),
            "name: N uuid: U isBatch: Yes date accessed: 2024-02-29 12:00:59 +0000");
}

TEST_F(HistoryTest, DropsWhatWasDeletedAndKeepsWhatCannotBeRead) {
  insert<ZYMRecipeEntity>("recipe");
  auto& batch = insert<ZYMRecipeBatchEntity>("batch");
  auto& damaged = insert<ZYMRecipeEntity>("damaged");
  damaged.setDocument_forKey(NSData("no document"), attributes::data);
  for (const char* uuid : {"gone", "recipe", "batch", "damaged"}) add(uuid);
  EXPECT_THAT(uuidsOf(recipes().history()), ElementsAre("damaged", "batch", "recipe"));
  EXPECT_THAT(uuidsOf(recipes().readHistory()), ElementsAre("damaged", "batch", "recipe"));

  context().deleteObject(batch);
  EXPECT_THAT(uuidsOf(recipes().historyWithMaximumNumberOfItems(0)),
              ElementsAre("damaged", "recipe"));
  EXPECT_THAT(uuidsOf(recipes().historyWithMaximumNumberOfItems(1)), ElementsAre("damaged"));
  EXPECT_THAT(uuidsOf(recipes().historyWithMaximumNumberOfItems(5)),
              ElementsAre("damaged", "recipe"));

  const std::string kept = fileText();
  EXPECT_EQ(kept.find("gone"), std::string::npos);
  std::filesystem::last_write_time(file(), {});
  (void)recipes().history();
  EXPECT_EQ(std::filesystem::last_write_time(file()), std::filesystem::file_time_type())
      << "nothing was dropped, so nothing is written";
}

TEST_F(HistoryTest, TakesAFileOfAnySort) {
  const std::string head = "<?xml version=\"1.0\"?><plist version=\"1.0\">";
  const struct {
    std::string text;
    std::vector<std::string> uuids;
  } cases[] = {
      {"", {}},
      {head + "<dict><key>UUID</key><string>a</string></dict></plist>", {}},
      {head + "<array><string>a</string><dict><key>UUID</key><integer>7</integer><key>DATE</key>"
              "<string>today</string><key>ISBATCH</key><string>1</string></dict><array/><dict>"
              "<key>UUID</key><string>b</string></dict></array></plist>",
       {"none", "b"}},
      {head + "<array><dict><key>UUID</key><string>" + std::string(4 << 20, 'a') +
           "</string></dict></array></plist>",
       {}},
  };
  for (const auto& c : cases) {
    writeFile(c.text);
    EXPECT_EQ(uuidsOf(recipes().readHistory()), c.uuids) << c.text.substr(0, 100);
    EXPECT_THAT(recipes().history(), IsEmpty());
    add("next");
    EXPECT_EQ(uuidsOf(recipes().readHistory()).front(), "next");
  }
  std::filesystem::remove(file());
  std::filesystem::create_directory(file());
  EXPECT_NO_THROW(add("next"));
  EXPECT_THAT(recipes().readHistory(), IsEmpty());
}

}  // namespace
}  // namespace zym
