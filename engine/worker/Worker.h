#pragma once

namespace engine {

/// Carries out the one request that comes through the pipe, and says so. Returns the status that
/// the process ends with.
int serve() noexcept;

}  // namespace engine
