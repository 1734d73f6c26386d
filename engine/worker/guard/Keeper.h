#pragma once

/// What sees to it that nothing of a worker outlives it or its supervisor.
namespace engine::guard {

/// To be called first, as long as there is one thread. On Linux it forks, twice: the call returns
/// in a grandchild, which is the worker; this process and its child stay behind as its keepers,
/// with a name of their own. A keeper takes over whatever the worker leaves behind, ends all of it
/// as soon as the worker ends, is asked to (SIGTERM) or loses its supervisor, and ends the way the
/// worker did. Two of them, so that none of the three, the supervisor among them, nor any two, is
/// the only one who knows. On Windows the process gets a job of its own,
/// which ends with it, and everything in it too. On both, what else the supervisor had open is
/// closed.
void stayKept();

}  // namespace engine::guard
