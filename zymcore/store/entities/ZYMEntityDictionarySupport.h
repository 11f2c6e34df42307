#pragma once

#include <optional>

#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {

class NSManagedObjectContext;

/// What turns itself into a record and takes its state back from one. Records are what the
/// interface, the file formats and the sync exchange; objects of the store never leave it. Main
/// thread.
class ZYMEntityDictionarySupport {
 public:
  virtual ~ZYMEntityDictionarySupport() = default;

  /// A fresh record of this object. Absent for a recipe or batch without a document. Throws for a
  /// document that is damaged.
  [[nodiscard]] virtual std::optional<PlistDictionary> dictionaryRepresentation() = 0;

  /// Takes the state of the record, which is corrected for storage (`correctForSerialization`) and
  /// completed in place. Child objects are found, or made, in the main context.
  void updateWithDictionaryRepresentation(PlistDictionary& record);
  /// The same with another context for the child objects.
  virtual void updateWithDictionaryRepresentation_usingContext(PlistDictionary& record,
                                                               NSManagedObjectContext& context) = 0;
};

}  // namespace zym
