#include <gtest/gtest.h>

#include <algorithm>

#include "providers/pcie/finding/SysfsLinks.h"
#include "providers/pcie/services/PcieDiagnostic.h"
#include "tests/providers/common/FakeControl.h"
#include "tests/providers/pcie/FakeDisks.h"

namespace providers::pcie {
namespace {

constexpr double kReadTakes = 0.05;

bool tells(const Outcome& outcome, const std::string& text) {
  return outcome.text.find(text) != std::string::npos;
}

double measuredIn(const Outcome& outcome, const std::string& name) {
  for (const Measured& one : outcome.measured)
    if (one.name == name) return one.value;
  ADD_FAILURE() << name << " was not measured";
  return -1;
}

/// Disks that were read as a test wants it, and that tell whether they are still read.
struct FakeLoad : DiskLoad {
  FakeLoad(std::vector<DiskRead> read, bool& atWork) : m_read(std::move(read)), m_atWork(atWork) {
    m_atWork = true;
  }
  ~FakeLoad() override { m_atWork = false; }
  std::vector<DiskRead> sofar() const override { return m_read; }

 private:
  const std::vector<DiskRead> m_read;
  bool& m_atWork;
};

/// A machine under test, which may change at rest and under load.
struct Tested {
  Outcome run(const RunSettings& settings = {}) {
    PcieDiagnostic test = diagnostic();
    return test.run(test.devices().at(0), settings, control);
  }
  PcieDiagnostic diagnostic() {
    PcieSurroundings surroundings;
    surroundings.sys = fabric.root();
    surroundings.nameFiles = {fabric.root() + "/pci.ids"};
    surroundings.hasLinks = [this] { return hasLinks(fabric.root()); };
    surroundings.clock = [this] { return now; };
    surroundings.sleep = [this](double seconds) {
      now += seconds;
      atRest();
    };
    surroundings.readConfiguration = [this](const std::string& address) {
      now += kReadTakes;
      underLoad();
      return readConfiguration(fabric.root(), address);
    };
    surroundings.startLoad = [this](const std::vector<LinkedDisk>& disks) {
      for (const LinkedDisk& disk : disks) loaded.push_back(disk.name);
      return std::make_unique<FakeLoad>(std::vector<DiskRead>(disks.size(), read), diskAtWork);
    };
    return PcieDiagnostic(surroundings);
  }

  FakeFabric fabric;
  double now = 0;
  std::function<void()> atRest = [] {};
  std::function<void()> underLoad = [] {};
  DiskRead read{std::uint64_t{1000} << 20, 0, {}};
  std::vector<std::string> loaded;
  bool diskAtWork = false;
  FakeControl control;
};

TEST(PcieLinks, ThatAreAsTheyShouldBeAreSilent) {
  Tested machine;
  machine.fabric.errors(FakeFabric::kDevice, 7, 1, 0);
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Ok) << outcome.text;
  EXPECT_EQ(outcome.summary, "1 link as wide and fast as both ends can");
  EXPECT_TRUE(tells(outcome, "  0000:02:00.0 (8086:1533, slot 5): 8.0 GT/s, 8 lanes\n"));
  EXPECT_EQ(measuredIn(outcome, "Links"), 1);
  EXPECT_EQ(measuredIn(outcome, "CorrectedErrors"), 0);
  EXPECT_GE(measuredIn(outcome, "Reads"), 50);
  EXPECT_TRUE(
      std::is_sorted(machine.control.fractions().begin(), machine.control.fractions().end()));
}

struct FaultRow {
  const char* name;
  void (*breakIt)(Tested&);
  CompletionState state;
  const char* text;
};

void set(Tested& machine, const char* address, const char* file, const char* content) {
  machine.fabric.file(address, file, content);
}

class PcieFault : public ::testing::TestWithParam<FaultRow> {};

TEST_P(PcieFault, IsFoundAndPlaced) {
  Tested machine;
  machine.fabric.add("pci.ids", "8086  Intel\n\t1533  I210\n");
  machine.fabric.errors(FakeFabric::kDevice, 7, 1, 0);
  GetParam().breakIt(machine);
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, GetParam().state) << outcome.text;
  EXPECT_TRUE(tells(outcome, GetParam().text)) << outcome.text;
  ASSERT_EQ(outcome.notes.size(), 1U) << outcome.text;
  EXPECT_EQ(outcome.notes[0].part.name, "PCI Express device 0000:02:00.0");
  EXPECT_EQ(outcome.notes[0].part.location, "slot 5");
  EXPECT_NE(outcome.notes[0].correctiveAction.find("eseat the card in slot 5 "), std::string::npos)
      << outcome.notes[0].correctiveAction;
}

INSTANTIATE_TEST_SUITE_P(
    Each, PcieFault,
    ::testing::Values(
        FaultRow{"WidthBelow",
                 [](Tested& machine) { set(machine, "0000:02:00.0", "current_link_width", "4"); },
                 CompletionState::Failed,
                 "Link of 0000:02:00.0 (Intel I210, slot 5) is below its width: expected 8 lanes "
                 "(the device can 8, port 0000:00:01.0 16), found 4 lanes\n"},
        FaultRow{"WidthFallsUnderLoad",
                 [](Tested& machine) {
                   machine.underLoad = [&machine] {
                     set(machine, "0000:02:00.0", "current_link_width", "1");
                   };
                 },
                 CompletionState::Failed, "is below its width since it was read: expected 8 lanes"},
        FaultRow{"WidthFallsForAMomentUnderLoad",
                 [](Tested& machine) {
                   machine.underLoad = [&machine] {
                     set(machine, "0000:02:00.0", "current_link_width",
                         machine.now > 7 && machine.now < 8 ? "2" : "8");
                   };
                 },
                 CompletionState::Failed, "found 2 lanes"},
        FaultRow{"WidthFallsWhileTheDiskIsRead",
                 [](Tested& machine) {
                   addDisk(machine.fabric, "nvme0n1");
                   machine.underLoad = [&machine] {
                     set(machine, "0000:02:00.0", "current_link_width",
                         machine.diskAtWork ? "4" : "8");
                   };
                 },
                 CompletionState::Failed, "is below its width since it was read: expected 8 lanes"},
        FaultRow{"ReadsThatFail",
                 [](Tested& machine) {
                   addDisk(machine.fabric, "nvme0n1");
                   machine.read.failed = 3;
                   machine.read.problem = "Input/output error";
                 },
                 CompletionState::Warning,
                 "3 reads of nvme0n1 over the link of 0000:02:00.0 (Intel I210, slot 5) failed: "
                 "Input/output error\n"},
        FaultRow{"SpeedBelow",
                 [](Tested& machine) {
                   set(machine, "0000:02:00.0", "current_link_speed", "2.5 GT/s PCIe");
                 },
                 CompletionState::Warning,
                 "is below its speed: expected 8.0 GT/s (the device can 8.0 GT/s, port "
                 "0000:00:01.0 16.0 GT/s), found 2.5 GT/s\n"},
        FaultRow{
            "CorrectedErrorsAtRest",
            [](Tested& machine) {
              machine.atRest = [&machine] {
                if (machine.now < 0.15) machine.fabric.errors("0000:02:00.0", 9, 1, 0);
              };
            },
            CompletionState::Warning,
            "Corrected errors of 0000:02:00.0 (Intel I210, slot 5) rose at rest: BadTLP by 2\n"},
        FaultRow{"CorrectedErrorsUnderLoad",
                 [](Tested& machine) {
                   machine.underLoad = [&machine] {
                     machine.fabric.errors("0000:02:00.0", 8, 1, 0);
                   };
                 },
                 CompletionState::Warning, "rose under load: BadTLP by 1\n"},
        FaultRow{"NonfatalErrors",
                 [](Tested& machine) {
                   machine.underLoad = [&machine] {
                     machine.fabric.errors("0000:02:00.0", 7, 2, 0);
                   };
                 },
                 CompletionState::Failed, "Uncorrected errors of "},
        FaultRow{"FatalErrorsSinceTheStart",
                 [](Tested& machine) { machine.fabric.errors("0000:02:00.0", 7, 1, 4); },
                 CompletionState::Warning, "since the system's start: DLP by 4\n"},
        FaultRow{"ErrorsOfThePort",
                 [](Tested& machine) {
                   machine.fabric.errors("0000:00:01.0", 0, 0, 0);
                   machine.underLoad = [&machine] {
                     machine.fabric.errors("0000:00:01.0", 1, 0, 0);
                   };
                 },
                 CompletionState::Warning,
                 "Corrected errors of port 0000:00:01.0, linked to 0000:02:00.0 (Intel I210, slot "
                 "5) rose under load"},
        FaultRow{"DeviceThatFallsSilent",
                 [](Tested& machine) {
                   machine.underLoad = [&machine] {
                     if (machine.now > 7)
                       machine.fabric.add("bus/pci/devices/0000:02:00.0/config",
                                          std::string(64, '\xff'));
                   };
                 },
                 CompletionState::Failed, "does not answer any more"},
        FaultRow{"DeviceThatNeverAnswers",
                 [](Tested& machine) {
                   machine.fabric.add("bus/pci/devices/0000:02:00.0/config",
                                      std::string(64, '\xff'));
                 },
                 CompletionState::Failed, "does not answer any more"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(PcieLinks, WithADiskBehindThemAreLoadedByReadingIt) {
  Tested machine;
  addDisk(machine.fabric, "nvme0n1");
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Ok) << outcome.text;
  EXPECT_EQ(machine.loaded, std::vector<std::string>{"nvme0n1"});
  EXPECT_FALSE(machine.diskAtWork) << "the load outlived the run";
  EXPECT_TRUE(tells(outcome, "8 lanes; 1000 MiB read from nvme0n1, ")) << outcome.text;
  EXPECT_TRUE(tells(outcome, "configurations, and the disks behind 1 link\n")) << outcome.text;
  EXPECT_EQ(measuredIn(outcome, "DiskData"), 1000);
}

TEST(PcieLinks, WhoseDiskCannotBeOpenedSaySo) {
  Tested machine;
  addDisk(machine.fabric, "nvme0n1");
  machine.read = {0, 0, "/dev/nvme0n1 cannot be opened for reading: Permission denied"};
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_TRUE(
      tells(outcome, "8 lanes; not loaded: /dev/nvme0n1 cannot be opened for reading: Permission"))
      << outcome.text;
  EXPECT_TRUE(tells(outcome, "for 1 link no more than the configurations was read"));
}

TEST(PcieLinks, WithoutADiskAreLoadedByConfigurationsAloneAndSaySo) {
  Tested machine;
  const Outcome outcome = machine.run();
  EXPECT_TRUE(machine.loaded.empty());
  EXPECT_TRUE(tells(outcome, "for 1 link no more than the configurations was read"))
      << outcome.text;
}

TEST(PcieLinks, ADeviceThatIsNarrowerThanItsSlotIsNoFault) {
  Tested machine;
  for (const char* which : {"current_link_width", "max_link_width"})
    machine.fabric.file(FakeFabric::kDevice, which, "1");
  EXPECT_EQ(machine.run().state, CompletionState::Ok);
}

TEST(PcieLinks, ASpeedThatTheDeviceHasOnlyWhenItIsReadIsNoFault) {
  Tested machine;
  machine.fabric.file(FakeFabric::kDevice, "current_link_speed", "2.5 GT/s PCIe");
  machine.underLoad = [&machine] {
    machine.fabric.file(FakeFabric::kDevice, "current_link_speed", "8.0 GT/s PCIe");
  };
  EXPECT_EQ(machine.run().state, CompletionState::Ok);
}

TEST(PcieLinks, TheSpeedOfWhatSavesPowerIsToldAndNotJudged) {
  Tested machine;
  machine.fabric.file(FakeFabric::kDevice, "class", "0x030000");
  machine.fabric.file(FakeFabric::kDevice, "current_link_speed", "2.5 GT/s PCIe");
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_TRUE(tells(outcome, "2.5 GT/s, 8 lanes; it could have 8.0 GT/s, but such devices"))
      << outcome.text;
  EXPECT_EQ(measuredIn(outcome, "SlowLinks"), 0);
}

TEST(PcieLinks, CountersThatCannotBeReadAreAWarning) {
  Tested machine;
  machine.fabric.errors(FakeFabric::kDevice, 0, 0, 0);
  machine.fabric.file(FakeFabric::kDevice, "aer_dev_fatal", "BadTLP");
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Warning);
  EXPECT_TRUE(tells(outcome, "Error counters cannot be read of: 0000:02:00.0\n"));
}

TEST(PcieLinks, WithoutAnyWidthAreNotTested) {
  Tested machine;
  machine.fabric.file(FakeFabric::kDevice, "current_link_width", "0");
  EXPECT_EQ(machine.run().state, CompletionState::Incomplete);
}

TEST(PcieLinks, ThatAreGoneAreNotTested) {
  Tested machine;
  PcieDiagnostic test = machine.diagnostic();
  machine.fabric.remove("bus/pci/devices");
  EXPECT_TRUE(test.devices().empty());
  EXPECT_EQ(test.run({}, {}, machine.control).summary, "Not tested: there is no link");
}

TEST(PcieLinks, ARunThatIsStoppedSaysSoAndKeepsWhatItFound) {
  Tested machine;
  machine.control.stopAfter(3);
  EXPECT_EQ(machine.run().state, CompletionState::Stopped);
  machine.fabric.file(FakeFabric::kDevice, "current_link_width", "4");
  EXPECT_EQ(machine.run().state, CompletionState::Failed);
  EXPECT_LT(machine.now, 1);
}

TEST(PcieSettings, TellHowLongIsWatched) {
  Tested machine;
  RunSettings settings;
  const PcieDiagnostic test = machine.diagnostic();
  for (const auto& [value, refused] :
       {std::pair{Value(std::uint32_t{0}), true}, std::pair{Value(std::uint32_t{86401}), true},
        std::pair{Value(std::string("x")), true}, std::pair{Value(std::uint32_t{30}), false}}) {
    settings.properties.set("WatchSeconds", value);
    EXPECT_EQ(test.refuse(settings), refused ? "WatchSeconds is not between 1 and 86400" : "");
  }
  EXPECT_EQ(test.passSeconds(settings), 60);
  settings.quick = true;
  EXPECT_EQ(test.passSeconds(settings), 12);
  machine.run(settings);
  EXPECT_NEAR(machine.now, 12, 16 * kReadTakes + 0.1);
}

}  // namespace
}  // namespace providers::pcie
