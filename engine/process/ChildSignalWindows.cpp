#include "engine/process/ChildSignal.h"

namespace engine {

ChildSignalTurn::ChildSignalTurn() = default;
ChildSignalTurn::~ChildSignalTurn() = default;

}  // namespace engine
