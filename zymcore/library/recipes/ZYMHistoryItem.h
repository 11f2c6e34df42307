#pragma once

#include <optional>
#include <string>

#include "zymcore/platform/values/NSDate.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// A recipe or a batch that was opened. The record has "UUID", "NAME", "DATE" and "ISBATCH".
class ZYMHistoryItem {
 public:
  /// Takes the keys that are there and of the right kind.
  [[nodiscard]] static ZYMHistoryItem historyItemWithDictionary(const PlistDictionary& record);
  /// Without the keys whose fields are absent; "ISBATCH" is always there.
  [[nodiscard]] PlistDictionary historyItemAsDictionary() const;

  [[nodiscard]] const std::optional<std::string>& uuid() const noexcept { return uuid_; }
  void setUuid(std::optional<std::string> uuid) { uuid_ = std::move(uuid); }
  [[nodiscard]] const std::optional<std::string>& name() const noexcept { return name_; }
  void setName(std::optional<std::string> name) { name_ = std::move(name); }
  [[nodiscard]] std::optional<NSDate> dateAccessed() const noexcept { return dateAccessed_; }
  void setDateAccessed(std::optional<NSDate> date) { dateAccessed_ = date; }
  [[nodiscard]] bool isBatch() const noexcept { return isBatch_; }
  void setIsBatch(bool isBatch) { isBatch_ = isBatch; }

  [[nodiscard]] std::string description() const;

 private:
  std::optional<std::string> uuid_;
  std::optional<std::string> name_;
  std::optional<NSDate> dateAccessed_;
  bool isBatch_ = false;
};

}  // namespace zym
