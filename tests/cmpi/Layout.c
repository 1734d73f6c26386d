#define LANGUAGE c
#include "tests/cmpi/Layout.h"
