#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zymcore/interchange/operations/ImportMatch.h"
#include "zymcore/platform/events/NSOperation.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

// Notifications, on the main thread, with the operation as object and its `url`, under this key, as
// user info.
inline constexpr KeyName ZYMImportOperationURLKey{"ZYMImportOperationURLKey"};
/// The file has been imported and saved.
inline constexpr const char* ZYMImportOperationSucceededNotification =
    "ZYMImportOperationSucceededNotification";
/// Nothing was stored.
inline constexpr const char* ZYMImportOperationFailedNotification =
    "ZYMImportOperationFailedNotification";

/// Imports one file into the store, by its extension: "xml" (BeerXML) and "rec" of other programs,
/// "wm2" and "wmr" (a recipe of ours, with its batches and images, as JSON and as a property list),
/// "ing" (ingredients of ours, which go into the libraries).
///
/// The recipe of another program's file is matched against the libraries: each ingredient becomes
/// the library's record with the nearest name, however far that is, with the file's amounts laid
/// over it. The libraries don't change by a recipe.
///
/// An import is one save and one undo step: whenever the process ends, the recipe is stored with
/// all its batches and images or not at all. An image that can't be read is left out. A file with
/// more pictures than any recipe has, and whatever else goes wrong, stores nothing.
///
/// The work runs on the main thread; started elsewhere, it waits for it.
class ZYMFileImportOperation final : public NSOperation {
 public:
  ZYMFileImportOperation() : ZYMFileImportOperation(std::nullopt) {}
  /// A path.
  explicit ZYMFileImportOperation(std::optional<std::string> url) : url_(std::move(url)) {}

  [[nodiscard]] const std::optional<std::string>& url() const noexcept { return url_; }

  /// What the host wants done to a recipe that is complete but not stored yet. What it throws fails
  /// the import.
  using PrepareRecipe = std::function<void(PlistDictionary& recipe)>;
  void setPrepareRecipe(PrepareRecipe prepare) { prepareRecipe_ = std::move(prepare); }

  void main() override;
  /// From any thread; returns when the observers have run.
  void postFailedNotification();

  // The parts of the work. They store nothing. Main thread.

  /// The recipe as it would be stored, but for what the store adds: identity, the defaults that it
  /// lacks, and a profile. Absent, with a `failureReason`, when there is none.
  [[nodiscard]] std::optional<PlistDictionary> recipeInFile();
  /// The package of ingredients (`ZYMIngFile`) in the file. Absent, with a `failureReason`, when
  /// there is none.
  [[nodiscard]] std::optional<PlistDictionary> packageInFile();
  /// The recipe document of a parsed recipe (`ParsedRecipeKeys.h`). Throws `NSRangeException` when
  /// a library that it needs is empty, and `NSInvalidArgumentException` for so many or so long
  /// names that matching them would take seconds.
  [[nodiscard]] PlistDictionary processParsedRecipe(const PlistDictionary& parsed);

  /// Gives a recipe, or the recipe as brewed of a batch, a profile of its own where its profile
  /// isn't known here or is another one here. Throws `NSRangeException` when there is no water.
  static void checkProfileForRecipeOrBatch_isBatch(PlistDictionary& document, bool isBatch);
  static void createNewSpecificProfileForRecipeOrBatch_isBatch(PlistDictionary& document,
                                                               bool isBatch);
  /// As of every library (`ZYMCachingModel`), and -1 for an absent array.
  [[nodiscard]] static std::int64_t indexOfMostSimilarObjectToString_inArray_forKey(
      std::string_view text, const PlistArray* array, const std::optional<KeyName>& key);

  // What came of it.

  /// In the order in which the recipe was matched.
  [[nodiscard]] const std::vector<ImportMatch>& matches() const noexcept { return matches_; }
  /// In English, without the file's name; absent for a success.
  [[nodiscard]] const std::optional<std::string>& failureReason() const noexcept {
    return failureReason_;
  }
  /// How many ingredients of a package went to a library; 0 where there is no such library.
  [[nodiscard]] std::size_t ingredientCount() const noexcept { return ingredientCount_; }
  /// The recipe that was stored.
  [[nodiscard]] const std::optional<std::string>& uuidOfRecipe() const noexcept {
    return uuidOfRecipe_;
  }

 private:
  [[nodiscard]] std::optional<PlistDictionary> contentsOfFile(bool isPackage);
  void importFile();
  void insert(PlistDictionary recipe);
  void install(const PlistDictionary& package);
  /// Made once for all that an import needs it for.
  [[nodiscard]] const PlistDictionary& emptyRecipe();

  std::optional<std::string> url_;
  PrepareRecipe prepareRecipe_;
  std::optional<PlistDictionary> emptyRecipe_;
  std::vector<ImportMatch> matches_;
  std::optional<std::string> failureReason_;
  std::optional<std::string> uuidOfRecipe_;
  std::size_t ingredientCount_ = 0;
};

}  // namespace zym
