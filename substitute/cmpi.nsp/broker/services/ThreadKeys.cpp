#include "substitute/cmpi.nsp/broker/services/ThreadKeys.h"

#include <cerrno>
#include <mutex>
#include <vector>

#include "substitute/cmpi.nsp/broker/lifetime/ThreadState.h"
#include "substitute/cmpi.nsp/broker/services/ProviderRoutine.h"

namespace cmpinsp::broker {
namespace {

/// How often values that a clean-up sets anew are tidied up again.
constexpr int kCleanupRounds = 4;
constexpr std::size_t kKeysAtMost = 4096;

struct Key {
  CMPIThreadKeyCleanupFunc cleanup = nullptr;
  unsigned generation = 0;  ///< tells the values of this use of the number from earlier ones
  bool isUsed = false;
};

struct KeyTable {
  std::mutex mutex;
  std::vector<Key> keys;
};

KeyTable& keyTable() {
  static auto* const table = new KeyTable;
  return *table;
}

/// The key's present use; false for a number that is none.
bool lookUp(CMPI_THREAD_KEY_TYPE key, Key& found) {
  KeyTable& table = keyTable();
  const std::lock_guard<std::mutex> lock(table.mutex);
  if (key == 0 || key > table.keys.size() || !table.keys[key - 1].isUsed) return false;
  found = table.keys[key - 1];
  return true;
}

/// Takes one value out and tidies it up; false where there is none.
bool cleanUp(ThreadState& state, std::size_t position) {
  void* const value = state.keyValues[position];
  state.keyValues[position] = nullptr;
  Key key;
  const bool known = lookUp(static_cast<CMPI_THREAD_KEY_TYPE>(position + 1), key);
  if (value == nullptr || !known || key.generation != state.keyGenerations[position]) return false;
  if (key.cleanup != nullptr)
    runRoutine("a thread key's clean-up", nullptr, [&] { key.cleanup(value); });
  return true;
}

}  // namespace

int createKey(CMPI_THREAD_KEY_TYPE* key, CMPIThreadKeyCleanupFunc cleanup) {
  if (key == nullptr) return EINVAL;
  KeyTable& table = keyTable();
  const std::lock_guard<std::mutex> lock(table.mutex);
  std::size_t position = 0;
  while (position < table.keys.size() && table.keys[position].isUsed) ++position;
  if (position >= kKeysAtMost) return EAGAIN;
  if (position == table.keys.size()) table.keys.emplace_back();
  Key& made = table.keys[position];
  made = Key{cleanup, made.generation + 1, true};
  *key = static_cast<CMPI_THREAD_KEY_TYPE>(position + 1);
  return 0;
}

int destroyKey(CMPI_THREAD_KEY_TYPE key) {
  KeyTable& table = keyTable();
  const std::lock_guard<std::mutex> lock(table.mutex);
  if (key == 0 || key > table.keys.size() || !table.keys[key - 1].isUsed) return EINVAL;
  table.keys[key - 1].isUsed = false;
  return 0;
}

void* keyValue(CMPI_THREAD_KEY_TYPE key) {
  const ThreadState& state = threadState();
  Key found;
  if (!lookUp(key, found) || key > state.keyValues.size()) return nullptr;
  const bool isPresent = state.keyGenerations[key - 1] == found.generation;
  return isPresent ? state.keyValues[key - 1] : nullptr;
}

int setKeyValue(CMPI_THREAD_KEY_TYPE key, void* value) {
  Key found;
  if (!lookUp(key, found)) return EINVAL;
  ThreadState& state = threadState();
  if (state.keyValues.size() < key) {
    state.keyGenerations.resize(key, 0);
    state.keyValues.resize(key, nullptr);
  }
  state.keyValues[key - 1] = value;
  state.endKeyValues = runKeyCleanups;
  state.keyGenerations[key - 1] = found.generation;
  return 0;
}

void runKeyCleanups(ThreadState& state) noexcept {
  bool found = true;
  for (int round = 0; found && round < kCleanupRounds; ++round) {
    found = false;
    for (std::size_t i = 0; i < state.keyValues.size(); ++i) found = cleanUp(state, i) || found;
  }
  state.keyValues.clear();
  state.keyGenerations.clear();
}

}  // namespace cmpinsp::broker
