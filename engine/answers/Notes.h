#pragma once

#include <vector>

#include "engine/Engine.h"

/// What whoever reads of a run is to know of the listing before it.
namespace engine {

/// That tests may be missing, for want of which provider: a report of those that are left would
/// pass.
std::vector<Message> missingNotes(const Circumstances& circumstances);

/// That, and what else the listing warned of.
std::vector<Message> notesOf(const Circumstances& circumstances);

}  // namespace engine
