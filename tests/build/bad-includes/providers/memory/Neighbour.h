#include "providers/processor/Cores.h"
#include "providers/common/Job.h"
