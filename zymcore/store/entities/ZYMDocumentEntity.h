#pragma once

#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

/// A recipe or a batch: a document in one piece, a few of whose keys are attributes as well, and
/// images in an order.
///
/// An attribute always wins over the same key in the document. Lists need only the attributes and
/// never read the document.
class ZYMDocumentEntity : public ZYMRecordEntity {
 public:
  using ZYMRecordEntity::ZYMRecordEntity;

  /// Absent without a document. Throws `NSInvalidArgumentException` for one that can't be read.
  [[nodiscard]] std::optional<PlistDictionary> dictionaryRepresentation() override;
  void updateWithDictionaryRepresentation_usingContext(PlistDictionary& record,
                                                       NSManagedObjectContext& context) override;

  /// New images come last; what is left after a removal is numbered anew from 0.
  void addImagesObject(NSManagedObject& image);
  void addImages(const std::vector<NSManagedObject*>& images);
  void removeImagesObject(NSManagedObject& image);
  void removeImages(const std::vector<NSManagedObject*>& images);
  void giveImagesIndex();
};

}  // namespace zym
