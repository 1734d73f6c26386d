#pragma once

namespace engine::tasks {

/// Ends so many of the runner's pauses: the one that it makes just now, and those that follow. It
/// looks at its job only between them.
void endRunnerPauses(int count);

}  // namespace engine::tasks
