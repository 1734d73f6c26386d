#include "framework/TCIMValue.h"
#include "host/Options.h"
