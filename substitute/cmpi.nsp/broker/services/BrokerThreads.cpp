#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>
#include <string>
#include <thread>

#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/broker/lifetime/Scope.h"
#include "substitute/cmpi.nsp/broker/services/Deadline.h"
#include "substitute/cmpi.nsp/broker/services/ProviderRoutine.h"
#include "substitute/cmpi.nsp/broker/services/ThreadKeys.h"
#include "substitute/cmpi.nsp/broker/services/ThreadObjects.h"

namespace cmpinsp::broker {
namespace {

/// Runs a service that answers with an error number.
template <typename Operation>
int numbered(Operation&& operation) noexcept {
  try {
    return operation();
  } catch (const Failure&) {
    return EINVAL;
  } catch (const std::bad_alloc&) {
    return ENOMEM;
  } catch (...) {
    return EAGAIN;
  }
}

/// A plain library name as a file name. The text belongs to the caller, who frees it.
char* resolveFileName(const char* name) {
  if (name == nullptr) return nullptr;
#if defined(_WIN32)
  const std::string file = std::string(name) + ".dll";
#else
  const std::string file = std::string("lib") + name + ".so";
#endif
  auto* copy = static_cast<char*>(std::malloc(file.size() + 1));
  if (copy != nullptr) std::memcpy(copy, file.c_str(), file.size() + 1);
  return copy;
}

CMPI_THREAD_TYPE newThread(CMPIThreadFunc start, void* parm, int detached) noexcept {
  try {
    return start == nullptr ? nullptr : startThread(start, parm, detached != 0);
  } catch (...) {
    return nullptr;
  }
}

// What ends the calling thread unwinds through here, so that these let everything pass.

int joinThread(CMPI_THREAD_TYPE thread, CMPI_THREAD_RETURN* retval) {
  CMPI_THREAD_RETURN value{};
  const int error = waitForThread(thread, value);
  if (error == 0 && retval != nullptr) *retval = value;
  return error;
}

int exitThread(CMPI_THREAD_RETURN value) { return endThisThread(value); }

int cancelThread(CMPI_THREAD_TYPE thread) noexcept {
  return numbered([&] { return requestEnd(thread); });
}

int threadSleep(CMPIUint32 msec) {
  sleepFor(std::chrono::milliseconds(msec));
  return 0;
}

enum OnceState : int { kNotYet = 0, kRunning = 1, kDone = 2 };

struct OnceLock {
  std::mutex mutex;
  std::condition_variable changed;
};

OnceLock& onceLock() {
  static auto* const lock = new OnceLock;
  return *lock;
}

/// Waits while another thread runs the function. False where it has been run.
bool beginOnce(int& once) {
  OnceLock& all = onceLock();
  std::unique_lock<std::mutex> lock(all.mutex);
  all.changed.wait(lock, [&] { return once != kRunning; });
  if (once == kDone) return false;
  once = kRunning;
  return true;
}

/// However the function ends, nobody waits for it in vain; the next one tries again where it has
/// thrown or ended its thread.
struct OnceRun {
  int& once;
  OnceState result = kNotYet;

  ~OnceRun() {
    const std::lock_guard<std::mutex> lock(onceLock().mutex);
    once = result;
    onceLock().changed.notify_all();
  }
};

int threadOnce(int* once, CMPIThreadOnceFunc function) {
  bool isFirst = false;
  const int error = numbered([&] {
    if (once == nullptr || function == nullptr) return EINVAL;
    isFirst = beginOnce(*once);
    return 0;
  });
  if (error != 0 || !isFirst) return error;
  OnceRun run{*once};
  if (!runRoutine("threadOnce", nullptr, function)) return EAGAIN;
  run.result = kDone;
  return 0;
}

int createThreadKey(CMPI_THREAD_KEY_TYPE* key, CMPIThreadKeyCleanupFunc cleanup) noexcept {
  return numbered([&] { return createKey(key, cleanup); });
}

int destroyThreadKey(CMPI_THREAD_KEY_TYPE key) noexcept {
  return numbered([&] { return destroyKey(key); });
}

void* getThreadSpecific(CMPI_THREAD_KEY_TYPE key) noexcept { return keyValue(key); }

int setThreadSpecific(CMPI_THREAD_KEY_TYPE key, void* value) noexcept {
  return numbered([&] { return setKeyValue(key, value); });
}

CMPI_MUTEX_TYPE newMutex(int) noexcept {
  try {
    return &makeObject(Kind::kMutex, Ownership::kCloned, nullptr, std::make_unique<MutexBody>());
  } catch (...) {
    return nullptr;
  }
}

int destroyMutex2(CMPI_MUTEX_TYPE mutex) noexcept {
  return numbered([&] {
    Handle& handle = handleOf(mutex, Kind::kMutex);
    if (bodyOf<MutexBody>(handle).mutex.isUsed()) return EBUSY;
    return destroy(handle) ? 0 : EINVAL;
  });
}

int lockMutex2(CMPI_MUTEX_TYPE mutex) noexcept {
  return numbered([&] {
    bodyOf<MutexBody>(handleOf(mutex, Kind::kMutex)).mutex.lock();
    return 0;
  });
}

int unlockMutex2(CMPI_MUTEX_TYPE mutex) noexcept {
  return numbered([&] {
    OwnedMutex& own = bodyOf<MutexBody>(handleOf(mutex, Kind::kMutex)).mutex;
    if (!own.isMine()) return EPERM;
    own.unlock();
    return 0;
  });
}

void destroyMutex(CMPI_MUTEX_TYPE mutex) noexcept { destroyMutex2(mutex); }
void lockMutex(CMPI_MUTEX_TYPE mutex) noexcept { lockMutex2(mutex); }
void unlockMutex(CMPI_MUTEX_TYPE mutex) noexcept { unlockMutex2(mutex); }

CMPI_COND_TYPE newCondition(int) noexcept {
  try {
    return &makeObject(Kind::kCondition, Ownership::kCloned, nullptr,
                       std::make_unique<ConditionBody>());
  } catch (...) {
    return nullptr;
  }
}

int destroyCondition2(CMPI_COND_TYPE cond) noexcept {
  return numbered([&] { return destroy(handleOf(cond, Kind::kCondition)) ? 0 : EINVAL; });
}

void destroyCondition(CMPI_COND_TYPE cond) noexcept { destroyCondition2(cond); }

int condWait(CMPI_COND_TYPE cond, CMPI_MUTEX_TYPE mutex) {
  return waitForCondition(cond, mutex, nullptr);
}

int timedCondWait(CMPI_COND_TYPE cond, CMPI_MUTEX_TYPE mutex, struct timespec* wait) {
  if (wait == nullptr) return EINVAL;
  const std::chrono::system_clock::time_point deadline = deadlineIn(wait);
  return waitForCondition(cond, mutex, &deadline);
}

int signalCondition(CMPI_COND_TYPE cond) noexcept {
  return numbered([&] {
    auto& condition = bodyOf<ConditionBody>(handleOf(cond, Kind::kCondition));
    ++condition.signals;
    condition.changed.notify_one();
    return 0;
  });
}

}  // namespace

const CMPIBrokerExtFT kBrokerExtTable = {
    CMPICurrentVersion, resolveFileName,   newThread,        joinThread,      exitThread,
    cancelThread,       threadSleep,       threadOnce,       createThreadKey, destroyThreadKey,
    getThreadSpecific,  setThreadSpecific, newMutex,         destroyMutex,    lockMutex,
    unlockMutex,        newCondition,      destroyCondition, condWait,        timedCondWait,
    signalCondition,    destroyMutex2,     lockMutex2,       unlockMutex2,    destroyCondition2};

}  // namespace cmpinsp::broker
