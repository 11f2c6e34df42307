#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "zymcore/platform/values/PlistValue.h"

namespace zym {

class NSManagedObjectContext;
class ZYMInventoryEntity;

/// Answers which recipes can be brewed with what is in stock: compares all of them with the shelf
/// in the background, and hands over a page in which they stand by how many ingredients are short
/// (`ZYMHTML::renderToHTMLSuggestABeer`).
///
/// An instance is for one run. There is no cancel: a generator that is let go calls back no more,
/// and its run ends by itself. Made, used and let go on the main thread, on which both callables
/// are called.
///
/// A row of ingredients is a copy of an addition with "IngredientType" and, as "Ingredient", its
/// name. A row that is short has as "Amount" what is missing. Orders and dates of expiry don't
/// count here, and nothing is tolerated.
class ZYMSuggestABeerGenerator {
 public:
  using ProgressHandler = std::function<void(float from0To1)>;
  using CompletionHandler = std::function<void(const std::string& html)>;

  ZYMSuggestABeerGenerator();
  ~ZYMSuggestABeerGenerator();
  ZYMSuggestABeerGenerator(const ZYMSuggestABeerGenerator&) = delete;
  ZYMSuggestABeerGenerator& operator=(const ZYMSuggestABeerGenerator&) = delete;

  void setProgressHandler(ProgressHandler handler) { progressHandler_ = std::move(handler); }
  void setCompletionHandler(CompletionHandler handler) { completionHandler_ = std::move(handler); }
  [[nodiscard]] const ProgressHandler& progressHandler() const { return progressHandler_; }
  /// Empty once it was called.
  [[nodiscard]] const CompletionHandler& completionHandler() const { return completionHandler_; }
  /// The page; "" before it is made.
  [[nodiscard]] std::string html() const;

  /// Starts the run and returns at once.
  void generateWithProgressHandler_completionHandler(ProgressHandler progressHandler,
                                                     CompletionHandler completionHandler);
  /// The work of a run, right here: reads the store as it was last saved.
  void generateHTMLUpdatingProgressView();
  // Both call back from the main loop, later.
  void updateProgress(float progress);
  void finishedCalculation();

  /// The recipes of which so many ingredients are short. `results` has for each recipe, in the
  /// order of `ZYMRecipes::summariesForAllRecipes`, its rows that are short; a recipe that has
  /// something else there is none of them. Main thread.
  [[nodiscard]] static PlistArray missingIngredientsArray_missingIngredients(
      const PlistArray& results, std::size_t missingIngredients);

  // Of one context; whoever may use that may call these. A document that can't be read throws
  // `NSInvalidArgumentException`.

  /// The record of an item without its lots, with its name as the context has it.
  [[nodiscard]] static PlistDictionary dictionaryRepresentationForInventoryEntity_withContext(
      ZYMInventoryEntity& item, NSManagedObjectContext& context);
  [[nodiscard]] static PlistArray missingIngredients_inContext(PlistArray rows,
                                                               NSManagedObjectContext& context);
  [[nodiscard]] static PlistArray
  ingredientsNotAvailableForRecipeWithUUID_usingContext_allowBatches(
      std::string_view uuid, NSManagedObjectContext& context, bool allowBatches);
  [[nodiscard]] static PlistArray ingredientsNotAvailableForRecipeWithUUID_usingContext(
      std::string_view uuid, NSManagedObjectContext& context);
  /// All that the recipe, or the batch, needs: a row for each ingredient, in the order of their
  /// first additions, with the sum of the amounts. Empty for an unknown uuid.
  [[nodiscard]] static PlistArray ingredientsRequiredForRecipeWithUUID_usingContext_allowBatches(
      std::string_view uuid, NSManagedObjectContext& context, bool allowBatches);
  [[nodiscard]] static PlistArray ingredientsRequiredForRecipeWithUUID_usingContext(
      std::string_view uuid, NSManagedObjectContext& context);
  /// A copy with "IngredientType". A yeast of whatever kind is in it.
  [[nodiscard]] static PlistArray insertRecipeType_intoArray(std::string_view type,
                                                             PlistArray ingredients);

  // Of the main context.

  [[nodiscard]] static PlistArray ingredientsNotAvailableForRecipeOrBatchWithUUID(
      std::string_view uuid);
  /// What is short for all of them together, recipes and batches: rows of "UUID", "IngredientType"
  /// and "Amount". A slurry counts as one pack, whatever its volume.
  [[nodiscard]] static PlistArray ingredientsNotAvailableForRecipesWithUUIDs(
      const std::vector<std::string>& uuids);

 private:
  struct Run;

  ProgressHandler progressHandler_;
  CompletionHandler completionHandler_;
  std::shared_ptr<Run> run_;
};

}  // namespace zym
