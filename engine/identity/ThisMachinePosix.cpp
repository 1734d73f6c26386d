#include "engine/identity/LinuxMachine.h"
#include "engine/identity/ThisMachine.h"

namespace engine {

Identity thisMachine() { return machineUnder(""); }

}  // namespace engine
