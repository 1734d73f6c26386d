#include "providers/processor/status/Health.h"

namespace providers {

Health queryHealth(const std::vector<unsigned>& cpus) { return readHealth({}, cpus); }

}  // namespace providers
