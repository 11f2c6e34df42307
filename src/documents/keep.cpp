#include "zymcore/platform/PlistValue.h"
