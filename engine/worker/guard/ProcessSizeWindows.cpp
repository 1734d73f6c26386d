#include "engine/worker/guard/ProcessSize.h"

namespace engine::guard {

std::size_t processSize() noexcept { return 0; }

}  // namespace engine::guard
