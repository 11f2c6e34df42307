// Pages, beside copying what they hold, and what can be brewed of 10,000 recipes, beside reading
// them.

#include <stdlib.h>
#include <time.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/Ratio.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/formats/BinaryPropertyList.h"
#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/reports/PageKeys.h"
#include "zymcore/reports/ZYMHTML.h"
#include "zymcore/stock/ZYMInventory.h"
#include "zymcore/stock/ZYMSuggestABeerGenerator.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"

namespace zym {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int recipes = 10000;
constexpr int shelf = 500;
constexpr int additions = 15;

PlistDictionary recipe(int number) {
  PlistDictionary result = ZYMRecipes::sharedInstance().emptyRecipe();
  result.set(keys::UUID, "r" + std::to_string(number));
  result.set(keys::RecipeTitle, "Beer " + std::to_string(number));
  result.set(keys::Notes, "Mash well.\nBoil well.");
  int next = number * 7;
  for (const KeyName key : {keys::FermentableIngredients, keys::HopIngredients}) {
    PlistArray rows;
    for (int i = 0; i < additions / 2; ++i) {
      rows.append(PlistDictionary{
          {keys::UUID, std::to_string(next++ % (shelf + 3))},
          {keys::Ingredient, "Malt of some house"},
          {keys::Amount, "1000.000000"},
          {keys::Extract, "80.000000"},
          {keys::Color, "5.000000"},
          {keys::Alpha, "5.000000"},
          {keys::Minutes, "60"},
          {keys::IsGrain, "1"},
          {keys::Form, words::LooseWholeHops},
          {keys::When,
           key.text() == keys::HopIngredients.text() ? words::AllOfBoil : words::InMashSteeped}});
    }
    result.set(key, std::move(rows));
  }
  return result;
}

std::string marker(std::string_view key) {
  return "<*KEYNAME=" + std::string(key) + ">";
}

constexpr const char* sheetKeys[] = {"RecipeTitle",
                                     "ExpectedOGText",
                                     "ExpectedOriginalGravity",
                                     "ExpectedFGText",
                                     "Notes",
                                     "ExpectedFinalGravity",
                                     "FermentableItems",
                                     "HopItems",
                                     "MinimumOGText",
                                     "MinOG",
                                     "FontName",
                                     "PreBoilWortVolume",
                                     "WaterProfileUsed"};

/// A sheet as templates are: most of it is markup and style, with a marker here and there.
std::string sheetTemplate() {
  std::string text = "<!DOCTYPE html><style>" + std::string(6000, 's') + "</style>";
  for (int i = 0; i < 12; ++i) {
    for (const char* name : sheetKeys) {
      if (i > 0 && std::string_view(name).ends_with("Items")) continue;
      text += "<tr class=\"figure\"><td class=\"label\">A word</td><td class=\"number\">" +
              marker(name) + "</td></tr>\n";
    }
  }
  return text;
}

class Library {
 public:
  Library() {
    std::string name = (fs::temp_directory_path() / "zymbenchXXXXXX").string();
    folder_ = mkdtemp(name.data());
    NSUserDefaults::standardUserDefaults().setPersistentFile("");
    fs::create_directory(folder_ + "/bundle");
    for (const auto& entry : fs::directory_iterator(ZYM_RESOURCES)) {
      if (entry.path().extension() == ".html") continue;
      fs::create_symlink(entry.path(), folder_ + "/bundle/" + entry.path().filename().string());
    }
    put("HTMLTemplate-Recipe", sheetTemplate());
    for (const char* row :
         {"FermentableItem", "HopItem", "OtherItem", "YeastItem", "ScheduleStep"}) {
      put(row, "<tr><td>" + marker("Amount") + "</td><td>" + marker("Ingredient") + "</td><td>" +
                   marker("When") + "</td></tr>\n");
    }
    put("SuggestABeer Template", marker("brewToday") + marker("needOne") + marker("needTwo"));
    NSBundle::setMainBundle(NSBundle(folder_ + "/bundle", "org.zymcore.bench", "1"));
    ZYMCoreDataModel& model = ZYMCoreDataModel::sharedInstance();
    model.setDataFolder(folder_ + "/data");
    NSManagedObjectContext& context = *model.mainObjectContext();
    context.setUndoManager(nullptr);
    model.installInitialState();
    for (int i = 0; i < recipes; ++i) {
      PlistDictionary document = recipe(i);
      ZYMRecipeEntity::insertInContext(context).updateWithDictionaryRepresentation(document);
    }
    PlistArray items;
    for (int i = 0; i < shelf; ++i) {
      items.append(PlistDictionary{
          {keys::UUID, std::to_string(i)},
          {keys::IngredientType, words::Fermentable},
          {keys::Batches, PlistArray{PlistDictionary{{keys::UUID, "lot"},
                                                     {keys::AmountInStock, i % 9 ? 5000 : 500}}}}});
    }
    ZYMInventory::sharedInstance().addItemsFromArray(items);
    model.save();
  }
  ~Library() {
    ZYMCoreDataModel::tearDown();
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  static Library& shared() {
    static Library library;
    return library;
  }

 private:
  void put(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ + "/bundle/" + name + ".html") << text;
  }
  std::string folder_;
};

/// Copies the page in the pieces that it was made of.
struct Pieces {
  explicit Pieces(const std::string& text, const PlistDictionary& values) {
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t found = std::min(text.find("<*KEYNAME=", at), text.size());
      parts.emplace_back(std::string_view(text).substr(at, found - at));
      const std::size_t end = std::min(text.find('>', found), text.size());
      if (found < text.size()) {
        parts.push_back(values.stringValue(KeyName(text.substr(found + 10, end - found - 10))));
      }
      at = found < text.size() ? end + 1 : found;
    }
  }
  [[nodiscard]] std::string page() const {
    std::string result;
    for (const std::string_view part : parts) result += part;
    return result;
  }
  std::vector<std::string_view> parts;
};

void fillSheet(benchmark::State& state) {
  const std::string text = sheetTemplate();
  PlistDictionary values;
  for (int i = 0; i < 200; ++i) values.set(KeyName("Other" + std::to_string(i)), "value");
  for (const char* name : sheetKeys) values.set(KeyName(name), "1.050 SG");
  values.set(keys::FermentableItems, std::string(3000, 'r'));
  const Pieces pieces(text, values);
  measureRatio(
      state, 3,
      [&] {
        for (int i = 0; i < 100; ++i) {
          benchmark::DoNotOptimize(ZYMHTML::replaceKeysInString_fromDictionary(text, &values));
        }
      },
      [&] {
        for (int i = 0; i < 100; ++i) benchmark::DoNotOptimize(pieces.page());
      });
}
BENCHMARK(fillSheet)->UseManualTime()->Unit(benchmark::kMicrosecond);

// The ratio is to 2 ms.
void recipePageFromStore(benchmark::State& state) {
  (void)Library::shared();
  const auto page = [] {
    auto document = ZYMRecipes::sharedInstance().recipeForUUID("r5000");
    benchmark::DoNotOptimize(ZYMHTML::renderRecipeToHTMLForWeb(*document));
  };
  measureRatio(state, 1, page, [] {
    for (const auto end = Clock::now() + std::chrono::milliseconds(2); Clock::now() < end;) {
    }
  });
}
BENCHMARK(recipePageFromStore)->UseManualTime()->Unit(benchmark::kMicrosecond);

double secondsOfThisThread() {
  timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// The longest time for which the main loop did nothing else; and for which it worked, without what
/// other programs took of that time.
struct LongestTurn {
  double seconds = 0;
  double work = 0;

  void runUntil(const std::function<bool()>& isDone) {
    while (!isDone()) {
      const Clock::time_point start = Clock::now();
      const double workStart = secondsOfThisThread();
      (void)NSRunLoop::mainRunLoop().runModeBeforeDate(NSDate::dateWithTimeIntervalSinceNow(0.001));
      seconds = std::max(seconds, std::chrono::duration<double>(Clock::now() - start).count());
      work = std::max(work, secondsOfThisThread() - workStart);
    }
  }
};

void suggest(benchmark::State& state) {
  (void)Library::shared();
  LongestTurn longest;
  measureRatio(
      state, 2,
      [&] {
        bool isDone = false;
        ZYMSuggestABeerGenerator generator;
        generator.generateWithProgressHandler_completionHandler(
            [](float) {}, [&](const std::string&) { isDone = true; });
        longest.runUntil([&] { return isDone; });
      },
      [] {
        NSManagedObjectContext context(NSPrivateQueueConcurrencyType);
        context.setPersistentStoreCoordinator(mainContext().persistentStoreCoordinator());
        context.performBlockAndWait([&] {
          const auto objects = ZYMRecipeEntity::findAllObjectsInContext_predicate_sortDescriptor(
              &context, std::nullopt, std::nullopt);
          for (auto* object : *objects) {
            const auto data = object->documentForKey(attributes::data);
            benchmark::DoNotOptimize(BinaryPropertyList::read(data->view()));
          }
        });
      });
  state.counters["longest_turn_ms"] = longest.seconds * 1e3;
  state.counters["longest_work_ms"] = longest.work * 1e3;
}
BENCHMARK(suggest)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace
}  // namespace zym
