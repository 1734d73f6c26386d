#pragma once

#include <vector>

#include "engine/Engine.h"

namespace libdiags {

/// What makes a listing less than it could be: the tests of a provider that cannot be used are not
/// in it. For whoever follows a run that goes by it.
std::vector<engine::Message> notesOf(const engine::Circumstances& circumstances);

}  // namespace libdiags
