// A store of each version of the object model that was ever in use must open for ever.

#include <gtest/gtest.h>

#include "tests/support/Store.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMImageEntity.h"
#include "zymcore/store/entities/ZYMRecipeBatchEntity.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"

namespace zym {
namespace {

const NSDate day = NSDate::dateWithTimeIntervalSince1970(1e9 + 0.1234567);

PlistDictionary dated(PlistDictionary record, const char* uuid) {
  record.set(keys::UUID, uuid);
  record.set(keys::DateLastModified, day);
  return record;
}

/// A record of every kind, children with their parents and recipes before groups.
const std::vector<std::pair<const char*, PlistDictionary>> records = {
    {"ZYMFermentableEntity", dated({{keys::IsGrain, "1"},
                                    {keys::MustBeMashed, "0"},
                                    {keys::Color, "3.000000"},
                                    {keys::Moisture, "4.000000"},
                                    {keys::Extract, "79.000000"},
                                    {keys::Description, "b\xC3\xBCrnt"},
                                    {keys::Ingredient, "Pale Malt"}},
                                   "F")},
    {"ZYMHopEntity",
     dated({{keys::Alpha, "4.500000"}, {keys::Description, "earthy"}, {keys::Variety, "Fuggle"}},
           "H")},
    {"ZYMOtherIngredientEntity",
     dated({{keys::Description, ""}, {keys::Ingredient, "Irish Moss"}}, "O")},
    {"ZYMYeastEntity", dated({{keys::BeerType, "Lager"},
                              {keys::YeastType, "Dry"},
                              {keys::Attenuation, "74.000000"},
                              {keys::Description, "d"},
                              {keys::Name, "W-34/70"}},
                             "Y")},
    {"ZYMWaterEntity", dated({{keys::Name, "Burton"},
                              {keys::Calcium, "295.000000"},
                              {keys::Carbonate, "300.000000"},
                              {keys::Chloride, "25.000000"},
                              {keys::Magnesium, "45.000000"},
                              {keys::Sodium, "55.000000"},
                              {keys::Sulfate, "725.000000"},
                              {keys::Notes, "hard"}},
                             "W")},
    {"ZYMSupplierEntity", dated({{keys::Name, "Maltings"},
                                 {keys::Homepage, "h"},
                                 {keys::Email, "e"},
                                 {keys::Location, "l"},
                                 {keys::Phone, "p"}},
                                "S")},
    {"ZYMProfileEntity", dated({{keys::ProfileName, "Kitchen"},
                                {keys::PreBoilVolume, "1.000000"},
                                {keys::PostBoilVolume, "2.000000"},
                                {keys::VolumeToFermenter, "3.000000"},
                                {keys::VolumeWaterAdded, "4.000000"},
                                {keys::VolumeAtPitching, "5.000000"},
                                {keys::FinishedBatchVolume, "6.000000"},
                                {keys::PreferredRecipeType, "Extract"},
                                {keys::PreferredMashSchedule, "M"},
                                {keys::PreferredBaseWaterUUID, "W"},
                                {keys::PreferredTargetWaterUUID, "W"},
                                {keys::PreferredSpargeMethod, "Fly Sparge"},
                                {keys::MTThermalMass, "7.000000"},
                                {keys::WaterGrainRatio, "8.000000"},
                                {keys::ExtractEfficiency, "9.000000"},
                                {keys::BoilDuration, "90"}},
                               "P")},
    {"ZYMMashScheduleEntity",
     dated({{keys::ScheduleName, "Double"},
            {keys::Steps, PlistArray{PlistDictionary{{keys::StepType, "Rest at"},
                                                     {keys::UUID, "M2"},
                                                     {keys::Duration, "10"},
                                                     {keys::Temperature, "52"}},
                                     PlistDictionary{{keys::StepType, "Raise by infusion to"},
                                                     {keys::UUID, "M1"},
                                                     {keys::Duration, "60"},
                                                     {keys::Temperature, "66"}}}}},
           "M")},
    {"ZYMInventoryEntity",
     dated({{keys::Ingredient, "Fuggle"},
            {keys::AmountInStock, "300.000000"},
            {keys::IngredientType, "Hop"},
            {keys::Batches, PlistArray{PlistDictionary{{keys::IngredientType, "Hop"},
                                                       {keys::AmountInStock, "300"},
                                                       {keys::Cost, "1.5"},
                                                       {keys::BatchName, "2023"},
                                                       {keys::UUID, "I1"},
                                                       {keys::DeliveredOn, day},
                                                       {keys::ExpiresOn, day},
                                                       {keys::Extract, "x"},
                                                       {keys::Color, "c"},
                                                       {keys::Alpha, "a"},
                                                       {keys::Form, "f"}}}}},
           "H")},
    {"ZYMOrderEntity", dated({{keys::Name, "May"},
                              {keys::OrderDate, day},
                              {keys::DeliveryDate, day},
                              {keys::Notes, "n"},
                              {keys::SupplierUUID, "S"},
                              {keys::OrderItems, PlistArray{dated({{keys::Amount, "2.500000"},
                                                                   {keys::IngredientUUID, "H"},
                                                                   {keys::Status, "Ordered"},
                                                                   {keys::IngredientType, "Hop"},
                                                                   {keys::Cost, "1.5"},
                                                                   {keys::Extract, "x"},
                                                                   {keys::Color, "c"},
                                                                   {keys::Alpha, "a"},
                                                                   {keys::Form, "f"},
                                                                   {keys::OrderUUID, "D"}},
                                                                  "D1")}}},
                             "D")},
    {"ZYMRecipeEntity",
     dated({{keys::RecipeTitle, "Bitter"},
            {KeyName{"Odd Key"}, PlistArray{1, 2.5, true, day, NSData("x"), "\xC3\xBC"}}},
           "R")},
    {"ZYMRecipeBatchEntity", dated({{keys::BatchTitle, "Batch 1 of Bitter"},
                                    {keys::DateBrewed, day},
                                    {keys::Actuals, PlistDictionary{{keys::OG, "1.050"}}}},
                                   "B")},
    {"ZYMGroupEntity", dated({{keys::GroupName, "Ales"},
                              {keys::Type, "Normal"},
                              {keys::KeysOfContents, PlistArray{"R"}}},
                             "G")},
};

class StoreVersions : public testing::WithStore {
 protected:
  static void expectAll() {
    for (const auto& [entity, record] : records) {
      const auto objects = ZYMEntityFetch::findAllObjectsInContext_predicate_sortDescriptor(
          entity, nullptr, std::nullopt, std::nullopt);
      ASSERT_EQ(objects->size(), 1U) << entity;
      EXPECT_EQ(static_cast<ZYMRecordEntity*>(objects->front())->dictionaryRepresentation(), record)
          << entity;
    }
    const auto* batch = ZYMRecipeBatchEntity::findAllObjects()->front();
    EXPECT_EQ(batch->objectForKey(relationships::recipe),
              ZYMRecipeEntity::findAllObjects()->front());
    const auto* image = ZYMImageEntity::findAllObjects()->front();
    EXPECT_EQ(image->uuid(), "P1");
    EXPECT_EQ(image->objectForKey(relationships::recipeBatch), batch);
  }
};

TEST_F(StoreVersions, APresentStoreKeepsAllThatIsSaved) {
  for (const auto& [entity, record] : records) {
    PlistDictionary given = record;
    static_cast<ZYMRecordEntity*>(context().insertNewObjectForEntityForName(entity))
        ->updateWithDictionaryRepresentation(given);
  }
  ZYMRecipeBatchEntity& batch = *ZYMRecipeBatchEntity::findAllObjects()->front();
  ZYMRecipeEntity::findAllObjects()->front()->addBatchesObject(batch);
  ZYMImageEntity& image = ZYMImageEntity::insertInContext(context());
  image.setUuid("P1");
  batch.addImagesObject(image);
  reopen();
  expectAll();
}

TEST_F(StoreVersions, Version1OpensWithAllItHolds) {
  std::filesystem::create_directories(folder / "data");
  std::filesystem::copy_file(ZYM_FIXTURES "/Wortmeister-1.sqlite",
                             folder / "data/Wortmeister.sqlite");
  expectAll();
  EXPECT_FALSE(model().firstRun());
  ZYMRecipeEntity::findAllObjects()->front()->setName("Mild");
  reopen();
  EXPECT_EQ(ZYMRecipeEntity::findAllObjects()->front()->name(), "Mild");
}

}  // namespace
}  // namespace zym
