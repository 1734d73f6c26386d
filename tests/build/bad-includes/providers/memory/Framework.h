#include "framework/TCIMValue.h"
#include "cmpi/cmpi.h"
