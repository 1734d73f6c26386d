#include "engine/process/PipeSignal.h"

namespace engine {

struct NoPipeSignal::Former {};

NoPipeSignal::NoPipeSignal() = default;
NoPipeSignal::~NoPipeSignal() = default;

}  // namespace engine
