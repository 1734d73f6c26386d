#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <system_error>
#include <thread>

#include "providers/sensors/services/SensorsDiagnostic.h"
#include "tests/providers/common/FakeControl.h"

namespace providers::sensors {
namespace {

bool tells(const Outcome& outcome, const std::string& text) {
  return outcome.text.find(text) != std::string::npos;
}

/// Some sensors and what becomes of them: `whileLoaded` and `afterwards` are called before each
/// reading.
struct Tested {
  Tested() {
    sensor.chip = "board (0)";
    sensor.label = "CPU";
    sensor.value = 40;
    sensor.limits.high = 80;
    sensor.limits.highCritical = 95;
  }
  SensorsDiagnostic diagnostic() {
    struct Busy : Load {
      explicit Busy(Tested& owner) : tested(owner) { tested.loaded = true; }
      ~Busy() override {
        tested.loaded = false;
        tested.wasLoaded = true;
      }
      Tested& tested;
    };
    SensorsSurroundings surroundings;
    surroundings.hasSensors = [this] { return present; };
    surroundings.open = [this] { return OpenedSensors{[this] { return read(); }, "a test"}; };
    surroundings.startLoad = [this] { return std::make_unique<Busy>(*this); };
    surroundings.loadThreads = 4;
    surroundings.clock = [this] { return now; };
    surroundings.sleep = [this](double seconds) {
      now += seconds;
      if (loaded) loadedSeconds += seconds;
    };
    return SensorsDiagnostic(surroundings);
  }
  Outcome run(const RunSettings& settings = {}) {
    SensorsDiagnostic test = diagnostic();
    return test.run(test.devices().at(0), settings, control);
  }
  std::vector<Sensor> read() {
    ++readings;
    if (loaded) whileLoaded();
    if (wasLoaded) afterwards();
    std::vector<Sensor> all = others;
    if (!gone) all.push_back(sensor);
    return all;
  }

  Sensor sensor;
  std::vector<Sensor> others;
  bool present = true, gone = false, loaded = false, wasLoaded = false;
  int readings = 0;
  double now = 0, loadedSeconds = 0;
  std::function<void()> whileLoaded = [] {};
  std::function<void()> afterwards = [] {};
  FakeControl control;
};

const Measured* measured(const Outcome& outcome, const std::string& name) {
  for (const Measured& one : outcome.measured)
    if (one.name == name) return &one;
  return nullptr;
}

TEST(Sensors, WithinTheirLimitsAreSilentAndMeasured) {
  Tested machine;
  machine.whileLoaded = [&] { machine.sensor.value = 71.5; };
  machine.afterwards = [&] { machine.sensor.value = 50; };
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Ok) << outcome.text;
  EXPECT_EQ(outcome.summary, "1 sensor within limits, of 1");
  EXPECT_TRUE(tells(outcome,
                    "Temperature board (0), CPU: 40.0 degree C before the load, 71.5 degree "
                    "C under load, 50.0 degree C after the load (at most 80.0 degree C, "
                    "critical from 95.0 degree C)\n"))
      << outcome.text;
  EXPECT_TRUE(tells(outcome, "Load: 10 s on 4 processors\n")) << outcome.text;
  const Measured* loaded = measured(outcome, "Board0CPUUnderLoad");
  ASSERT_TRUE(loaded);
  EXPECT_EQ(loaded->value, 71.5);
  EXPECT_EQ(loaded->maximum, 80);
  EXPECT_EQ(loaded->unit, "degree C");
  EXPECT_TRUE(measured(outcome, "Board0CPUBefore"));
  EXPECT_TRUE(measured(outcome, "Board0CPUAfter"));
  EXPECT_NEAR(machine.loadedSeconds, 10, 0.01);
  EXPECT_FALSE(machine.loaded);
}

struct FaultRow {
  const char* name;
  void (*breakIt)(Tested&);
  CompletionState state;
  const char* text;
};

class SensorFault : public ::testing::TestWithParam<FaultRow> {};

TEST_P(SensorFault, IsFoundAndNamed) {
  Tested machine;
  GetParam().breakIt(machine);
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, GetParam().state) << outcome.text;
  EXPECT_TRUE(tells(outcome, GetParam().text)) << outcome.text;
  ASSERT_EQ(outcome.notes.size(), 1U) << outcome.text;
  EXPECT_EQ(outcome.notes[0].part.name, "CPU");
  EXPECT_EQ(outcome.notes[0].part.location, "board (0)");
  EXPECT_FALSE(outcome.notes[0].correctiveAction.empty());
}

void makeFan(Tested& machine, std::optional<double> least) {
  machine.sensor.kind = Kind::Fan;
  machine.sensor.value = 1200;
  machine.sensor.limits = {{}, least, {}, {}};
}

INSTANTIATE_TEST_SUITE_P(
    Each, SensorFault,
    ::testing::Values(
        FaultRow{"OverItsLimit", [](Tested& machine) { machine.sensor.value = 80.5; },
                 CompletionState::Warning,
                 "Temperature of board (0), CPU is above its limit before the load: expected at "
                 "most 80.0 degree C, found 80.5 degree C\n"},
        FaultRow{"CriticalUnderLoad",
                 [](Tested& machine) {
                   machine.whileLoaded = [&machine] { machine.sensor.value = 95; };
                   machine.afterwards = [&machine] { machine.sensor.value = 60; };
                 },
                 CompletionState::Failed,
                 "has reached its critical limit under load: expected less than 95.0 degree C, "
                 "found 95.0 degree C\n"},
        FaultRow{"VoltageCriticallyLow",
                 [](Tested& machine) {
                   machine.sensor.kind = Kind::Voltage;
                   machine.sensor.value = 10;
                   machine.sensor.limits = {10, {}, {}, {}};
                 },
                 CompletionState::Failed,
                 "has reached its critical limit before the load: expected more than 10.000 V, "
                 "found 10.000 V\n"},
        FaultRow{"FanStopsUnderLoad",
                 [](Tested& machine) {
                   makeFan(machine, {});
                   machine.whileLoaded = [&machine] { machine.sensor.value = 0; };
                   machine.sensor.limits.high = 9000;
                 },
                 CompletionState::Warning,
                 "Fan of board (0), CPU stands still under load: expected that it goes on turning, "
                 "found 0 1/min\n"},
        FaultRow{"FanStandsStill",
                 [](Tested& machine) {
                   makeFan(machine, 300);
                   machine.sensor.value = 0;
                 },
                 CompletionState::Failed,
                 "stands still before the load: expected at least 300 1/min"},
        FaultRow{"FanTooSlow",
                 [](Tested& machine) {
                   makeFan(machine, 300);
                   machine.sensor.value = 299;
                 },
                 CompletionState::Warning,
                 "below its limit before the load: expected at least 300 1/min, found 299 1/min"},
        FaultRow{
            "VoltageTooLow",
            [](Tested& machine) {
              machine.sensor.kind = Kind::Voltage;
              machine.sensor.value = 12.1;
              machine.sensor.limits = {{}, 11.4, 12.6, {}};
              machine.whileLoaded = [&machine] { machine.sensor.value = 11.3; };
            },
            CompletionState::Warning,
            "Voltage of board (0), CPU is below its limit under load: expected at least 11.400 "
            "V, found 11.300 V\n"},
        FaultRow{"Alarm", [](Tested& machine) { machine.sensor.alarm = true; },
                 CompletionState::Warning, ": the chip reports an alarm before the load\n"},
        FaultRow{"CriticalAlarm",
                 [](Tested& machine) {
                   machine.whileLoaded = [&machine] { machine.sensor.criticalAlarm = true; };
                 },
                 CompletionState::Failed, ": the chip reports a critical alarm under load\n"},
        FaultRow{"BrokenSensor",
                 [](Tested& machine) {
                   machine.sensor.fault = true;
                   machine.sensor.value = 127;
                 },
                 CompletionState::Warning, ": the chip says that the sensor is broken"},
        FaultRow{"FallsSilent",
                 [](Tested& machine) {
                   machine.whileLoaded = [&machine] { machine.sensor.value.reset(); };
                 },
                 CompletionState::Warning, ": the sensor could not be read any more under load\n"},
        FaultRow{"ChipGoes",
                 [](Tested& machine) { machine.afterwards = [&machine] { machine.gone = true; }; },
                 CompletionState::Warning, "could not be read any more after the load\n"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(Sensors, TheLoadEndsWhenSomethingIsCritical) {
  Tested machine;
  machine.whileLoaded = [&] {
    if (machine.loadedSeconds > 2.5) machine.sensor.value = 96;
  };
  machine.afterwards = [&] { machine.sensor.value = 50; };
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_LT(machine.loadedSeconds, 4);
  EXPECT_TRUE(tells(outcome, "Load: 3 s on 4 processors\n")) << outcome.text;
  EXPECT_TRUE(tells(outcome, "The load was ended when a limit was reached\n"));
}

TEST(Sensors, AnAlarmOfYesterdayIsNone) {
  Tested machine;
  machine.sensor.alarm = true;
  Course course;
  course.add(Phase::Before, {machine.sensor});
  machine.sensor.alarm = false;
  course.add(Phase::Before, {machine.sensor});
  EXPECT_FALSE(course.sensors().at(0).alarm);
}

TEST(Sensors, OneWithoutLimitsAndOneThatWasNeverReadAreToldAndNotJudged) {
  Tested machine;
  Sensor free;
  free.chip = "other";
  free.label = "temp1";
  free.value = 300;
  machine.others.push_back(free);
  free.label = "temp2";
  free.value.reset();
  machine.others.push_back(free);
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(outcome.summary, "1 sensor within limits, of 3");
  EXPECT_TRUE(tells(outcome, "(it has no limit)\n"));
  EXPECT_TRUE(tells(outcome, "Temperature other, temp2: cannot be read\n"));
}

TEST(Sensors, OfTheSameNameAreKeptApart) {
  Tested machine;
  machine.others.push_back(machine.sensor);
  machine.others.front().value = 90;
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.notes.size(), 1U);
  EXPECT_EQ(outcome.summary, "1 finding of 2 sensors");
  ASSERT_TRUE(measured(outcome, "Board0CPUNo2Before"));
  EXPECT_EQ(measured(outcome, "Board0CPUNo2Before")->value, 40);
}

TEST(Sensors, WithoutLimitsOrUnreadableAreNotTested) {
  Tested machine;
  machine.sensor.limits = {};
  EXPECT_EQ(machine.run().summary, "Not tested: no sensor has limits");
  machine.sensor.value.reset();
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_EQ(outcome.summary, "Not tested: no sensor can be read");
}

TEST(Sensors, AreNotOfferedWhereThereAreNone) {
  Tested machine;
  EXPECT_EQ(machine.diagnostic().devices().size(), 1U);
  machine.present = false;
  EXPECT_TRUE(machine.diagnostic().devices().empty());
  EXPECT_EQ(machine.readings, 0);
}

TEST(Sensors, ARunThatIsStoppedLeavesNoLoad) {
  Tested machine;
  machine.control.stopAfter(40);
  EXPECT_EQ(machine.run().state, CompletionState::Stopped);
  EXPECT_FALSE(machine.loaded);
  EXPECT_LT(machine.now, 6);
}

TEST(SensorsSettings, TellHowLongTheLoadIs) {
  Tested machine;
  const SensorsDiagnostic test = machine.diagnostic();
  RunSettings settings;
  for (const auto& [value, refused] :
       {std::pair{Value(std::uint32_t{0}), true}, std::pair{Value(std::uint32_t{86401}), true},
        std::pair{Value(std::string("x")), true}, std::pair{Value(std::uint32_t{30}), false}}) {
    settings.properties.set("LoadSeconds", value);
    EXPECT_EQ(test.refuse(settings), refused ? "LoadSeconds is not between 1 and 86400" : "");
  }
  EXPECT_EQ(test.passSeconds(settings), 34);
  settings.quick = true;
  EXPECT_EQ(test.passSeconds(settings), 10);
  machine.run(settings);
  EXPECT_NEAR(machine.loadedSeconds, 6, 0.01);
}

TEST(ProcessorLoad, KeepsTheProcessorsBusyUntilItIsLetGo) {
  EXPECT_GE(processorLoadThreads(), 1U);
  startProcessorLoad().reset();
}

// Catches a process that ends by a signal, with threads that nobody has waited for.
TEST(ProcessorLoad, ThatCannotBeMadeByAllThreadsIsNone) {
  unsigned started = 0;
  std::atomic<unsigned> ended{0};
  const StartThread start = [&](std::function<void()> work) {
    if (++started == processorLoadThreads())
      throw std::system_error(EAGAIN, std::generic_category());
    return std::thread([&ended, work] {
      work();
      ++ended;
    });
  };
  EXPECT_THROW(startProcessorLoad(start), std::system_error);
  EXPECT_EQ(ended, processorLoadThreads() - 1);
}

}  // namespace
}  // namespace providers::sensors
