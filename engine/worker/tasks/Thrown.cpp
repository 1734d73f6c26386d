#include "engine/worker/tasks/Thrown.h"

#include <algorithm>
#include <cstddef>
#include <mutex>

namespace engine::tasks {
namespace {

constexpr std::size_t kMost = 16;

std::mutex g_mutex;
std::vector<Thrown> g_all;

}  // namespace

void noteThrown(const char* provider, const char* text) noexcept {
  try {
    const std::lock_guard<std::mutex> lock(g_mutex);
    const bool isKnown = std::any_of(g_all.begin(), g_all.end(), [&](const Thrown& one) {
      return one.provider == provider && one.text == text;
    });
    if (!isKnown && g_all.size() < kMost) g_all.push_back({provider, text});
  } catch (...) {
    // Without memory the line in the log has to do.
  }
}

std::vector<Thrown> allThrown() {
  const std::lock_guard<std::mutex> lock(g_mutex);
  return g_all;
}

}  // namespace engine::tasks
