#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// One row of a list.
struct ZYMSummary {
  std::string name;
  /// Absent for an object that has none. The one row with "" is that of the whole library.
  std::optional<std::string> uuid;
  std::int64_t numberOfChildren = 0;

  [[nodiscard]] static ZYMSummary summaryWithName_uuid_numberOfChildren(
      std::string name, std::optional<std::string> uuid, std::int64_t numberOfChildren);

  // The position of the last such row, else `NSNotFound`.
  [[nodiscard]] static std::int64_t indexOfSummaryWithUUID_inArray(
      std::string_view uuid, const std::vector<ZYMSummary>& rows) noexcept;
  [[nodiscard]] static std::int64_t indexOfSummaryWithName_inArray(
      std::string_view name, const std::vector<ZYMSummary>& rows) noexcept;

  /// The row as it travels in an archive: "Name", "UUID" where there is one, "Children".
  [[nodiscard]] PlistDictionary archive() const;
  /// What is missing, or of another kind, reads as empty, absent and 0.
  [[nodiscard]] static ZYMSummary summaryWithArchive(const PlistDictionary& archive);

  [[nodiscard]] std::string description() const;

  friend bool operator==(const ZYMSummary&, const ZYMSummary&) = default;
};

}  // namespace zym
