// A recipe imported whole, beside its parse and its bare commit; and how memory stays.

#include <sqlite3.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "bench/Ratio.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/interchange/beerxml/ZYMBeerXML.h"
#include "zymcore/interchange/operations/ZYMFileImportOperation.h"
#include "zymcore/library/ZYMFermentables.h"
#include "zymcore/library/ZYMHops.h"
#include "zymcore/library/ZYMYeasts.h"
#include "zymcore/platform/events/NSOperationQueue.h"
#include "zymcore/platform/formats/BinaryPropertyList.h"
#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym {
namespace {

constexpr int fermentableCount = 300;
constexpr int hopCount = 200;
constexpr int yeastCount = 250;

void fill(ZYMCachingModel& library, const char* name, int count) {
  std::vector<PlistValue> records;
  const int present = static_cast<int>(library.summariesforAllItems().size());
  for (int i = present; i < count; ++i) {
    PlistDictionary record{
        {keys::UUID, name + std::to_string(i)}, {keys::BeerType, "Ale"}, {keys::YeastType, "Dry"}};
    record.set(library.nameKeyInRecords(), std::string(name) + " of House " + std::to_string(i));
    records.emplace_back(std::move(record));
  }
  library.addItemsFromArray(PlistArray(std::move(records)));
}

std::string ingredients(const char* list, const char* element, const std::string& inner,
                        int count) {
  std::string text = std::string("<") + list + ">";
  for (int i = 0; i < count; ++i) {
    text += std::string("<") + element + "><NAME>Sort " + std::to_string(i) + "</NAME>" + inner +
            "</" + element + ">";
  }
  return text + "</" + list + ">";
}

// Five fermentables, five hops and a yeast.
std::string beerXML() {
  return "<?xml version=\"1.0\"?><RECIPES><RECIPE><NAME>Bitter</NAME><TYPE>All Grain</TYPE>"
         "<BATCH_SIZE>20</BATCH_SIZE><BOIL_SIZE>25</BOIL_SIZE><STYLE><CATEGORY>11A</CATEGORY>"
         "<NAME>Ordinary Bitter</NAME></STYLE>" +
         ingredients("FERMENTABLES", "FERMENTABLE",
                     "<TYPE>Grain</TYPE><ORIGIN>England</ORIGIN><AMOUNT>4.5</AMOUNT>"
                     "<YIELD>81</YIELD><COLOR>3</COLOR>",
                     5) +
         ingredients("HOPS", "HOP",
                     "<ALPHA>4.5</ALPHA><AMOUNT>0.03</AMOUNT><USE>Boil</USE><TIME>60</TIME>", 5) +
         ingredients("YEASTS", "YEAST", "<TYPE>Ale</TYPE><FORM>Dry</FORM>", 1) +
         "</RECIPE></RECIPES>";
}

/// A store with libraries of that size, and a file to import.
class Place {
 public:
  Place() {
    std::string name = (std::filesystem::temp_directory_path() / "zymbenchXXXXXX").string();
    folder_ = mkdtemp(name.data());
    NSUserDefaults::standardUserDefaults().setPersistentFile("");
    NSBundle::setMainBundle(NSBundle(ZYM_RESOURCES, "org.zymcore.bench", "1"));
    ZYMCoreDataModel::sharedInstance().setDataFolder(folder_);
    ZYMCoreDataModel::sharedInstance().installInitialState();
    fill(ZYMFermentables::sharedInstance(), "Malt", fermentableCount);
    fill(ZYMHops::sharedInstance(), "Hop", hopCount);
    fill(ZYMYeasts::sharedInstance(), "Yeast", yeastCount);
    std::ofstream(file()) << beerXML();
  }
  ~Place() {
    ZYMCoreDataModel::tearDown();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;

  [[nodiscard]] std::string file() const { return folder_ + "/recipe.xml"; }
  [[nodiscard]] std::string folder() const { return folder_; }

 private:
  std::string folder_;
};

void import(const std::string& file) {
  ZYMFileImportOperation operation(file);
  operation.start();
}

void importOneFile(benchmark::State& state) {
  const Place place;
  const NSData bytes{std::string_view(beerXML())};
  ZYMFileImportOperation operation;
  const std::string document =
      BinaryPropertyList::write(operation.processParsedRecipe(*ZYMBeerXML::parseFileData(bytes)))
          .value();

  sqlite3* database = nullptr;
  sqlite3_open((place.folder() + "/bare.sqlite").c_str(), &database);
  sqlite3_exec(database,
               "PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL;"
               "CREATE TABLE recipes(id INTEGER PRIMARY KEY, uuid, name, date);"
               "CREATE TABLE documents(id INTEGER PRIMARY KEY, data)",
               nullptr, nullptr, nullptr);
  sqlite3_stmt* row = nullptr;
  sqlite3_prepare_v2(database, "INSERT INTO recipes VALUES(NULL, 'uuid', 'Bitter', 1)", -1, &row,
                     nullptr);
  sqlite3_stmt* blob = nullptr;
  sqlite3_prepare_v2(database, "INSERT INTO documents VALUES(NULL, ?)", -1, &blob, nullptr);
  const auto run = [](sqlite3_stmt* statement) {
    sqlite3_step(statement);
    sqlite3_reset(statement);
  };
  measureRatio(
      state, 2, [&] { import(place.file()); },
      [&] {
        benchmark::DoNotOptimize(ZYMBeerXML::parseFileData(bytes));
        sqlite3_exec(database, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
        run(row);
        sqlite3_bind_blob(blob, 1, document.data(), static_cast<int>(document.size()),
                          SQLITE_STATIC);
        run(blob);
        sqlite3_exec(database, "COMMIT", nullptr, nullptr, nullptr);
      });
  sqlite3_finalize(row);
  sqlite3_finalize(blob);
  sqlite3_close(database);
}
BENCHMARK(importOneFile)->UseManualTime()->Unit(benchmark::kMicrosecond);

double residentKilobytes() {
  std::ifstream status("/proc/self/statm");
  double total = 0;
  double resident = 0;
  status >> total >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1024;
}

// What each of 500 files leaves behind in memory; the records of the store stay in its context.
void importManyFiles(benchmark::State& state) {
  const Place place;
  const auto importMany = [&](int count) {
    for (int i = 0; i < count; ++i) {
      NSOperationQueue::mainQueue().addOperation(
          std::make_shared<ZYMFileImportOperation>(place.file()));
    }
    NSOperationQueue::mainQueue().waitUntilAllOperationsAreFinished();
  };
  importMany(50);
  for (auto iteration : state) {
    (void)iteration;
    const double before = residentKilobytes();
    importMany(500);
    state.counters["kB_each"] = (residentKilobytes() - before) / 500;
  }
}
BENCHMARK(importManyFiles)->Iterations(2)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zym
