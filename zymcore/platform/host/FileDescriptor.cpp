#include "zymcore/platform/host/FileDescriptor.h"

#include <unistd.h>

namespace zym {

FileDescriptor::~FileDescriptor() {
  if (number_ >= 0) ::close(number_);
}

}  // namespace zym
