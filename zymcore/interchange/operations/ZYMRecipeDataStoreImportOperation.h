#pragma once

#include <functional>

#include "zymcore/platform/events/NSOperation.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

class ZYMDocumentEntity;

/// Brings a bundle of recipes, with their batches and groups, into the store: "Recipes", a list or
/// a dictionary of documents that may have "Batches", and "Groups", a list of records with
/// "KeysOfContents".
///
/// What is there under the same "UUID" is replaced, so that a bundle brought in twice leaves one
/// copy. All of it is one save at the end, but that the loop runs between recipes, where others may
/// save: so far as it has come, there are whole recipes only. It can't be undone. A document that
/// can't be stored is passed over, and what was there stays.
///
/// The work runs on the main thread; started elsewhere, it waits for it. It can't be cancelled once
/// it has begun.
class ZYMRecipeDataStoreImportOperation final : public NSOperation {
 public:
  using ProgressHandler = std::function<void(float fraction)>;
  using CompletionHandler = std::function<void()>;

  explicit ZYMRecipeDataStoreImportOperation(PlistDictionary bundle)
      : recipeStoreToImport_(std::move(bundle)) {}

  [[nodiscard]] const PlistDictionary& recipeStoreToImport() const noexcept {
    return recipeStoreToImport_;
  }
  /// Called after each recipe with the fraction that is done, from 0 to 1.
  void setProgressHandler(ProgressHandler handler) { progressHandler_ = std::move(handler); }
  /// Called once, when all is stored.
  void setCompletionHandler(CompletionHandler handler) { completionHandler_ = std::move(handler); }

  [[nodiscard]] bool started() const noexcept { return started_; }
  /// Always false.
  [[nodiscard]] bool paused() const noexcept { return paused_; }
  /// From 0 to 1.
  [[nodiscard]] float percentDone() const noexcept { return percentDone_; }
  [[nodiscard]] bool isExecuting() const noexcept { return executing_; }
  [[nodiscard]] bool isFinished() const noexcept { return finished_; }

  /// Posts `CoreDataModelReloadNowNotification`, with the operation as object, at the end.
  void main() override;

 private:
  void importRecipes();
  void importRecipe(PlistDictionary recipe);
  void importGroups();

  PlistDictionary recipeStoreToImport_;
  ProgressHandler progressHandler_;
  CompletionHandler completionHandler_;
  bool started_ = false;
  bool paused_ = false;
  bool executing_ = false;
  bool finished_ = false;
  float percentDone_ = 0;
};

}  // namespace zym
