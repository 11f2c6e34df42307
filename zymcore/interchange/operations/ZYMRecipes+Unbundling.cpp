#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/interchange/operations/ZYMRecipeDataStoreImportOperation.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/events/NSOperationQueue.h"
#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/store/Resources.h"

namespace zym {

void ZYMRecipes::unbundleExamplesWithProgressHandler_completionHandler(
    std::function<void(float fraction)> progress, std::function<void()> completion) {
  unbundleRecipesFrom_progressHandler_completionHandler(
      NSBundle::mainBundle().pathForResource_ofType("Examples", "plist").value_or(""),
      std::move(progress), std::move(completion));
}

void ZYMRecipes::unbundleRecipesFrom_progressHandler_completionHandler(
    const std::string& path, std::function<void(float fraction)> progress,
    std::function<void()> completion) {
  PlistDictionary bundle = dictionaryAtPath(path).value_or(PlistDictionary());
  unbundleRecipesFromDictionary_progressHandler_completionHandler(bundle, std::move(progress),
                                                                  std::move(completion));
}

void ZYMRecipes::unbundleRecipesFromDictionary_progressHandler_completionHandler(
    PlistDictionary& bundle, std::function<void(float fraction)> progress,
    std::function<void()> completion) {
  correctForSerialization(bundle);
  const auto operation = std::make_shared<ZYMRecipeDataStoreImportOperation>(bundle);
  operation->setProgressHandler(std::move(progress));
  operation->setCompletionHandler(std::move(completion));
  importQueue_ = &NSOperationQueue::mainQueue();
  importOp_ = operation;
  importQueue_->addOperation(operation);
}

}  // namespace zym
