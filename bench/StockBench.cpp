// The stock on a shelf of 2,000 ingredients with 5 lots each and 500 orders, beside bare SQLite and
// the bare arithmetic.

#include <sqlite3.h>
#include <stdlib.h>

#include <filesystem>
#include <string>
#include <vector>

#include "bench/Ratio.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/library/ZYMFermentables.h"
#include "zymcore/library/ZYMSuppliers.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/stock/ZYMAvailabilitiesEngine.h"
#include "zymcore/stock/ZYMInventory.h"
#include "zymcore/stock/ZYMOrders.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym {
namespace {

constexpr int ingredients = 2000;
constexpr int lotsOfEach = 5;
constexpr int orders = 500;
constexpr int additions = 20;

class Shelf {
 public:
  Shelf() {
    std::string name = (std::filesystem::temp_directory_path() / "zymbenchXXXXXX").string();
    folder_ = mkdtemp(name.data());
    NSUserDefaults::standardUserDefaults().setPersistentFile("");
    NSBundle::setMainBundle(NSBundle(ZYM_RESOURCES, "org.zymcore.bench", "1"));
    ZYMCoreDataModel::sharedInstance().setDataFolder(folder_);
    std::vector<PlistValue> malts;
    std::vector<PlistValue> items;
    for (int i = 0; i < ingredients; ++i) {
      const std::string number = std::to_string(i);
      malts.emplace_back(
          PlistDictionary{{keys::UUID, number}, {keys::Ingredient, "Malt of House " + number}});
      PlistArray lots;
      for (int k = 0; k < lotsOfEach; ++k) {
        lots.append(PlistDictionary{
            {keys::UUID, number + "." + std::to_string(k)},
            {keys::AmountInStock, "1000000.000000"},
            {keys::Cost, "0.0015"},
            {keys::Extract, "80"},
            {keys::Color, "3"},
            {keys::ExpiresOn, NSDate::dateWithTimeIntervalSinceReferenceDate(1e9 - k)}});
      }
      items.emplace_back(PlistDictionary{{keys::UUID, number},
                                         {keys::IngredientType, "Fermentable"},
                                         {keys::Batches, std::move(lots)}});
    }
    ZYMFermentables::sharedInstance().addItemsFromArray(PlistArray(std::move(malts)));
    ZYMInventory::sharedInstance().addItemsFromArray(PlistArray(std::move(items)));
    std::vector<PlistValue> placed;
    for (int i = 0; i < orders; ++i) {
      PlistArray lines;
      for (int k = 0; k < 5; ++k) {
        lines.append(PlistDictionary{{keys::UUID, std::to_string(i) + "-" + std::to_string(k)},
                                     {keys::IngredientUUID, std::to_string((i * 5 + k) % 2000)},
                                     {keys::Status, "OnOrder"},
                                     {keys::Amount, "1"}});
      }
      placed.emplace_back(
          PlistDictionary{{keys::UUID, std::to_string(i)}, {keys::OrderItems, std::move(lines)}});
    }
    ZYMOrders::sharedInstance().addItemsFromArray(PlistArray(std::move(placed)));
    (void)sqlite3_open((folder_ + "/Wortmeister.sqlite").c_str(), &database_);
  }
  ~Shelf() {
    sqlite3_close(database_);
    ZYMAvailabilitiesEngine::sharedInstance().setBatch({});
    ZYMCoreDataModel::tearDown();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  Shelf(const Shelf&) = delete;
  Shelf& operator=(const Shelf&) = delete;

  /// All rows of a bare select, their values copied.
  void select(const std::string& sql) const {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database_, sql.c_str(), -1, &statement, nullptr);
    std::vector<std::string> texts;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
        texts.emplace_back(text ? text : "");
      }
    }
    sqlite3_finalize(statement);
    benchmark::DoNotOptimize(texts);
  }
  /// A commit of as many updates as a brew makes: of each item and of one of its lots.
  void commit() const {
    const auto run = [&](const char* sql) {
      sqlite3_exec(database_, sql, nullptr, nullptr, nullptr);
    };
    run("PRAGMA synchronous = FULL; BEGIN IMMEDIATE");
    const auto update = [&](const char* sql, const char* suffix) {
      sqlite3_stmt* statement = nullptr;
      sqlite3_prepare_v2(database_, sql, -1, &statement, nullptr);
      for (int i = 0; i < additions; ++i) {
        const std::string uuid = std::to_string(i + 1000) + suffix;
        sqlite3_bind_text(statement, 1, uuid.c_str(), -1, SQLITE_STATIC);
        sqlite3_step(statement);
        sqlite3_reset(statement);
      }
      sqlite3_finalize(statement);
    };
    update("UPDATE ZYMInventoryEntity SET amountInStock = amountInStock || '' WHERE uuid = ?", "");
    update("UPDATE ZYMInventoryBatchEntity SET amountInStock = amountInStock || '' WHERE uuid = ?",
           ".4");
    run("COMMIT");
  }

 private:
  std::string folder_;
  sqlite3* database_ = nullptr;
};

PlistDictionary batchOfMalts() {
  PlistArray malts;
  for (int i = 0; i < additions; ++i) {
    malts.append(PlistDictionary{{keys::UUID, std::to_string(i)}, {keys::Amount, "100"}});
  }
  return {
      {keys::ModifiedRecipe, PlistDictionary{{keys::FermentableIngredients, std::move(malts)}}}};
}

void allItemsOfIngredientType(benchmark::State& state) {
  const Shelf shelf;
  measureRatio(
      state, 3,
      [] {
        benchmark::DoNotOptimize(
            ZYMInventory::sharedInstance().allItemsOfIngredientType("Fermentable"));
      },
      [&] {
        shelf.select("SELECT * FROM ZYMInventoryEntity ORDER BY name");
        shelf.select("SELECT * FROM ZYMInventoryBatchEntity ORDER BY item");
      });
}
BENCHMARK(allItemsOfIngredientType)->UseManualTime()->Unit(benchmark::kMicrosecond);

void recalculateAvailabilities(benchmark::State& state) {
  const Shelf shelf;
  const PlistDictionary batch = batchOfMalts();
  ZYMAvailabilitiesEngine& engine = ZYMAvailabilitiesEngine::sharedInstance();
  measureRatio(
      state, 3,
      [&] {
        engine.setBatch(SharedBatch(batch));
        (void)engine.recalculateAvailabilitiesWithAdvisories(nullptr);
      },
      // The arithmetic over plain numbers is lost in reading the items.
      [] {
        for (int i = 0; i < additions; ++i) {
          benchmark::DoNotOptimize(ZYMInventory::sharedInstance().itemWithUUID(std::to_string(i)));
        }
      });
}
BENCHMARK(recalculateAvailabilities)->UseManualTime()->Unit(benchmark::kMicrosecond);

void brew(benchmark::State& state) {
  const Shelf shelf;
  const PlistDictionary batch = batchOfMalts();
  ZYMAvailabilitiesEngine& engine = ZYMAvailabilitiesEngine::sharedInstance();
  measureRatio(
      state, 1.5,
      [&] {
        engine.setBatch(SharedBatch(batch));
        engine.adjustInventoryForBatchAndSave();
      },
      [&] { shelf.commit(); });
}
BENCHMARK(brew)->UseManualTime()->Unit(benchmark::kMicrosecond);

void amountOnOrder(benchmark::State& state) {
  const Shelf shelf;
  measureRatio(
      state, 3,
      [] {
        for (int i = 0; i < 100; ++i) {
          benchmark::DoNotOptimize(
              ZYMOrders::sharedInstance().amountOnOrderForIngredientWithUUID(std::to_string(i)));
        }
      },
      [&] {
        for (int i = 0; i < 100; ++i) {
          shelf.select("SELECT status, amount FROM ZYMOrderItemEntity WHERE ingredientUuid = '" +
                       std::to_string(i) + "'");
        }
      });
}
BENCHMARK(amountOnOrder)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zym
