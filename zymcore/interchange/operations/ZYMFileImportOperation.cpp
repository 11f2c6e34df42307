#include "zymcore/interchange/operations/ZYMFileImportOperation.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/SafeJSON.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/interchange/ZYMFileImporterProtocol.h"
#include "zymcore/interchange/beerxml/ZYMBeerXML.h"
#include "zymcore/interchange/native/ZYMIngFile.h"
#include "zymcore/interchange/native/ZYMWortmeisterWMRFile.h"
#include "zymcore/interchange/rec/ZYMRecFile.h"
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
constexpr const char* storeFailure = "the store can't be written";

using Recipe = std::optional<PlistDictionary>;

// A format of another program, to be matched with the libraries.
template <ZYMRecipeFormat Format>
Recipe readOther(ZYMFileImportOperation& operation, const std::string& bytes, NSError& error) {
  const Recipe parsed = Format::parseFileData(NSData(bytes), &error);
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

// A format of ours, whose recipe comes as it is.
template <ZYMFileImporterProtocol Format>
Recipe readOwn(ZYMFileImportOperation& /*operation*/, const std::string& bytes, NSError& error) {
  return Format::parseFileData(NSData(bytes), &error);
}

struct Format {
  std::string_view extension;
  Recipe (*read)(ZYMFileImportOperation& operation, const std::string& bytes, NSError& error);
  /// What is read is no recipe, but a package of ingredients.
  bool isPackage = false;
};
constexpr Format formats[] = {
    {"xml", readOther<ZYMBeerXML>},
    {"rec", readOther<ZYMRecFile>},
    {"ing", readOwn<ZYMIngFile>, true},
    {"wmr", readOwn<ZYMWortmeisterWMRFile>},
    {"wm2", readWM2},
};

std::string pathExtension(const std::string& path) {
  const std::string extension = std::filesystem::path(path).extension().string();
  return extension.empty() ? "" : extension.substr(1);
}

const Format* formatOf(const std::string& path) {
  const auto* format = std::ranges::find(formats, pathExtension(path), &Format::extension);
  return format == std::end(formats) ? nullptr : format;
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
  importFile();
  if (failureReason_) {
    postFailedNotification();
  } else {
    post(ZYMImportOperationSucceededNotification, *this);
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
  return contentsOfFile(false);
}

std::optional<PlistDictionary> ZYMFileImportOperation::packageInFile() {
  return contentsOfFile(true);
}

std::optional<PlistDictionary> ZYMFileImportOperation::contentsOfFile(bool isPackage) {
  const auto refuse = [this](std::string reason) -> Recipe {
    failureReason_ = std::move(reason);
    return std::nullopt;
  };
  if (!url_) return refuse("there is no file");
  const std::string extension = pathExtension(*url_);
  const Format* format = formatOf(*url_);
  if (!format) return refuse("\"" + extension + "\" is no extension of a file of recipes");
  if (format->isPackage != isPackage) {
    return refuse(isPackage ? "a recipe, and no ingredients" : "ingredients, and no recipe");
  }
  NSError error;
  const auto bytes = NSFileManager::contentsAtPath(*url_, mostBytes, &error);
  if (!bytes) return refuse(error.localizedFailureReason);
  try {
    Recipe contents = format->read(*this, *bytes, error);
    return contents ? std::move(contents) : refuse(error.localizedDescription);
  } catch (const NSException& exception) {
    return refuse(exception.reason());
  }
}

void ZYMFileImportOperation::importFile() {
  try {
    const Format* format = url_ ? formatOf(*url_) : nullptr;
    if (format && format->isPackage) {
      if (const auto package = packageInFile()) install(*package);
      return;
    }
    Recipe recipe;
    // The libraries are read as they stand at one moment.
    mainContext().performBlockAndWait([&] { recipe = recipeInFile(); });
    if (recipe) insert(std::move(*recipe));
  } catch (const std::exception& fault) {
    failureReason_ = fault.what();
  }
}

void ZYMFileImportOperation::install(const PlistDictionary& package) {
  ingredientCount_ = ZYMIngFile::installIngredients(package);
  if (mainContext().hasChanges()) failureReason_ = storeFailure;
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
    failureReason_ = storeFailure;
    takeBack(entity, earlier);
    return;
  }
  closeUndoGroup();
  uuidOfRecipe_ = document.stringValue(keys::UUID);
}

}  // namespace zym
