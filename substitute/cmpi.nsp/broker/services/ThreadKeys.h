#pragma once

#include "substitute/cmpi.nsp/broker/lifetime/Tables.h"

namespace cmpinsp::broker {

struct ThreadState;

/// Thread keys as providers use them: a value for each thread, and what tidies it up at the end of
/// the thread. Keys are numbers from 1. All answer 0 or an error number.
int createKey(CMPI_THREAD_KEY_TYPE* key, CMPIThreadKeyCleanupFunc cleanup);
int destroyKey(CMPI_THREAD_KEY_TYPE key);
void* keyValue(CMPI_THREAD_KEY_TYPE key);
int setKeyValue(CMPI_THREAD_KEY_TYPE key, void* value);

/// Tidies the values of the thread up that `state` belongs to, which is the calling one.
void runKeyCleanups(ThreadState& state) noexcept;

}  // namespace cmpinsp::broker
