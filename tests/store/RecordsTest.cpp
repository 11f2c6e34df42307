#include "tests/support/Store.h"
#include "zymcore/platform/formats/BinaryPropertyList.h"
#include "zymcore/store/entities/SummaryRows.h"
#include "zymcore/store/entities/ZYMFermentableEntity.h"
#include "zymcore/store/entities/ZYMInventoryBatchEntity.h"
#include "zymcore/store/entities/ZYMMashScheduleEntity.h"
#include "zymcore/store/entities/ZYMMashStepEntity.h"
#include "zymcore/store/entities/ZYMOrderEntity.h"
#include "zymcore/store/entities/ZYMOrderItemEntity.h"

namespace zym {
namespace {

const NSDate day = NSDate::dateWithTimeIntervalSince1970(1e9 + 0.1234567);

class Records : public testing::WithStore {
 protected:
  template <class Entity>
  static Entity& made(PlistDictionary record) {
    Entity& object = Entity::insertInContext(context());
    object.updateWithDictionaryRepresentation(record);
    return object;
  }
  template <class Entity>
  static std::size_t count() {
    return Entity::findAllObjects()->size();
  }
  static PlistDictionary step(const char* type, const char* uuid) {
    return {{keys::StepType, type}, {keys::UUID, uuid}, {keys::Duration, "10"}};
  }
  static std::vector<std::string> uuids(const PlistDictionary& record, KeyName rows) {
    return texts(record.array(rows), keys::UUID);
  }
};

TEST_F(Records, StepsKeepTheirOrderAndWhatIsNotGiven) {
  ZYMMashScheduleEntity& schedule = made<ZYMMashScheduleEntity>(
      {{keys::UUID, "M"},
       {keys::Steps, PlistArray{step("Rest at", "1"), PlistDictionary{{keys::StepType, "new"}},
                                step("Mash", "3")}}});
  EXPECT_THAT(uuids(*schedule.dictionaryRepresentation(), keys::Steps),
              ElementsAre("1", ::testing::SizeIs(36), "3"));

  // The second goes; the others change places and keep what isn't given.
  PlistDictionary record{{keys::UUID, "M"},
                         {keys::Steps, PlistArray{PlistDictionary{{keys::UUID, "3"}},
                                                  PlistDictionary{{keys::UUID, "1"}}}}};
  schedule.updateWithDictionaryRepresentation(record);
  reopen();
  const PlistDictionary stored =
      *ZYMMashScheduleEntity::findAllObjects()->front()->dictionaryRepresentation();
  EXPECT_THAT(uuids(stored, keys::Steps), ElementsAre("3", "1"));
  EXPECT_EQ(stored.array(keys::Steps)->find(0)->dictionary()->stringValue(keys::Duration), "10");
  EXPECT_EQ(stored.array(keys::Steps)->find(0)->dictionary()->stringValue(keys::StepType), "");
  EXPECT_EQ(count<ZYMMashStepEntity>(), 2U);
}

TEST_F(Records, NoStepsAtAllOnlyLetsGoOfThem) {
  for (const PlistValue& none :
       {PlistValue(PlistArray()), PlistValue("steps"), PlistValue(PlistArray{1, "x"})}) {
    ZYMMashScheduleEntity& schedule = made<ZYMMashScheduleEntity>(
        {{keys::Steps, PlistArray{step("Rest at", "1"), step("Rest at", "2")}}});
    const std::size_t before = count<ZYMMashStepEntity>();
    PlistDictionary record{{keys::Steps, none}};
    schedule.updateWithDictionaryRepresentation(record);
    EXPECT_TRUE(schedule.dictionaryRepresentation()->array(keys::Steps)->empty());
    EXPECT_EQ(count<ZYMMashStepEntity>(), before);
  }
}

TEST_F(Records, AStepWithoutAUUIDGetsOneWhenItIsRead) {
  ZYMMashScheduleEntity& schedule = made<ZYMMashScheduleEntity>({});
  ZYMMashStepEntity& bare = ZYMMashStepEntity::insertInContext(context());
  schedule.addStepsObject(bare);
  EXPECT_EQ(bare.objectForKey(relationships::schedule), &schedule);
  const std::vector<std::string> first = uuids(*schedule.dictionaryRepresentation(), keys::Steps);
  EXPECT_THAT(first, ElementsAre(::testing::SizeIs(36)));
  EXPECT_EQ(uuids(*schedule.dictionaryRepresentation(), keys::Steps), first);
}

TEST_F(Records, StockIsTheSumOfItsLots) {
  const auto lot = [](const char* amount, const char* uuid, double expires) {
    return PlistDictionary{{keys::AmountInStock, amount},
                           {keys::UUID, uuid},
                           {keys::ExpiresOn, NSDate::dateWithTimeIntervalSince1970(expires)}};
  };
  const auto item = [&](const char* type) {
    return made<ZYMInventoryEntity>(
               {{keys::UUID, "I"},
                {keys::IngredientType, type},
                {keys::AmountInStock, "99"},
                {keys::Batches,
                 PlistArray{lot("1.4", "A", 10), lot("1.4", "B", 30), lot("x", "C", 20)}}})
        .dictionaryRepresentation()
        .value();
  };
  EXPECT_EQ(item("Yeast").stringValue(keys::AmountInStock), "3.000000");
  EXPECT_EQ(*ZYMInventoryEntity::findAllObjects()->front()->stringForKey(attributes::amountOnOrder),
            "0.0");
  const PlistDictionary hop = item("Hop");
  EXPECT_EQ(hop.stringValue(keys::AmountInStock), "2.800000");
  EXPECT_THAT(uuids(hop, keys::Batches), ElementsAre("B", "C", "A"));  // the last to expire first
  EXPECT_EQ(*hop.string(keys::Ingredient), "");                        // no library knows it
  EXPECT_EQ(hop.array(keys::Batches)->find(0)->dictionary()->stringValue(keys::Cost), "0.0");
}

// That no library gives a name any more doesn't mean that there is none.
TEST_F(Records, StockKeepsItsNameUntilItGetsAnother) {
  EXPECT_EQ(made<ZYMInventoryEntity>({}).name(), "");
  ZYMInventoryEntity& item = made<ZYMInventoryEntity>({{keys::Ingredient, "Fuggle"}});
  for (const auto& [given, kept] :
       {std::pair("", "Fuggle"), {"Goldings", "Goldings"}, {"", "Goldings"}}) {
    PlistDictionary record{{keys::Ingredient, given}};
    item.updateWithDictionaryRepresentation(record);
    EXPECT_EQ(item.name(), kept);
  }
}

TEST_F(Records, ALotWithoutAUUIDMatchesNothingAndAnOrderItemGetsOne) {
  const PlistDictionary item{
      {keys::UUID, "I"}, {keys::Batches, PlistArray{PlistDictionary{{keys::AmountInStock, "1"}}}}};
  ZYMInventoryEntity& object = made<ZYMInventoryEntity>(item);
  PlistDictionary again = item;
  object.updateWithDictionaryRepresentation(again);
  EXPECT_EQ(count<ZYMInventoryBatchEntity>(), 1U);  // the first was not listed any more
  EXPECT_THAT(uuids(*object.dictionaryRepresentation(), keys::Batches), ElementsAre(""));
  PlistDictionary order{{keys::OrderItems, PlistArray{PlistDictionary{}}}};
  ZYMOrderEntity::insertInContext(context()).updateWithDictionaryRepresentation(order);
  EXPECT_THAT(uuids(order, keys::OrderItems), ElementsAre(::testing::SizeIs(36)));
}

// Reading a record mustn't write, and the list of waters gives nameless ones a name.
TEST_F(Records, AProfileNamesWatersAndLeavesThemAlone) {
  ZYMProfileEntity& profile = made<ZYMProfileEntity>({});
  EXPECT_THROW((void)profile.dictionaryRepresentation(), NSException);
  ZYMWaterEntity& water = ZYMWaterEntity::insertInContext(context());
  water.setUuid("W");
  EXPECT_EQ(profile.dictionaryRepresentation()->stringValue(keys::PreferredBaseWaterUUID), "W");
  EXPECT_FALSE(water.name());
}

TEST_F(Records, ColumnsWinOverTheDocument) {
  const PlistDictionary document{
      {keys::UUID, "R"},
      {keys::RecipeTitle, "Bitter"},
      {keys::DateLastModified, day},
      {KeyName{"Odd Key"}, PlistArray{1, 2.5, true, day, NSData("x"), "ü"}}};
  ZYMRecipeEntity& recipe = made<ZYMRecipeEntity>(document);
  EXPECT_EQ(recipe.dictionaryRepresentation(), document);
  recipe.setName("Mild");
  recipe.setUuid("S");
  const PlistDictionary read = *recipe.dictionaryRepresentation();
  EXPECT_EQ(read.stringValue(keys::RecipeTitle), "Mild");
  EXPECT_EQ(read.stringValue(keys::UUID), "S");

  PlistDictionary untitled{{keys::Notes, "n"}};
  recipe.updateWithDictionaryRepresentation(untitled);
  EXPECT_EQ(recipe.name(), "Mild");  // kept
  EXPECT_EQ(recipe.dictionaryRepresentation()->stringValue(keys::UUID), "S");
}

TEST_F(Records, ARecipeWithoutADocumentIsAbsentAndADamagedOneThrows) {
  ZYMRecipeEntity& recipe = ZYMRecipeEntity::insertInContext(context());
  EXPECT_FALSE(recipe.dateLastModified());
  recipe.setDateLastModified(day);
  EXPECT_EQ(recipe.dateLastModified(), day);
  EXPECT_FALSE(recipe.dictionaryRepresentation());
  recipe.setDocument_forKey(NSData(), attributes::data);
  EXPECT_FALSE(recipe.dictionaryRepresentation());
  recipe.setDocument_forKey(NSData(*BinaryPropertyList::write(PlistValue("text"))),
                            attributes::data);
  EXPECT_THAT(reasonOf([&] { (void)recipe.dictionaryRepresentation(); }),
              ::testing::EndsWith("can't be read: it is no dictionary"));
  for (const NSData& damaged : {NSData("bplist00"), NSData("bplist00\xff\xff\xff")}) {
    recipe.setDocument_forKey(damaged, attributes::data);
    EXPECT_THAT(reasonOf([&] { (void)recipe.dictionaryRepresentation(); }),
                ::testing::StartsWith("the document of an object without uuid can't be read: "));
  }
}

TEST_F(Records, AGroupLosesWhatIsNotThere) {
  made<ZYMRecipeEntity>({{keys::UUID, "A"}});
  made<ZYMRecipeEntity>({{keys::UUID, "B"}});
  made<ZYMRecipeEntity>({{keys::UUID, "B"}});
  ZYMRecipeEntity& c = made<ZYMRecipeEntity>({{keys::UUID, "C"}});
  ZYMGroupEntity& group =
      made<ZYMGroupEntity>({{keys::GroupName, "G"},
                            {keys::UUID, "U"},
                            {keys::KeysOfContents, PlistArray{"A", "B", "C", "D", 7}}});
  EXPECT_EQ(*group.dictionaryRepresentation()->array(keys::KeysOfContents), (PlistArray{"A", "C"}));
  EXPECT_EQ(group.summary(), (ZYMSummary{"G", "U", 2}));
  EXPECT_THAT(c.objectsForKey(relationships::groups), ElementsAre(&group));
  PlistDictionary emptied{{keys::GroupName, "G"}};
  group.updateWithDictionaryRepresentation(emptied);
  EXPECT_EQ(group.summary().numberOfChildren, 0);
}

TEST_F(Records, ChildrenJoinAndLeaveOneByOneAndTogether) {
  const auto expectAll = [](auto& owner, KeyName children, auto add, auto addAll, auto remove,
                            auto removeAll, std::string_view child) {
    std::vector<NSManagedObject*> objects;
    for (int i = 0; i < 3; ++i) {
      objects.push_back(context().insertNewObjectForEntityForName(child));
    }
    const auto count = [&] { return owner.objectsForKey(children).size(); };
    (owner.*add)(*objects[0]);
    EXPECT_EQ(count(), 1U);
    (owner.*addAll)({objects[1], objects[2]});
    EXPECT_EQ(count(), 3U);
    (owner.*remove)(*objects[1]);
    EXPECT_THAT(owner.objectsForKey(children), ElementsAre(objects[0], objects[2]));
    (owner.*removeAll)(objects);
    EXPECT_EQ(count(), 0U);
  };
  expectAll(made<ZYMRecipeEntity>({}), relationships::batches, &ZYMRecipeEntity::addBatchesObject,
            &ZYMRecipeEntity::addBatches, &ZYMRecipeEntity::removeBatchesObject,
            &ZYMRecipeEntity::removeBatches, ZYMRecipeBatchEntity::entityName);
  expectAll(made<ZYMInventoryEntity>({}), relationships::batches,
            &ZYMInventoryEntity::addBatchesObject, &ZYMInventoryEntity::addBatches,
            &ZYMInventoryEntity::removeBatchesObject, &ZYMInventoryEntity::removeBatches,
            ZYMInventoryBatchEntity::entityName);
  expectAll(made<ZYMGroupEntity>({}), relationships::recipes, &ZYMGroupEntity::addRecipesObject,
            &ZYMGroupEntity::addRecipes, &ZYMGroupEntity::removeRecipesObject,
            &ZYMGroupEntity::removeRecipes, ZYMRecipeEntity::entityName);
}

TEST_F(Records, RowsCountChildren) {
  NSFetchRequest groups = NSFetchRequest::fetchRequestWithEntityName(ZYMGroupEntity::entityName);
  groups.setSortDescriptors({NSSortDescriptor(attributes::name, true)});
  const auto rows = [&](std::optional<KeyName> children, std::size_t most) {
    std::size_t taken = 0;
    return summariesForFetchRequest(groups, children, [&](std::int64_t) { return taken++ < most; });
  };
  EXPECT_THAT(rows(relationships::recipes, 9), ElementsAre());
  ZYMGroupEntity& group = made<ZYMGroupEntity>({{keys::GroupName, "G"}});
  group.addRecipesObject(made<ZYMRecipeEntity>({}));
  ZYMGroupEntity::insertInContext(context()).setUuid("U");
  const ZYMSummary bare{"", "U", 0};
  EXPECT_THAT(rows(relationships::recipes, 9), ElementsAre(bare, ZYMSummary{"G", {}, 1}));
  EXPECT_THAT(rows(std::nullopt, 9), ElementsAre(bare, ZYMSummary{"G", {}, 0}));
  EXPECT_THAT(rows(relationships::recipes, 1), ElementsAre(bare));
  EXPECT_THAT(summariesOf({&group}), ElementsAre(ZYMSummary{"G", {}, 0}));
}

TEST_F(Records, ImagesAreNumberedWithoutGaps) {
  ZYMRecipeEntity& recipe = made<ZYMRecipeEntity>({{keys::UUID, "A"}});
  std::vector<NSManagedObject*> images;
  for (int i = 0; i < 4; ++i) images.push_back(&ZYMImageEntity::insertInContext(context()));
  recipe.addImagesObject(*images[0]);
  recipe.addImages({images[1], images[2], images[3]});
  const auto indices = [&] {
    std::vector<std::int64_t> result;
    for (NSManagedObject* image : recipe.objectsForKey(relationships::images)) {
      result.push_back(image->valueForKey(attributes::index)->integerValue());
    }
    return result;
  };
  EXPECT_THAT(indices(), ElementsAre(0, 1, 2, 3));
  recipe.removeImagesObject(*images[0]);
  EXPECT_THAT(indices(), ElementsAre(0, 1, 2));
}

TEST_F(Records, NothingOutlivesItsParent) {
  ZYMRecipeEntity& recipe = made<ZYMRecipeEntity>({{keys::UUID, "A"}});
  ZYMRecipeBatchEntity& batch = made<ZYMRecipeBatchEntity>({{keys::UUID, "B"}});
  recipe.addBatchesObject(batch);
  recipe.addImagesObject(ZYMImageEntity::insertInContext(context()));
  batch.addImagesObject(ZYMImageEntity::insertInContext(context()));
  made<ZYMGroupEntity>({{keys::KeysOfContents, PlistArray{"A"}}});
  ZYMMashScheduleEntity& schedule =
      made<ZYMMashScheduleEntity>({{keys::Steps, PlistArray{step("Rest at", "1")}}});
  ZYMInventoryEntity& item =
      made<ZYMInventoryEntity>({{keys::Batches, PlistArray{PlistDictionary{}}}});
  ZYMOrderEntity& order = made<ZYMOrderEntity>({{keys::OrderItems, PlistArray{PlistDictionary{}}}});
  model().save();
  for (NSManagedObject* parent :
       std::initializer_list<NSManagedObject*>{&recipe, &schedule, &item, &order})
    context().deleteObject(*parent);
  model().save();
  reopen();
  EXPECT_EQ(count<ZYMRecipeBatchEntity>() + count<ZYMImageEntity>() + count<ZYMMashStepEntity>() +
                count<ZYMInventoryBatchEntity>() + count<ZYMOrderItemEntity>(),
            0U);
  EXPECT_EQ(ZYMGroupEntity::findAllObjects()->front()->summary().numberOfChildren, 0);
}

TEST_F(Records, AreFoundByKeyAndInOrder) {
  for (const char* name : {"b", "a", "B"})
    made<ZYMFermentableEntity>({{keys::Ingredient, name}, {keys::UUID, name}});
  const auto found = [](KeyName key, const char* value) {
    const auto objects = *ZYMFermentableEntity::objectsMatchingKey_andValue_sortedOnKey(
        key, value, attributes::name);
    return uuids(PlistDictionary{{keys::Steps, dictionaryRepresentationOfEntityArray(
                                                   {objects.begin(), objects.end()})}},
                 keys::Steps);
  };
  EXPECT_THAT(found(KeyName{"ingredientDescription"}, ""), ElementsAre("B", "a", "b"));
  EXPECT_THAT(found(attributes::name, "a"), ElementsAre("a"));
  EXPECT_THAT(found(attributes::name, "a' OR 1=1 --"), ElementsAre());
  EXPECT_EQ(ZYMFermentableEntity::findAllObjectsSortedOnKey(attributes::name)->back()->name(), "b");
}

}  // namespace
}  // namespace zym
