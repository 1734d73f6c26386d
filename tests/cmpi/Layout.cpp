#define LANGUAGE cpp
#include "tests/cmpi/Layout.h"
