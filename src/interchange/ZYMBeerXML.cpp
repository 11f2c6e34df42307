#include "zymcore/interchange/ZYMBeerXML.h"

#include "zymcore/interchange/ParsedRecipeKeys.h"
