#pragma once

#include "tests/support/Test.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/text/NSLocale.h"
#include "zymcore/platform/values/NSException.h"

namespace zym::testing {

/// User defaults in memory, a known locale, and nothing left behind.
class WithDefaults : public ::testing::Test {
 protected:
  WithDefaults() {
    defaults().reset();
    defaults().setPersistentFile("");
    useLocale("en_US");
  }
  ~WithDefaults() override {
    defaults().reset();
    useLocale("");
  }

  /// Of the exception that it throws.
  static std::string reasonOf(const std::function<void()>& fault) {
    try {
      fault();
    } catch (const NSException& exception) {
      return exception.reason();
    }
    return "none";
  }

  static NSUserDefaults& defaults() { return NSUserDefaults::standardUserDefaults(); }
  static void set(KeyName key, PlistValue value) {
    defaults().setObject_forKey(std::move(value), key);
  }
  static void useLocale(std::string_view identifier) {
    NSLocale::setCurrentLocale(identifier);
    createFormatter();
  }
};

}  // namespace zym::testing
