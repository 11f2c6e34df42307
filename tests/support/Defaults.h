#pragma once

#include <gtest/gtest.h>

#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/text/NSLocale.h"

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
