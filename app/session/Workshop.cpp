#include "app/session/Workshop.h"

#include <stdlib.h>

#include <string>
#include <system_error>

#include "app/terminal/Faults.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"

namespace zym::host {

namespace fs = std::filesystem;

Workshop::Workshop(const fs::path& beside) {
  const fs::path parent = fs::absolute(beside).parent_path();
  std::string name = (parent / (std::string(prefix) + "XXXXXX")).string();
  if (!mkdtemp(name.data())) {
    throw InputError(label("'%1' is no folder to write into", {printable(parent.string())}));
  }
  path_ = name;
}

Workshop::~Workshop() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

}  // namespace zym::host
