#include "substitute/cmpi.nsp/broker/lifetime/ThreadState.h"

#include <atomic>
#include <memory>
#include <mutex>

#include "substitute/cmpi.nsp/broker/lifetime/PerThread.h"
#include "substitute/cmpi.nsp/broker/lifetime/Scope.h"
#include "substitute/cmpi.nsp/model/ClassShape.h"

namespace cmpinsp::broker {
namespace {

/// States outlive their threads: the next thread takes over what the last one left. A provider's
/// own clean-up at the end of a thread may still enter the broker after the thread's state is gone;
/// it then gets another one.
struct StateStore {
  std::mutex mutex;
  std::vector<std::unique_ptr<ThreadState>> all;
  std::vector<ThreadState*> free;
};

StateStore& store() {
  static auto* const kept = new StateStore;
  return *kept;
}

ThreadState* takeState() {
  StateStore& states = store();
  const std::lock_guard<std::mutex> lock(states.mutex);
  if (!states.free.empty()) {
    ThreadState* state = states.free.back();
    states.free.pop_back();
    return state;
  }
  states.all.push_back(std::make_unique<ThreadState>());
  states.free.reserve(states.all.size());
  return states.all.back().get();
}

std::atomic<bool> exitedInCall{false};

void giveBack(ThreadState& state) {
  // Nothing else ends a thread in a call, whose frames are unwound otherwise. The scopes in them
  // are on the stack, and where a signal came between, what else there is may be half changed.
  if (isInCall(state)) {
    exitedInCall.store(true);
    return;
  }
  if (state.endKeyValues != nullptr) state.endKeyValues(state);
  closeAllScopes(state);
  state.shape.reset();
  state.shapeBroker = nullptr;
  state.handles.flush();
  state.blocks.flush();
  StateStore& states = store();
  const std::lock_guard<std::mutex> lock(states.mutex);
  states.free.push_back(&state);
}

using OwnState = PerThread<ThreadState, giveBack>;

ThreadState& enter() {
  ThreadState* const state = takeState();
  OwnState::set(state);
  return *state;
}

}  // namespace

ThreadState& threadState() {
  ThreadState* const own = OwnState::get();
  return own != nullptr ? *own : enter();
}

bool hasExitedInCall() noexcept { return exitedInCall.load(); }

}  // namespace cmpinsp::broker
