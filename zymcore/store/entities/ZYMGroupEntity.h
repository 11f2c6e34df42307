#pragma once

#include "zymcore/documents/ZYMSummary.h"
#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

/// A group of recipes. Its record lists their uuids. On reading, a uuid that doesn't name exactly
/// one recipe is passed over, so recipes must be there before their groups.
class ZYMGroupEntity final : public ZYMRecordEntity, public ZYMEntityFinders<ZYMGroupEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMGroupEntity";
  using ZYMRecordEntity::ZYMRecordEntity;

  [[nodiscard]] std::optional<PlistDictionary> dictionaryRepresentation() override;
  void updateWithDictionaryRepresentation_usingContext(PlistDictionary& record,
                                                       NSManagedObjectContext& context) override;

  /// Name, uuid and the number of recipes.
  [[nodiscard]] ZYMSummary summary() const;

  void addRecipesObject(NSManagedObject& recipe);
  void removeRecipesObject(NSManagedObject& recipe);
  void addRecipes(const std::vector<NSManagedObject*>& recipes);
  void removeRecipes(const std::vector<NSManagedObject*>& recipes);

 protected:
  [[nodiscard]] const RecordForm& form() const override;
};

}  // namespace zym
