#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

/// The runner's only knowledge of an operating system. Tests link a fake of these operations.
namespace diagsrunner::platform {

/// Blocks the calling thread.
void sleepMilliseconds(unsigned int milliseconds);

/// The calendar time in seconds since 1970, UTC.
std::int64_t currentTime();

/// `later` - `earlier`, in seconds.
double secondsBetween(std::int64_t later, std::int64_t earlier);

/// Gives memory of `allocateZeroed` back.
void release(char* buffer) noexcept;

struct FreeBuffer {
  void operator()(char* buffer) const noexcept { release(buffer); }
};

/// Memory of the C library, which hands large zeroed blocks out without touching them.
using Buffer = std::unique_ptr<char[], FreeBuffer>;

/// A buffer of `size` zero bytes, or null when there is not enough memory.
Buffer allocateZeroed(std::size_t size);

/// Reads up to `size` bytes of the file at `path` in text mode, with one read, into `buffer`. False
/// when the file cannot be opened. Outside Windows, the part `\kfr\data\` of the path is read with
/// "/". Paths are UTF-8.
bool readFile(const std::string& path, char* buffer, std::size_t size);

}  // namespace diagsrunner::platform
