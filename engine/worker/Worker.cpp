#include "engine/worker/Worker.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <new>
#include <optional>
#include <string>
#include <system_error>

#include "engine/worker/guard/CrashNotice.h"
#include "engine/worker/guard/MemoryWatch.h"
#include "engine/worker/tasks/Stopping.h"
#include "engine/worker/tasks/Tasks.h"
#include "engine/worker/wire/Orders.h"
#include "engine/worker/wire/Wire.h"
#include "framework/TVORException.h"

namespace engine {
namespace {

Done carryOut(tasks::Session& session, const Request& request) {
  switch (request.task) {
    case Task::kList:
      return tasks::list(session, request);
    case Task::kRun:
      return tasks::run(session, request);
    case Task::kProviders:
      return tasks::showProviders(session);
    case Task::kInspect:
      return tasks::inspect(session, request);
    case Task::kCheck:
      break;
  }
  return tasks::check(session);
}

/// The supervisor takes the last place that it was told of for the one where it happened.
Done outOfMemory() {
  const char* const provider = guard::providerWithoutMemory();
  if (*provider != '\0') wire::tellPlace(provider, guard::operationWithoutMemory());
  return {DoneStatus::kOutOfMemory, guard::wasMemoryAmple() ? provider : ""};
}

/// Whether the exception that is being handled comes of that: whoever caught it may have thrown
/// another one, and the loader throws none.
bool lacksMemory() {
  if (guard::hasMemoryRunOut()) return true;
  try {
    throw;
  } catch (const NZELVOR20::TVORException& failure) {
    return failure.GetStatus().GetStatusCode() == NZELVOR20::eVOROutOfMemory;
  } catch (...) {
    return false;
  }
}

Done answerOf(tasks::Session& session, const Request& request) {
  const bool relies = request.task != Task::kCheck;
  const bool looksAtProviders = request.task == Task::kCheck || request.task == Task::kProviders;
  try {
    tasks::Warnings warnings;
    if (relies) warnings.begin(session);
    // The events of a run stand behind them.
    if (request.task != Task::kList) warnings.end();
    Done done = carryOut(session, request);
    warnings.end();
    if (!looksAtProviders) session.tellUnusableProviders();
    // What could not be looked at for want of memory is not without fault.
    if (request.task == Task::kCheck && guard::hasMemoryRunOut()) throw std::bad_alloc();
    return done;
  } catch (const std::bad_alloc&) {
    return outOfMemory();
  } catch (...) {
    if (lacksMemory()) return outOfMemory();
    return {DoneStatus::kFailed, tasks::currentExceptionText()};
  }
}

/// What was written has to be in its pipe before the last word is.
void flushOutput() {
  std::cout.flush();
  std::cerr.flush();
  std::fflush(nullptr);
}

/// The answer goes out before the providers clean up, which may take them any time.
void carryOutIn(std::optional<tasks::Session>& session, const Request& request) {
  try {
    session.emplace(request.installation, static_cast<int>(request.logLevel));
  } catch (const std::bad_alloc&) {
    return wire::sendOutOfMemory();
  } catch (...) {
    return wire::send(Done{DoneStatus::kUnusable, tasks::currentExceptionText()});
  }
  try {
    const Done done = answerOf(*session, request);
    flushOutput();
    wire::send(done);
  } catch (const std::bad_alloc&) {
    wire::sendOutOfMemory();
  }
}

void serveRequest(const Request& request) {
  wire::send(Hello());
  try {
    wire::listen([] { tasks::Stopping::order(); });
  } catch (const std::system_error&) {
    return wire::sendOutOfMemory();  // a thread's stack is all that it needs
  }
  std::optional<tasks::Session> session;
  carryOutIn(session, request);
}

}  // namespace

int serve() noexcept {
  guard::watchMemory();
  guard::tellOfTermination();
  guard::tellOfCrashes();
  if (!wire::open()) {
    std::fputs("diags-worker: works for diags, and not by itself\n", stderr);
    return EXIT_FAILURE;
  }
  try {
    const auto line = wire::readLine();
    if (!line) return EXIT_FAILURE;
    const Order order = orderFrom(*line);
    if (const auto* const request = std::get_if<Request>(&order)) serveRequest(*request);
    return EXIT_SUCCESS;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "diags-worker: %s\n", failure.what());
  } catch (...) {
    std::fputs("diags-worker: an exception of an unknown kind\n", stderr);
  }
  return EXIT_FAILURE;
}

}  // namespace engine
