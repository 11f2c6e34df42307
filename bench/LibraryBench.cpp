// The libraries on a seeded store, beside bare SQLite and the bare comparison of names.

#include <sqlite3.h>
#include <stdlib.h>

#include <filesystem>
#include <string>
#include <vector>

#include "Ratio.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/library/ZYMFermentables.h"
#include "zymcore/platform/NSBundle.h"
include "zymcore/platform/NSUserDefaults.h"
#include "zymcore/store/ZYMCoreDataModel.h"

    namespace zym {
  namespace {

  /// A store of its own with that many records in each of two libraries.
  class Libraries {
   public:
    explicit Libraries(int count) {
      std::string name = (std::filesystem::temp_directory_path() / "zymbenchXXXXXX").string();
      folder_ = mkdtemp(name.data());
      NSUserDefaults::standardUserDefaults().setPersistentFile("");
      NSBundle::setMainBundle(NSBundle(ZYM_RESOURCES, "org.zymcore.bench", "1"));
      ZYMCoreDataModel::sharedInstance().setDataFolder(folder_);
      std::vector<PlistValue> records;
      for (int i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        records.emplace_back(PlistDictionary{{keys::UUID, number},
                                             {keys::Ingredient, "Malt of House " + number},
                                             {keys::Extract, "80"},
                                             {keys::Color, "3"},
                                             {keys::Moisture, "4"},
                                             {keys::IsGrain, "1"},
                                             {keys::MustBeMashed, "1"},
                                             {keys::Description, "Said of it"}});
      }
      ZYMFermentables::sharedInstance().addItemsFromArray(PlistArray(std::move(records)));
    }
    ~Libraries() {
      ZYMCoreDataModel::tearDown();
      std::error_code ignored;
      std::filesystem::remove_all(folder_, ignored);
    }
    Libraries(const Libraries&) = delete;
    Libraries& operator=(const Libraries&) = delete;

    [[nodiscard]] std::string file() const { return folder_ + "/Wortmeister.sqlite"; }

   private:
    std::string folder_;
  };

  void allItems(benchmark::State& state) {
    const Libraries libraries(300);
    sqlite3* database = nullptr;
    sqlite3_open(libraries.file().c_str(), &database);
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database, "SELECT * FROM ZYMFermentableEntity ORDER BY name", -1, &statement,
                       nullptr);
    measureRatio(
        state, 3, [] { benchmark::DoNotOptimize(ZYMFermentables::sharedInstance().allItems()); },
        [&] {
          std::vector<std::string> texts;
          while (sqlite3_step(statement) == SQLITE_ROW) {
            for (int i = 0; i < sqlite3_column_count(statement); ++i) {
              const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
              texts.emplace_back(text ? text : "");
            }
          }
          sqlite3_reset(statement);
          benchmark::DoNotOptimize(texts);
        });
    sqlite3_finalize(statement);
    sqlite3_close(database);
  }
  BENCHMARK(allItems)->UseManualTime()->Unit(benchmark::kMicrosecond);

  // At most a millisecond for 1,000 names.
  void nearestNameOfAThousand(benchmark::State& state) {
    const Libraries libraries(1000);
    std::vector<std::string> names;
    for (int i = 0; i < 1000; ++i) names.push_back("Malt of House " + std::to_string(i));
    measureRatio(
        state, 3,
        [] {
          benchmark::DoNotOptimize(ZYMFermentables::sharedInstance()
                                       .ingredientWithNameMostSimilarToString_matchingKeysAndValues(
                                           "Marris Oter", nullptr));
        },
        [&] {
          for (const std::string& name : names) {
            benchmark::DoNotOptimize(similarityWithString("Marris Oter", name));
          }
        });
  }
  BENCHMARK(nearestNameOfAThousand)->UseManualTime()->Unit(benchmark::kMicrosecond);

  }  // namespace
}  // namespace zym
