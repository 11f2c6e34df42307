#pragma once

#include <variant>

#include "tests/support/Test.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// How a value that isn't there is read.
enum class Missing { None, Kept, NewUUID, Now };
using Absent = std::variant<Missing, const char*>;
inline constexpr Absent none = Missing::None;
inline constexpr Absent kept = Missing::Kept;
inline constexpr Absent newUUID = Missing::NewUUID;
inline constexpr Absent now = Missing::Now;
inline constexpr Absent zero = "0.000000";
inline constexpr Absent empty = "";

struct Row {
  const char* attribute;
  const char* key;
  const char* given;   // null for a date
  const char* stored;  // likewise
  Absent read;         // of a record without the key
  // What the record has for an object without the attribute; null for nothing.
  const char* written = nullptr;
};
inline constexpr const char* date = nullptr;
inline constexpr const char* madeUp = "a new uuid";

struct Form {
  const char* entity;
  const char* children;  // a key that only records with children have
  std::vector<Row> rows;
};

// clang-format off
inline const Form forms[] = {
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

inline const NSDate day = NSDate::dateWithTimeIntervalSince1970(1e9 + 0.1234567);

inline PlistValue valueOf(const char* text) {
  return text ? PlistValue(text) : PlistValue(day);
}

}  // namespace zym
