#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "zymcore/documents/ZYMSummary.h"
#include "zymcore/platform/objects/NSFetchRequest.h"
#include "zymcore/platform/values/PlistKey.h"

namespace zym {

class ZYMEntity;

// The rows of all lists. A row has "" for a name that is absent; an absent uuid stays so.

[[nodiscard]] ZYMSummary summaryOf(const ZYMEntity& object, std::int64_t numberOfChildren);
[[nodiscard]] std::vector<ZYMSummary> summariesOf(const std::vector<NSManagedObject*>& objects);

/// The rows of what is found in the main context, in order, without making objects of it. The
/// children are those at the other end of a relationship, if one is given. `takes`, if given, says
/// by the key of its identity whether an object gets a row.
[[nodiscard]] std::vector<ZYMSummary> summariesForFetchRequest(
    const NSFetchRequest& request, const std::optional<KeyName>& children,
    const std::function<bool(std::int64_t key)>& takes);

}  // namespace zym
