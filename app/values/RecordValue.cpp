#include "app/values/RecordValue.h"

#include <algorithm>

#include "app/terminal/Faults.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "zymcore/platform/text/NSString.h"

namespace zym::host {

Assignment assignmentOf(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos) {
    throw UsageError(label("'%1' is not of the form KEY=VALUE", {printable(text)}));
  }
  return {text.substr(0, equals), text.substr(equals + 1)};
}

const RecordValue* valueNamed(std::span<const RecordValue> values, std::string_view key) {
  const std::string upper = uppercaseString(key);
  const auto found = std::ranges::find_if(values, [&](const RecordValue& value) {
    return value.toStorage &&
           (uppercaseString(value.key.text()) == upper || uppercaseString(value.label) == upper ||
            uppercaseString(label(value.label)) == upper);
  });
  return found == values.end() ? nullptr : &*found;
}

void refuseKey(std::string_view what, const std::string& key,
               std::span<const std::string_view> choices) {
  std::string names;
  for (const std::string_view choice : choices) names.append(names.empty() ? "" : ", ") += choice;
  throw UsageError(
      label("'%2' is nothing to set of this: %1; choose %3", {label(what), printable(key), names}));
}

}  // namespace zym::host
