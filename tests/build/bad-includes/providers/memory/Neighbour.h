#include "providers/common/Job.h"
#include "providers/processor/Cores.h"
