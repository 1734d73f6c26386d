#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/plan/Duration.h"
#include "engine/plan/PlanError.h"

/// What somebody wants to be run, before anybody knows what there is: as a plan file or the command
/// line says it. Plain values.
namespace engine {

/// The most that `repeat` may say, and the most runs of one pass over the tests.
constexpr std::uint64_t kMostRepetitions = 1'000'000;
/// The most tests at a time.
constexpr std::uint64_t kMostJobs = 256;
/// What a test is given after its time to end in good order, unless told otherwise.
constexpr Duration kDefaultGrace = std::chrono::seconds(10);
/// What `--quick` may take altogether, unless told otherwise.
constexpr Duration kDefaultQuick = std::chrono::minutes(2);

/// NAME=VALUE, as it was written.
struct SettingText {
  std::string name;
  std::string value;
  Place place;
};

/// What a measurement must keep to.
struct Limit {
  std::string measurement;  ///< its name, or a pattern for names
  std::optional<double> minimum;
  std::optional<double> maximum;
  Place place;
};

struct NamedTests {
  std::string name;  ///< an identifier, a service, a device, or a pattern
  Place place;
};

/// Tests with what is said about them.
struct PlannedTest {
  NamedTests tests;
  bool isEveryDevice = false;  ///< a service's name means its tests on all devices, not only one
  bool isOptional = false;     ///< there may be none
  std::uint64_t repeat = 1;    ///< each test as often, one run after the other
  std::optional<Duration> timeout;
  std::vector<SettingText> settings;
  std::vector<Limit> limits;
};

/// Tests that belong together: a group begins when the one before it has ended.
struct Group {
  std::string name;  ///< empty for the tests outside of groups
  std::vector<PlannedTest> tests;
  std::uint64_t repeat = 1;  ///< the whole group, before the next one begins
  std::optional<std::uint64_t> shuffle;
  std::optional<Duration> timeout;
  std::vector<SettingText> settings;
  std::vector<Limit> limits;
};

struct Plan {
  std::string title;
  std::vector<Group> groups;
  std::vector<NamedTests> excluded;
  bool allowDestructive = false;
  bool allowDisruptive = false;
  bool allowInteractive = true;
  std::optional<Duration> quick;         ///< only tests whose estimates fit into it, shortest first
  std::optional<std::uint64_t> repeat;   ///< all groups, so many times
  std::optional<Duration> repeatFor;     ///< nothing begins when this time is over
  bool untilFailure = false;             ///< nothing begins after a failure
  std::optional<std::uint64_t> shuffle;  ///< the seed; the order is as listed without
  std::uint64_t jobs = 1;                ///< tests at a time
  std::optional<Duration> timeout;       ///< of each test
  std::optional<Duration> deadline;      ///< of the whole run
  Duration grace = kDefaultGrace;
  std::vector<SettingText> settings;
  std::vector<Limit> limits;
};

}  // namespace engine
