#include "providers/memory/MemorySize.h"

namespace providers {

MemorySize queryMemorySize() { return readMemorySize({}); }

}  // namespace providers
