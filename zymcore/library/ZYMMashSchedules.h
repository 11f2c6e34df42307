#pragma once

#include "zymcore/library/ZYMFlatLibrary.h"

namespace zym {

/// The mash schedules that the brewer knows: records with an array of steps. The first by name
/// stands for no choice.
class ZYMMashSchedules final : public ZYMFlatLibrary {
 public:
  [[nodiscard]] static ZYMMashSchedules& sharedInstance();

  void prepareNewItem(PlistDictionary& item) override;
  /// A copy whose steps are its own.
  std::optional<PlistDictionary> duplicateItemWithUUID(std::string_view uuid) override;

  /// Adds a rest at 60 degrees as the last step. Absent when there is no such schedule.
  std::optional<PlistDictionary> addNewStepToSchedule(const PlistDictionary& schedule);
  std::optional<PlistDictionary> addNewStepToMashScheduleWithUUID(std::string_view uuid);
  /// The steps in their order; absent when there is no such schedule.
  [[nodiscard]] std::optional<PlistArray> allStepsForMashScheduleWithUUID(
      std::string_view uuid) const;
  /// Replaces the steps: those of known "UUID" are changed, others added, the rest removed. Always
  /// an undo step and a new date. Without any step the old ones stay in the store, of no schedule.
  /// Null does nothing.
  void updateSteps_inMashScheduleWithUUID(const PlistArray* steps, std::string_view uuid);

  /// The first schedule by name; absent when there is none.
  [[nodiscard]] std::optional<PlistDictionary> noChosenSchedule();
  // These throw `NSRangeException` on an empty library.
  [[nodiscard]] PlistArray allItemsWithoutNoChosenScheduleOption();
  [[nodiscard]] std::vector<ZYMSummary> summariesforAllItemsWithoutNoChosenScheduleOption() const;

  /// The short form of a type of step, in the user's language, and back. An unknown text is its
  /// own.
  [[nodiscard]] static std::string abbreviateStepType(std::string_view stepType);
  [[nodiscard]] static std::string unabbreviateStepType(std::string_view text);

 private:
  ZYMMashSchedules();
};

}  // namespace zym
