#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// What the tests of sick providers need of the system.
namespace sick {

/// Sets a variable of this process; an empty text takes it away.
void setVariable(const char* name, const std::string& value);

/// The processes below this one that have the mark of this process in their environment, which is
/// put there at the first call of `setVariable`.
std::size_t countMarked();

/// 10 ms.
void pauseBriefly();

#if !defined(_WIN32)
/// A pipe that this process has open, as others that are started may inherit it.
class StrayPipe {
 public:
  StrayPipe();
  StrayPipe(const StrayPipe&) = delete;
  StrayPipe& operator=(const StrayPipe&) = delete;
  ~StrayPipe();
  /// Whether another process could write to it. This one cannot any more from here on.
  bool isHeldByOthers();

 private:
  void closeEntry();

  std::intptr_t m_exit = -1;
  std::intptr_t m_entry = -1;
};
#endif

/// While it is there, this thread and what it starts are on one logical processor alone: the last
/// one that they may be on.
class OneProcessor {
 public:
  OneProcessor();
  OneProcessor(const OneProcessor&) = delete;
  OneProcessor& operator=(const OneProcessor&) = delete;
  ~OneProcessor();
  unsigned number() const { return m_number; }

 private:
  unsigned m_number = 0;
  std::string m_former;  ///< those that were allowed, as the system has them
};

}  // namespace sick
