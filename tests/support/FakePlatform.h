#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/Platform.h"

namespace support {

/// The operating system as the runner sees it: a clock that advances when the code sleeps, files by
/// path, and memory that can run out. Stands behind `diagsrunner::platform`.
class FakePlatform {
 public:
  /// The clock's first reading, in seconds.
  static constexpr std::int64_t kStart = 1000000;
  /// An allocation above this fails, so that a test may speak of sizes of gigabytes.
  static constexpr std::size_t kMemory = std::size_t{64} * 1024 * 1024;
  /// How often the clock may be read, and how often the code may sleep, before the code under test
  /// counts as hung: the next time throws `std::logic_error`.
  static constexpr int kPatience = 100000;

  static FakePlatform& current();
  void clear();

  /// Makes the readings of the clock follow this list, in seconds after `kStart`; one more reading
  /// throws `std::logic_error`. Without a list the clock advances with the sleeps alone.
  void setReadings(const std::vector<std::int64_t>& seconds);
  /// Runs `hook` at the `number`-th reading of the clock, counted from 1, before it is answered.
  void atReading(int number, std::function<void()> hook);
  int readings() const { return m_readings; }
  std::uint64_t sleptMilliseconds() const { return m_slept; }

  /// Files by path, as the code under test forms it. What is not here cannot be opened.
  void setFile(const std::string& path, const std::string& content) { m_files[path] = content; }
  void removeFile(const std::string& path) { m_files.erase(path); }
  bool hasFile(const std::string& path) const { return m_files.count(path) != 0; }
  const std::string& file(const std::string& path) const { return m_files.at(path); }

  /// The `number`-th allocation from now, counted from 1, answers null.
  void failAllocation(int number) { m_allocationsToFailure = number; }

  /// How many buffers were handed out and are not given back.
  int heldBuffers() const { return m_held; }

  void sleep(unsigned int milliseconds);
  std::int64_t readClock();
  diagsrunner::platform::Buffer allocate(std::size_t size);
  void release(char* buffer);
  bool read(const std::string& path, char* buffer, std::size_t size);

 private:
  std::map<std::string, std::string> m_files;
  std::vector<std::int64_t> m_scripted;
  bool m_isScripted = false;
  std::map<int, std::function<void()>> m_hooks;
  int m_readings = 0;
  int m_sleeps = 0;
  std::uint64_t m_slept = 0;
  int m_allocationsToFailure = 0;
  int m_held = 0;
};

}  // namespace support
