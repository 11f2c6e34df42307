#include "zymcore/stock/ZYMSuggestABeerGenerator.h"

#include <atomic>
#include <map>
#include <mutex>
#include <thread>

#include "zymcore/documents/RecordKeys.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/objects/NSManagedObjectContext.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/platform/values/ProcessTearDown.h"
#include "zymcore/reports/PageKeys.h"
#include "zymcore/reports/ZYMHTML.h"
#include "zymcore/stock/internal/Needs.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/SummaryRows.h"
#include "zymcore/store/entities/ZYMInventoryEntity.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"

namespace zym {
namespace {

/// The page has groups for recipes that are short of less than this.
constexpr std::size_t tooManyMissing = 4;
struct Group {
  KeyName key;
  std::size_t missing;
};
constexpr Group groups[] = {
    {keys::brewToday, 0}, {keys::needOne, 1}, {keys::needTwo, 2}, {keys::needThree, 3}};

// A thread that runs while the process ends would use what is gone.
std::atomic<int> threads{0};
struct RunningThread {
  RunningThread() { ++threads; }
  ~RunningThread() {
    --threads;
    NSRunLoop::mainRunLoop().performBlock([] {});  // for who waits for the last one
  }
  RunningThread(const RunningThread&) = delete;
  RunningThread& operator=(const RunningThread&) = delete;
};
std::atomic<bool> isEnding{false};
TearDownPlace place([] {
  constexpr double secondsAtMost = 10;
  isEnding = true;
  (void)NSRunLoop::mainRunLoop().runUntil([] { return threads == 0; }, secondsAtMost);
  isEnding = false;
});

/// The whole shelf, read once: a recipe asks for 20 ingredients, and there are many recipes.
StockOf stockOfAll(NSManagedObjectContext& context) {
  const auto found = context.propertiesForFetchRequest(
      NSFetchRequest::fetchRequestWithEntityName(ZYMInventoryEntity::entityName),
      {attributes::uuid, attributes::amountInStock});
  std::map<std::string, std::optional<float>> amounts;
  for (std::size_t row = 0; found && row < found->size(); ++row) {
    const std::string* uuid = found->string(row, 0);
    if (!uuid) continue;
    const PlistValue* amount = found->value(row, 1);
    const auto [known, isNew] = amounts.try_emplace(*uuid, amount ? amount->floatValue() : 0.0F);
    if (!isNew) known->second.reset();
  }
  return [amounts = std::move(amounts)](const std::string& uuid) {
    const auto known = amounts.find(uuid);
    return known == amounts.end() ? std::nullopt : known->second;
  };
}

PlistArray groupOf(const PlistArray& results, std::size_t missing,
                   const std::vector<ZYMSummary>& summaries) {
  PlistArray group;
  for (std::size_t i = 0; i < std::min(results.size(), summaries.size()); ++i) {
    const PlistArray* rows = results.find(i)->array();
    if (!rows || rows->size() != missing) continue;
    group.append(
        PlistDictionary{{keys::RecipeTitle, summaries[i].name}, {keys::Ingredient, *rows}});
  }
  return group;
}

}  // namespace

/// What the generator and the thread that works for it share. The generator may go at any time; the
/// thread then has nobody to tell, and stops.
struct ZYMSuggestABeerGenerator::Run : std::enable_shared_from_this<Run> {
  explicit Run(ZYMSuggestABeerGenerator& owner) : generator(&owner) {}

  [[nodiscard]] bool isWanted() const noexcept { return !isAbandoned && !isEnding; }
  /// Calls the block on the main thread, unless the generator is gone by then.
  void tell(std::function<void(ZYMSuggestABeerGenerator&)> block) {
    NSRunLoop::mainRunLoop().performBlock([weak = weak_from_this(), block = std::move(block)] {
      const std::shared_ptr<Run> run = weak.lock();
      if (run && run->generator) block(*run->generator);
    });
  }
  void tellProgress(float progress) {
    tell([progress](ZYMSuggestABeerGenerator& owner) {
      // A copy, since it may let the generator go.
      if (const ProgressHandler handler = owner.progressHandler_) handler(progress);
    });
  }
  void tellEnd() {
    tell([](ZYMSuggestABeerGenerator& owner) {
      if (const CompletionHandler handler = std::exchange(owner.completionHandler_, nullptr)) {
        handler(owner.html());
      }
    });
  }

  void generate();
  [[nodiscard]] PlistArray compareAll(const std::vector<ZYMRecipeEntity*>& recipes,
                                      NSManagedObjectContext& context);

  ZYMSuggestABeerGenerator* generator;  // main thread
  std::atomic<bool> isAbandoned{false};
  std::mutex mutex;
  std::string html;  // under the lock
};

// For each recipe its rows that are short; how many there are where no group wants them.
PlistArray ZYMSuggestABeerGenerator::Run::compareAll(const std::vector<ZYMRecipeEntity*>& recipes,
                                                     NSManagedObjectContext& context) {
  const StockOf stockOf = stockOfAll(context);
  std::map<std::string, int> holders;
  for (const ZYMRecipeEntity* recipe : recipes) {
    if (const auto uuid = recipe->uuid()) ++holders[*uuid];
  }
  PlistArray results;
  for (std::size_t i = 0; i < recipes.size() && isWanted(); ++i) {
    try {
      const auto uuid = recipes[i]->uuid();
      std::optional<PlistDictionary> recipe;
      if (uuid && holders[*uuid] == 1) recipe = recipes[i]->dictionaryRepresentation();
      PlistArray rows = missingIngredients(
          ingredientsRequiredForRecipe(std::move(recipe).value_or(PlistDictionary())), stockOf);
      const std::size_t missing = rows.size();
      results.append(missing < tooManyMissing ? PlistValue(std::move(rows)) : PlistValue(missing));
    } catch (const std::exception& damage) {
      NSLog(damage.what());
      results.append(tooManyMissing);
    }
    tellProgress(static_cast<float>(i + 1) / static_cast<float>(recipes.size()));
  }
  return results;
}

void ZYMSuggestABeerGenerator::Run::generate() {
  tellProgress(0);
  std::shared_ptr<NSPersistentStoreCoordinator> coordinator;
  NSRunLoop::mainRunLoop().performOnMainThreadAndWait([&] {
    if (isWanted()) coordinator = mainContext().persistentStoreCoordinator();
  });
  if (!coordinator) return;
  PlistArray results;
  std::vector<ZYMSummary> summaries;  // of the same moment, and without keeping the main thread
  NSManagedObjectContext context(NSPrivateQueueConcurrencyType);
  context.setUndoManager(nullptr);
  context.setPersistentStoreCoordinator(coordinator);
  context.performBlockAndWait([&] {
    const auto recipes = ZYMRecipeEntity::findAllObjectsInContext_predicate_sortDescriptor(
        &context, std::nullopt, NSSortDescriptor(attributes::name, true));
    if (!recipes) return;
    summaries = summariesOf({recipes->begin(), recipes->end()});
    results = compareAll(*recipes, context);
  });
  if (!isWanted()) return;
  PlistDictionary page;
  for (const Group& group : groups) page.set(group.key, groupOf(results, group.missing, summaries));
  std::string text = ZYMHTML::renderToHTMLSuggestABeer(page);
  const std::lock_guard lock(mutex);
  html = std::move(text);
}

ZYMSuggestABeerGenerator::ZYMSuggestABeerGenerator() : run_(std::make_shared<Run>(*this)) {}

ZYMSuggestABeerGenerator::~ZYMSuggestABeerGenerator() {
  run_->generator = nullptr;
  run_->isAbandoned = true;
}

std::string ZYMSuggestABeerGenerator::html() const {
  const std::lock_guard lock(run_->mutex);
  return run_->html;
}

void ZYMSuggestABeerGenerator::generateWithProgressHandler_completionHandler(
    ProgressHandler progressHandler, CompletionHandler completionHandler) {
  progressHandler_ = std::move(progressHandler);
  completionHandler_ = std::move(completionHandler);
  place.take();
  std::thread([run = std::weak_ptr<Run>(run_), running = std::make_shared<RunningThread>()] {
    const std::shared_ptr<Run> wanted = run.lock();
    if (!wanted) return;
    try {
      wanted->generate();
    } catch (const std::exception& fault) {
      NSLog(fault.what());
    }
    wanted->tellEnd();
  }).detach();
}

void ZYMSuggestABeerGenerator::generateHTMLUpdatingProgressView() {
  run_->generate();
}

void ZYMSuggestABeerGenerator::updateProgress(float progress) {
  run_->tellProgress(progress);
}

void ZYMSuggestABeerGenerator::finishedCalculation() {
  run_->tellEnd();
}

PlistArray ZYMSuggestABeerGenerator::missingIngredientsArray_missingIngredients(
    const PlistArray& results, std::size_t missingIngredients) {
  return groupOf(results, missingIngredients,
                 ZYMRecipes::sharedInstance().summariesForAllRecipes());
}

}  // namespace zym
