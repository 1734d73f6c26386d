#pragma once

class DiagsRunner;

/// The one runner of this process. Nothing is locked: the host calls `GetDiagsRunner` from one
/// thread before any other use.
namespace diagsrunner {

/// The live runner; null before it is built and after it is released.
DiagsRunner* processRunner();

/// Forgets the runner without destroying it, as if the process had just started.
void forgetProcessRunner();

}  // namespace diagsrunner
