#include "zymcore/store/entities/ZYMDocumentEntity.h"

#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/platform/formats/BinaryPropertyList.h"
#include "zymcore/platform/objects/NSSortDescriptor.h"
#include "zymcore/platform/values/NSError.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/store/entities/EntityKeys.h"

namespace zym {

std::optional<PlistDictionary> ZYMDocumentEntity::dictionaryRepresentation() {
  NSError error;
  const std::optional<NSData> data = documentForKey(attributes::data, &error);
  if (!data && !error.domain.empty()) {
    throw NSException(NSInvalidArgumentException, error.localizedDescription);
  }
  if (!data || data->length() == 0) return std::nullopt;

  std::optional<PlistValue> tree = BinaryPropertyList::read(data->view(), &error);
  PlistDictionary* document = tree ? tree->editDictionary() : nullptr;
  if (!document) {
    throw NSException(
        NSInvalidArgumentException,
        "the document of " + uuid().value_or("an object without uuid") +
            " can't be read: " + (tree ? "it is no dictionary" : error.localizedDescription));
  }
  writeFields(*document, {});
  return std::move(*document);
}

void ZYMDocumentEntity::updateWithDictionaryRepresentation_usingContext(
    PlistDictionary& record, NSManagedObjectContext& /*context*/) {
  correctForSerialization(record);
  // First, so that a document that can't be stored changes nothing.
  NSError error;
  std::optional<std::string> data = BinaryPropertyList::write(record, &error);
  if (!data) throw NSException(NSInvalidArgumentException, error.localizedDescription);
  readFields(record);
  setDocument_forKey(NSData(std::move(*data)), attributes::data);
}

void ZYMDocumentEntity::addImagesObject(NSManagedObject& image) {
  addImages({&image});
}

void ZYMDocumentEntity::addImages(const std::vector<NSManagedObject*>& images) {
  std::int64_t next = std::ssize(objectsForKey(relationships::images));
  for (NSManagedObject* image : images) {
    image->setValue_forKey(next++, attributes::index);
    addObject_forKey(*image, relationships::images);
  }
}

void ZYMDocumentEntity::removeImagesObject(NSManagedObject& image) {
  removeImages({&image});
}

void ZYMDocumentEntity::removeImages(const std::vector<NSManagedObject*>& images) {
  for (NSManagedObject* image : images) removeObject_forKey(*image, relationships::images);
  giveImagesIndex();
}

void ZYMDocumentEntity::giveImagesIndex() {
  std::vector<NSManagedObject*> images = objectsForKey(relationships::images);
  NSSortDescriptor::sort(images, {NSSortDescriptor(attributes::index, true)});
  for (std::size_t i = 0; i < images.size(); ++i) {
    images[i]->setValue_forKey(i, attributes::index);
  }
}

}  // namespace zym
