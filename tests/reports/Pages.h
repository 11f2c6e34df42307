#pragma once

#include <string>

#include "tests/support/Json.h"
#include "tests/support/Store.h"
#include "zymcore/library/ZYMStyles.h"
#include "zymcore/reports/PageKeys.h"
#include "zymcore/reports/ZYMHTML.h"

namespace zym::testing {

/// A store, and a bundle with the resources of the host but for its templates.
class WithPages : public WithStore {
 protected:
  WithPages() {
    std::filesystem::create_directory(folder / "bundle");
    for (const auto& entry : std::filesystem::directory_iterator(ZYM_RESOURCES)) {
      if (entry.path().extension() == ".html") continue;
      std::filesystem::create_symlink(entry.path(),
                                      folder / "bundle/" + entry.path().filename().string());
    }
    NSBundle::setMainBundle(NSBundle(folder / "bundle", "org.zymcore.tests", "1"));
    (void)context();
    for (const KeyName key : {keys::Units, keys::HopUnits}) set(key, 2);
    set(keys::BoilingPoint, 100);
  }
  ~WithPages() override { ZYMStyles::tearDown(); }

  void putTemplate(std::string_view name, std::string_view text) const {
    putFile(folder / "bundle/" + std::string(name) + ".html", text);
  }
  static std::string marker(std::string_view key) { return "<*KEYNAME=" + std::string(key) + ">"; }
  /// A template of those keys: "key: value" in lines.
  static std::string listing(std::initializer_list<std::string_view> names) {
    std::string text;
    for (const std::string_view name : names) {
      text.append(name).append(": ").append(marker(name)).append("\n");
    }
    return text;
  }
};

}  // namespace zym::testing
