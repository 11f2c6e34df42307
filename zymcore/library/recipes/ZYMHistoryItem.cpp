#include "zymcore/library/recipes/ZYMHistoryItem.h"

namespace zym {
namespace {

constexpr KeyName UUID{"UUID"};
constexpr KeyName NAME{"NAME"};
constexpr KeyName DATE{"DATE"};
constexpr KeyName ISBATCH{"ISBATCH"};

const std::string none = "(null)";

}  // namespace

ZYMHistoryItem ZYMHistoryItem::historyItemWithDictionary(const PlistDictionary& record) {
  ZYMHistoryItem item;
  if (const std::string* uuid = record.string(UUID)) item.setUuid(*uuid);
  if (const std::string* name = record.string(NAME)) item.setName(*name);
  if (const NSDate* date = record.date(DATE)) item.setDateAccessed(*date);
  item.setIsBatch(record.boolValue(ISBATCH));
  return item;
}

PlistDictionary ZYMHistoryItem::historyItemAsDictionary() const {
  PlistDictionary record;
  if (uuid_) record.set(UUID, *uuid_);
  if (name_) record.set(NAME, *name_);
  if (dateAccessed_) record.set(DATE, *dateAccessed_);
  record.set(ISBATCH, isBatch_);
  return record;
}

std::string ZYMHistoryItem::description() const {
  return "name: " + name_.value_or(none) + " uuid: " + uuid_.value_or(none) +
         " isBatch: " + (isBatch_ ? "Yes" : "No") +
         " date accessed: " + (dateAccessed_ ? dateAccessed_->description() : none);
}

}  // namespace zym
