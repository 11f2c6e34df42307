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

struct SizedImage {
  NSImage thumbnail;
  NSImage large;
};

/// A recipe or a batch that waits to be stored.
struct Incoming {
  PlistDictionary document;
  std::vector<SizedImage> images;
};

PlistArray take(PlistDictionary& document, KeyName key) {
  const PlistArray* found = document.array(key);
  PlistArray taken = found ? *found : PlistArray();
  document.remove(key);
  return taken;
}

std::vector<SizedImage> takeImages(PlistDictionary& document) {
  std::vector<SizedImage> sized;
  for (const PlistValue& element : take(document, keys::Images)) {
    const auto image = element.data() ? NSImage::imageWithData(*element.data()) : std::nullopt;
    if (!image) continue;
    sized.push_back(
        {ZYMRecipes::thumbnailFromImage(*image), ZYMRecipes::sizedLargeImageFromImage(*image)});
  }
  return sized;
}

Incoming recipeFrom(PlistDictionary recipe) {
  recipe.remove(keys::UUID);
  std::vector<SizedImage> images = takeImages(recipe);
  PlistDictionary document = ZYMRecipes::sharedInstance().emptyRecipe();
  for (const PlistEntry& entry : recipe) document.set(entry.key, entry.value);
  ZYMFileImportOperation::checkProfileForRecipeOrBatch_isBatch(document, false);
  return {std::move(document), std::move(images)};
}

Incoming batchFrom(PlistDictionary batch) {
  batch.set(keys::UUID, uuid());
  std::vector<SizedImage> images = takeImages(batch);
  ZYMFileImportOperation::checkProfileForRecipeOrBatch_isBatch(batch, true);
  return {std::move(batch), std::move(images)};
}

void insert(Incoming& recipe, std::vector<Incoming>& batches) {
  auto& entity = static_cast<ZYMRecipeEntity&>(storedRecipes.insert(recipe.document));
  try {
    for (Incoming& batch : batches) {
      entity.addBatchesObject(storedBatches.insert(batch.document));
    }
  } catch (...) {
    entity.managedObjectContext().deleteObject(entity);
    throw;
  }
}

void addImages(const Incoming& item) {
  for (const SizedImage& image : item.images) {
    ZYMRecipes::sharedInstance().addThumbnailImage_withLargeImage_toItemWithUUID(
        image.thumbnail, image.large, item.document.stringValue(keys::UUID));
  }
}

// The group is the one that the first change of this turn opened.
void closeUndoGroup() {
  NSUndoManager* undoManager =
      ZYMCoreDataModel::sharedInstance().mainObjectContext()->undoManager();
  if (!undoManager || undoManager->groupingLevel() == 0) return;
  undoManager->setActionName(Localized_String("Import Recipe", "ZYMFileImportOperation.main"));
  undoManager->endUndoGrouping();
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

std::optional<PlistDictionary> ZYMFileImportOperation::recipeInFile() {
  const auto refuse = [this](std::string reason) -> Recipe {
    failureReason_ = std::move(reason);
    return std::nullopt;
  };
  if (!url_) return refuse("there is no file");
  const std::string extension = pathExtension(*url_);
  const auto* format = std::ranges::find(formats, extension, &Format::extension);
  if (format == std::end(formats)) {
    return refuse(*url_ + ": \"" + extension + "\" is no extension of a file of recipes");
  }
  NSError error;
  const auto bytes = NSFileManager::contentsAtPath(*url_, mostBytes, &error);
  if (!bytes) return refuse(error.localizedDescription);
  if (!format->read) return refuse(*url_ + ": files of this kind can't be read yet");
  try {
    Recipe recipe = format->read(*this, *bytes, error);
    return recipe ? std::move(recipe) : refuse(*url_ + ": " + error.localizedDescription);
  } catch (const NSException& exception) {
    return refuse(*url_ + ": " + exception.reason());
  }
}

// All that can fail comes before the first change.
bool ZYMFileImportOperation::importFile() {
  Incoming recipe;
  std::vector<Incoming> batches;
  try {
    Recipe read = recipeInFile();
    if (!read) return false;
    const PlistArray records = take(*read, keys::Batches);
    recipe = recipeFrom(std::move(*read));
    for (const PlistDictionary& record : PlistRows(&records)) batches.push_back(batchFrom(record));
    insert(recipe, batches);
  } catch (const NSException& exception) {
    failureReason_ = *url_ + ": " + exception.reason();
    return false;
  }
  ZYMCoreDataModel::sharedInstance().save();
  uuidOfRecipe_ = recipe.document.stringValue(keys::UUID);
  addImages(recipe);
  for (const Incoming& batch : batches) addImages(batch);
  closeUndoGroup();
  ZYMCoreDataModel::sharedInstance().save();
  return true;
}

}  // namespace zym
