#pragma once

#include "zymcore/store/RecordForm.h"
#include "zymcore/store/entities/ZYMEntity.h"
#include "zymcore/store/entities/ZYMEntityDictionarySupport.h"

namespace zym {

/// An object of the store with a record, both ways by the form of its entity.
class ZYMRecordEntity : public ZYMEntity, public ZYMEntityDictionarySupport {
 public:
  using ZYMEntity::ZYMEntity;

  [[nodiscard]] std::optional<PlistDictionary> dictionaryRepresentation() override;
  void updateWithDictionaryRepresentation_usingContext(PlistDictionary& record,
                                                       NSManagedObjectContext& context) override;

 protected:
  [[nodiscard]] virtual const RecordForm& form() const = 0;
  /// Completes a record that was corrected and is to be read.
  virtual void completeRecord(PlistDictionary& record);

  void writeFields(PlistDictionary& record);
  void readFields(const PlistDictionary& record);

 private:
  void writeChildren(PlistDictionary& record);
  void readChildren(PlistDictionary& record, NSManagedObjectContext& context);
};

}  // namespace zym
