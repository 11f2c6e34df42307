// Recipes out into files and in again, beside bare XML, bare files and bare commits.

#include <fcntl.h>
#include <libxml/parser.h>
#include <sqlite3.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bench/Ratio.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/interchange/beerxml/ZYMBeerXML.h"
#include "zymcore/interchange/operations/ZYMFileExportOperation.h"
#include "zymcore/interchange/operations/ZYMFileImportOperation.h"
#include "zymcore/interchange/operations/ZYMRecipeDataStoreImportOperation.h"
#include "zymcore/interchange/rec/ZYMRecFile.h"
#include "zymcore/library/ZYMFermentables.h"
#include "zymcore/library/ZYMHops.h"
#include "zymcore/library/ZYMYeasts.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/formats/BinaryPropertyList.h"
#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym {
namespace {

namespace fs = std::filesystem;

/// A store with the libraries of the program, and a bare one beside it.
class Place {
 public:
  Place() {
    std::string name = (fs::temp_directory_path() / "zymbenchXXXXXX").string();
    folder = mkdtemp(name.data());
    NSUserDefaults::standardUserDefaults().setPersistentFile("");
    NSBundle::setMainBundle(NSBundle(ZYM_RESOURCES, "org.zymcore.bench", "1"));
    ZYMCoreDataModel::sharedInstance().setDataFolder(folder + "/data");
    ZYMCoreDataModel::sharedInstance().installInitialState();
    fs::create_directory(files());
    sqlite3_open((folder + "/bare.sqlite").c_str(), &database_);
    run("PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL;"
        "CREATE TABLE recipes(id INTEGER PRIMARY KEY, uuid, name, date);"
        "CREATE INDEX byuuid ON recipes(uuid);"
        "CREATE TABLE documents(id INTEGER PRIMARY KEY, data)");
    sqlite3_prepare_v2(database_,
                       "INSERT INTO recipes VALUES(NULL, hex(randomblob(16)), 'Bitter', 1)", -1,
                       &row_, nullptr);
    sqlite3_prepare_v2(database_, "INSERT INTO documents VALUES(NULL, ?)", -1, &blob_, nullptr);
  }
  ~Place() {
    sqlite3_finalize(row_);
    sqlite3_finalize(blob_);
    sqlite3_close(database_);
    ZYMCoreDataModel::tearDown();
    std::error_code ignored;
    fs::remove_all(folder, ignored);
  }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;

  void run(const char* statements) const {
    sqlite3_exec(database_, statements, nullptr, nullptr, nullptr);
  }
  void insert(const std::string& document) const {
    sqlite3_step(row_);
    sqlite3_reset(row_);
    sqlite3_bind_blob(blob_, 1, document.data(), static_cast<int>(document.size()), SQLITE_STATIC);
    sqlite3_step(blob_);
    sqlite3_reset(blob_);
  }
  [[nodiscard]] std::string files() const { return folder + "/files"; }
  void clearFiles() const {
    fs::remove_all(files());
    fs::create_directory(files());
  }

  std::string folder;

 private:
  sqlite3* database_ = nullptr;
  sqlite3_stmt* row_ = nullptr;
  sqlite3_stmt* blob_ = nullptr;
};

// Five fermentables, five hops and a yeast.
PlistDictionary recipe(const std::string& title) {
  PlistDictionary result = ZYMRecipes::sharedInstance().emptyRecipe();
  result.set(keys::RecipeTitle, title);
  const auto additions = [&](KeyName key, ZYMCachingModel& library, int count,
                             std::string_view when) {
    const PlistArray records = library.allItems();
    PlistArray list;
    for (int i = 1; i <= count; ++i) {
      PlistDictionary addition = *records.find(static_cast<std::size_t>(i))->dictionary();
      addition.remove(keys::Description);
      addition.set(keys::Amount, "1000");
      addition.set(keys::When, when);
      addition.set(keys::Minutes, "60");
      addition.set(keys::Form, words::LooseWholeHops);
      list.append(std::move(addition));
    }
    result.set(key, std::move(list));
  };
  additions(keys::FermentableIngredients, ZYMFermentables::sharedInstance(), 5,
            words::InMashSteeped);
  additions(keys::HopIngredients, ZYMHops::sharedInstance(), 5, "60 Min From End");
  additions(keys::YeastIngredients, ZYMYeasts::sharedInstance(), 1, "");
  return result;
}

// As few calls as leave a whole file that is on disk.
void writeBare(const std::string& path, const char* bytes, int size) {
  const int file = ::open((path + ".tmp").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
  if (::write(file, bytes, static_cast<std::size_t>(size)) != size || ::fsync(file) != 0)
    std::abort();
  ::close(file);
  ::rename((path + ".tmp").c_str(), path.c_str());
  const int folder = ::open(fs::path(path).parent_path().c_str(), O_RDONLY);
  ::fsync(folder);
  ::close(folder);
}

// A thousand out as BeerXML and in again.
void beerXML(benchmark::State& state) {
  constexpr int count = 1000;
  const Place place;
  std::vector<PlistDictionary> recipes;
  for (int i = 0; i < count; ++i) recipes.push_back(recipe("Recipe " + std::to_string(i)));
  const NSData bytes = ZYMBeerXML::dataForRecipe(recipes.front());
  ZYMFileImportOperation matching;
  const std::string document =
      BinaryPropertyList::write(matching.processParsedRecipe(*ZYMBeerXML::parseFileData(bytes)))
          .value();
  const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> tree(
      xmlReadMemory(bytes.view().data(), static_cast<int>(bytes.length()), nullptr, nullptr, 0),
      &xmlFreeDoc);
  measureRatio(
      state, 2, [&] { place.clearFiles(); },
      [&] {
        for (const PlistDictionary& each : recipes) {
          ZYMFileExportOperation out(each, place.files(),
                                     static_cast<std::int32_t>(ZYMExportFileType::BeerXML));
          out.start();
          ZYMFileImportOperation in(out.writtenPath().value());
          in.start();
          if (!in.uuidOfRecipe()) std::abort();
        }
      },
      [&] {
        for (int i = 0; i < count; ++i) {
          xmlChar* text = nullptr;
          int size = 0;
          xmlDocDumpMemory(tree.get(), &text, &size);
          writeBare(place.files() + "/" + std::to_string(i) + ".xml", reinterpret_cast<char*>(text),
                    size);
          const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> read(
              xmlReadMemory(reinterpret_cast<char*>(text), size, nullptr, nullptr, 0), &xmlFreeDoc);
          xmlFree(text);
          place.run("BEGIN IMMEDIATE");
          place.insert(document);
          place.run("COMMIT");
        }
      });
}
BENCHMARK(beerXML)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

// The fields one after the other.
PlistDictionary copied(const PlistDictionary& tree) {
  PlistDictionary result;
  for (const PlistEntry& entry : tree) {
    if (const std::string* text = entry.value.string()) {
      result.set(entry.key, std::string(*text));
    } else if (const PlistArray* array = entry.value.array()) {
      PlistArray rows;
      for (const PlistDictionary& row : PlistRows(array)) rows.append(copied(row));
      result.set(entry.key, std::move(rows));
    }
  }
  return result;
}

void rec(benchmark::State& state) {
  const Place place;
  const NSData bytes = ZYMRecFile::dataForRecipe(recipe("Recipe"));
  const PlistDictionary parsed = ZYMRecFile::parseFileData(bytes).value();
  measureRatio(
      state, 5,
      [&] {
        for (int i = 0; i < 100; ++i) benchmark::DoNotOptimize(ZYMRecFile::parseFileData(bytes));
      },
      [&] {
        for (int i = 0; i < 100; ++i) benchmark::DoNotOptimize(copied(parsed));
      });
}
BENCHMARK(rec)->UseManualTime()->Unit(benchmark::kMicrosecond);

// A bundle of recipes with a batch each. The loop runs for a millisecond after each recipe.
void bundle(benchmark::State& state) {
  constexpr int count = 100;
  const Place place;
  PlistArray recipes;
  for (int i = 0; i < count; ++i) {
    PlistDictionary each = recipe("Recipe " + std::to_string(i));
    each.set(keys::Batches, PlistArray{PlistDictionary{{keys::UUID, "batch " + std::to_string(i)},
                                                       {keys::TastingNotes, ""},
                                                       {keys::Actuals, PlistDictionary()},
                                                       {keys::ModifiedRecipe, each},
                                                       {keys::OriginalRecipe, each}}});
    recipes.append(std::move(each));
  }
  const std::string document = BinaryPropertyList::write(recipe("Recipe")).value();
  const std::string batch = document + document;
  const auto clear = [] {
    ZYMRecipes& recipesThere = ZYMRecipes::sharedInstance();
    std::vector<std::string> uuids;
    for (const ZYMSummary& row : recipesThere.summariesForAllRecipes()) {
      uuids.push_back(row.uuid.value());
    }
    recipesThere.removeItems_fromGroupWithUUID(uuids, "");
  };
  measureRatio(
      state, 1.5, clear,
      [&] {
        ZYMRecipeDataStoreImportOperation operation({{KeyName("Recipes"), recipes}});
        operation.start();
      },
      [&] {
        for (int i = 0; i < count; ++i)
          NSRunLoop::mainRunLoop().runUntilDate(NSDate::dateWithTimeIntervalSinceNow(0.001));
        place.run("BEGIN IMMEDIATE");
        for (int i = 0; i < count; ++i) {
          place.insert(document);
          place.insert(batch);
        }
        place.run("COMMIT");
      });
}
BENCHMARK(bundle)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zym
