#pragma once

#include "zymcore/platform/values/NSError.h"

namespace zym {

/// Logs why a save failed, with each of the detailed errors that it may bring.
void logSaveFailure(const NSError& error);

}  // namespace zym
