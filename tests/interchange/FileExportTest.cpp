#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "tests/interchange/ExchangeTest.h"
#include "tests/support/Differences.h"
#include "tests/support/Pictures.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/interchange/operations/ItemForExport.h"
#include "zymcore/interchange/operations/ZYMFileImportExportManager.h"
#include "zymcore/platform/graphics/NSImage.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/platform/values/ProcessTearDown.h"

namespace zym {
namespace {

namespace fs = std::filesystem;
using Type = ZYMExportFileType;

class FileExportTest : public ExchangeTest {
 protected:
  FileExportTest() {
    setNSLogSink([this](std::string_view line) { log += std::string(line) + "\n"; });
  }
  ~FileExportTest() override { setNSLogSink({}); }

  [[nodiscard]] std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder.path())) {
      if (entry.is_regular_file()) names.push_back(entry.path().filename());
    }
    std::ranges::sort(names);
    return names;
  }
  static std::optional<std::string> failure(const PlistValue& item, const std::string& path,
                                            int type) {
    ZYMFileExportOperation operation(item, path, type);
    operation.start();
    EXPECT_EQ(operation.failureReason().has_value(), !operation.writtenPath());
    return operation.failureReason();
  }
  std::string log;
};

TEST_F(FileExportTest, NamesFilesByTheirTitles) {
  const auto titled = [](const std::string& title) {
    return PlistDictionary{{keys::RecipeTitle, title}};
  };
  const std::string longest(300, 'x');
  std::string accented = "a";
  for (int i = 0; i < 200; ++i) accented += "é";
  const std::pair<PlistDictionary, std::string> cases[] = {
      {titled("A/B.C"), "ABC.rec"},
      {titled("A/B.C"), "ABC-1.rec"},
      {titled("A/B.C"), "ABC-2.rec"},
      {titled("../../etc"), "etc.rec"},
      {titled("..."), "Untitled.rec"},
      {titled(std::string("A\0\n\x7f\xff", 5)), "A.rec"},
      {titled(longest), std::string(200, 'x') + ".rec"},
      {titled(longest), std::string(200, 'x') + "-1.rec"},
      {titled(accented), accented.substr(0, 199) + ".rec"},
      {{{keys::RecipeTitle, "R"}, {keys::BatchTitle, "B"}}, "R.rec"},
      {{{keys::RecipeTitle, "R"},
        {keys::BatchTitle, "B"},
        {keys::ModifiedRecipe, PlistDictionary()}},
       "B.rec"},
      {{}, "Untitled-1.rec"},
  };
  for (const auto& [item, name] : cases) {
    EXPECT_EQ(fs::path(exported(item, Type::REC)).filename(), name);
  }
  EXPECT_THAT(files(), SizeIs(std::size(cases))) << "and nothing beside them";
  EXPECT_EQ(ZYMFileExportOperation::uniquePathForPath(std::nullopt), std::nullopt);
  (void)folder.file("a.b/name", "");
  EXPECT_EQ(ZYMFileExportOperation::uniquePathForPath(folder / "a.b/name"), folder / "a.b/name-1");
}

TEST_F(FileExportTest, SaysInTheLogWhatIsWrong) {
  const std::string file = folder.file("file", "");
  const PlistDictionary recipe;
  const PlistArray list{PlistDictionary{{keys::Alpha, "1"}}};
  const std::string prefix = "-[ZYMFileExportOperation main] ";
  const std::tuple<int, std::string, std::string> cases[] = {{0, "WMR", "WMR"}, {1, "WMR", "WMR"},
                                                             {4, "REC", "REC"}, {5, "REC", "REC"},
                                                             {6, "HTM", "REC"}, {7, "PDF", "PDF"}};
  for (const auto& [type, itemKind, pathKind] : cases) {
    const std::string item = "Item is required to be an NSDcitionary for " + itemKind + " export";
    const std::string path = "path is required to be a directory for " + pathKind + " export";
    for (const std::string& place : {file, folder / "gone"}) {
      log.clear();
      EXPECT_EQ(failure(recipe, place, type), path);
      EXPECT_EQ(log, prefix + path + "\n") << type;
    }
    log.clear();
    EXPECT_EQ(failure(list, file, type), path);
    EXPECT_EQ(log, prefix + item + "\n" + prefix + path + "\n");
    EXPECT_EQ(failure(list, folder.path(), type), item);
  }
  log.clear();
  EXPECT_TRUE(failure(list, folder.path(), 3));
  EXPECT_TRUE(failure(recipe, folder / "new", 3));
  EXPECT_TRUE(failure(recipe, folder.path(), 2));
  EXPECT_TRUE(failure(recipe, folder.path(), 8));
  EXPECT_EQ(log, prefix + "path is required not to be a directory for ING export\n" + prefix +
                     "Item is required to be an NSArray for ING export\n" + prefix +
                     "WMA files unsupported\n");
  EXPECT_THAT(files(), ElementsAre("file"));
  EXPECT_EQ(failure(list, file, 3), std::nullopt);
  EXPECT_THAT(files(), ElementsAre("file", "file-1"));
}

TEST_F(FileExportTest, LeavesNothingHalfWritten) {
  if (::geteuid() != 0) {
    fs::permissions(folder.path(), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_TRUE(failure(PlistDictionary(), folder.path(), 4));
    fs::permissions(folder.path(), fs::perms::owner_all);
  }
  EXPECT_TRUE(failure(PlistArray{}, folder / "none/package", 3));
  // As on a disk that is full.
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit least{4096, before.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &least);
  const auto reason = failure(PlistDictionary(), folder.path(), 4);
  ::setrlimit(RLIMIT_FSIZE, &before);
  (void)std::signal(SIGXFSZ, handler);
  EXPECT_EQ(reason, "File too large");
  PlistValue deep = "x";
  for (int i = 0; i < 600; ++i) deep = PlistArray{deep};
  for (const int type : {0, 1})
    EXPECT_TRUE(failure(PlistDictionary{{keys::Notes, deep}}, folder.path(), type));
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(FileExportTest, TwoProcessesTakeDifferentNames) {
  constexpr int each = 20;
  const pid_t other = ::fork();
  for (int i = 0; i < each; ++i) (void)failure(PlistDictionary(), folder.path(), 0);
  if (other == 0) ::_exit(0);
  ::waitpid(other, nullptr, 0);
  EXPECT_THAT(files(), SizeIs(2 * each));
}

TEST_F(FileExportTest, QueuesItemsAndTellsOfTheQueue) {
  ZYMFileImportExportManager& manager = ZYMFileImportExportManager::sharedInstance();
  std::vector<std::int64_t> counts;
  std::vector<NSNotificationCenter::Token> tokens;
  for (const char* name :
       {ZYMImportQueueStatusChangedNotification, ZYMExportQueueStatusChangedNotification}) {
    tokens.push_back(NSNotificationCenter::defaultCenter().addObserverForName_object(
        name, &manager, [&, name](const NSNotification& n) {
          EXPECT_STREQ(name, ZYMImportQueueStatusChangedNotification);
          counts.push_back(n.userInfo.integerValue(ZYMQueueStatusCountKey));
        }));
  }
  manager.exportItems_toPath_fileType({randomRecipe(1), randomRecipe(2)}, folder.path(), 5);
  EXPECT_EQ(&manager.importQueue(), &manager.exportQueue());
  EXPECT_EQ(manager.importQueue().operationCount(), 2U);
  EXPECT_THAT(counts, IsEmpty()) << "in a later turn";
  manager.importQueue().waitUntilAllOperationsAreFinished();
  endTurn();
  EXPECT_THAT(counts, SizeIs(8)) << "twice for each of two that come and go";
  EXPECT_EQ(counts.back(), 0);
  EXPECT_THAT(files(), ElementsAre("Brew & <1>.xml", "Brew & <2>.xml"));
  manager.exportItems_toPath_fileType({PlistDictionary{{keys::Alpha, "1"}}, PlistDictionary()},
                                      folder / "hops.ing", 3);
  EXPECT_EQ(manager.exportQueue().operationCount(), 1U);
  const testing::Posts posts{ZYMImportOperationSucceededNotification,
                             ZYMImportOperationFailedNotification};
  manager.importFilesAtURLS({folder / "Brew & <1>.xml", folder / "gone.xml"});
  manager.importQueue().waitUntilAllOperationsAreFinished();
  EXPECT_THAT(posts.names, ElementsAre(ZYMImportOperationSucceededNotification,
                                       ZYMImportOperationFailedNotification));

  counts.clear();
  manager.importFilesAtURLS({folder / "gone.xml"});
  tearDownProcess();
  endTurn();
  EXPECT_THAT(counts, IsEmpty());
}

// ---- Round trips

// What a property list holds of dates.
PlistValue inWholeSeconds(PlistValue tree) {
  if (const NSDate* date = tree.date()) {
    return NSDate::dateWithTimeIntervalSince1970(std::floor(date->timeIntervalSince1970()));
  }
  if (PlistArray* array = tree.editArray()) {
    for (PlistValue& each : array->editAll()) each = inWholeSeconds(std::move(each));
  }
  if (PlistDictionary* dictionary = tree.editDictionary()) {
    for (std::size_t i = 0; i < dictionary->size(); ++i) {
      dictionary->editAt(i) = inWholeSeconds(std::move(dictionary->editAt(i)));
    }
  }
  return tree;
}

TEST_F(FileExportTest, OurOwnFormatsLoseNothing) {
  const auto black = [](int, int) { return testing::Bytes{0, 0, 0, 255}; };
  const NSImage image =
      *NSImage::imageWithData(*testing::picture(5, 3, false, black).PNGRepresentation());
  for (unsigned number = 0; number < 12; ++number) {
    PlistDictionary recipe = recipes().createRecipe();
    const std::string uuid(recipe.stringValue(keys::UUID));
    for (const PlistEntry& entry : randomRecipe(number)) {
      if (entry.key.text() != "UUID") recipe.set(entry.key, entry.value);
    }
    recipe.set(keys::Notes, "Zeile\n„ü“ \U0001F37A & <x> ]]>");
    recipes().updateRecipe(recipe);
    const PlistDictionary batch = *recipes().addBatchToRecipeWithUUID(uuid);
    recipes().addThumbnailImage_withLargeImage_toItemWithUUID(image, image, uuid);
    recipes().addThumbnailImage_withLargeImage_toItemWithUUID(image, image,
                                                              batch.stringValue(keys::UUID));
    endTurn();
    const PlistDictionary item = *inWholeSeconds(*itemForExportWithUUID(uuid)).dictionary();
    EXPECT_EQ(count(item, keys::Batches), 1U);
    EXPECT_EQ(count(item, keys::Images), 1U);
    for (const KeyName key : {keys::ModifiedRecipe, keys::OriginalRecipe}) {
      const PlistDictionary* brewed = item.rows(keys::Batches).begin()->dictionary(key);
      EXPECT_EQ(brewed->dictionary(keys::MashSchedule)->stringValue(keys::Version), "3");
    }
    for (const Type type : {Type::NativePropertyList, Type::NativeJSON}) {
      const PlistDictionary back = travelled(item, type);
      const PlistDictionary again = *itemForExportWithUUID(back.stringValue(keys::UUID));
      PlistDictionary before = withoutIdentity(item);
      PlistDictionary after = withoutIdentity(again);
      if (type == Type::NativePropertyList) {
        // It is recalculated as it comes in, and named a yeast once more.
        for (PlistDictionary* each : {&before, &after}) {
          ZYMBeerCalculations::recalculateBeerRecipe(*each);
          each->remove(keys::YeastAmount);
          each->remove(keys::Batches);
        }
      } else {
        EXPECT_EQ(count(after, keys::Batches), 1U);
        const auto batchOf = [](PlistDictionary& of) {
          return withoutIdentity(*of.editRows(keys::Batches).begin());
        };
        EXPECT_EQ(testing::differences(batchOf(before), batchOf(after)), std::set<std::string>());
        before.remove(keys::Batches);
        after.remove(keys::Batches);
      }
      EXPECT_EQ(testing::differences(before, after), std::set<std::string>());
    }
  }
  PlistDictionary unmeasured{{keys::UUID, "bare"}, {keys::BatchNotes, "Kept"}};
  recipes().restoreBatch_toRecipeWithUUID(unmeasured, recipes().summariesForAllRecipes()[0].uuid);
  EXPECT_EQ(itemForExportWithUUID("bare")->stringValue(keys::BatchNotes), "Kept");
  EXPECT_FALSE(itemForExportWithUUID("nobody"));
}

// As docs/formats.md says what they hold and what not.
TEST_F(FileExportTest, OtherFormatsKeepWhatTheyHold) {
  constexpr KeyName alwaysAnew[] = {keys::UUID, keys::DateLastModified, keys::Notes};
  constexpr KeyName volumes[] = {keys::PreBoilWortVolume, keys::FinalWortVolume,
                                 keys::VolumeToFermenter, keys::VolumeAtPitching,
                                 keys::VolumeWaterAdded,  keys::FinalBatchVolume};
  for (unsigned number = 0; number < 25; ++number) {
    const PlistDictionary recipe = randomRecipe(number);
    for (const Type type : {Type::BeerXML, Type::REC}) {
      SCOPED_TRACE(std::to_string(number) + (type == Type::REC ? " rec" : " xml"));
      PlistDictionary once = travelled(recipe, type);
      for (const KeyName list :
           {keys::FermentableIngredients, keys::HopIngredients, keys::OtherIngredients}) {
        ASSERT_EQ(count(once, list), count(recipe, list));
        for (std::size_t i = 0; i < count(recipe, list); ++i) {
          const PlistDictionary& a = *recipe.array(list)->find(i)->dictionary();
          const PlistDictionary& b = *once.array(list)->find(i)->dictionary();
          const double amount = a.doubleValue(keys::Amount);
          EXPECT_NEAR(b.doubleValue(keys::Amount), amount,
                      type == Type::REC ? 1e-6 * amount : 6e-4);
          EXPECT_FLOAT_EQ(b.floatValue(keys::Alpha), a.floatValue(keys::Alpha));
        }
      }
      EXPECT_EQ(once.stringValue(keys::BoilDuration), recipe.stringValue(keys::BoilDuration));
      PlistDictionary twice = travelled(once, type);
      for (PlistDictionary* each : {&once, &twice}) {
        for (const KeyName key : alwaysAnew) each->remove(key);
        for (PlistDictionary& hop : each->editRows(keys::HopIngredients)) {
          hop.remove(keys::When);
          hop.remove(keys::Minutes);
        }
        if (type == Type::REC) {
          for (const KeyName key : volumes) each->remove(key);
          each->remove(keys::Attenuation);
        }
      }
      EXPECT_EQ(testing::differences(once, twice), std::set<std::string>());
    }
  }
}

TEST_F(FileExportTest, OthersReadOurPropertyLists) {
  const auto runs = [](const std::string& command) {
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
  };
  if (!runs("plistutil --version")) GTEST_SKIP() << "no plistutil";
  const std::string ours = folder / "ours.wmr";
  fs::rename(exported(randomRecipe(3), Type::NativePropertyList), ours);
  EXPECT_TRUE(runs("plistutil -i " + ours + " -f bin -o " + (folder / "theirs.wmr")));
  EXPECT_EQ(withoutIdentity(imported(ours)), withoutIdentity(imported(folder / "theirs.wmr")));
  const std::string title = R"(plistlib.load(open(sys.argv[1],"rb"))["RecipeTitle"])";
  EXPECT_TRUE(
      !runs("python3 -c 'import plistlib'") ||
      runs("python3 -c 'import plistlib,sys; assert " + title + R"( == "Brew & <3>"' )" + ours));
}

}  // namespace
}  // namespace zym
