#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/text/NSCalendar.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/SummaryRows.h"
#include "zymcore/store/entities/ZYMRecipeBatchEntity.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"

namespace zym {
namespace {

constexpr double secondsOfADay = 24 * 60 * 60;

NSDate daysAgo(int days) {
  return NSDate::dateWithTimeIntervalSinceNow(-days * secondsOfADay);
}

NSPredicate brewedAfter(NSDate date) {
  return NSPredicate::comparison(attributes::dateBrewed, NSPredicate::Operator::GreaterThan, date);
}
NSSortDescriptor newestFirst() {
  return NSSortDescriptor(attributes::dateBrewed, false);
}

}  // namespace

std::optional<std::vector<ZYMSummary>> ZYMRecipes::batchSummariesForRecipeWithUUID(
    UUID recipeUUID) const {
  const ZYMRecipeEntity* recipe = ZYMRecipeEntity::onlyObjectWithUUID(nullptr, recipeUUID);
  if (!recipe) return std::nullopt;
  std::vector<NSManagedObject*> batches = recipe->objectsForKey(relationships::batches);
  NSSortDescriptor::sort(batches, {NSSortDescriptor(attributes::dateBrewed, true)});
  return summariesOf(batches);
}

PlistArray ZYMRecipes::batchesNewestFirstSinceDate(NSDate date) const {
  const ZYMEntityFetch::Objects batches =
      ZYMEntityFetch::findAllObjectsInContext_predicate_sortDescriptor(
          ZYMRecipeBatchEntity::entityName, nullptr, brewedAfter(date), newestFirst());
  return batches ? dictionaryRepresentationOfEntityArray(*batches) : PlistArray();
}

std::vector<ZYMSummary> ZYMRecipes::batchSummariesNewestFirstSinceDate(NSDate date) const {
  NSFetchRequest request =
      NSFetchRequest::fetchRequestWithEntityName(ZYMRecipeBatchEntity::entityName);
  request.setPredicate(brewedAfter(date));
  request.setSortDescriptors({newestFirst()});
  return summariesForFetchRequest(request, std::nullopt, nullptr);
}

std::vector<ZYMSummary> ZYMRecipes::allBatchSummariesNewestFirst() const {
  return batchSummariesNewestFirstSinceDate(NSDate::distantPast());
}

std::vector<ZYMSummary> ZYMRecipes::batchSummariesNewestFirstSinceYearStart() const {
  const NSCalendar calendar = NSCalendar::currentCalendar();
  return batchSummariesNewestFirstSinceDate(
      calendar.dateFromComponents(calendar.componentsFromDate(NSDate::date())));
}

std::vector<ZYMSummary> ZYMRecipes::batchSummariesNewestFirstLast3Months() const {
  return batchSummariesNewestFirstSinceDate(daysAgo(93));
}

std::vector<ZYMSummary> ZYMRecipes::batchSummariesNewestFirstLast6Months() const {
  return batchSummariesNewestFirstSinceDate(daysAgo(186));
}

std::vector<ZYMSummary> ZYMRecipes::batchSummariesNewestFirstLast12Months() const {
  return batchSummariesNewestFirstSinceDate(daysAgo(365));
}

std::vector<ZYMSummary> ZYMRecipes::batchSummariesNewestFirstLast24Months() const {
  return batchSummariesNewestFirstSinceDate(daysAgo(730));
}

}  // namespace zym
