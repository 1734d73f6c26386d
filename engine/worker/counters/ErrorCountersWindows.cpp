#include "engine/worker/counters/ErrorCounters.h"

namespace engine::counters {

struct ErrorCounters::Former {};

ErrorCounters::ErrorCounters(const std::string&) {}

ErrorCounters::~ErrorCounters() = default;

std::vector<Finding> ErrorCounters::findings() const { return {}; }

}  // namespace engine::counters
