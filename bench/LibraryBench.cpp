// The libraries on a seeded store, beside bare SQLite and the bare comparison of names.

#include <sqlite3.h>
#include <stdlib.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bench/Ratio.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/library/ZYMFermentables.h"
#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/host/NSUserDefaults.h"
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

/// A bare SQLite file with the tables and rows of another, to be written anew.
class BareCopy {
 public:
  explicit BareCopy(const std::string& original) {
    sqlite3* database = nullptr;
    sqlite3_open(original.c_str(), &database);
    for (const Row& table : rowsOf(database,
                                   "SELECT name, sql FROM sqlite_schema WHERE name LIKE 'ZYM%' AND "
                                   "type = 'table'")) {
      schema_ += table[1] + ";";
      std::vector<Row> rows = rowsOf(database, "SELECT * FROM " + table[0]);
      if (rows.empty()) continue;
      std::string places = "?";
      for (std::size_t i = 1; i < rows.front().size(); ++i) places += ",?";
      tables_.push_back({"INSERT INTO " + table[0] + " VALUES(" + places + ")", std::move(rows)});
    }
    sqlite3_close(database);
  }

  /// An empty file with the tables.
  [[nodiscard]] sqlite3* open(const std::string& path) const {
    std::filesystem::remove(path);
    sqlite3* database = nullptr;
    sqlite3_open(path.c_str(), &database);
    sqlite3_exec(database, schema_.c_str(), nullptr, nullptr, nullptr);
    sqlite3_exec(database, "PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL", nullptr, nullptr,
                 nullptr);
    return database;
  }
  /// A transaction for each table.
  void fill(sqlite3* database) const {
    for (const Table& table : tables_) {
      sqlite3_exec(database, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
      sqlite3_stmt* insert = nullptr;
      sqlite3_prepare_v2(database, table.insert.c_str(), -1, &insert, nullptr);
      for (const Row& row : table.rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
          sqlite3_bind_text(insert, static_cast<int>(i + 1), row[i].c_str(), -1, SQLITE_STATIC);
        }
        sqlite3_step(insert);
        sqlite3_reset(insert);
      }
      sqlite3_finalize(insert);
      sqlite3_exec(database, "COMMIT", nullptr, nullptr, nullptr);
    }
  }

 private:
  using Row = std::vector<std::string>;
  struct Table {
    std::string insert;
    std::vector<Row> rows;
  };

  static std::vector<Row> rowsOf(sqlite3* database, const std::string& query) {
    std::vector<Row> rows;
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database, query.c_str(), -1, &statement, nullptr);
    while (sqlite3_step(statement) == SQLITE_ROW) {
      Row row;
      for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
        row.emplace_back(text ? text : "");
      }
      rows.push_back(std::move(row));
    }
    sqlite3_finalize(statement);
    return rows;
  }

  std::string schema_;
  std::vector<Table> tables_;
};

void firstRun(benchmark::State& state) {
  std::unique_ptr<BareCopy> bare;
  {
    const Libraries libraries(0);
    ZYMCoreDataModel::sharedInstance().installInitialState();
    bare = std::make_unique<BareCopy>(libraries.file());
  }
  std::unique_ptr<Libraries> libraries;
  sqlite3* database = nullptr;
  measureRatio(
      state, 3,
      [&] {
        libraries.reset();
        libraries = std::make_unique<Libraries>(0);
        (void)ZYMCoreDataModel::sharedInstance().mainObjectContext();
        sqlite3_close(database);
        database = bare->open(libraries->file() + ".bare");
      },
      [] { ZYMCoreDataModel::sharedInstance().installInitialState(); },
      [&] { bare->fill(database); });
  sqlite3_close(database);
}
BENCHMARK(firstRun)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(1);

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
