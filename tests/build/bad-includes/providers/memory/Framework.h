#include "cmpi/cmpi.h"
#include "framework/TCIMValue.h"
