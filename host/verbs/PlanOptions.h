#pragma once

#include "engine/plan/Plan.h"
#include "host/options/Options.h"

namespace host {

/// The plan that the command line means: that of `--plan`, if any, with what stands beside it in
/// its place. Throws `engine::PlanError` that names the option, or the place in the plan's file.
engine::Plan planOf(const Options& options);

}  // namespace host
