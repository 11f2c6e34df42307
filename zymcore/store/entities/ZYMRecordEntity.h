#pragma once

#include "zymcore/platform/values/PlistDictionary.h"
#include "zymcore/store/RecordForm.h"
#include "zymcore/store/entities/ZYMEntity.h"

namespace zym {

class NSManagedObjectContext;

/// An object of the store that turns itself into a record and takes its state back from one, both
/// by the form of its entity. Records are what the interface, the file formats and the sync
/// exchange; objects of the store never leave it. Main thread.
class ZYMRecordEntity : public ZYMEntity {
 public:
  using ZYMEntity::ZYMEntity;

  /// A fresh record of this object. Absent for a recipe or batch without a document. Throws for a
  /// document that is damaged.
  [[nodiscard]] virtual std::optional<PlistDictionary> dictionaryRepresentation();
  /// The same, with what is known already under some of its keys, which then isn't worked out.
  [[nodiscard]] PlistDictionary dictionaryRepresentationKnowing(const PlistDictionary& known);
  /// What the record has under the key of an attribute, without the rest of it.
  [[nodiscard]] std::optional<PlistValue> valueInRecord(KeyName key);

  /// Takes the state of the record, which is corrected for storage (`correctForSerialization`) and
  /// completed in place. Child objects are found, or made, in the main context.
  void updateWithDictionaryRepresentation(PlistDictionary& record);
  /// The same with another context for the child objects.
  virtual void updateWithDictionaryRepresentation_usingContext(PlistDictionary& record,
                                                               NSManagedObjectContext& context);

 protected:
  [[nodiscard]] virtual const RecordForm& form() const = 0;
  /// Completes a record that was corrected and is to be read.
  virtual void completeRecord(PlistDictionary& record);

  void writeFields(PlistDictionary& record, const PlistDictionary& known);
  void readFields(const PlistDictionary& record);

 private:
  void writeChildren(PlistDictionary& record);
  void readChildren(PlistDictionary& record, NSManagedObjectContext& context);
};

}  // namespace zym
