// The records of all entities, as tables: attribute, key, how it is written, how it is read.

#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/store/RecordForm.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMFermentableEntity.h"
#include "zymcore/store/entities/ZYMGroupEntity.h"
#include "zymcore/store/entities/ZYMHopEntity.h"
#include "zymcore/store/entities/ZYMInventoryBatchEntity.h"
#include "zymcore/store/entities/ZYMInventoryEntity.h"
#include "zymcore/store/entities/ZYMMashScheduleEntity.h"
#include "zymcore/store/entities/ZYMMashStepEntity.h"
#include "zymcore/store/entities/ZYMOrderEntity.h"
#include "zymcore/store/entities/ZYMOrderItemEntity.h"
#include "zymcore/store/entities/ZYMOtherIngredientEntity.h"
#include "zymcore/store/entities/ZYMProfileEntity.h"
#include "zymcore/store/entities/ZYMRecipeBatchEntity.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"
#include "zymcore/store/entities/ZYMStyleCategoryEntity.h"
#include "zymcore/store/entities/ZYMStyleEntity.h"
#include "zymcore/store/entities/ZYMSupplierEntity.h"
#include "zymcore/store/entities/ZYMWaterEntity.h"
#include "zymcore/store/entities/ZYMYeastEntity.h"

namespace zym {
namespace {

using written::always;
using written::ifPresent;

// clang-format off

constexpr RecordField fermentableFields[] = {
    {"isGrain",               keys::IsGrain,          ifPresent, read::orKept},
    {"mustBeMashed",          keys::MustBeMashed,     ifPresent, read::orKept},
    {"color",                 keys::Color,            ifPresent, read::number},
    {"moisture",              keys::Moisture,         ifPresent, read::number},
    {"extract",               keys::Extract,          ifPresent, read::number},
    {"uuid",                  keys::UUID,             ifPresent, read::asGiven},
    {"dateLastModified",      keys::DateLastModified, ifPresent, read::orNow},
    {"ingredientDescription", keys::Description,      ifPresent, read::orEmpty},
    {"name",                  keys::Ingredient,       always,    read::orEmpty},
};

constexpr RecordField hopFields[] = {
    {"alpha",                 keys::Alpha,            ifPresent, read::number},
    {"uuid",                  keys::UUID,             ifPresent, read::asGiven},
    {"dateLastModified",      keys::DateLastModified, ifPresent, read::orNow},
    {"ingredientDescription", keys::Description,      ifPresent, read::orEmpty},
    {"name",                  keys::Variety,          always,    read::orEmpty},
};

constexpr RecordField otherIngredientFields[] = {
    {"uuid",                  keys::UUID,             ifPresent, read::asGiven},
    {"dateLastModified",      keys::DateLastModified, ifPresent, read::orNow},
    {"ingredientDescription", keys::Description,      ifPresent, read::orEmpty},
    {"name",                  keys::Ingredient,       always,    read::orEmpty},
};

constexpr RecordField yeastFields[] = {
    {"beerType",              keys::BeerType,         ifPresent, read::aleOrLager},
    {"yeastType",             keys::YeastType,        ifPresent, read::orLiquid},
    {"attenuation",           keys::Attenuation,      ifPresent, read::number},
    {"uuid",                  keys::UUID,             ifPresent, read::asGiven},
    {"dateLastModified",      keys::DateLastModified, ifPresent, read::orNow},
    {"ingredientDescription", keys::Description,      ifPresent, read::orEmpty},
    {"name",                  keys::Name,             always,    read::orEmpty},
};

constexpr RecordField waterFields[] = {
    {"uuid",                  keys::UUID,             ifPresent, read::orNewUUID},
    RecordField{"name",       keys::Name,             always,    read::asGiven}.orUnder(keys::Town),
    {"dateLastModified",      keys::DateLastModified, ifPresent, read::orNow},
    {"calcium",               keys::Calcium,          ifPresent, read::number},
    {"bicarbonate",           keys::Carbonate,        ifPresent, read::number},
    {"chloride",              keys::Chloride,         ifPresent, read::number},
    {"magnesium",             keys::Magnesium,        ifPresent, read::number},
    {"sodium",                keys::Sodium,           ifPresent, read::number},
    {"sulfate",               keys::Sulfate,          ifPresent, read::number},
    {"notes",                 keys::Notes,            always,    read::orEmpty},
};

constexpr RecordField supplierFields[] = {
    {"uuid",                  keys::UUID,             ifPresent, read::orNewUUID},
    {"name",                  keys::Name,             always,    read::orEmpty},
    {"dateLastModified",      keys::DateLastModified, ifPresent, read::orNow},
    {"homepage",              keys::Homepage,         ifPresent, read::asGiven},
    {"email",                 keys::Email,            ifPresent, read::asGiven},
    {"location",              keys::Location,         ifPresent, read::asGiven},
    {"phone",                 keys::Phone,            ifPresent, read::asGiven},
};

constexpr RecordField profileFields[] = {
    {"uuid",                  keys::UUID,                     ifPresent, read::asGiven},
    {"name",                  keys::ProfileName,              always,    read::orEmpty},
    {"dateLastModified",      keys::DateLastModified,         ifPresent, read::orNow},
    {"preBoilVolume",         keys::PreBoilVolume,            ifPresent, read::number},
    {"postBoilVolume",        keys::PostBoilVolume,           ifPresent, read::number},
    {"volumeTransferred",     keys::VolumeToFermenter,        ifPresent, read::number},
    {"waterAdded",            keys::VolumeWaterAdded,         ifPresent, read::number},
    {"volumeAtPitching",      keys::VolumeAtPitching,         ifPresent, read::number},
    {"finishedVolume",        keys::FinishedBatchVolume,      ifPresent, read::number},
    {"recipeType",            keys::PreferredRecipeType,      ifPresent, read::asGiven},
    {"mashScheduleUuid",      keys::PreferredMashSchedule,    ifPresent, read::asGiven},
    {"baseWaterUuid",         keys::PreferredBaseWaterUUID,   written::orFirstWater, read::asGiven},
    {"targetWaterUuid",       keys::PreferredTargetWaterUUID, written::orFirstWater, read::asGiven},
    {"spargeMethod",          keys::PreferredSpargeMethod,    ifPresent, read::asGiven},
    {"mtThermalMass",         keys::MTThermalMass,            ifPresent, read::number},
    {"waterGrainRatio",       keys::WaterGrainRatio,          ifPresent, read::number},
    {"extractEfficiency",     keys::ExtractEfficiency,        ifPresent, read::number},
    {"boilDuration",          keys::BoilDuration,             ifPresent, read::wholeNumber},
};

constexpr RecordField styleFields[] = {
    {"uuid",                  keys::UUID,             ifPresent, read::orNewUUID},
    {"dateLastModified",      keys::DateLastModified, ifPresent, read::orNow},
    {"name",                  keys::Name,             always,    read::orEmpty},
};

// Written under one key and read under another, the carbonation is lost on the way out and back.
constexpr KeyName Carbonation = keys::Carbonation;
constexpr RecordField styleCategoryFields[] = {
    {"uuid",                  keys::UUID,             ifPresent, read::orNewUUID},
    {"name",                  keys::Name,             always,    read::orEmpty},
    {"dateLastModified",      keys::DateLastModified, ifPresent, read::orNow},
    {"category",              keys::Category,         ifPresent, read::asGiven},
    RecordField{"carbonationVolumes", Carbonation,    ifPresent, read::asGiven}.readUnder(keys::CarbonationVolumes),
    {"type",                  keys::Type,             ifPresent, read::asGiven},
    {"maxABV",                keys::MaxABV,           ifPresent, read::asGiven},
    {"minABV",                keys::MinABV,           ifPresent, read::asGiven},
    {"maxColor",              keys::MaxColor,         ifPresent, read::asGiven},
    {"minColor",              keys::MinColor,         ifPresent, read::asGiven},
    {"maxFG",                 keys::MaxFG,            ifPresent, read::asGiven},
    {"minFG",                 keys::MinFG,            ifPresent, read::asGiven},
    {"maxIBU",                keys::MaxIBU,           ifPresent, read::asGiven},
    {"minIBU",                keys::MinIBU,           ifPresent, read::asGiven},
    {"maxOG",                 keys::MaxOG,            ifPresent, read::asGiven},
    {"minOG",                 keys::MinOG,            ifPresent, read::asGiven},
};

constexpr RecordField mashScheduleFields[] = {
    {"uuid",                  keys::UUID,             ifPresent, read::orNewUUID},
    {"dateLastModified",      keys::DateLastModified, ifPresent, read::orNow},
    {"name",                  keys::ScheduleName,     always,    read::orEmpty},
};

constexpr RecordField mashStepFields[] = {
    {"name",                  keys::StepType,         always,    read::orEmpty},
    {"uuid",                  keys::UUID,             written::withNewUUID, read::orNewUUID},
    {"duration",              keys::Duration,         ifPresent, read::orKept},
    {"temperature",           keys::Temperature,      ifPresent, read::orKept},
};

constexpr RecordField inventoryFields[] = {
    {"uuid",                  keys::UUID,             ifPresent, read::orKept},
    {"dateLastModified",      keys::DateLastModified, ifPresent, read::orNow},
    {"name",                  keys::Ingredient,       written::nameInLibrary, read::orKeptWhenEmpty},
    {"amountInStock",         keys::AmountInStock,    ifPresent, read::asGiven},
    {"ingredientType",        keys::IngredientType,   ifPresent, read::orFermentable},
};

constexpr RecordField inventoryBatchFields[] = {
    {"ingredientType",        keys::IngredientType,   ifPresent, read::orKept},
    {"amountInStock",         keys::AmountInStock,    ifPresent, read::orKept},
    {"cost",                  keys::Cost,             ifPresent, read::orNoCost},
    {"name",                  keys::BatchName,        always,    read::orEmpty},
    {"uuid",                  keys::UUID,             ifPresent, read::orKept},
    {"deliveredOn",           keys::DeliveredOn,      ifPresent, read::orKept},
    {"expiresOn",             keys::ExpiresOn,        ifPresent, read::orKept},
    {"extract",               keys::Extract,          ifPresent, read::orKept},
    {"color",                 keys::Color,            ifPresent, read::orKept},
    {"alpha",                 keys::Alpha,            ifPresent, read::orKept},
    {"hopForm",               keys::Form,             ifPresent, read::orKept},
};

constexpr RecordField orderFields[] = {
    {"uuid",                  keys::UUID,             ifPresent, read::orNewUUID},
    {"name",                  keys::Name,             always,    read::orEmpty},
    {"dateLastModified",      keys::DateLastModified, ifPresent, read::orNow},
    {"orderDate",             keys::OrderDate,        ifPresent, read::asGiven},
    {"deliveryDate",          keys::DeliveryDate,     ifPresent, read::asGiven},
    {"notes",                 keys::Notes,            written::alwaysStored, read::orEmpty},
    {"supplierUuid",          keys::SupplierUUID,     ifPresent, read::asGiven},
};

constexpr RecordField orderItemFields[] = {
    {"uuid",                  keys::UUID,             ifPresent, read::orNewUUID},
    {"dateLastModified",      keys::DateLastModified, ifPresent, read::orNow},
    {"amount",                keys::Amount,           ifPresent, read::number},
    {"ingredientUuid",        keys::IngredientUUID,   ifPresent, read::asGiven},
    {"status",                keys::Status,           ifPresent, read::asGiven},
    {"ingredientType",        keys::IngredientType,   ifPresent, read::orKept},
    {"cost",                  keys::Cost,             ifPresent, read::orNoCost},
    {"extract",               keys::Extract,          ifPresent, read::orKept},
    {"color",                 keys::Color,            ifPresent, read::orKept},
    {"alpha",                 keys::Alpha,            ifPresent, read::orKept},
    {"hopForm",               keys::Form,             ifPresent, read::orKept},
    {"order",                 keys::OrderUUID,        written::uuidOfRelated, nullptr},
};

constexpr RecordField groupFields[] = {
    {"uuid",                  keys::UUID,             ifPresent, read::asGiven},
    {"type",                  keys::Type,             ifPresent, read::asGiven},
    {"dateLastModified",      keys::DateLastModified, ifPresent, read::orNow},
    {"name",                  keys::GroupName,        always,    read::orEmpty},
};

constexpr RecordField recipeFields[] = {
    {"uuid",                  keys::UUID,             ifPresent, read::orKept},
    {"name",                  keys::RecipeTitle,      always,    read::orKept},
    {"dateLastModified",      keys::DateLastModified, ifPresent, read::orNow},
};

constexpr RecordField recipeBatchFields[] = {
    {"uuid",                  keys::UUID,             ifPresent, read::orKept},
    {"name",                  keys::BatchTitle,       always,    read::orKept},
    {"dateBrewed",            keys::DateBrewed,       ifPresent, read::orKept},
    {"dateLastModified",      keys::DateLastModified, ifPresent, read::orNow},
};

// clang-format on

using Order = RecordChildren::Order;

constexpr RecordChildren steps = {.relationship = relationships::steps,
                                  .key = keys::Steps,
                                  .entity = ZYMMashStepEntity::entityName,
                                  .order = Order::ByIndex,
                                  .haveIndex = true,
                                  .getUUIDs = true};
constexpr RecordChildren lots = {.relationship = relationships::batches,
                                 .key = keys::Batches,
                                 .entity = ZYMInventoryBatchEntity::entityName,
                                 .order = Order::ByExpiryDescending,
                                 .haveIndex = true,
                                 .getUUIDs = false};
constexpr RecordChildren orderItems = {.relationship = relationships::items,
                                       .key = keys::OrderItems,
                                       .entity = ZYMOrderItemEntity::entityName,
                                       .order = Order::None,
                                       .haveIndex = false,
                                       .getUUIDs = true};

}  // namespace

#define ZYM_RECORD_FORM(Class, ...)            \
  const RecordForm& Class::form() const {      \
    static const RecordForm form{__VA_ARGS__}; \
    return form;                               \
  }

ZYM_RECORD_FORM(ZYMFermentableEntity, fermentableFields)
ZYM_RECORD_FORM(ZYMHopEntity, hopFields)
ZYM_RECORD_FORM(ZYMOtherIngredientEntity, otherIngredientFields)
ZYM_RECORD_FORM(ZYMYeastEntity, yeastFields)
ZYM_RECORD_FORM(ZYMWaterEntity, waterFields)
ZYM_RECORD_FORM(ZYMSupplierEntity, supplierFields)
ZYM_RECORD_FORM(ZYMProfileEntity, profileFields)
ZYM_RECORD_FORM(ZYMStyleEntity, styleFields)
ZYM_RECORD_FORM(ZYMStyleCategoryEntity, styleCategoryFields)
ZYM_RECORD_FORM(ZYMMashScheduleEntity, mashScheduleFields, &steps)
ZYM_RECORD_FORM(ZYMMashStepEntity, mashStepFields)
ZYM_RECORD_FORM(ZYMInventoryEntity, inventoryFields, &lots)
ZYM_RECORD_FORM(ZYMInventoryBatchEntity, inventoryBatchFields)
ZYM_RECORD_FORM(ZYMOrderEntity, orderFields, &orderItems)
ZYM_RECORD_FORM(ZYMOrderItemEntity, orderItemFields)
ZYM_RECORD_FORM(ZYMGroupEntity, groupFields)
ZYM_RECORD_FORM(ZYMRecipeEntity, recipeFields)
ZYM_RECORD_FORM(ZYMRecipeBatchEntity, recipeBatchFields)

#undef ZYM_RECORD_FORM

}  // namespace zym
