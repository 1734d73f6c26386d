#include "history/store/RunId.h"

#include <array>
#include <cstdio>
#include <random>

#include "engine/events/Timestamp.h"

namespace history {

std::string runId(engine::Time started, std::uint16_t digits) {
  const std::string time = engine::timestampOf(started);  // 2026-11-22T01:30:00.000000Z
  std::array<char, 5> suffix{};
  std::snprintf(suffix.data(), suffix.size(), "%04x", static_cast<unsigned>(digits));
  return time.substr(0, 4) + time.substr(5, 2) + time.substr(8, 2) + "-" + time.substr(11, 2) +
         time.substr(14, 2) + time.substr(17, 2) + "-" + suffix.data();
}

std::uint16_t someDigits() { return static_cast<std::uint16_t>(std::random_device()() & 0xffffU); }

}  // namespace history
