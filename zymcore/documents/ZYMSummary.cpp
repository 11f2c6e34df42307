#include "zymcore/documents/ZYMSummary.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "zymcore/documents/RecordKeys.h"
#include "zymcore/platform/values/NSNotFound.h"

namespace zym {
namespace {

template <class Field>
std::int64_t lastWith(Field ZYMSummary::*field, std::string_view text,
                      const std::vector<ZYMSummary>& rows) noexcept {
  const auto found = std::find_if(rows.rbegin(), rows.rend(),
                                  [&](const ZYMSummary& row) { return row.*field == text; });
  return found == rows.rend() ? NSNotFound : std::distance(found, rows.rend()) - 1;
}

}  // namespace

ZYMSummary ZYMSummary::summaryWithName_uuid_numberOfChildren(std::string name,
                                                             std::optional<std::string> uuid,
                                                             std::int64_t numberOfChildren) {
  return {std::move(name), std::move(uuid), numberOfChildren};
}

std::int64_t ZYMSummary::indexOfSummaryWithUUID_inArray(
    std::string_view uuid, const std::vector<ZYMSummary>& rows) noexcept {
  return lastWith(&ZYMSummary::uuid, uuid, rows);
}

std::int64_t ZYMSummary::indexOfSummaryWithName_inArray(
    std::string_view name, const std::vector<ZYMSummary>& rows) noexcept {
  return lastWith(&ZYMSummary::name, name, rows);
}

PlistDictionary ZYMSummary::archive() const {
  PlistDictionary archive{{keys::Name, name}};
  if (uuid) archive.set(keys::UUID, *uuid);
  archive.set(keys::Children, numberOfChildren);
  return archive;
}

ZYMSummary ZYMSummary::summaryWithArchive(const PlistDictionary& archive) {
  const std::string* uuid = archive.string(keys::UUID);
  return {std::string(archive.stringValue(keys::Name)), uuid ? std::optional(*uuid) : std::nullopt,
          archive.integerValue(keys::Children)};
}

std::string ZYMSummary::description() const {
  return "name: " + name + " uuid: " + uuid.value_or("(null)") +
         " numberOfChildren: " + std::to_string(numberOfChildren);
}

}  // namespace zym
