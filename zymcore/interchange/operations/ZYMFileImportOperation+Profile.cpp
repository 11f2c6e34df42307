#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/interchange/operations/ZYMFileImportOperation.h"
#include "zymcore/library/ZYMProfiles.h"

namespace zym {
namespace {

struct BatchValue {
  KeyName inBatch;
  KeyName inProfile;
};
constexpr BatchValue batchValues[] = {
    {keys::SpargeMethod, keys::PreferredSpargeMethod},
    {keys::WaterGrainRatio, keys::WaterGrainRatio},
    {keys::MTThermalMass, keys::MTThermalMass},
};

bool isKnownHere(const PlistDictionary& profile) {
  const std::string* uuid = profile.string(keys::UUID);
  const auto known = uuid ? ZYMProfiles::sharedInstance().itemWithUUID(*uuid) : std::nullopt;
  return known && ZYMProfiles::isProfile_similarToProfile(*known, profile);
}

bool isSpecific(const PlistDictionary& profile) {
  const std::string* uuid = profile.string(keys::UUID);
  return uuid && uuid->empty();
}

}  // namespace

void ZYMFileImportOperation::checkProfileForRecipeOrBatch_isBatch(PlistDictionary& document,
                                                                  bool isBatch) {
  const PlistDictionary* recipe = isBatch ? document.dictionary(keys::ModifiedRecipe) : &document;
  if (!recipe) return;
  const PlistDictionary* profile = recipe->dictionary(keys::Profile);
  if (profile && (isSpecific(*profile) || isKnownHere(*profile))) return;
  createNewSpecificProfileForRecipeOrBatch_isBatch(document, isBatch);
}

void ZYMFileImportOperation::createNewSpecificProfileForRecipeOrBatch_isBatch(
    PlistDictionary& document, bool isBatch) {
  PlistDictionary* recipe = isBatch ? document.editDictionary(keys::ModifiedRecipe) : &document;
  if (!recipe) return;
  PlistDictionary profile = ZYMProfiles::tempProfile();
  profile.set(keys::UUID, "");
  profile.set(keys::ProfileName, "Specific to this recipe");
  ZYMProfiles::updateProfile_withRecipe(profile, *recipe);
  for (const BatchValue& value : batchValues) {
    const PlistValue* found = isBatch ? document.find(value.inBatch) : nullptr;
    if (found) profile.set(value.inProfile, *found);
  }
  recipe->set(keys::Profile, std::move(profile));
}

}  // namespace zym
