#pragma once

#include <cstddef>
#include <cstdint>

namespace engine::guard {

/// The message of a crash, put together without memory and locks: a process that dies has neither.
class LastWord {
 public:
  /// `processor` is the logical one that the thread is on, -1 where nobody knows.
  LastWord(std::int64_t code, const char* provider, const char* operation,
           std::int64_t processor) noexcept;

  /// A library of the stack, the innermost first; one that follows itself counts once.
  void addLibrary(const char* path) noexcept;

  /// Ends the message and sends it.
  void send() noexcept;

 private:
  void put(const char* text) noexcept;
  void putText(const char* text) noexcept;
  void putNumber(std::int64_t number) noexcept;

  char m_line[8192];
  std::size_t m_size = 0;
  std::size_t m_libraries = 0;
  const char* m_last = "";
};

/// Where this thread is; empty texts outside of every provider.
const char* currentProvider() noexcept;
const char* currentOperation() noexcept;

}  // namespace engine::guard
