#include "host/Options.h"
#include "framework/TCIMValue.h"
