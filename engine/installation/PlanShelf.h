#pragma once

#include <string>

#include "engine/plan/PlanFile.h"

namespace engine {

/// The plans of an installation, and the user's own files.
PlanShelf shelfOf(const std::string& root);

}  // namespace engine
