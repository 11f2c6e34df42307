// Every row of every record form: which attribute stands under which key, and what becomes of it.

#include <gtest/gtest.h>

#include <set>

#include "tests/support/Store.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/store/ZYMLibraryRegistry.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"
#include "zymcore/store/entities/ZYMWaterEntity.h"

namespace zym {
namespace {

/// How a value that isn't there is read.
enum class Missing { None, Kept, NewUUID, Now };
using Absent = std::variant<Missing, const char*>;
constexpr Absent none = Missing::None;
constexpr Absent kept = Missing::Kept;
constexpr Absent newUUID = Missing::NewUUID;
constexpr Absent now = Missing::Now;
constexpr Absent zero = "0.000000";
constexpr Absent empty = "";

struct Row {
  const char* attribute;
  const char* key;
  const char* given;   // null for a date
  const char* stored;  // likewise
  Absent read;         // of a record without the key
  // What the record has for an object without the attribute; null for nothing.
  const char* written = nullptr;
};
constexpr const char* date = nullptr;
constexpr const char* madeUp = "a new uuid";

struct Form {
  const char* entity;
  const char* children;  // a key that only records with children have
  std::vector<Row> rows;
};

// clang-format off
const Form forms[] = {
    {"ZYMFermentableEntity", nullptr, {
        {"isGrain", "IsGrain", "1", "1", kept},
        {"mustBeMashed", "MustBeMashed", "0", "0", kept},
        {"color", "Color", "3.5", "3.500000", zero},
        {"moisture", "Moisture", "4", "4.000000", zero},
        {"extract", "Extract", "80.1", "80.099998", zero},
        {"uuid", "UUID", "U", "U", none},
        {"dateLastModified", "DateLastModified", date, date, now},
        {"ingredientDescription", "Description", "d", "d", empty},
        {"name", "Ingredient", "n", "n", empty, ""}}},
    {"ZYMHopEntity", nullptr, {
        {"alpha", "Alpha", "4.5", "4.500000", zero},
        {"uuid", "UUID", "U", "U", none},
        {"dateLastModified", "DateLastModified", date, date, now},
        {"ingredientDescription", "Description", "d", "d", empty},
        {"name", "Variety", "n", "n", empty, ""}}},
    {"ZYMOtherIngredientEntity", nullptr, {
        {"uuid", "UUID", "U", "U", none},
        {"dateLastModified", "DateLastModified", date, date, now},
        {"ingredientDescription", "Description", "d", "d", empty},
        {"name", "Ingredient", "n", "n", empty, ""}}},
    {"ZYMYeastEntity", nullptr, {
        {"beerType", "BeerType", "Lager", "Lager", "Ale"},
        {"yeastType", "YeastType", "Dry", "Dry", "Liquid"},
        {"attenuation", "Attenuation", "74", "74.000000", zero},
        {"uuid", "UUID", "U", "U", none},
        {"dateLastModified", "DateLastModified", date, date, now},
        {"ingredientDescription", "Description", "d", "d", empty},
        {"name", "Name", "n", "n", empty, ""}}},
    {"ZYMWaterEntity", nullptr, {
        {"uuid", "UUID", "U", "U", newUUID},
        {"name", "Name", "n", "n", none, ""},
        {"dateLastModified", "DateLastModified", date, date, now},
        {"calcium", "Calcium", "1", "1.000000", zero},
        {"bicarbonate", "Carbonate", "2", "2.000000", zero},
        {"chloride", "Chloride", "3", "3.000000", zero},
        {"magnesium", "Magnesium", "4", "4.000000", zero},
        {"sodium", "Sodium", "5", "5.000000", zero},
        {"sulfate", "Sulfate", "6", "6.000000", zero},
        {"notes", "Notes", "t", "t", empty, ""}}},
    {"ZYMSupplierEntity", nullptr, {
        {"uuid", "UUID", "U", "U", newUUID},
        {"name", "Name", "n", "n", empty, ""},
        {"dateLastModified", "DateLastModified", date, date, now},
        {"homepage", "Homepage", "h", "h", none},
        {"email", "Email", "e", "e", none},
        {"location", "Location", "l", "l", none},
        {"phone", "Phone", "p", "p", none}}},
    {"ZYMProfileEntity", nullptr, {
        {"uuid", "UUID", "U", "U", none},
        {"name", "ProfileName", "n", "n", empty, ""},
        {"dateLastModified", "DateLastModified", date, date, now},
        {"preBoilVolume", "PreBoilVolume", "1", "1.000000", zero},
        {"postBoilVolume", "PostBoilVolume", "2", "2.000000", zero},
        {"volumeTransferred", "VolumeToFermenter", "3", "3.000000", zero},
        {"waterAdded", "VolumeWaterAdded", "4", "4.000000", zero},
        {"volumeAtPitching", "VolumeAtPitching", "5", "5.000000", zero},
        {"finishedVolume", "FinishedBatchVolume", "6", "6.000000", zero},
        {"recipeType", "PreferredRecipeType", "t", "t", none},
        {"mashScheduleUuid", "PreferredMashSchedule", "m", "m", none},
        {"baseWaterUuid", "PreferredBaseWaterUUID", "b", "b", none, "first water"},
        {"targetWaterUuid", "PreferredTargetWaterUUID", "w", "w", none, "first water"},
        {"spargeMethod", "PreferredSpargeMethod", "s", "s", none},
        {"mtThermalMass", "MTThermalMass", "7", "7.000000", zero},
        {"waterGrainRatio", "WaterGrainRatio", "8", "8.000000", zero},
        {"extractEfficiency", "ExtractEfficiency", "9", "9.000000", zero},
        {"boilDuration", "BoilDuration", "90.7", "90", "0"}}},
    {"ZYMStyleEntity", nullptr, {
        {"uuid", "UUID", "U", "U", newUUID},
        {"dateLastModified", "DateLastModified", date, date, now},
        {"name", "Name", "n", "n", empty, ""}}},
    {"ZYMStyleCategoryEntity", nullptr, {
        {"uuid", "UUID", "U", "U", newUUID},
        {"name", "Name", "n", "n", empty, ""},
        {"dateLastModified", "DateLastModified", date, date, now},
        {"category", "Category", "c", "c", none},
        {"type", "Type", "t", "t", none},
        {"maxABV", "MaxABV", "1", "1", none},
        {"minABV", "MinABV", "2", "2", none},
        {"maxColor", "MaxColor", "3", "3", none},
        {"minColor", "MinColor", "4", "4", none},
        {"maxFG", "MaxFG", "5", "5", none},
        {"minFG", "MinFG", "6", "6", none},
        {"maxIBU", "MaxIBU", "7", "7", none},
        {"minIBU", "MinIBU", "8", "8", none},
        {"maxOG", "MaxOG", "9", "9", none},
        {"minOG", "MinOG", "0", "0", none}}},
    {"ZYMMashScheduleEntity", "Steps", {
        {"uuid", "UUID", "U", "U", newUUID},
        {"dateLastModified", "DateLastModified", date, date, now},
        {"name", "ScheduleName", "n", "n", empty, ""}}},
    {"ZYMMashStepEntity", nullptr, {
        {"name", "StepType", "n", "n", empty, ""},
        {"uuid", "UUID", "U", "U", newUUID, madeUp},
        {"duration", "Duration", "15", "15", kept},
        {"temperature", "Temperature", "66", "66", kept}}},
    {"ZYMInventoryEntity", "Batches", {
        {"uuid", "UUID", "U", "U", kept},
        {"dateLastModified", "DateLastModified", date, date, now},
        {"name", "Ingredient", "", "", empty, ""},
        {"amountInStock", "AmountInStock", "9", "0.000000", zero},  // the sum of no lots
        {"ingredientType", "IngredientType", "Hop", "Hop", "Fermentable"}}},
    {"ZYMInventoryBatchEntity", nullptr, {
        {"ingredientType", "IngredientType", "Hop", "Hop", kept},
        {"amountInStock", "AmountInStock", "9", "9", kept},
        {"cost", "Cost", "1.5", "1.5", "0.0"},
        {"name", "BatchName", "n", "n", empty, ""},
        {"uuid", "UUID", "U", "U", kept},
        {"deliveredOn", "DeliveredOn", date, date, kept},
        {"expiresOn", "ExpiresOn", date, date, kept},
        {"extract", "Extract", "1", "1", kept},
        {"color", "Color", "2", "2", kept},
        {"alpha", "Alpha", "3", "3", kept},
        {"hopForm", "Form", "f", "f", kept}}},
    {"ZYMOrderEntity", "OrderItems", {
        {"uuid", "UUID", "U", "U", newUUID},
        {"name", "Name", "n", "n", empty, ""},
        {"dateLastModified", "DateLastModified", date, date, now},
        {"orderDate", "OrderDate", date, date, none},
        {"deliveryDate", "DeliveryDate", date, date, none},
        {"notes", "Notes", "t", "t", empty, ""},
        {"supplierUuid", "SupplierUUID", "s", "s", none}}},
    {"ZYMOrderItemEntity", nullptr, {
        {"uuid", "UUID", "U", "U", newUUID},
        {"dateLastModified", "DateLastModified", date, date, now},
        {"amount", "Amount", "2.5", "2.500000", zero},
        {"ingredientUuid", "IngredientUUID", "i", "i", none},
        {"status", "Status", "s", "s", none},
        {"ingredientType", "IngredientType", "Hop", "Hop", kept},
        {"cost", "Cost", "1.5", "1.5", "0.0"},
        {"extract", "Extract", "1", "1", kept},
        {"color", "Color", "2", "2", kept},
        {"alpha", "Alpha", "3", "3", kept},
        {"hopForm", "Form", "f", "f", kept}}},
    {"ZYMGroupEntity", "KeysOfContents", {
        {"uuid", "UUID", "U", "U", none},
        {"type", "Type", "t", "t", none},
        {"dateLastModified", "DateLastModified", date, date, now},
        {"name", "GroupName", "n", "n", empty, ""}}},
    {"ZYMRecipeEntity", nullptr, {
        {"uuid", "UUID", "U", "U", kept},
        {"name", "RecipeTitle", "n", "n", kept, ""},
        {"dateLastModified", "DateLastModified", date, date, now}}},
    {"ZYMRecipeBatchEntity", nullptr, {
        {"uuid", "UUID", "U", "U", kept},
        {"name", "BatchTitle", "n", "n", kept, ""},
        {"dateBrewed", "DateBrewed", date, date, kept},
        {"dateLastModified", "DateLastModified", date, date, now}}},
};
// clang-format on

const NSDate day = NSDate::dateWithTimeIntervalSince1970(1e9);

class RecordForms : public testing::WithStore {
 protected:
  static PlistValue valueOf(const char* text) { return text ? PlistValue(text) : PlistValue(day); }
  static ZYMRecordEntity& madeOf(const char* entity) {
    return static_cast<ZYMRecordEntity&>(*context().insertNewObjectForEntityForName(entity));
  }
  static void expectRead(const ZYMRecordEntity& object, const Row& row) {
    const PlistValue* value = object.valueForKey(KeyName(row.attribute));
    if (const auto* text = std::get_if<const char*>(&row.read)) {
      ASSERT_TRUE(value);
      EXPECT_EQ(*value, PlistValue(*text));
      return;
    }
    ASSERT_EQ(value == nullptr, std::get<Missing>(row.read) == Missing::None);
    switch (std::get<Missing>(row.read)) {
      case Missing::None:
        break;
      case Missing::Kept:
        EXPECT_EQ(*value, valueOf(row.stored));
        break;
      case Missing::NewUUID:
        EXPECT_EQ(value->string()->size(), 36U);
        break;
      case Missing::Now:
        EXPECT_GT(*value->date(), day);
    }
  }
};

TEST_F(RecordForms, EachAttributeHasItsKeyAndItsRules) {
  PlistDictionary water{{keys::UUID, "first water"}, {keys::Name, " "}};
  ZYMWaterEntity::insertInContext(context()).updateWithDictionaryRepresentation(water);
  for (const Form& form : forms) {
    ZYMRecordEntity& object = madeOf(form.entity);
    PlistDictionary given;
    for (const Row& row : form.rows) given.set(KeyName(row.key), valueOf(row.given));
    object.updateWithDictionaryRepresentation(given);
    PlistDictionary record = *object.dictionaryRepresentation();
    EXPECT_EQ(record.size(), form.rows.size() + (form.children ? 1U : 0U)) << form.entity;
    for (const Row& row : form.rows) {
      SCOPED_TRACE(std::string(form.entity) + " " + row.attribute);
      ASSERT_TRUE(object.valueForKey(KeyName(row.attribute)));
      EXPECT_EQ(*object.valueForKey(KeyName(row.attribute)), valueOf(row.stored));
      ASSERT_TRUE(record.contains(KeyName(row.key)));
      EXPECT_EQ(*record.find(KeyName(row.key)), valueOf(row.stored));
    }
    PlistDictionary nothing;
    object.updateWithDictionaryRepresentation(nothing);
    for (const Row& row : form.rows) {
      SCOPED_TRACE(std::string(form.entity) + " " + row.attribute + " of an empty record");
      expectRead(object, row);
    }
    for (const Row& row : form.rows) object.setValue_forKey(std::nullopt, KeyName(row.attribute));
    record = *object.dictionaryRepresentation();
    for (const Row& row : form.rows) {
      SCOPED_TRACE(std::string(form.entity) + " " + row.attribute + " without a value");
      ASSERT_EQ(record.contains(KeyName(row.key)), row.written != nullptr);
      if (row.written == madeUp) {
        EXPECT_EQ(record.stringValue(KeyName(row.key)).size(), 36U);
      } else if (row.written) {
        EXPECT_EQ(record.stringValue(KeyName(row.key)), row.written);
      }
    }
    context().deleteObject(object);
  }
}

// The rest have no key, or belong to objects that have no record.
TEST_F(RecordForms, NoAttributeIsForgotten) {
  const std::set<std::string> without = {"index", "data", "amountOnOrder", "carbonationVolumes"};
  for (const Form& form : forms) {
    std::set<std::string> known = without;
    for (const Row& row : form.rows) known.insert(row.attribute);
    for (const NSAttributeDescription& attribute : madeOf(form.entity).entity().attributes()) {
      EXPECT_TRUE(known.contains(attribute.name)) << form.entity << " " << attribute.name;
    }
  }
}

TEST_F(RecordForms, OtherReadings) {
  struct Case {
    const char* entity;
    PlistDictionary record;
    KeyName key;
    std::optional<PlistValue> expected;
  };
  for (const Case& c : {
           Case{"ZYMWaterEntity", {{keys::Town, "Burton"}}, keys::Name, "Burton"},
           Case{"ZYMWaterEntity", {{keys::Town, "T"}, {keys::Name, "N"}}, keys::Name, "N"},
           Case{"ZYMYeastEntity", {{keys::BeerType, "Wine"}}, keys::BeerType, "Ale"},
           Case{"ZYMYeastEntity", {{keys::BeerType, 7}}, keys::BeerType, "Ale"},
           Case{"ZYMYeastEntity", {{keys::YeastType, "Cake"}}, keys::YeastType, "Cake"},
           // Numbers are corrected to text before they are read as flags.
           Case{"ZYMFermentableEntity", {{keys::IsGrain, 1}}, keys::IsGrain, "1.000000"},
           Case{"ZYMFermentableEntity", {{keys::IsGrain, PlistArray()}}, keys::IsGrain, {}},
           Case{"ZYMFermentableEntity", {{keys::Extract, "wet"}}, keys::Extract, "0.000000"},
           Case{"ZYMFermentableEntity", {{keys::Ingredient, day}}, keys::Ingredient, ""},
           Case{"ZYMHopEntity", {{keys::DateLastModified, day}}, keys::DateLastModified, day},
           // Written under one key and read under another, so it doesn't survive the way back.
           Case{"ZYMStyleCategoryEntity",
                {{keys::CarbonationVolumes, "2.4"}},
                keys::Carbonation,
                "2.4"},
           Case{"ZYMStyleCategoryEntity", {{keys::Carbonation, "2.4"}}, keys::Carbonation, {}},
       }) {
    ZYMRecordEntity& object = madeOf(c.entity);
    PlistDictionary record = c.record;
    object.updateWithDictionaryRepresentation(record);
    const PlistDictionary read = *object.dictionaryRepresentation();
    const PlistValue* found = read.find(c.key);
    EXPECT_EQ(found ? std::optional(*found) : std::nullopt, c.expected)
        << c.entity << " " << c.key.text();
  }
}

}  // namespace
}  // namespace zym
