#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "zymcore/documents/ZYMSummary.h"
#include "zymcore/library/recipes/ZYMHistoryItem.h"
#include "zymcore/platform/graphics/NSImage.h"
#include "zymcore/platform/values/NSData.h"
#include "zymcore/platform/values/NSDate.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

class NSOperation;
class NSOperationQueue;
class ZYMGroupEntity;
class ZYMImageEntity;
class ZYMRecipeEntity;

/// Recipes, their batches and images, groups of recipes, and the history of what was opened.
///
/// Nothing is kept here: each call goes to the main context, and each document that comes out is
/// the caller's own. A uuid counts only when exactly one object has it; what isn't found is absent
/// or left alone, and nothing reports a failure. What changes the store is one undo step and is
/// saved at once. Lists are in the store's order of names, by code point. Main thread.
///
/// The whole library is shown as a group as well, but is none: its uuid is "".
class ZYMRecipes {
 public:
  /// As rows of lists have it. An absent one names nothing.
  using UUID = std::optional<std::string_view>;

  [[nodiscard]] static ZYMRecipes& sharedInstance();
  ZYMRecipes(const ZYMRecipes&) = delete;
  ZYMRecipes& operator=(const ZYMRecipes&) = delete;

  // Groups. The date of a group moves with its name and with every recipe that joins or leaves.

  /// By name, without the library.
  [[nodiscard]] std::vector<ZYMSummary> summariesForAllGroups() const;
  /// The library, with the number of all recipes.
  [[nodiscard]] ZYMSummary summaryForLibraryGroup() const;
  ZYMSummary createGroup();
  /// Stores the name of the row, where it differs.
  void updateGroup(const ZYMSummary& summary);
  /// The recipes stay in the library.
  void deleteGroupWithUUID(UUID uuid);
  [[nodiscard]] std::optional<PlistDictionary> groupForUUID(UUID uuid) const;
  /// Stores a record, new or in place of the first group with its "UUID", with those of the recipes
  /// in its "KeysOfContents" that there are.
  void restoreGroup(PlistDictionary& group);
  /// From the library: recipes and batches are deleted. From a group: recipes leave it and stay in
  /// the library, batches are deleted all the same.
  void removeItems_fromGroupWithUUID(const std::vector<std::string>& uuids, UUID uuid);
  /// Takes the recipe out of the group, whatever the name says: it has always done so. A recipe
  /// joins by `replaceRecipesInGroupWithUUID_withRecipes`.
  void addRecipeWithUUID_toGroupWithUUID(UUID uuid, UUID groupUUID);
  /// From the library: the recipe is deleted.
  void removeRecipeWithUUID_fromGroupWithUUID(UUID uuid, UUID groupUUID);
  /// The group then holds those of the recipes that there are. Nothing for the library.
  void replaceRecipesInGroupWithUUID_withRecipes(UUID groupUUID,
                                                 const std::vector<std::string>& uuids);

  // Recipes.

  /// A new recipe for the default profile, not stored.
  [[nodiscard]] PlistDictionary emptyRecipe() const;
  PlistDictionary createRecipe();
  /// Without the repairs that `createRecipe` makes.
  PlistDictionary createRecipeAndAddToGroupWithUUID(UUID groupUUID);
  /// A copy under a new uuid and with "-copy" after the title; absent when nothing has the uuid. A
  /// recipe's copy has no batches and no images, and joins the group. A batch's copy has taken
  /// nothing from stock and stands under the same recipe; the group means nothing to it.
  std::optional<PlistDictionary> duplicateItemWithUUID_addToGroupWithUUID(UUID uuid,
                                                                          UUID groupUUID);
  /// Stores a document that differs from what is stored under its "UUID", and moves its
  /// "DateLastModified" to the present time, in `recipe` as well. Nothing is recalculated.
  void updateRecipe(PlistDictionary& recipe);
  /// With true the date of the document is kept.
  void updateRecipe_preservingDLM(PlistDictionary& recipe, bool preservingDLM);
  /// Its groups lose it, and its batches and image records go with it. Image files stay.
  void removeRecipeWithUUID(UUID uuid);
  /// The document, with the repairs below, which aren't stored. Throws
  /// `NSInvalidArgumentException` when the stored document can't be read.
  [[nodiscard]] std::optional<PlistDictionary> recipeForUUID(UUID uuid) const;

  /// Rows of name, uuid and number of batches.
  [[nodiscard]] std::vector<ZYMSummary> summariesForAllRecipes() const;
  /// Absent when there is no such group.
  [[nodiscard]] std::optional<std::vector<ZYMSummary>> summariesForAllRecipesInGroupWithUUID(
      UUID groupUUID) const;
  [[nodiscard]] std::optional<ZYMSummary> summaryForRecipeWithUUID(UUID uuid) const;

  /// Makes additions as though nothing had been taken from stock for them: without
  /// "IngredientDeducted" and "Batches".
  static void removeInventoryInfoInRecipe(PlistDictionary& recipe);
  static void removeAdjustedFlagFromIngredients(PlistArray& ingredients);

  // Batches.

  /// A new batch of the recipe, not stored: what is measured stands at what the recipe plans, the
  /// mash figures come from the default profile. Absent without the recipe.
  [[nodiscard]] std::optional<PlistDictionary> emptyBatchForRecipeWithUUID(UUID recipeUUID) const;
  /// The same, stored.
  std::optional<PlistDictionary> addBatchToRecipeWithUUID(UUID recipeUUID);
  /// Stores a batch under a recipe that there is, new or in place of the one with its "UUID". For
  /// an unknown recipe it leaves an undo group open behind it and does nothing.
  void restoreBatch_toRecipeWithUUID(PlistDictionary& batch, UUID recipeUUID);
  /// The document, with the repairs below, which aren't stored; absent for one without "Actuals".
  /// Throws as `recipeForUUID`.
  [[nodiscard]] std::optional<PlistDictionary> batchWithUUID(UUID uuid) const;
  /// As `updateRecipe`.
  void updateBatch(PlistDictionary& batch);
  void updateBatch_preservingDLM(PlistDictionary& batch, bool preservingDLM);
  /// What it took from stock isn't given back.
  void removeBatchWithUUID(UUID uuid);
  [[nodiscard]] std::optional<std::string> parentRecipeUUIDForBatchWithUUID(UUID uuid) const;
  /// Makes the recipe as brewed a recipe of its own, in the group as well, and moves the batch
  /// under it. The batch gets a new uuid. Throws `NSInvalidArgumentException` when there is no such
  /// batch.
  PlistDictionary promoteBatchWithUUID_addToGroupWithUUID(UUID uuid, UUID groupUUID);

  /// Rows without children, oldest first by the day of brewing. Absent without the recipe.
  [[nodiscard]] std::optional<std::vector<ZYMSummary>> batchSummariesForRecipeWithUUID(
      UUID recipeUUID) const;
  /// Records without repairs, of the batches brewed later than the date.
  [[nodiscard]] PlistArray batchesNewestFirstSinceDate(NSDate date) const;
  [[nodiscard]] std::vector<ZYMSummary> batchSummariesNewestFirstSinceDate(NSDate date) const;
  [[nodiscard]] std::vector<ZYMSummary> allBatchSummariesNewestFirst() const;
  /// Since the first moment of 1 January, local time.
  [[nodiscard]] std::vector<ZYMSummary> batchSummariesNewestFirstSinceYearStart() const;
  // By the day: 93, 186, 365 and 730.
  [[nodiscard]] std::vector<ZYMSummary> batchSummariesNewestFirstLast3Months() const;
  [[nodiscard]] std::vector<ZYMSummary> batchSummariesNewestFirstLast6Months() const;
  [[nodiscard]] std::vector<ZYMSummary> batchSummariesNewestFirstLast12Months() const;
  [[nodiscard]] std::vector<ZYMSummary> batchSummariesNewestFirstLast24Months() const;

  // Repairs. Documents outlive the program that wrote them: they are never migrated in the store,
  // but brought to the present shape when they are read. All change the given tree.

  /// True when nothing was missing.
  static bool ensureRecipeLatestVersion(PlistDictionary& recipe);
  /// `inventoryAdjusted` says whether additions that don't tell were taken from stock.
  static bool ensureRecipeLatestVersion_inventoryAdjusted(PlistDictionary& recipe,
                                                          bool inventoryAdjusted);
  /// A batch without "TastingNotes" gets that alone, and true: its recipe's turn comes when it is
  /// read again.
  static bool ensureBatchLatestVersion(PlistDictionary& batch);
  /// Grams of each salt from its concentration, unless there are any. Volumes of 0 give texts that
  /// are no numbers.
  static void checkSaltWeightsExistInRecipe(PlistDictionary& recipe);
  static void removeDescriptionsIn(PlistArray& ingredients);

  /// Fermentables, hops and others in the order of brewing, the largest first at each time.
  static void sortIngredientsInRecipe(PlistDictionary& recipe);
  static void sortIngredient_withWhens(PlistArray& ingredients,
                                       std::span<const std::string_view> whens);
  static void validateIngredientsInRecipe(PlistDictionary& recipe);
  /// Grain goes into the mash, and each share of the weight is worked out.
  static void validateFermentablesInRecipe(PlistDictionary& recipe);
  /// No hop boils for longer than the wort does.
  static void validateHopsInRecipe(PlistDictionary& recipe);
  /// Others need nothing; it stands beside the two above.
  static void validateOthersInRecipe(PlistDictionary& recipe);
  /// Removes additions of less than 0.05 from the first of fermentables, hops and others that holds
  /// any, and answers whether there were; call it until there are none.
  static bool removeZeroedIngredientsInRecipe(PlistDictionary& recipe);
  static bool removeZeroedIngredientsInRecipe_withKey(PlistDictionary& recipe, KeyName key);

  // History: what was opened last, newest first, at most 10, in "History.plist" of the history
  // folder. A file that can't be read counts as empty, one that can't be written stays as it was.

  void addRecipeToHistory(const PlistDictionary& recipe);
  void addBatchToHistory(const PlistDictionary& batch);
  void addHistoryItemToHistory(const ZYMHistoryItem& item);
  [[nodiscard]] std::vector<ZYMHistoryItem> readHistory() const;
  void writeHistory(const std::vector<ZYMHistoryItem>& items);
  /// Without what was deleted since; those are taken out of the file as well.
  std::vector<ZYMHistoryItem> history();
  /// 0 for all.
  std::vector<ZYMHistoryItem> historyWithMaximumNumberOfItems(std::size_t count);

  // Bundles of recipes with their batches and groups: "Recipes" and "Groups". Each goes, as an
  // operation, to the main queue, where it replaces what is there under the same uuids. `progress`
  // hears after each recipe what fraction is done, `completion` when all is stored; either may be
  // empty. Defined with the operation, above this room.

  /// The resource "Examples" of the main bundle.
  void unbundleExamplesWithProgressHandler_completionHandler(
      std::function<void(float fraction)> progress, std::function<void()> completion);
  /// A property list; what is none brings nothing, and completes all the same.
  void unbundleRecipesFrom_progressHandler_completionHandler(
      const std::string& path, std::function<void(float fraction)> progress,
      std::function<void()> completion);
  /// Corrects the bundle for storage, in place.
  void unbundleRecipesFromDictionary_progressHandler_completionHandler(
      PlistDictionary& bundle, std::function<void(float fraction)> progress,
      std::function<void()> completion);
  /// The last of these operations, and the queue that it went to; null before.
  [[nodiscard]] const std::shared_ptr<NSOperation>& importOp() const noexcept { return importOp_; }
  [[nodiscard]] NSOperationQueue* importQueue() const noexcept { return importQueue_; }

  // Images of a recipe or a batch: a record each, and two PNG files named by its uuid in the images
  // folder. Listing drops each record that has lost a file, and its other file.

  /// At most 128 points a side; the same image when it is no larger.
  [[nodiscard]] static NSImage thumbnailFromImage(const NSImage& image);
  /// At most 600.
  [[nodiscard]] static NSImage sizedLargeImageFromImage(const NSImage& image);
  /// As PNG.
  [[nodiscard]] static std::optional<NSData> dataFromImage(const NSImage& image);

  // Absent for a uuid that is no plain file name; else whether there is such a file or not.
  [[nodiscard]] std::optional<std::string> pathForLargeImageWithUUID(std::string_view uuid) const;
  [[nodiscard]] std::optional<std::string> pathForThumbnailImageWithUUID(
      std::string_view uuid) const;
  // Absent for a file that can't be read.
  [[nodiscard]] std::optional<NSData> dataForLargeImageWithUUID(std::string_view uuid) const;
  [[nodiscard]] std::optional<NSData> dataForThumbnailImageWithUUID(std::string_view uuid) const;
  [[nodiscard]] std::optional<NSImage> largeImageWithUUID(std::string_view uuid) const;
  [[nodiscard]] std::optional<NSImage> thumbnailImageWithUUID(std::string_view uuid) const;

  /// Those with both files; the others are deleted, in the context, until the next save.
  std::vector<ZYMImageEntity*> processImageEntitiesRemovingMissing(
      const std::vector<ZYMImageEntity*>& images);
  // In the order of the owner's list.
  std::vector<ZYMImageEntity*> orderedImageEntitiesForItemWithUUID(UUID uuid);
  PlistArray orderedImageDataForItemWithUUID(UUID uuid);
  std::vector<std::string> imageUUIDsForItemWithUUID(UUID uuid);
  std::optional<NSImage> largeImageAtIndex_forItemWithUUID(std::size_t index, UUID uuid);
  /// Always true; for an unknown item the image belongs to none.
  bool addThumbnailImage_withLargeImage_toItemWithUUID(const NSImage& thumbnail,
                                                       const NSImage& large, UUID uuid);
  /// No undo step of its own. Files don't come back by an undo.
  void removeImageEntity(ZYMImageEntity& image);
  // Whether there was such an image.
  bool removeImageAtIndex_fromItemWithUUID(std::size_t index, UUID uuid);
  bool removeImageWithUUID(UUID uuid);

 private:
  ZYMRecipes() = default;
  ~ZYMRecipes();

  std::shared_ptr<NSOperation> importOp_;
  NSOperationQueue* importQueue_ = nullptr;
};

}  // namespace zym
