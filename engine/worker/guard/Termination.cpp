#include <cstdlib>
#include <exception>
#include <new>

#include "engine/worker/guard/CrashNotice.h"
#include "engine/worker/guard/MemoryWatch.h"
#include "engine/worker/wire/Wire.h"

namespace engine::guard {
namespace {

void tellException() {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    wire::send(Done{DoneStatus::kOutOfMemory, ""});
  } catch (const std::exception& exception) {
    Error error;
    error.cause = Cause::kException;
    error.text = std::string("an exception that nobody caught: ") + exception.what();
    wire::send(Happened{Source::kWorker, error});
  } catch (...) {
    Error error;
    error.cause = Cause::kException;
    error.text = "an exception of an unknown type that nobody caught";
    wire::send(Happened{Source::kWorker, error});
  }
}

/// Not even the exception's own memory may have been there, or it met code that lets none out.
[[noreturn]] void endForWantOfMemory() {
  static const char kLine[] = "\n{\"done\":{\"status\":4,\"text\":\"\"}}\n";
  static_assert(static_cast<int>(DoneStatus::kOutOfMemory) == 4);
  wire::sendLastWord(kLine, sizeof kLine - 1);
  std::_Exit(EXIT_FAILURE);
}

[[noreturn]] void terminate() noexcept {
  if (hasMemoryRunOut()) endForWantOfMemory();
  try {
    if (std::current_exception()) tellException();
  } catch (...) {
    // Without memory nothing can be told but the end itself.
  }
  std::abort();
}

}  // namespace

void tellOfTermination() noexcept { std::set_terminate(terminate); }

}  // namespace engine::guard
