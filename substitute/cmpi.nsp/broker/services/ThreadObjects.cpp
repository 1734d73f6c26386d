#include "substitute/cmpi.nsp/broker/services/ThreadObjects.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <thread>

#include "substitute/cmpi.nsp/broker/WatchedCall.h"
#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/broker/lifetime/Scope.h"
#include "substitute/cmpi.nsp/broker/lifetime/ThreadState.h"
#include "substitute/cmpi.nsp/broker/services/OsThread.h"
#include "substitute/cmpi.nsp/broker/services/ProviderRoutine.h"

namespace cmpinsp::broker {
namespace {

using Clock = std::chrono::system_clock;

/// How often a waiting thread looks whether it was asked to end.
constexpr std::chrono::milliseconds kLook{50};

/// A thread that a provider started; shared by the thread and by whoever joins it.
struct ThreadRecord {
  CMPIThreadFunc start = nullptr;
  void* parameter = nullptr;
  const Broker* starter = nullptr;  ///< whose provider started it, as far as that is known
  Handle* handle = nullptr;
  bool isDetached = false;
  std::atomic<bool> mustEnd{false};

  std::mutex mutex;
  std::condition_variable changed;
  CMPI_THREAD_RETURN value{};
  bool hasEnded = false;
  bool isJoined = false;

  void end() noexcept {
    const std::lock_guard<std::mutex> lock(mutex);
    hasEnded = true;
    changed.notify_all();
  }
};

using RecordPtr = std::shared_ptr<ThreadRecord>;

struct ThreadBody final : Body {
  explicit ThreadBody(RecordPtr aRecord) : record(std::move(aRecord)) {}
  const RecordPtr record;
};

thread_local ThreadRecord* ownRecord = nullptr;

/// What a thread ends with that threw: all bits set, whatever the type.
CMPI_THREAD_RETURN valueOfFailure() noexcept {
  CMPI_THREAD_RETURN value;
  std::memset(&value, 0xFF, sizeof value);
  return value;
}

/// Runs the provider's routine. However the thread ends, by returning, by `exitThread` or by an
/// exception, the record learns of it.
void runThread(void* argument) {
  struct Ending {
    RecordPtr record;
    ~Ending() {
      ownRecord = nullptr;
      if (record->isDetached) destroy(*record->handle);
      record->end();
    }
  };
  const std::unique_ptr<RecordPtr> given(static_cast<RecordPtr*>(argument));
  const Ending ending{*given};
  ownRecord = ending.record.get();
  ThreadRecord& record = *ending.record;
  const WatchedCall watched(record.starter == nullptr ? "" : record.starter->providerName().c_str(),
                            "thread");
  const bool hasReturned = runRoutine("a thread's routine", record.starter,
                                      [&] { record.value = record.start(record.parameter); });
  if (!hasReturned) record.value = valueOfFailure();
}

/// Whether a call into a provider is under way on this thread, which another one's thread made. It
/// may not end then: it would unwind through the broker, where exceptions stop, and the call's own
/// provider knows nothing of the request.
bool isInCall() { return broker::isInCall(threadState()); }

bool mustEndNow() { return ownRecord != nullptr && ownRecord->mustEnd.load() && !isInCall(); }

void endIfAsked() {
  if (mustEndNow()) endThisThread(CMPI_THREAD_RETURN{});
}

/// Ends a thread that waited. Few providers clean up behind a thread that ends there: it leaves the
/// mutex to the others, and to one of them the signal that it may have taken.
[[noreturn]] void endWaiter(ConditionBody& waited, OwnedMutex& held) {
  waited.changed.notify_one();
  held.unlockAll();
  ownRecord->value = CMPI_THREAD_RETURN{};
  endOsThread();
}

RecordPtr recordOf(CMPI_THREAD_TYPE thread) {
  const Handle* handle = findLive(thread);
  if (handle == nullptr || handle->kind != Kind::kThread) return nullptr;
  return bodyOf<ThreadBody>(*handle).record;
}

}  // namespace

CMPI_THREAD_TYPE startThread(CMPIThreadFunc start, void* parameter, bool detached) {
  const auto record = std::make_shared<ThreadRecord>();
  record->start = start;
  record->parameter = parameter;
  record->starter = currentBroker();
  record->isDetached = detached;
  Handle& handle =
      makeObject(Kind::kThread, Ownership::kCloned, nullptr, std::make_unique<ThreadBody>(record));
  record->handle = &handle;
  auto argument = std::make_unique<RecordPtr>(record);
  if (!startOsThread(runThread, argument.get())) {
    destroy(handle);
    return nullptr;
  }
  argument.release();
  return &handle;
}

int waitForThread(CMPI_THREAD_TYPE thread, CMPI_THREAD_RETURN& value) {
  const RecordPtr record = recordOf(thread);
  if (!record) return ESRCH;
  if (record->isDetached) return EINVAL;
  if (record.get() == ownRecord) return EDEADLK;
  std::unique_lock<std::mutex> lock(record->mutex);
  while (!record->hasEnded) {
    record->changed.wait_for(lock, kLook);
    endIfAsked();
  }
  if (record->isJoined) return ESRCH;
  record->isJoined = true;
  value = record->value;
  lock.unlock();
  destroy(*record->handle);
  return 0;
}

int endThisThread(CMPI_THREAD_RETURN value) {
  if (ownRecord == nullptr || isInCall()) return EPERM;
  ownRecord->value = value;
  endOsThread();
}

int requestEnd(CMPI_THREAD_TYPE thread) {
  const RecordPtr record = recordOf(thread);
  if (!record) return ESRCH;
  record->mustEnd.store(true);
  return 0;
}

void sleepFor(std::chrono::milliseconds time) {
  const auto until = std::chrono::steady_clock::now() + time;
  if (ownRecord == nullptr) {
    std::this_thread::sleep_until(until);
    return;
  }
  for (auto now = std::chrono::steady_clock::now(); now < until;
       now = std::chrono::steady_clock::now()) {
    endIfAsked();
    std::this_thread::sleep_until(std::min(until, now + kLook));
  }
  endIfAsked();
}

int waitForCondition(CMPI_COND_TYPE condition, CMPI_MUTEX_TYPE mutex,
                     const Clock::time_point* deadline) {
  const Handle* conditionHandle = findLive(condition);
  const Handle* mutexHandle = findLive(mutex);
  if (conditionHandle == nullptr || conditionHandle->kind != Kind::kCondition) return EINVAL;
  if (mutexHandle == nullptr || mutexHandle->kind != Kind::kMutex) return EINVAL;
  auto& waited = bodyOf<ConditionBody>(*conditionHandle);
  std::condition_variable_any& changed = waited.changed;
  const std::uint64_t signals = waited.signals.load();
  OwnedMutex& held = bodyOf<MutexBody>(*mutexHandle).mutex;
  if (!held.isMine()) return EPERM;
  const OwnedMutex::Waiting waiting(held);
  if (ownRecord == nullptr && deadline == nullptr) {
    changed.wait(held);
    return 0;
  }
  for (;;) {
    const Clock::time_point look = Clock::now() + kLook;
    const bool isLast = deadline != nullptr && (ownRecord == nullptr || *deadline <= look);
    const std::cv_status status = changed.wait_until(held, isLast ? *deadline : look);
    if (mustEndNow()) endWaiter(waited, held);
    if (status == std::cv_status::no_timeout || waited.signals.load() != signals) return 0;
    if (isLast) return ETIMEDOUT;
  }
}

}  // namespace cmpinsp::broker
