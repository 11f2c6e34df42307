#pragma once

#include <filesystem>
#include <string>

#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym {

/// Opens a store of this process of that name, with the libraries of the program.
inline void openFuzzStore(const std::string& name) {
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / name;
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  NSUserDefaults::standardUserDefaults().setPersistentFile("");
  NSBundle::setMainBundle(NSBundle(ZYM_RESOURCES, "org.zymcore.fuzz", "1"));
  ZYMCoreDataModel::sharedInstance().setDataFolder(folder);
  ZYMCoreDataModel::sharedInstance().installInitialState();
}

}  // namespace zym
