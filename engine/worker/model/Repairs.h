#pragma once

#include <optional>

#include "engine/events/Event.h"
#include "engine/worker/model/ObjectReading.h"

namespace engine::worker {

/// What a record tells a technician: its CorrectiveAction, a step a line, and the part that it is
/// about (FaultyPart, FaultyPartLocation, FaultyPartSerialNumber), with what was found. Nothing for
/// a record that has none of these. Throws `TVORException`.
std::optional<Diagnosis> readRepair(const InstancePtr& record);

}  // namespace engine::worker
