#include "substitute/vorcore/Values.h"
#include <string>
