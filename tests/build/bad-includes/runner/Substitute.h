#include <string>

#include "substitute/vorcore/Values.h"
