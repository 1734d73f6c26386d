#include "engine/supervisor/Causes.h"

#include <cstdio>
#include <string>
#include <utility>

namespace engine {
namespace {

struct Named {
  std::int64_t code;
  const char* name;
};

/// The signals of Linux on x86-64, whose numbers a report may be read with on any system.
constexpr int kKill = 9;
const Named kSignals[] = {{1, "hang-up"},
                          {2, "interrupt"},
                          {3, "quit"},
                          {4, "illegal instruction"},
                          {5, "trap"},
                          {6, "abort"},
                          {7, "bus error"},
                          {8, "arithmetic error"},
                          {9, "kill"},
                          {11, "segmentation fault"},
                          {13, "broken pipe"},
                          {14, "alarm"},
                          {15, "termination"},
                          {24, "processor time limit"},
                          {25, "file size limit"},
                          {31, "bad system call"}};

const Named kExceptions[] = {{0xC0000005, "access violation"},
                             {0xC0000006, "page could not be read"},
                             {0xC0000017, "no memory"},
                             {0xC000001D, "illegal instruction"},
                             {0xC0000094, "integer division by zero"},
                             {0xC0000096, "privileged instruction"},
                             {0xC00000FD, "stack overflow"},
                             {0xC0000374, "heap corruption"},
                             {0xC0000409, "stack buffer overrun"},
                             {0x40000015, "abort"},
                             {0x80000003, "breakpoint"}};

/// Statuses from here on are the system's own.
constexpr std::int64_t kFirstException = 0x40000000;

std::string exceptionText(std::int64_t code) {
  char number[24];
  std::snprintf(number, sizeof number, "0x%08llX", static_cast<unsigned long long>(code));
  for (const Named& one : kExceptions) {
    if (one.code == code) return std::string(one.name) + " (exception " + number + ")";
  }
  return std::string("exception ") + number;
}

std::string signalText(std::int64_t number) {
  const std::string plain = "signal " + std::to_string(number);
  for (const Named& one : kSignals) {
    if (one.code == number) return std::string(one.name) + " (" + plain + ")";
  }
  return plain;
}

std::string codeText(std::int64_t code) {
  return code >= kFirstException ? exceptionText(code) : signalText(code);
}

Error errorOf(Cause cause, std::string text, std::int64_t code = 0) {
  Error error;
  error.cause = cause;
  error.text = std::move(text);
  error.code = code;
  return error;
}

}  // namespace

Error crashError(const Crashed& crash) {
  Error error = errorOf(Cause::kCrashed, "it crashed: " + codeText(crash.code), crash.code);
  if (crash.processor) error.text += " on CPU " + std::to_string(*crash.processor);
  error.processor = crash.processor;
  error.provider = crash.provider;
  error.operation = crash.operation;
  error.libraries = crash.libraries;
  return error;
}

Error endError(const ProcessEnd& end) {
  // Windows has its own numbers there, signed in some places.
  const std::int64_t status = end.status & 0xFFFFFFFF;
  if (end.signal == kKill) {
    return errorOf(Cause::kKilled,
                   "it was killed (signal 9); the system does so where memory runs out", kKill);
  }
  if (end.signal != 0) {
    return errorOf(Cause::kCrashed, "it crashed: " + signalText(end.signal), end.signal);
  }
  if (status >= kFirstException) {
    return errorOf(Cause::kCrashed, "it crashed: " + exceptionText(status), status);
  }
  return errorOf(Cause::kExited,
                 "it ended the process by itself, with status " + std::to_string(status), status);
}

Error timedOutError() {
  return errorOf(Cause::kTimedOut, "its time was up, and it did not end when it was told to");
}

Error endedError() {
  return errorOf(Cause::kKilled,
                 "it did not end in good order when it was told to, and was killed");
}

Error outOfMemoryError() { return errorOf(Cause::kOutOfMemory, "it ran out of memory"); }

}  // namespace engine
