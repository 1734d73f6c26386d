#pragma once

#include "engine/Offer.h"

namespace engine {

/// Who this machine is: what its firmware and its system tell to this user, at once and without
/// waiting for any device. What cannot be read is left out.
Identity thisMachine();

}  // namespace engine
