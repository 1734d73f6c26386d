#pragma once

/// What sees to it that nothing of a worker outlives it or its supervisor.
namespace engine::guard {

/// To be called first, as long as there is one thread. On Linux it forks: the call returns in a
/// child, which is the worker; this process stays behind as its keeper. It takes over whatever the
/// worker leaves behind, ends all of it as soon as the worker ends, is asked to (SIGTERM) or loses
/// its supervisor, and ends the way the worker did. On Windows the process gets a job of its own,
/// which ends with it, and everything in it too.
void stayKept();

}  // namespace engine::guard
