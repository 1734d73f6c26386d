#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "engine/events/Timestamp.h"
#include "fleet/conclude/Conclude.h"
#include "reports/common/Excerpt.h"

namespace fleet {
namespace {

constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kDay = 86'400 * kSecond;

std::int64_t distanceOf(engine::Time one, engine::Time other) {
  return std::abs((one - other).count());
}

template <typename Value>
Value middleOf(std::vector<Value> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// When most of the machines were tested.
struct Period {
  engine::Time middle;
  std::int64_t reach = 0;  ///< how far from it a run may be
};

/// A fleet that is tested within an hour has a reach of a day, one that takes its time has more.
Period periodOf(const std::vector<const Machine*>& machines) {
  constexpr std::int64_t kDeviations = 10;
  std::vector<engine::Time> times;
  for (const Machine* machine : machines) times.push_back(machine->began);
  const engine::Time middle = middleOf(times);
  std::vector<std::int64_t> distances;
  for (const engine::Time time : times) distances.push_back(distanceOf(time, middle));
  return {middle, std::max(kDay, kDeviations * middleOf(distances))};
}

std::string spanText(std::int64_t microseconds) {
  constexpr std::int64_t kMinute = 60 * kSecond;
  constexpr std::int64_t kHour = 60 * kMinute;
  if (microseconds >= 2 * kDay) return std::to_string(microseconds / kDay) + " days";
  if (microseconds >= 2 * kHour) return std::to_string(microseconds / kHour) + " hours";
  return std::to_string(microseconds / kMinute) + " minutes";
}

std::string beginningOf(const Machine& machine) {
  return "began at " + engine::timestampOf(machine.began) + " by the clock of " +
         reports::excerpt(machine.name) + ", ";
}

/// Empty where nothing is odd.
std::string oddityOf(const Machine& machine, const Period* period, engine::Time now) {
  constexpr std::int64_t kAhead = 600 * kSecond;
  if (machine.began > now && distanceOf(machine.began, now) > kAhead) {
    return beginningOf(machine) + "which is " + spanText(distanceOf(machine.began, now)) +
           " ahead of this machine's";
  }
  if (period == nullptr || distanceOf(machine.began, period->middle) <= period->reach) return {};
  return beginningOf(machine) + spanText(distanceOf(machine.began, period->middle)) +
         (machine.began < period->middle ? " before" : " behind") +
         " most machines' runs: it is another run than theirs, or the clock is wrong";
}

}  // namespace

void concludeClocks(Answer& answer, engine::Time now) {
  constexpr std::size_t kFewest = 3;  // of two nobody knows whose is wrong
  constexpr std::size_t kMostTold = 20;
  std::vector<const Machine*> machines;
  for (const Machine& machine : answer.machines) {
    if (machine.isClockTrusted) machines.push_back(&machine);
  }
  if (machines.empty()) return;
  const Period period = periodOf(machines);
  std::size_t count = 0;
  for (const Machine* machine : machines) {
    const std::string text = oddityOf(*machine, machines.size() < kFewest ? nullptr : &period, now);
    if (text.empty() || ++count > kMostTold) continue;
    answer.complaints.push_back({machine->source, 0, text, false});
  }
  if (count <= kMostTold) return;
  answer.complaints.push_back({"", 0,
                               std::to_string(count - kMostTold) +
                                   " more machines' runs are so far from most by their clocks",
                               false});
}

}  // namespace fleet
