// Recipes and batches in a large library, beside bare SQLite.

#include <sqlite3.h>
#include <stdlib.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include "bench/Ratio.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/formats/BinaryPropertyList.h"
#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMRecipeBatchEntity.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"

namespace zym {
namespace {

constexpr int recipeCount = 10000;
constexpr int batchesOfARecipe = 2;

void require(bool condition) {
  if (!condition) throw std::runtime_error("the benchmark's work failed");
}

void bindText(sqlite3_stmt* statement, int parameter, const std::string& text) {
  sqlite3_bind_text(statement, parameter, text.data(), static_cast<int>(text.size()),
                    SQLITE_STATIC);
}

PlistDictionary sampleRecipe() {
  PlistDictionary recipe = ZYMRecipes::sharedInstance().emptyRecipe();
  for (const KeyName additions : {keys::FermentableIngredients, keys::HopIngredients}) {
    PlistArray rows;
    for (int i = 0; i < 5; ++i) {
      rows.append(PlistDictionary{{keys::UUID, "11111111-2222-4333-8444-555555555555"},
                                  {keys::Ingredient, "Malt of some house"},
                                  {keys::Amount, "1000.000000"},
                                  {keys::Extract, "80.000000"},
                                  {keys::Color, "5.000000"},
                                  {keys::Alpha, "5.000000"},
                                  {keys::Minutes, "60"},
                                  {keys::Form, words::LooseWholeHops},
                                  {keys::When, words::AllOfBoil}});
    }
    recipe.set(additions, std::move(rows));
  }
  return recipe;
}

/// A store of all recipes and their batches, and a copy of its file for bare SQLite.
class LargeLibrary {
 public:
  LargeLibrary() {
    std::string name = (std::filesystem::temp_directory_path() / "zymbenchXXXXXX").string();
    folder_ = mkdtemp(name.data());
    NSUserDefaults::standardUserDefaults().setPersistentFile("");
    NSBundle::setMainBundle(NSBundle(ZYM_RESOURCES, "org.zymcore.bench", "1"));
    open();
    ZYMCoreDataModel::sharedInstance().installInitialState();
    fill();
    ZYMCoreDataModel::tearDown();
    std::filesystem::copy_file(folder_ + "/Wortmeister.sqlite", folder_ + "/bare.sqlite");
    open();
    require(sqlite3_open(file("bare").c_str(), &bare_) == SQLITE_OK);
    execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL");
  }
  ~LargeLibrary() {
    sqlite3_close(bare_);
    ZYMCoreDataModel::tearDown();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  LargeLibrary(const LargeLibrary&) = delete;
  LargeLibrary& operator=(const LargeLibrary&) = delete;

  /// Built once, and gone with the program.
  static LargeLibrary& shared() {
    static LargeLibrary library;
    return library;
  }

  [[nodiscard]] std::string file(const char* name) const {
    return folder_ + "/" + name + ".sqlite";
  }
  void execute(const char* sql) {
    require(sqlite3_exec(bare_, sql, nullptr, nullptr, nullptr) == SQLITE_OK);
  }
  [[nodiscard]] std::shared_ptr<sqlite3_stmt> prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    require(sqlite3_prepare_v2(bare_, sql, -1, &statement, nullptr) == SQLITE_OK);
    return {statement, sqlite3_finalize};
  }

 private:
  void open() const { ZYMCoreDataModel::sharedInstance().setDataFolder(folder_); }

  static void fill() {
    NSManagedObjectContext& context = *ZYMCoreDataModel::sharedInstance().mainObjectContext();
    PlistDictionary document = sampleRecipe();
    context.setUndoManager(nullptr);
    auto& first = ZYMRecipeEntity::insertInContext(context);
    document.set(keys::UUID, "0");
    first.updateWithDictionaryRepresentation(document);
    PlistDictionary batch = ZYMRecipes::sharedInstance().emptyBatchForRecipeWithUUID("0").value();
    for (int i = 0; i < recipeCount; ++i) {
      auto& recipe = i == 0 ? first : ZYMRecipeEntity::insertInContext(context);
      document.set(keys::UUID, std::to_string(i));
      document.set(keys::RecipeTitle, "Recipe " + std::to_string(i));
      recipe.updateWithDictionaryRepresentation(document);
      for (int j = 0; j < batchesOfARecipe; ++j) {
        auto& object = ZYMRecipeBatchEntity::insertInContext(context);
        const std::string uuid = std::to_string(i) + "-" + std::to_string(j);
        batch.set(keys::UUID, uuid);
        batch.set(keys::BatchTitle, "Batch " + uuid);
        batch.set(keys::DateBrewed,
                  NSDate::dateWithTimeIntervalSinceNow(-((i * 7919) % recipeCount) * 10000.0));
        object.updateWithDictionaryRepresentation(batch);
        object.setObject_forKey(&recipe, relationships::recipe);
      }
    }
    ZYMCoreDataModel::sharedInstance().save();
    require(!context.hasChanges());
    context.setUndoManager(std::make_shared<NSUndoManager>());
  }

  std::string folder_;
  sqlite3* bare_ = nullptr;
};

// No way of adding can leave out to read the recipe, to work out the batch, to write its document
// and to commit two rows.
void addBatch(benchmark::State& state) {
  LargeLibrary& library = LargeLibrary::shared();
  ZYMRecipes& recipes = ZYMRecipes::sharedInstance();
  const auto insertBatch = library.prepare(
      "INSERT INTO ZYMRecipeBatchEntity(_version, uuid, name, dateBrewed, dateLastModified, recipe)"
      " VALUES(1, ?, ?, ?, 0, ?)");
  const auto insertDocument =
      library.prepare("INSERT INTO \"ZYMRecipeBatchEntity.data\"(_key, value) VALUES(?, ?)");
  const PlistDictionary sample = recipes.batchWithUUID("0-0").value();
  const auto selectRecipe = library.prepare(
      "SELECT value FROM \"ZYMRecipeEntity.data\" WHERE _key ="
      " (SELECT _key FROM ZYMRecipeEntity WHERE uuid = ?)");
  int recipe = 0;
  std::string uuid;
  measureRatio(
      state, 1.5,
      [&] {
        recipe = (recipe + 7919) % recipeCount;
        uuid = std::to_string(recipe);
      },
      [&] { require(recipes.addBatchToRecipeWithUUID(uuid).has_value()); },
      [&] {
        bindText(selectRecipe.get(), 1, uuid);
        require(sqlite3_step(selectRecipe.get()) == SQLITE_ROW);
        const std::string_view document(
            static_cast<const char*>(sqlite3_column_blob(selectRecipe.get(), 0)),
            static_cast<std::size_t>(sqlite3_column_bytes(selectRecipe.get(), 0)));
        benchmark::DoNotOptimize(BinaryPropertyList::read(document));
        sqlite3_reset(selectRecipe.get());
        PlistDictionary batch = sample;
        ZYMBeerCalculations::recalculateBatch(batch);
        const std::string bytes = BinaryPropertyList::write(batch).value();
        library.execute("BEGIN IMMEDIATE");
        const std::string title = "Batch 3 of " + uuid;
        bindText(insertBatch.get(), 1, uuid);
        bindText(insertBatch.get(), 2, title);
        sqlite3_bind_double(insertBatch.get(), 3, NSDate::date().timeIntervalSinceReferenceDate());
        sqlite3_bind_int(insertBatch.get(), 4, recipe + 1);
        require(sqlite3_step(insertBatch.get()) == SQLITE_DONE);
        sqlite3_reset(insertBatch.get());
        sqlite3_bind_null(insertDocument.get(), 1);
        sqlite3_bind_blob(insertDocument.get(), 2, bytes.data(), static_cast<int>(bytes.size()),
                          SQLITE_STATIC);
        require(sqlite3_step(insertDocument.get()) == SQLITE_DONE);
        sqlite3_reset(insertDocument.get());
        library.execute("COMMIT");
      });
}

// The limit stays the plain walk over the table, in no order. That no document is read is shown by
// doing without: they are gone from the file when the lists are asked for.
void listNewestFirst(benchmark::State& state) {
  LargeLibrary& library = LargeLibrary::shared();
  ZYMRecipes& recipes = ZYMRecipes::sharedInstance();
  const bool isAll = state.range(0) != 0;
  const auto list = [&] {
    return isAll ? recipes.allBatchSummariesNewestFirst()
                 : recipes.batchSummariesNewestFirstLast12Months();
  };
  require(list().size() > recipeCount / 2);
  sqlite3* other = nullptr;
  require(sqlite3_open(library.file("Wortmeister").c_str(), &other) == SQLITE_OK);
  require(sqlite3_exec(other, "DELETE FROM \"ZYMRecipeBatchEntity.data\"", nullptr, nullptr,
                       nullptr) == SQLITE_OK);
  sqlite3_close(other);
  require(!recipes.batchWithUUID("0-0"));
  const auto select =
      library.prepare("SELECT name, uuid FROM ZYMRecipeBatchEntity WHERE dateBrewed > ?");
  const NSDate since =
      isAll ? NSDate::distantPast() : NSDate::dateWithTimeIntervalSinceNow(-365 * 86400.0);
  measureRatio(
      state, 3, [&] { benchmark::DoNotOptimize(list()); },
      [&] {
        sqlite3_bind_double(select.get(), 1, since.timeIntervalSinceReferenceDate());
        std::vector<ZYMSummary> rows;
        while (sqlite3_step(select.get()) == SQLITE_ROW) {
          const auto text = [&](int column) {
            return reinterpret_cast<const char*>(sqlite3_column_text(select.get(), column));
          };
          rows.push_back({text(0), text(1), 0});
        }
        sqlite3_reset(select.get());
        benchmark::DoNotOptimize(rows);
      });
}

void listRecipes(benchmark::State& state) {
  LargeLibrary& library = LargeLibrary::shared();
  const auto select = library.prepare(
      "SELECT name, uuid, (SELECT COUNT(*) FROM ZYMRecipeBatchEntity b WHERE b.recipe = r._key) "
      "FROM ZYMRecipeEntity r ORDER BY name");
  measureRatio(
      state, 3,
      [] { benchmark::DoNotOptimize(ZYMRecipes::sharedInstance().summariesForAllRecipes()); },
      [&] {
        std::vector<ZYMSummary> rows;
        while (sqlite3_step(select.get()) == SQLITE_ROW) {
          const auto text = [&](int column) {
            return reinterpret_cast<const char*>(sqlite3_column_text(select.get(), column));
          };
          rows.push_back({text(0), text(1), sqlite3_column_int64(select.get(), 2)});
        }
        sqlite3_reset(select.get());
        benchmark::DoNotOptimize(rows);
      });
}

/// The stored document of a recipe by bare SQLite and the codec.
PlistValue bareRecipe(sqlite3_stmt* select, const std::string& uuid) {
  bindText(select, 1, uuid);
  require(sqlite3_step(select) == SQLITE_ROW);
  const std::string_view bytes(static_cast<const char*>(sqlite3_column_blob(select, 0)),
                               static_cast<std::size_t>(sqlite3_column_bytes(select, 0)));
  std::optional<PlistValue> tree = BinaryPropertyList::read(bytes);
  sqlite3_reset(select);
  return tree.value();
}
constexpr const char* selectRecipe =
    "SELECT value FROM \"ZYMRecipeEntity.data\" d JOIN ZYMRecipeEntity r ON r._key = d._key "
    "WHERE r.uuid = ?";

void readRecipe(benchmark::State& state) {
  LargeLibrary& library = LargeLibrary::shared();
  const auto select = library.prepare(selectRecipe);
  measureRatio(
      state, 3,
      [] { benchmark::DoNotOptimize(ZYMRecipes::sharedInstance().recipeForUUID("77").value()); },
      [&] { benchmark::DoNotOptimize(bareRecipe(select.get(), "77")); });
}

void updateUnchangedRecipe(benchmark::State& state) {
  LargeLibrary& library = LargeLibrary::shared();
  const auto select = library.prepare(selectRecipe);
  ZYMRecipes& recipes = ZYMRecipes::sharedInstance();
  PlistDictionary recipe = recipes.recipeForUUID("77").value();
  recipes.updateRecipe(recipe);  // the repairs
  recipe = recipes.recipeForUUID("77").value();
  const NSDate before = *recipe.date(keys::DateLastModified);
  measureRatio(
      state, 2, [&] { recipes.updateRecipe(recipe); },
      [&] { benchmark::DoNotOptimize(bareRecipe(select.get(), "77") == PlistValue(recipe)); });
  require(*recipe.date(keys::DateLastModified) == before);
}

BENCHMARK(listRecipes)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(readRecipe)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(updateUnchangedRecipe)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(addBatch)->UseManualTime()->Unit(benchmark::kMicrosecond)->MinTime(2);
BENCHMARK(listNewestFirst)
    ->ArgName("all")
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zym
