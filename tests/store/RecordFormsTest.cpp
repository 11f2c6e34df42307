// Every row of every record form: which attribute stands under which key, and what becomes of it.

#include "tests/store/Forms.h"
#include "tests/support/Store.h"
#include "zymcore/store/ZYMLibraryRegistry.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {
namespace {

class RecordForms : public testing::WithStore {
 protected:
  static ZYMRecordEntity& madeOf(std::string_view entity) {
    return static_cast<ZYMRecordEntity&>(*context().insertNewObjectForEntityForName(entity));
  }
  static void expectRead(const ZYMRecordEntity& object, const Row& row) {
    const PlistValue* value = object.valueForKey(KeyName(row.attribute));
    ASSERT_EQ(value == nullptr, row.read == "absent");
    if (row.read == "new") {
      EXPECT_EQ(value->string()->size(), 36U);
    } else if (row.read == "now") {
      EXPECT_GT(*value->date(), day);
    } else if (value) {
      EXPECT_EQ(*value, row.read == "kept" ? valueOf(row.stored) : PlistValue(row.read));
    }
  }
};

TEST_F(RecordForms, EachAttributeHasItsKeyAndItsRules) {
  PlistDictionary water{{keys::UUID, "first"}, {keys::Name, " "}};
  ZYMWaterEntity::insertInContext(context()).updateWithDictionaryRepresentation(water);
  for (const Form& form : forms) {
    ZYMRecordEntity& object = madeOf(form.entity);
    PlistDictionary given;
    for (const Row& row : form.rows) given.set(KeyName(row.key), valueOf(row.given));
    object.updateWithDictionaryRepresentation(given);
    PlistDictionary record = *object.dictionaryRepresentation();
    EXPECT_EQ(record.size(), form.rows.size() + (form.hasChildren ? 1U : 0U)) << form.entity;
    for (const Row& row : form.rows) {
      SCOPED_TRACE(form.entity + " " + row.attribute);
      ASSERT_TRUE(object.valueForKey(KeyName(row.attribute)));
      EXPECT_EQ(*object.valueForKey(KeyName(row.attribute)), valueOf(row.stored));
      ASSERT_TRUE(record.contains(KeyName(row.key)));
      EXPECT_EQ(*record.find(KeyName(row.key)), valueOf(row.stored));
    }
    PlistDictionary nothing;
    object.updateWithDictionaryRepresentation(nothing);
    for (const Row& row : form.rows) {
      SCOPED_TRACE(form.entity + " " + row.attribute + " of an empty record");
      expectRead(object, row);
    }
    for (const Row& row : form.rows) object.setValue_forKey(std::nullopt, KeyName(row.attribute));
    record = *object.dictionaryRepresentation();
    for (const Row& row : form.rows) {
      SCOPED_TRACE(form.entity + " " + row.attribute + " without a value");
      ASSERT_EQ(record.contains(KeyName(row.key)), row.written.has_value());
      if (row.written == "new") {
        EXPECT_EQ(record.stringValue(KeyName(row.key)).size(), 36U);
      } else if (row.written) {
        EXPECT_EQ(record.stringValue(KeyName(row.key)), *row.written);
      }
    }
    context().deleteObject(object);
  }
}

// The rest have no key, or belong to objects that have no record.
TEST_F(RecordForms, NoAttributeIsForgotten) {
  ASSERT_EQ(forms.size(), 18U);
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
