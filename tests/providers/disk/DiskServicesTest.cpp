#include <gtest/gtest.h>

#include <algorithm>

#include "providers/disk/services/AlignmentDiagnostic.h"
#include "providers/disk/services/ReadDiagnostic.h"
#include "tests/providers/common/FakeControl.h"
#include "tests/providers/common/OutcomeTexts.h"
#include "tests/providers/common/ShowValue.h"
#include "tests/providers/disk/ScriptedDisk.h"
#include "tests/providers/disk/Sizes.h"

namespace providers::disk {
namespace {

/// A machine with one disk, and the reading tests on it.
struct ReadMachine {
  explicit ReadMachine(ReadOrder order = ReadOrder::Sequential, std::uint64_t blocks = 65536)
      : scripted(blocks), test(surroundings(), order) {
    disk.name = "sda";
    disk.node = "/dev/sda";
    disk.model = "ACME 4T";
    disk.serial = "Z1";
    disk.slot = "3";
    disk.bytes = scripted.bytes();
  }

  ReadSurroundings surroundings() {
    return {[this] { return std::vector<Disk>{disk}; },
            [this](const std::string&, const SourceShape& shape, const std::string& number) {
              openedNumber = number;
              if (!problem.empty()) return OpenedSource{nullptr, problem};
              return OpenedSource{std::make_unique<ScriptedSource>(scripted, shape), {}};
            },
            [this] { return scripted.now(); }, [] { return 42U; }};
  }
  Outcome run(const Properties& properties = {}) {
    settings.properties = properties;
    return test.run(test.devices().at(0), settings, control);
  }

  ScriptedDisk scripted;
  Disk disk;
  std::string problem;
  std::string openedNumber;
  RunSettings settings;
  FakeControl control;
  ReadDiagnostic test;
};

TEST(DiskRead, AGoodDiskPassesAndTellsHowMuchWasRead) {
  ReadMachine machine;
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(outcome.summary, "Read 32 MiB of 32 MiB (100.0 %)");
  EXPECT_TRUE(tells(outcome, "of sda (ACME 4T, serial number Z1, slot 3), 0 unreadable blocks\n"));
  EXPECT_TRUE(tells(outcome, "32 reads, 8 in flight by script"));
  EXPECT_EQ(measuredIn(outcome, "ReadData"), 32);
  EXPECT_TRUE(outcome.notes.empty());
}

TEST(DiskRead, AnUnreadableBlockIsNamedWithItsDrive) {
  ReadMachine machine;
  machine.scripted.bad(4711);
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_TRUE(tells(outcome, "Unreadable: logical block 4711: the drive reports a medium error\n"));
  EXPECT_TRUE(tells(outcome, "replace sda (ACME 4T, serial number Z1, slot 3)\n"));
  ASSERT_EQ(outcome.errors.size(), 1U);
  EXPECT_EQ(outcome.errors[0].code, "Unreadable block");
  ASSERT_EQ(outcome.notes.size(), 1U);
  const Note& note = outcome.notes[0];
  EXPECT_EQ(note.correctiveAction,
            "Save the data and replace sda (ACME 4T, serial number Z1, slot 3)\n");
  EXPECT_EQ(note.part.name, "") << "it is the device";
  EXPECT_EQ(note.part.location, "3");
  EXPECT_EQ(note.part.serialNumber, "Z1");
}

TEST(DiskRead, ABlockThatComesBackIsAWarning) {
  ReadMachine machine;
  machine.scripted.bad(4711, 1, 13);
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Warning);
  EXPECT_TRUE(tells(outcome, "Read only when tried again: logical block 4711: "));
  ASSERT_EQ(outcome.notes.size(), 1U);
  EXPECT_EQ(outcome.notes[0].type, RecordType::Warnings);
  EXPECT_EQ(outcome.notes[0].correctiveAction.find("Look at the Status and Grown Defects tests"),
            0U);
}

TEST(DiskRead, ASlowBlockIsAWarning) {
  ReadMachine machine;
  machine.scripted.slow(4711, 0.7);
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Warning);
  EXPECT_TRUE(tells(outcome, "Slow: logical blocks 4096 to 6143 (2048 blocks): "));
}

TEST(DiskRead, AStoppedRunTellsWhatFailedAndWasNotReadAgain) {
  ReadMachine machine;
  machine.scripted.bad(4711);
  machine.control.stopAfter(9);
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Stopped) << outcome.text;
  EXPECT_TRUE(tells(outcome,
                    "Failed, and not looked into before the end: somewhere in logical blocks 4096 "
                    "to 6143 (2048 blocks): the drive reports a medium error\n"))
      << outcome.text;
  ASSERT_EQ(outcome.notes.size(), 1U);
  EXPECT_EQ(outcome.notes[0].type, RecordType::Warnings);
  EXPECT_EQ(outcome.notes[0].correctiveAction,
            "Run the test again, and let it come to its end: a read failed\n");
}

TEST(DiskRead, ReadsThatTheSystemRefusesAreIncompleteAndNotTheDrivesFault) {
  ReadMachine machine;
  machine.scripted.bad(0, 65536, ScriptedDisk::kAlways, ReadError::Refused);
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_EQ(outcome.summary, "Read 0 KiB of 32 MiB (0 %)") << "what was begun has not come";
  EXPECT_TRUE(tells(outcome, "It could not go on: the read was refused\n")) << outcome.text;
  EXPECT_TRUE(outcome.errors.empty());
}

TEST(DiskRead, ADriveThatGoesAwayFails) {
  ReadMachine machine;
  machine.scripted.goneAfter(10);
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_TRUE(tells(outcome, "The drive stopped answering at logical blocks 20480 to 22527"));
  EXPECT_TRUE(tells(outcome, "check cables, slot and power of sda"));
}

TEST(DiskRead, CoverageThatFallsShortIsNoPass) {
  ReadMachine machine(ReadOrder::Sequential, 4U << 20);
  for (std::uint64_t block = 0; block < 4U << 20; block += 2048) machine.scripted.slow(block, 0.1);
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_NE(outcome.summary.find(", cut short: too slow"), std::string::npos);
  EXPECT_TRUE(tells(outcome, " instead of 2 GiB\n")) << outcome.text;
  ASSERT_EQ(outcome.notes.size(), 1U);
  EXPECT_NE(outcome.notes[0].correctiveAction.find("while nothing else uses the disk"),
            std::string::npos);
  EXPECT_EQ(outcome.notes[0].part.serialNumber, "") << "no fault was found";
}

TEST(DiskRead, WhatCannotBeOpenedIsIncompleteWithTheReason) {
  ReadMachine machine;
  machine.problem = "/dev/sda cannot be opened for reading: Permission denied";
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_TRUE(tells(outcome, machine.problem));
  ASSERT_EQ(outcome.notes.size(), 1U);
  EXPECT_EQ(outcome.notes[0].correctiveAction,
            "Run the test as root or administrator; in a container, hand the device in\n");
}

TEST(DiskRead, TheDiskThatIsOpenedHasToHaveTheNumberOfTheOneThatWasFound) {
  ReadMachine machine;
  machine.disk.number = "8:16";
  machine.run();
  EXPECT_EQ(machine.openedNumber, "8:16");
}

TEST(DiskRead, ADiskThatIsGoneBeforeItBeginsIsIncomplete) {
  ReadMachine machine;
  EXPECT_EQ(machine.test.run({"sdz", "Gone", {}}, machine.settings, machine.control).state,
            CompletionState::Incomplete);
}

TEST(DiskRead, StopsInTheMiddle) {
  ReadMachine machine;
  machine.control.stopAfter(10);
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Stopped);
  EXPECT_LT(measuredIn(outcome, "ReadData"), 32);
}

TEST(DiskRead, ReadsTheBlocksThatItIsToldTo) {
  ReadMachine machine;
  machine.scripted.bad(99).bad(200);
  EXPECT_EQ(
      machine.run({{"LBAStart", std::uint64_t{100}, false}, {"LBAEnd", std::uint64_t{199}, false}})
          .state,
      CompletionState::Ok);
  EXPECT_EQ(
      machine.run({{"LBAStart", std::uint64_t{99}, false}, {"LBAEnd", std::uint64_t{199}, false}})
          .state,
      CompletionState::Failed);
  EXPECT_EQ(machine.run({{"LBAEnd", std::uint64_t{65536}, false}}).state,
            CompletionState::Incomplete);
}

TEST(DiskRead, AShareOfALargeDiskIsSpreadOverIt) {
  ReadMachine machine(ReadOrder::Sequential, 1U << 24);
  const Outcome outcome = machine.run({{"NumberOfBytes", 64 * kMebi, false}});
  EXPECT_EQ(outcome.summary, "Read 64 MiB of 8 GiB (0.8 %)");
  machine.settings.coveragePercent = 50;
  EXPECT_EQ(machine.run({{"NumberOfBytes", 64 * kMebi, false}}).summary,
            "Read 32 MiB of 8 GiB (0.4 %)");
}

TEST(DiskRead, TheLastBlockIsAlwaysRead) {
  ReadMachine machine(ReadOrder::Sequential, (1U << 24) + 3);
  machine.scripted.bad((1U << 24) + 2);
  EXPECT_EQ(machine.run({{"NumberOfBytes", 64 * kMebi, false}}).state, CompletionState::Failed);
}

TEST(DiskRead, RandomReadsAreSmallAndKeepThirtyTwoInFlight) {
  ReadMachine machine(ReadOrder::Random);
  const Outcome outcome = machine.run({{"NumberOfBytes", 4 * kMebi, false}});
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(machine.scripted.reads(), 1024U);
  EXPECT_EQ(machine.scripted.mostInFlight(), 32U);
  EXPECT_TRUE(tells(outcome, "Seed 42\n"));
}

TEST(DiskRead, RandomReadsOfLargeBlocksHaveRoomForThem) {
  ReadMachine machine(ReadOrder::Random);
  machine.disk.logicalBlock = 16384;
  EXPECT_EQ(machine.run({{"NumberOfBytes", 4 * kMebi, false}}).state, CompletionState::Ok);
  EXPECT_EQ(machine.scripted.reads(), 256U);
}

TEST(DiskRead, AllThatIsAskedForAtRandomIsReallyAll) {
  ReadMachine machine(ReadOrder::Random, 1003);
  machine.scripted.bad(1002);
  EXPECT_EQ(machine.run({{"NumberOfBytes", std::uint64_t{0}, false}}).state,
            CompletionState::Failed);
  for (const std::uint64_t block : {0U, 500U, 1001U}) {
    ReadMachine other(ReadOrder::Random, 1003);
    other.scripted.bad(block);
    const Outcome outcome = other.run({{"NumberOfBytes", std::uint64_t{0}, false}});
    EXPECT_EQ(outcome.state, CompletionState::Failed) << block;
    EXPECT_EQ(outcome.summary, "Read 501 KiB of 501.5 KiB (99.9 %)") << "all but that block";
  }
}

TEST(DiskRead, ASingleBlockIsReadAtRandomToo) {
  ReadMachine machine(ReadOrder::Random);
  machine.scripted.bad(7);
  EXPECT_EQ(
      machine.run({{"LBAStart", std::uint64_t{7}, false}, {"LBAEnd", std::uint64_t{7}, false}})
          .state,
      CompletionState::Failed);
}

TEST(DiskRead, LessThanAWholeReadIsRoundedUp) {
  ReadMachine machine(ReadOrder::Random);
  machine.run({{"NumberOfBytes", std::uint64_t{4097}, false}});
  EXPECT_EQ(machine.scripted.reads(), 2U);
}

TEST(DiskRead, WhatWasSlowAndFailsWhenReadAgainIsNoPass) {
  for (const ReadError error : {ReadError::Gone, ReadError::Medium}) {
    ReadMachine machine(ReadOrder::Sequential, 2048);
    machine.scripted.slow(4, 0.7).goneAfter(1, error);
    EXPECT_EQ(machine.run().state, CompletionState::Failed) << errorText(error);
  }
}

TEST(DiskRead, TheEstimateFollowsTheSettings) {
  const ReadMachine large(ReadOrder::Sequential, 1U << 28);
  RunSettings settings;
  settings.properties = {{"NumberOfBytes", std::uint64_t{100000000000}, false}};
  EXPECT_NEAR(large.test.passSeconds(settings), 1001, 1);
  settings.quick = true;
  EXPECT_NEAR(large.test.passSeconds(settings), 201, 1);
}

TEST(DiskRead, TheEstimateIsOfNoMoreThanThereIsToRead) {
  const ReadMachine machine;
  RunSettings settings;
  for (const std::uint64_t bytes : {std::uint64_t{0}, std::uint64_t{1} << 50}) {
    settings.properties = {{"NumberOfBytes", bytes, false}};
    EXPECT_NEAR(machine.test.passSeconds(settings), 1.34, 0.01) << bytes;
    settings.properties.set("LBAEnd", std::uint64_t{32767});
    EXPECT_NEAR(machine.test.passSeconds(settings), 1.17, 0.01) << bytes;
  }
}

TEST(DiskRead, NeitherIsTheTimeThatARunHas) {
  ReadMachine machine(ReadOrder::Sequential, 4U << 20);
  for (std::uint64_t block = 0; block < 4U << 20; block += 2048) machine.scripted.slow(block, 0.1);
  EXPECT_EQ(machine.run({{"NumberOfBytes", std::uint64_t{1} << 50, false}}).state,
            CompletionState::Incomplete);
}

TEST(DiskRead, SettingsThatMakeNoSenseAreRefused) {
  const ReadMachine machine;
  RunSettings settings;
  settings.properties = {{"NumberOfBytes", std::string("many"), false}};
  EXPECT_EQ(machine.test.refuse(settings), "NumberOfBytes is no number");
  settings.properties = {{"LBAStart", std::uint64_t{2}, false},
                         {"LBAEnd", std::uint64_t{1}, false}};
  EXPECT_EQ(machine.test.refuse(settings), "LBAEnd is less than LBAStart");
  settings.properties = {{"DataSizes", std::vector<std::uint32_t>{1}, false}};
  EXPECT_EQ(machine.test.refuse(settings), "DataSizes is not supported");
}

TEST(DiskRead, ServicesHaveTheirNamesAndDevicesTheirs) {
  const ReadMachine sequential;
  const ReadMachine random(ReadOrder::Random);
  EXPECT_EQ(sequential.test.description().name, "DIAGS: Disk Sequential Read");
  EXPECT_EQ(random.test.description().name, "DIAGS: Disk Random Read");
  EXPECT_EQ(random.test.description().family, "DIAGS_DiskDrive");
  EXPECT_EQ(random.test.devices().at(0).id, "sda");
  EXPECT_EQ(random.test.devices().at(0).name, "ACME 4T 33.6 MB");
}

struct AlignmentRow {
  const char* what;
  bool rotational;
  std::uint32_t physical;
  std::uint64_t offset;
  std::uint64_t start;
  bool aligned;
};

TEST(DiskAlignment, EachPartitionIsHeldToTheBlocksThatAreReallyWritten) {
  for (const AlignmentRow& row :
       {AlignmentRow{"at a mebibyte", true, 4096, 0, kMebi, true},
        AlignmentRow{"where partitions once began", true, 4096, 0, 63 * 512, false},
        AlignmentRow{"the same on an old drive", true, 512, 0, 63 * 512, true},
        AlignmentRow{"the same on flash, which hides its pages", false, 512, 0, 63 * 512, false},
        AlignmentRow{"a drive that is shifted, as is its partition", true, 4096, 3584, 3584, true},
        AlignmentRow{"a drive that is shifted, and a partition that is not", true, 4096, 3584,
                     kMebi, false},
        AlignmentRow{"large physical blocks", true, 16384, 0, 4096, false}}) {
    Disk disk;
    disk.name = "sda";
    disk.rotational = row.rotational;
    disk.physicalBlock = row.physical;
    disk.alignmentOffset = row.offset;
    disk.partitions = {{"sda1", row.start, kMebi}};
    AlignmentDiagnostic test([&disk] { return std::vector<Disk>{disk}; });
    FakeControl control;
    const Outcome outcome = test.run(test.devices().at(0), {}, control);
    EXPECT_EQ(outcome.state, row.aligned ? CompletionState::Ok : CompletionState::Warning)
        << row.what;
    EXPECT_NE(outcome.text.find("sda1 begins at logical block " + std::to_string(row.start / 512)),
              std::string::npos);
  }
}

TEST(DiskAlignment, ADiskWithoutPartitionsIsAllRight) {
  Disk disk;
  disk.name = "sda";
  AlignmentDiagnostic test([&disk] { return std::vector<Disk>{disk}; });
  FakeControl control;
  const Outcome outcome = test.run(test.devices().at(0), {}, control);
  EXPECT_EQ(outcome.state, CompletionState::Ok);
  EXPECT_EQ(outcome.summary, "No partitions");
}

}  // namespace
}  // namespace providers::disk
