// A store of each version of the object model that was ever in use must open for ever.

#include "tests/store/Forms.h"
#include "tests/support/Store.h"

namespace zym {
namespace {

/// What an object of the entity keeps, with children of its own.
PlistDictionary recordOf(std::string_view entity) {
  PlistDictionary record;
  for (const Form& form : forms) {
    if (form.entity != entity) continue;
    for (const Row& row : form.rows) record.set(KeyName(row.key), valueOf(row.stored));
  }
  return record;
}

std::vector<std::pair<std::string, PlistDictionary>> allRecords() {
  PlistDictionary item = recordOf("ZYMOrderItemEntity");
  item.set(keys::OrderUUID, "U");
  const std::pair<std::string_view, PlistDictionary> others[] = {
      {"ZYMMashScheduleEntity", {{keys::Steps, PlistArray{recordOf("ZYMMashStepEntity")}}}},
      {"ZYMInventoryEntity",
       {{keys::Batches, PlistArray{recordOf("ZYMInventoryBatchEntity")}},
        {keys::Ingredient, "n"},  // of the hop
        {keys::AmountInStock, "9.000000"}}},
      {"ZYMOrderEntity", {{keys::OrderItems, PlistArray{item}}}},
      {"ZYMGroupEntity", {{keys::KeysOfContents, PlistArray{"U"}}}},
      {"ZYMRecipeEntity",
       {{KeyName{"Odd Key"}, PlistArray{1, 2.5, true, day, NSData("x"), "\xC3\xBC"}}}},
      {"ZYMRecipeBatchEntity", {{keys::Actuals, PlistDictionary{{keys::OG, "1.050"}}}}},
  };
  std::vector<std::pair<std::string, PlistDictionary>> records;
  for (const Form& form : forms) {
    const std::string entity = form.entity;
    if (entity == "ZYMMashStepEntity" || entity == "ZYMInventoryBatchEntity" ||
        entity == "ZYMOrderItemEntity") {
      continue;
    }
    PlistDictionary record = recordOf(entity);
    for (const auto& [owner, more] : others) {
      if (owner != entity) continue;
      for (const PlistEntry& entry : more) record.set(entry.key, entry.value);
    }
    records.emplace_back(entity, record);
  }
  // A group loses recipes that come after it.
  std::ranges::stable_partition(records, [](const auto& r) { return r.first != "ZYMGroupEntity"; });
  return records;
}

class StoreVersions : public testing::WithStore {
 protected:
  static void expectAll() {
    for (const auto& [entity, record] : allRecords()) {
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
  for (const auto& [entity, record] : allRecords()) {
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
