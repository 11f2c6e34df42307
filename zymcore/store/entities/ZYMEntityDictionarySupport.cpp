#include "zymcore/store/entities/ZYMEntityDictionarySupport.h"

#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym {

void ZYMEntityDictionarySupport::updateWithDictionaryRepresentation(PlistDictionary& record) {
  updateWithDictionaryRepresentation_usingContext(
      record, *ZYMCoreDataModel::sharedInstance().mainObjectContext());
}

}  // namespace zym
