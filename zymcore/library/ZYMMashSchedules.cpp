#include "zymcore/library/ZYMMashSchedules.h"

#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/ZYMUndoGroup.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMMashScheduleEntity.h"
#include "zymcore/store/entities/ZYMMashStepEntity.h"

namespace zym {
namespace {

constexpr ZYMFlatLibrary::Default defaults[] = {
    {keys::ScheduleName, "New Schedule", true},
    {keys::Version, "3"},
};

struct StepTypeForms {
  std::string_view full;
  std::string_view abbreviated;
};
constexpr StepTypeForms stepTypeForms[] = {
    {words::HeatToStrike, "Strike and dough in"},
    {words::RestAt, "Rest at"},
    {words::RaiseByInfusion, "Raise by infusion to"},
    {words::PullDecoction, "Decoct raise mash to"},
    {words::RaiseByDirectHeating, "Raise by heating to"},
    {words::MashOut, "Raise and mash out at"},
};

// Any number of schedules of one uuid will do; the first is taken.
ZYMMashScheduleEntity* firstScheduleWithUUID(std::string_view uuid) {
  const auto found = ZYMMashScheduleEntity::objectsMatchingKey_andValue_sortedOnKey(
      attributes::uuid, uuid, std::nullopt);
  return found && !found->empty() ? found->front() : nullptr;
}

}  // namespace

ZYMMashSchedules& ZYMMashSchedules::sharedInstance() {
  static auto* instance = new ZYMMashSchedules();
  return *instance;
}

ZYMMashSchedules::ZYMMashSchedules()
    : ZYMFlatLibrary(ZYMMashScheduleEntity::entityName, keys::ScheduleName, defaults) {}

void ZYMMashSchedules::prepareNewItem(PlistDictionary& item) {
  ZYMFlatLibrary::prepareNewItem(item);
  item.set(keys::Steps, PlistArray());
}

std::optional<PlistDictionary> ZYMMashSchedules::duplicateItemWithUUID(std::string_view uuid) {
  return duplicate_changing(uuid, [](PlistDictionary& copy) {
    for (PlistDictionary& step : copy.editRows(keys::Steps)) step.set(keys::UUID, zym::uuid());
  });
}

std::optional<PlistDictionary> ZYMMashSchedules::addNewStepToSchedule(
    const PlistDictionary& schedule) {
  return addNewStepToMashScheduleWithUUID(schedule.stringValue(keys::UUID));
}

std::optional<PlistDictionary> ZYMMashSchedules::addNewStepToMashScheduleWithUUID(
    std::string_view uuid) {
  ZYMMashScheduleEntity* schedule = firstScheduleWithUUID(uuid);
  if (!schedule) return std::nullopt;
  ZYMUndoGroup group;
  ZYMMashStepEntity& step = ZYMMashStepEntity::insertInContext(mainContext());
  PlistDictionary record{{keys::StepType, words::RestAt},
                         {keys::Duration, "0.000000"},
                         {keys::Temperature, "60.000000"},
                         {keys::UUID, zym::uuid()}};
  step.updateWithDictionaryRepresentation(record);
  step.setValue_forKey(std::ssize(schedule->objectsForKey(relationships::steps)),
                       attributes::index);
  schedule->addStepsObject(step);
  schedule->setDateLastModified(NSDate::date());
  group.closeAndSave("Add Step");
  return record;
}

std::optional<PlistArray> ZYMMashSchedules::allStepsForMashScheduleWithUUID(
    std::string_view uuid) const {
  const ZYMMashScheduleEntity* schedule = firstScheduleWithUUID(uuid);
  if (!schedule) return std::nullopt;
  return dictionaryRepresentationsSortedOnIndexKeyFromSet(
      schedule->objectsForKey(relationships::steps));
}

void ZYMMashSchedules::updateSteps_inMashScheduleWithUUID(const PlistArray* steps,
                                                          std::string_view uuid) {
  ZYMMashScheduleEntity* schedule = steps ? firstScheduleWithUUID(uuid) : nullptr;
  if (!schedule) return;
  PlistDictionary record = schedule->dictionaryRepresentation().value();
  record.set(keys::Steps, duplicate(*steps));
  ZYMUndoGroup group;
  schedule->updateWithDictionaryRepresentation(record);
  schedule->setDateLastModified(NSDate::date());
  group.closeAndSave("Edit Step");
}

std::optional<PlistDictionary> ZYMMashSchedules::noChosenSchedule() {
  const Objects schedules = objectsSortedOnName();
  if (schedules.empty()) return std::nullopt;
  return static_cast<ZYMMashScheduleEntity&>(*schedules.front()).dictionaryRepresentation();
}

PlistArray ZYMMashSchedules::allItemsWithoutNoChosenScheduleOption() {
  return allItemsWithoutFirst();
}

std::vector<ZYMSummary> ZYMMashSchedules::summariesforAllItemsWithoutNoChosenScheduleOption()
    const {
  return summariesWithoutFirst();
}

std::string ZYMMashSchedules::abbreviateStepType(std::string_view stepType) {
  for (const StepTypeForms& forms : stepTypeForms) {
    if (forms.full == stepType) return Localized_String(forms.abbreviated);
  }
  return std::string(stepType);
}

std::string ZYMMashSchedules::unabbreviateStepType(std::string_view text) {
  for (const StepTypeForms& forms : stepTypeForms) {
    if (Localized_String(forms.abbreviated) == text) {
      return std::string(forms.full);
    }
  }
  return std::string(text);
}

}  // namespace zym
