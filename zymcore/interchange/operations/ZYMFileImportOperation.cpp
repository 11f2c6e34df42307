#include "zymcore/interchange/operations/ZYMFileImportOperation.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/SafeJSON.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/interchange/beerxml/ZYMBeerXML.h"
#include "zymcore/library/recipes/StoredDocuments.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/events/NSNotificationCenter.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/events/NSUndoManager.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/entities/ZYMRecipeBatchEntity.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"

namespace zym {
namespace {

// Far above any recipe, with its pictures and all its batches.
constexpr std::size_t mostBytes = 64 << 20;
constexpr unsigned mutableContainersAndLeaves = 3;

using Recipe = std::optional<PlistDictionary>;

Recipe readBeerXML(ZYMFileImportOperation& operation, const std::string& bytes, NSError& error) {
  const Recipe parsed = ZYMBeerXML::parseFileData(NSData(bytes), &error);
  return parsed ? std::optional(operation.processParsedRecipe(*parsed)) : std::nullopt;
}

Recipe readWM2(ZYMFileImportOperation& /*operation*/, const std::string& bytes, NSError& error) {
  std::optional<PlistValue> tree =
      safeJSONObjectWithData_options(bytes, mutableContainersAndLeaves, &error);
  if (!tree) return std::nullopt;
  PlistDictionary* recipe = tree->editDictionary();
  if (recipe) return std::move(*recipe);
  fail(&error, NSCocoaErrorDomain, NSFileReadCorruptFileError, "no recipe, but a list");
  return std::nullopt;
}

struct Format {
  std::string_view extension;
  /// Null where there is none yet.
  Recipe (*read)(ZYMFileImportOperation& operation, const std::string& bytes, NSError& error);
};
constexpr Format formats[] = {
    {"xml", readBeerXML}, {"rec", nullptr}, {"ing", nullptr}, {"wmr", nullptr}, {"wm2", readWM2},
};

std::string pathExtension(const std::string& path) {
  const std::string extension = std::filesystem::path(path).extension().string();
  return extension.empty() ? "" : extension.substr(1);
}

PlistArray take(PlistDictionary& document, KeyName key) {
  const PlistArray* found = document.array(key);
  PlistArray taken = found ? *found : PlistArray();
  document.remove(key);
  return taken;
}

/// What a file may have of pictures: far above any recipe, and read within seconds.
class PictureBudget {
 public:
  void spendCount(std::size_t count) { spend(count, countLeft_); }
  void spendPixels(NSSize size) {
    spend(static_cast<std::size_t>(size.width * size.height), pixelsLeft_);
  }

 private:
  static void spend(std::size_t amount, std::size_t& left) {
    if (amount > left) {
      throw NSException(NSInvalidArgumentException, "more pictures than any recipe has");
    }
    left -= amount;
  }
  std::size_t countLeft_ = 500;
  std::size_t pixelsLeft_ = std::size_t{1} << 26U;
};

// One picture at a time, for they take far more room than their files.
void addImages(const PlistArray& images, ZYMDocumentEntity& owner, PictureBudget& budget) {
  budget.spendCount(images.size());
  for (const PlistValue& element : images) {
    const auto image = element.data() ? NSImage::imageWithData(*element.data()) : std::nullopt;
    if (!image) continue;
    budget.spendPixels(image->size());
    if (!StoredDocuments::addImage(&owner, ZYMRecipes::thumbnailFromImage(*image),
                                   ZYMRecipes::sizedLargeImageFromImage(*image))) {
      throw NSException(NSInternalInconsistencyException, "a picture can't be written");
    }
  }
}

void addBatch(PlistDictionary batch, ZYMRecipeEntity& recipe, PictureBudget& budget) {
  batch.set(keys::UUID, uuid());
  const PlistArray images = take(batch, keys::Images);
  ZYMFileImportOperation::checkProfileForRecipeOrBatch_isBatch(batch, true);
  ZYMDocumentEntity& entity = storedBatches.insert(batch);
  recipe.addBatchesObject(entity);
  addImages(images, entity, budget);
}

// Whether a save has brought the recipe to the store, whatever observers of the save did then.
bool isStored(const ZYMRecipeEntity& recipe) {
  return !recipe.objectID().isTemporaryID();
}

NSUndoManager& undoManager() {
  return *mainContext().undoManager();
}

// The group is the one that the first change of this turn opened.
void closeUndoGroup() {
  if (undoManager().groupingLevel() == 0) return;
  undoManager().setActionName(Localized_String("Import Recipe"));
  undoManager().endUndoGrouping();
}

// Nothing is left to undo of what was done since.
void takeBack(ZYMRecipeEntity* recipe, std::uint64_t earlier) {
  if (recipe) StoredDocuments::withdraw(*recipe);
  undoManager().removeActionsSince(earlier);
}

void post(const char* name, const ZYMFileImportOperation& operation) {
  PlistDictionary userInfo;
  if (operation.url()) userInfo.set(ZYMImportOperationURLKey, *operation.url());
  NSNotificationCenter::defaultCenter().postNotificationName_object_userInfo(name, &operation,
                                                                             std::move(userInfo));
}

}  // namespace

void ZYMFileImportOperation::main() {
  if (isCancelled()) return;
  if (!NSRunLoop::isMainThread()) {
    NSRunLoop::mainRunLoop().performOnMainThreadAndWait([this] { main(); });
    return;
  }
  if (importFile()) {
    post(ZYMImportOperationSucceededNotification, *this);
  } else {
    postFailedNotification();
  }
}

void ZYMFileImportOperation::postFailedNotification() {
  NSRunLoop::mainRunLoop().performOnMainThreadAndWait(
      [this] { post(ZYMImportOperationFailedNotification, *this); });
}

const PlistDictionary& ZYMFileImportOperation::emptyRecipe() {
  if (!emptyRecipe_) emptyRecipe_ = ZYMRecipes::sharedInstance().emptyRecipe();
  return *emptyRecipe_;
}

std::optional<PlistDictionary> ZYMFileImportOperation::recipeInFile() {
  const auto refuse = [this](std::string reason) -> Recipe {
    failureReason_ = std::move(reason);
    return std::nullopt;
  };
  if (!url_) return refuse("there is no file");
  const std::string extension = pathExtension(*url_);
  const auto* format = std::ranges::find(formats, extension, &Format::extension);
  if (format == std::end(formats)) {
    return refuse("\"" + extension + "\" is no extension of a file of recipes");
  }
  NSError error;
  const auto bytes = NSFileManager::contentsAtPath(*url_, mostBytes, &error);
  if (!bytes) return refuse(error.localizedFailureReason);
  if (!format->read) return refuse("files of this kind can't be read yet");
  try {
    Recipe recipe = format->read(*this, *bytes, error);
    return recipe ? std::move(recipe) : refuse(error.localizedDescription);
  } catch (const NSException& exception) {
    return refuse(exception.reason());
  }
}

bool ZYMFileImportOperation::importFile() {
  try {
    Recipe recipe;
    // The libraries are read as they stand at one moment.
    mainContext().performBlockAndWait([&] { recipe = recipeInFile(); });
    if (recipe) insert(std::move(*recipe));
  } catch (const std::exception& fault) {
    failureReason_ = fault.what();
  }
  return uuidOfRecipe_.has_value();
}

void ZYMFileImportOperation::insert(PlistDictionary recipe) {
  recipe.remove(keys::UUID);
  const PlistArray batches = take(recipe, keys::Batches);
  const PlistArray images = take(recipe, keys::Images);
  PlistDictionary document = emptyRecipe();
  for (const PlistEntry& entry : recipe) document.set(entry.key, entry.value);
  checkProfileForRecipeOrBatch_isBatch(document, false);
  if (prepareRecipe_) prepareRecipe_(document);

  const std::uint64_t earlier = undoManager().latestAction();
  ZYMRecipeEntity* entity = nullptr;
  try {
    entity = &static_cast<ZYMRecipeEntity&>(storedRecipes.insert(document));
    PictureBudget budget;
    addImages(images, *entity, budget);
    for (const PlistDictionary& batch : PlistRows(&batches)) addBatch(batch, *entity, budget);
    ZYMCoreDataModel::sharedInstance().save();
  } catch (...) {
    if (!entity || !isStored(*entity)) {
      takeBack(entity, earlier);
      throw;
    }
  }
  if (!isStored(*entity)) {
    failureReason_ = "the store can't be written";
    takeBack(entity, earlier);
    return;
  }
  closeUndoGroup();
  uuidOfRecipe_ = document.stringValue(keys::UUID);
}

}  // namespace zym
