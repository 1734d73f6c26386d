#include "engine/worker/wire/Orders.h"

#include <cstdlib>
#include <new>
#include <thread>
#include <utility>

#include "engine/worker/wire/Wire.h"

namespace engine::wire {
namespace {

void obey(const std::function<void()>& stop) noexcept {
  try {
    bool isStopped = false;
    while (const auto line = readLine()) {
      const bool isStop = std::holds_alternative<Stop>(orderFrom(*line));
      if (isStop && !std::exchange(isStopped, true)) stop();
    }
  } catch (const std::bad_alloc&) {
    sendOutOfMemory();
  } catch (...) {
    // An order that makes no sense is nobody's that this process should go on for.
  }
  std::_Exit(EXIT_FAILURE);
}

}  // namespace

void listen(std::function<void()> stop) {
  std::thread([stop = std::move(stop)] { obey(stop); }).detach();
}

}  // namespace engine::wire
