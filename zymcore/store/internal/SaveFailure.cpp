#include "zymcore/store/internal/SaveFailure.h"

#include "zymcore/documents/SafeJSON.h"
#include "zymcore/platform/values/NSLog.h"

namespace zym {
namespace {

constexpr KeyName NSDetailedErrorsKey{"NSDetailedErrors"};

std::string textOf(const PlistDictionary& userInfo) {
  return safeDataWithJSONObject_options(userInfo, 0).value_or("{}");
}

}  // namespace

void logSaveFailure(const NSError& error) {
  NSLog("Failed to save to data store: " + error.localizedDescription);
  const PlistArray* details = error.userInfo.array(NSDetailedErrorsKey);
  if (!details || details->empty()) {
    NSLog("  " + textOf(error.userInfo));
    return;
  }
  for (const PlistDictionary& detail : error.userInfo.rows(NSDetailedErrorsKey)) {
    NSLog("  DetailedError: " + textOf(detail));
  }
}

}  // namespace zym
