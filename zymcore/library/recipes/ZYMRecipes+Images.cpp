#include "zymcore/library/recipes/StoredDocuments.h"
#include "zymcore/library/recipes/ZYMImageUtils.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/graphics/CGBitmapContext.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/objects/NSSortDescriptor.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/ZYMUndoGroup.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMDocumentEntity.h"
#include "zymcore/store/entities/ZYMImageEntity.h"

namespace zym {
namespace {

constexpr double thumbnailLimit = 128.0;
constexpr double largeLimit = 600.0;
constexpr std::string_view thumbnailSuffix = "-thumbnail";
constexpr std::string_view largeSuffix = "-large";
// Far above any that is written here.
constexpr std::size_t mostBytes = 64 << 20;

NSImage sized(const NSImage& image, double limit) {
  const NSSize size = image.size();
  const double aspect = size.width / size.height;
  if ((aspect > 1.0 ? size.width : size.height) <= limit) return image;
  const NSSize smaller =
      aspect > 1.0 ? NSSize{limit, limit / aspect} : NSSize{aspect * limit, limit};
  return resizedImageToSize_interpolationQuality(image, smaller, kCGInterpolationMedium)
      .value_or(image);
}

// The uuid of a record that came from elsewhere must lead to nothing outside the folder.
std::optional<std::string> imagePath(std::string_view uuid, std::string_view suffix) {
  using namespace std::string_view_literals;
  if (uuid.empty() || uuid.find_first_of("/\0"sv) != std::string_view::npos) return std::nullopt;
  return ZYMCoreDataModel::sharedInstance().imagesFolderPath() + "/" + std::string(uuid) +
         std::string(suffix);
}

// A link isn't followed: it is no file of this folder.
std::optional<NSData> contents(const std::optional<std::string>& path) {
  if (!path || !NSFileManager::isRegularFileAtPath(*path)) return std::nullopt;
  auto bytes = NSFileManager::contentsAtPath(*path, mostBytes);
  return bytes ? std::optional(NSData(std::move(*bytes))) : std::nullopt;
}

std::optional<NSImage> imageOf(const std::optional<NSData>& data) {
  return data ? NSImage::imageWithData(*data) : std::nullopt;
}

std::string uuidOf(const ZYMImageEntity& image) {
  return image.uuid().value_or("");
}

bool hasBothFiles(const ZYMImageEntity& image) {
  const std::string uuid = uuidOf(image);
  for (const std::string_view suffix : {largeSuffix, thumbnailSuffix}) {
    const auto path = imagePath(uuid, suffix);
    if (!path || !NSFileManager::isRegularFileAtPath(*path)) return false;
  }
  return true;
}

void removeFilesAndRecord(ZYMImageEntity& image) {
  const std::string uuid = uuidOf(image);
  for (const std::string_view suffix : {largeSuffix, thumbnailSuffix}) {
    if (const auto path = imagePath(uuid, suffix)) NSFileManager::removeItemAtPath(*path);
  }
  image.managedObjectContext().deleteObject(image);
}

void removeInUndoGroup(ZYMRecipes& recipes, ZYMImageEntity& image) {
  ZYMUndoGroup group;
  recipes.removeImageEntity(image);
  group.closeAndSave("Remove Image");
}

}  // namespace

NSImage ZYMRecipes::thumbnailFromImage(const NSImage& image) {
  return sized(image, thumbnailLimit);
}

NSImage ZYMRecipes::sizedLargeImageFromImage(const NSImage& image) {
  return sized(image, largeLimit);
}

std::optional<NSData> ZYMRecipes::dataFromImage(const NSImage& image) {
  const CGImage& picture = image.image();
  auto context = CGBitmapContext::create(picture.width(), picture.height(), true);
  if (context) {
    context->drawImage({{0, 0}, image.size()}, picture);
    if (auto data = context->createImage().PNGRepresentation()) return data;
  }
  NSLog("Error");
  return std::nullopt;
}

std::optional<std::string> ZYMRecipes::pathForLargeImageWithUUID(std::string_view uuid) const {
  return imagePath(uuid, largeSuffix);
}

std::optional<std::string> ZYMRecipes::pathForThumbnailImageWithUUID(std::string_view uuid) const {
  return imagePath(uuid, thumbnailSuffix);
}

std::optional<NSData> ZYMRecipes::dataForLargeImageWithUUID(std::string_view uuid) const {
  return contents(pathForLargeImageWithUUID(uuid));
}

std::optional<NSData> ZYMRecipes::dataForThumbnailImageWithUUID(std::string_view uuid) const {
  return contents(pathForThumbnailImageWithUUID(uuid));
}

std::optional<NSImage> ZYMRecipes::largeImageWithUUID(std::string_view uuid) const {
  return imageOf(dataForLargeImageWithUUID(uuid));
}

std::optional<NSImage> ZYMRecipes::thumbnailImageWithUUID(std::string_view uuid) const {
  return imageOf(dataForThumbnailImageWithUUID(uuid));
}

std::vector<ZYMImageEntity*> ZYMRecipes::processImageEntitiesRemovingMissing(
    const std::vector<ZYMImageEntity*>& images) {
  std::vector<ZYMImageEntity*> sound;
  for (ZYMImageEntity* image : images) {
    if (hasBothFiles(*image)) {
      sound.push_back(image);
    } else {
      removeFilesAndRecord(*image);
    }
  }
  return sound;
}

std::vector<ZYMImageEntity*> ZYMRecipes::orderedImageEntitiesForItemWithUUID(UUID uuid) {
  const ZYMDocumentEntity* owner = documentWithUUID(uuid);
  if (!owner) return {};
  std::vector<NSManagedObject*> objects = owner->objectsForKey(relationships::images);
  NSSortDescriptor::sort(objects, {NSSortDescriptor(attributes::index, true)});
  std::vector<ZYMImageEntity*> images;
  images.reserve(objects.size());
  for (NSManagedObject* object : objects) images.push_back(static_cast<ZYMImageEntity*>(object));
  return processImageEntitiesRemovingMissing(images);
}

PlistArray ZYMRecipes::orderedImageDataForItemWithUUID(UUID uuid) {
  PlistArray data;
  for (const ZYMImageEntity* image : orderedImageEntitiesForItemWithUUID(uuid)) {
    if (auto bytes = dataForLargeImageWithUUID(uuidOf(*image))) data.append(std::move(*bytes));
  }
  return data;
}

std::vector<std::string> ZYMRecipes::imageUUIDsForItemWithUUID(UUID uuid) {
  std::vector<std::string> uuids;
  for (const ZYMImageEntity* image : orderedImageEntitiesForItemWithUUID(uuid)) {
    uuids.push_back(uuidOf(*image));
  }
  return uuids;
}

std::optional<NSImage> ZYMRecipes::largeImageAtIndex_forItemWithUUID(std::size_t index, UUID uuid) {
  const std::vector<ZYMImageEntity*> images = orderedImageEntitiesForItemWithUUID(uuid);
  return index < images.size() ? largeImageWithUUID(uuidOf(*images[index])) : std::nullopt;
}

bool ZYMRecipes::addThumbnailImage_withLargeImage_toItemWithUUID(const NSImage& thumbnail,
                                                                 const NSImage& large, UUID uuid) {
  ZYMUndoGroup group;
  (void)StoredDocuments::addImage(documentWithUUID(uuid), thumbnail, large);
  group.closeAndSave("Add Image");
  return true;
}

void ZYMRecipes::removeImageEntity(ZYMImageEntity& image) {
  for (const KeyName relationship : {relationships::recipe, relationships::recipeBatch}) {
    auto* owner = static_cast<ZYMDocumentEntity*>(image.objectForKey(relationship));
    if (!owner) continue;
    owner->removeImagesObject(image);
    owner->setDateLastModified(NSDate::date());
  }
  removeFilesAndRecord(image);
}

bool ZYMRecipes::removeImageAtIndex_fromItemWithUUID(std::size_t index, UUID uuid) {
  const std::vector<ZYMImageEntity*> images = orderedImageEntitiesForItemWithUUID(uuid);
  if (index >= images.size()) return false;
  removeInUndoGroup(*this, *images[index]);
  return true;
}

bool ZYMRecipes::removeImageWithUUID(UUID uuid) {
  ZYMImageEntity* image = ZYMImageEntity::onlyObjectWithUUID(nullptr, uuid);
  if (!image) return false;
  removeInUndoGroup(*this, *image);
  return true;
}

}  // namespace zym
