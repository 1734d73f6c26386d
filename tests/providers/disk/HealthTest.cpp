#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <tuple>

#include "providers/disk/services/HealthDiagnostic.h"
#include "providers/disk/services/SelfTestDiagnostic.h"
#include "tests/providers/common/FakeControl.h"
#include "tests/providers/common/OutcomeTexts.h"
#include "tests/providers/disk/ScriptedDrive.h"

namespace providers::disk {
namespace {

constexpr std::uint32_t kHealthLog = 127U << 16 | 2, kSelfTestLog = 140U << 16 | 6;

void put(Bytes& page, std::size_t place, std::initializer_list<unsigned> bytes) {
  for (const unsigned byte : bytes) page.at(place++) = static_cast<std::uint8_t>(byte);
}

/// A drive on some bus, and the tests that ask it.
struct AskedDrive {
  explicit AskedDrive(Bus bus) {
    disk.name = "sda";
    disk.node = "/dev/sda";
    disk.model = "ACME 4T";
    disk.serial = "Z1";
    disk.bus = bus;
  }
  OpenDrive opener() {
    return [this](const Disk&) {
      if (!problem.empty()) return OpenedDrive{nullptr, problem};
      return OpenedDrive{std::make_unique<ScriptedDrive>(script), {}};
    };
  }
  FindDisks finder() {
    return [this] { return std::vector<Disk>{disk}; };
  }
  Outcome ask(HealthQuestion question) {
    HealthDiagnostic test(finder(), opener(), question);
    return test.run(test.devices().at(0), {}, control);
  }
  Outcome status() { return ask(HealthQuestion::Status); }
  Outcome defects() { return ask(HealthQuestion::GrownDefects); }
  Outcome selfTest(SelfTestKind kind = SelfTestKind::Short) {
    SelfTestDiagnostic test(
        {finder(), opener(), [this] { return now; }, [this](double s) { now += s; }}, kind);
    return test.run(test.devices().at(0), {}, control);
  }

  Disk disk;
  DriveScript script;
  std::string problem;
  FakeControl control;
  double now = 0;
};

struct NvmeDrive : AskedDrive {
  NvmeDrive() : AskedDrive(Bus::Nvme) {
    log.resize(512);
    put(log, 1, {0x2D, 0x01, 97, 10, 3});  // 301 K, 97 % spare of at least 10 %, 3 % used
    put(log, 128, {0x10, 0x27});           // 10000 hours
    keep();
    selfTests.resize(564);
    controller.resize(4096);
    put(controller, 256, {0x10});
    script.nvme[{0x06, 1}] = {{}, 0, controller};
    script.nvme[{0x14, 1}] = {};
    script.nvme[{0x14, 2}] = {};
    script.nvme[{0x14, 15}] = {};
    keepSelfTests();
  }
  void keep() { script.nvme[{0x02, kHealthLog}] = {{}, 0, log}; }
  void keepSelfTests() { script.nvme[{0x02, kSelfTestLog}] = {{}, 0, selfTests}; }
  /// What happens in the drive when it is told to test itself.
  void onceStarted(std::function<void()> what) {
    script.afterEach = [this, what = std::move(what)] {
      const NvmeCommand& asked = script.nvmeAsked.back();
      if (asked.opcode == 0x14 && asked.word10 != 15) what();
    };
  }
  bool wasToldToEnd() const {
    return script.nvmeAsked.back().opcode == 0x14 && script.nvmeAsked.back().word10 == 15;
  }
  Bytes log;
  Bytes selfTests;
  Bytes controller;
};

TEST(NvmeHealth, AGoodDrivePassesWithItsFigures) {
  NvmeDrive drive;
  const Outcome outcome = drive.status();
  EXPECT_EQ(outcome.state, CompletionState::Ok) << outcome.text;
  EXPECT_EQ(measuredIn(outcome, "Temperature"), 28);
  EXPECT_EQ(measuredIn(outcome, "AvailableSpare"), 97);
  EXPECT_EQ(measuredIn(outcome, "PowerOnHours"), 10000);
  EXPECT_EQ(drive.script.nvmeAsked.at(0).space, 0xFFFFFFFFU);
  EXPECT_EQ(drive.script.nvmeAsked.at(0).bytes, 512U);
}

struct WarningRow {
  unsigned warning;
  CompletionState state;
  const char* text;
};

TEST(NvmeHealth, EachCriticalWarningIsSaidInWords) {
  for (const WarningRow& row :
       {WarningRow{0x01, CompletionState::Failed, "spare blocks are used up"},
        WarningRow{0x02, CompletionState::Warning, "temperature is beyond"},
        WarningRow{0x04, CompletionState::Failed, "drive is degraded"},
        WarningRow{0x08, CompletionState::Failed, "can only be read"},
        WarningRow{0x10, CompletionState::Failed, "backup"},
        WarningRow{0x20, CompletionState::Failed, "persistent memory"}}) {
    NvmeDrive drive;
    put(drive.log, 0, {row.warning});
    drive.keep();
    const Outcome outcome = drive.status();
    EXPECT_EQ(outcome.state, row.state) << row.text;
    EXPECT_TRUE(tells(outcome, row.text)) << outcome.text;
    EXPECT_TRUE(tells(outcome, "sda (ACME 4T, serial number Z1)"));
  }
}

TEST(NvmeHealth, ADriveThatIsUsedUpIsAWarning) {
  NvmeDrive drive;
  put(drive.log, 5, {104});
  drive.keep();
  const Outcome outcome = drive.status();
  EXPECT_EQ(outcome.state, CompletionState::Warning);
  ASSERT_EQ(outcome.notes.size(), 1U);
  EXPECT_EQ(outcome.notes[0].type, RecordType::Warnings);
  EXPECT_EQ(outcome.notes[0].correctiveAction.find("Save the data, run the Sequential Read"), 0U);
}

TEST(NvmeHealth, MediaErrorsAreDefects) {
  NvmeDrive drive;
  EXPECT_EQ(drive.defects().state, CompletionState::Ok);
  put(drive.log, 160, {2});
  drive.keep();
  const Outcome outcome = drive.defects();
  EXPECT_EQ(outcome.state, CompletionState::Warning);
  EXPECT_EQ(measuredIn(outcome, "MediaErrors"), 2);
}

TEST(NvmeHealth, WhatTheDriveDoesNotTellIsIncomplete) {
  NvmeDrive drive;
  drive.log.resize(511);
  drive.keep();
  EXPECT_TRUE(tells(drive.status(), "less than all of its health log"));
  drive.script.nvme.clear();
  EXPECT_TRUE(tells(drive.status(), "refuses its health log, with status 0x002"));
  drive.problem = "no right";
  EXPECT_EQ(drive.status().state, CompletionState::Incomplete);
}

TEST(NvmeSelfTest, IsStartedFollowedAndFound) {
  NvmeDrive drive;
  put(drive.selfTests, 0, {1, 40});
  drive.keepSelfTests();
  int looks = 0;
  drive.script.afterEach = [&] {
    if (drive.script.nvmeAsked.back().opcode == 0x02 && ++looks == 3) {
      put(drive.selfTests, 0, {0, 0});
      put(drive.selfTests, 4, {0x10});
      drive.keepSelfTests();
    }
  };
  const Outcome outcome = drive.selfTest();
  EXPECT_EQ(outcome.state, CompletionState::Ok) << outcome.text;
  EXPECT_NE(std::find(drive.control.fractions().begin(), drive.control.fractions().end(), 0.4),
            drive.control.fractions().end());
  EXPECT_TRUE(std::none_of(drive.script.nvmeAsked.begin(), drive.script.nvmeAsked.end(),
                           [](const NvmeCommand& command) { return command.word10 == 15; }));
}

TEST(NvmeSelfTest, AFailingPartAndItsBlockAreNamed) {
  NvmeDrive drive;
  drive.onceStarted([&] {
    put(drive.selfTests, 4, {0x27, 5, 2});
    put(drive.selfTests, 20, {0x67, 0x12});
    drive.keepSelfTests();
  });
  const Outcome outcome = drive.selfTest(SelfTestKind::Extended);
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_TRUE(tells(outcome, "A part of it failed: number 5, at logical block 4711\n"))
      << outcome.text;
  ASSERT_EQ(outcome.notes.size(), 1U);
  EXPECT_EQ(outcome.notes[0].correctiveAction.find("Save the data and replace "), 0U);
}

TEST(NvmeSelfTest, IsEndedInTheDriveWhenTheRunIsStopped) {
  NvmeDrive drive;
  put(drive.selfTests, 0, {1, 40});
  drive.keepSelfTests();
  drive.control.stopAfter(10);
  EXPECT_EQ(drive.selfTest().state, CompletionState::Stopped);
  EXPECT_EQ(drive.script.nvmeAsked.back().opcode, 0x14);
  EXPECT_EQ(drive.script.nvmeAsked.back().word10, 15U);
}

TEST(NvmeSelfTest, TheResultOfAnEarlierOneIsNotTakenForIts) {
  for (const unsigned earlier : {0x10U, 0x17U}) {
    NvmeDrive drive;
    put(drive.selfTests, 4, {earlier});
    drive.keepSelfTests();
    const Outcome outcome = drive.selfTest();
    EXPECT_EQ(outcome.state, CompletionState::Incomplete) << outcome.text;
    EXPECT_TRUE(tells(outcome,
                      "The drive has no result of it; the drive was told to end its "
                      "self-test\n"))
        << outcome.text;
    EXPECT_TRUE(drive.wasToldToEnd());
  }
}

TEST(NvmeSelfTest, NeitherIsThatOfAnotherKind) {
  NvmeDrive drive;
  drive.onceStarted([&] {
    put(drive.selfTests, 4, {0x20});
    drive.keepSelfTests();
  });
  EXPECT_EQ(drive.selfTest().state, CompletionState::Incomplete);
  EXPECT_EQ(drive.selfTest(SelfTestKind::Extended).state, CompletionState::Incomplete)
      << "it is in the log already";
}

TEST(NvmeSelfTest, AResultThatIsLikeTheOneBeforeIsTakenWhereTheTestWasSeenAtWork) {
  NvmeDrive drive;
  put(drive.selfTests, 4, {0x10});
  drive.keepSelfTests();
  int looks = 0;
  drive.script.afterEach = [&] {
    if (drive.script.nvmeAsked.back().opcode == 0x02) ++looks;
    put(drive.selfTests, 0, {looks == 1 ? 1U : 0U});
    drive.keepSelfTests();
  };
  EXPECT_EQ(drive.selfTest().state, CompletionState::Ok);
}

TEST(NvmeSelfTest, ADriveThatDoesNotAnswerForAWhileIsBorne) {
  NvmeDrive drive;
  put(drive.selfTests, 0, {1, 40});
  drive.keepSelfTests();
  int looks = 0;
  drive.script.afterEach = [&] {
    if (drive.script.nvmeAsked.back().opcode != 0x02) return;
    if (++looks == 2) drive.script.nvme.erase({0x02, kSelfTestLog});
    if (looks < 5) return;
    put(drive.selfTests, 0, {0, 0, 0, 0, 0x10});
    drive.keepSelfTests();
  };
  EXPECT_EQ(drive.selfTest().state, CompletionState::Ok);
}

TEST(NvmeSelfTest, WhatCannotBeFollowedIsNotBegun) {
  NvmeDrive drive;
  drive.script.nvme.erase({0x02, kSelfTestLog});
  EXPECT_TRUE(tells(drive.selfTest(), "refuses its self-test log, with status 0x002"));
  for (const NvmeCommand& asked : drive.script.nvmeAsked) EXPECT_NE(asked.opcode, 0x14);
}

TEST(NvmeSelfTest, IsEndedInTheDriveWhereItsLogCannotBeReadAnyMore) {
  NvmeDrive drive;
  drive.onceStarted([&] { drive.script.nvme.erase({0x02, kSelfTestLog}); });
  const Outcome outcome = drive.selfTest();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_TRUE(tells(outcome,
                    "refuses its self-test log, with status 0x002; the drive was told to "
                    "end its self-test\n"))
      << outcome.text;
  EXPECT_TRUE(drive.wasToldToEnd());
}

TEST(NvmeSelfTest, ADriveThatDoesNotTakeTheCommandToEndItMayGoOn) {
  NvmeDrive drive;
  put(drive.selfTests, 0, {1, 40});
  drive.keepSelfTests();
  drive.script.nvme[{0x14, 15}].problem = "/dev/nvme0 is gone";
  drive.control.stopAfter(10);
  const Outcome outcome = drive.selfTest();
  EXPECT_EQ(outcome.state, CompletionState::Stopped);
  EXPECT_TRUE(tells(outcome,
                    "may still be testing itself, as it was not told to end that: "
                    "/dev/nvme0 is gone\n"))
      << outcome.text;
}

TEST(NvmeSelfTest, OneThatNeverEndsIsEndedAndIncomplete) {
  NvmeDrive drive;
  put(drive.selfTests, 0, {1, 40});
  drive.keepSelfTests();
  EXPECT_EQ(drive.selfTest().state, CompletionState::Incomplete);
  EXPECT_EQ(drive.script.nvmeAsked.back().word10, 15U);
  EXPECT_GE(drive.now, 600);
}

TEST(NvmeSelfTest, WhatCannotBeginIsIncompleteWithTheReason) {
  NvmeDrive drive;
  drive.script.nvme[{0x14, 1}].status = 0x11D;
  EXPECT_TRUE(tells(drive.selfTest(), "under way in the drive already"));
  drive.controller[256] = 0;
  drive.script.nvme[{0x06, 1}] = {{}, 0, drive.controller};
  const Outcome outcome = drive.selfTest();
  EXPECT_TRUE(tells(outcome, "The drive has no self-test"));
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
}

const Bytes kReturnStatus{0x85, 0x06, 0x20, 0, 0xDA, 0, 0, 0, 0, 0, 0x4F, 0, 0xC2, 0, 0xB0, 0};
const Bytes kReadData{0x85, 0x08, 0x0E, 0, 0xD0, 0, 1, 0, 0, 0, 0x4F, 0, 0xC2, 0, 0xB0, 0};
const Bytes kReadThresholds{0x85, 0x08, 0x0E, 0, 0xD1};
const Bytes kStartShort{0x85, 0x06, 0x20, 0, 0xD4, 0, 0, 0, 1, 0, 0x4F, 0, 0xC2, 0, 0xB0, 0};
const Bytes kAbort{0x85, 0x06, 0x20, 0, 0xD4, 0, 0, 0, 0x7F, 0, 0x4F, 0, 0xC2, 0, 0xB0, 0};
const Bytes kReadLog{0x85, 0x08, 0x0E, 0, 0xD5, 0, 1, 0, 6};

/// The registers after a command, as the system gives them.
ScsiAnswer registers(unsigned middle, unsigned high) {
  ScsiAnswer answer;
  answer.status = 2;
  answer.sense = {0x72, 1, 0, 0x1D, 0, 0, 0, 14, 9, 12, 0, 0, 0, 0, 0, 0, 0};
  answer.sense.push_back(static_cast<std::uint8_t>(middle));
  answer.sense.push_back(0);
  answer.sense.push_back(static_cast<std::uint8_t>(high));
  answer.sense.insert(answer.sense.end(), {0, 0x50});
  return answer;
}

struct AtaDrive : AskedDrive {
  AtaDrive() : AskedDrive(Bus::Ata), data(512), thresholds(512), log(512) {
    attribute(0, 5, 100, 0);
    attribute(1, 9, 90, 1234);
    attribute(2, 194, 64, 0x2D000016001F);  // 31 degrees, with the extremes above them
    attribute(3, 197, 100, 0);
    put(thresholds, 2, {5, 36});
    put(data, 367, {0x10});
    put(data, 372, {2, 100});
    keep();
    script.scsi[kReturnStatus] = registers(0x4F, 0xC2);
    script.scsi[kStartShort] = registers(0x4F, 0xC2);
    script.scsi[kAbort] = registers(0x4F, 0xC2);
  }
  void attribute(std::size_t index, unsigned id, unsigned value, std::uint64_t raw,
                 unsigned flags = 0) {
    const std::size_t place = 2 + 12 * index;
    put(data, place, {id, flags, 0, value, value});
    for (unsigned i = 0; i < 6; ++i)
      data[place + 5 + i] = static_cast<std::uint8_t>(raw >> (8 * i));
  }
  static Bytes summed(Bytes page) {
    page[511] = 0;
    page[511] = static_cast<std::uint8_t>(-std::accumulate(page.begin(), page.end(), 0));
    return page;
  }
  void keep() {
    script.scsi[kReadData] = DriveScript::data(summed(data));
    script.scsi[kReadThresholds] = DriveScript::data(summed(thresholds));
    script.scsi[kReadLog] = DriveScript::data(summed(log));
  }
  Bytes data;
  Bytes thresholds;
  Bytes log;
};

TEST(AtaHealth, AGoodDrivePassesWithItsFigures) {
  AtaDrive drive;
  const Outcome outcome = drive.status();
  EXPECT_EQ(outcome.state, CompletionState::Ok) << outcome.text;
  EXPECT_EQ(measuredIn(outcome, "Temperature"), 31);
  EXPECT_EQ(measuredIn(outcome, "PowerOnHours"), 1234);
  EXPECT_EQ(drive.script.scsiAsked.at(0), kReturnStatus);
}

TEST(AtaHealth, AThresholdThatTheDriveHasExceededFails) {
  AtaDrive drive;
  drive.script.scsi[kReturnStatus] = registers(0xF4, 0x2C);
  EXPECT_EQ(drive.status().state, CompletionState::Failed);
}

TEST(AtaHealth, SenseOfTheOlderFormatIsUnderstood) {
  AtaDrive drive;
  ScsiAnswer answer;
  answer.status = 2;
  answer.sense = {0x70, 0, 1, 0, 0x50, 0, 0, 10, 0, 0, 0xF4, 0x2C, 0, 0x1D};
  drive.script.scsi[kReturnStatus] = answer;
  EXPECT_EQ(drive.status().state, CompletionState::Failed);
}

TEST(AtaHealth, AnAttributeThatHasFallenToItsThresholdFails) {
  AtaDrive drive;
  drive.attribute(0, 5, 36, 3000, 3);
  drive.keep();
  const Outcome outcome = drive.status();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_TRUE(tells(outcome, "Attribute 5 has fallen to 36, its threshold is 36\n"));
}

TEST(AtaHealth, AnAttributeOfAgeOrUseAtItsThresholdIsAWarning) {
  AtaDrive drive;
  drive.attribute(2, 190, 44, 56, 0x22);  // a warm drive
  put(drive.thresholds, 14, {190, 45});
  drive.keep();
  const Outcome outcome = drive.status();
  EXPECT_EQ(outcome.state, CompletionState::Warning);
  EXPECT_TRUE(tells(outcome, "Attribute 190 has fallen to 44, its threshold is 45\n"));
}

TEST(AtaHealth, ADriveWithoutSmartIsIncompleteWithTheReason) {
  AtaDrive drive;
  drive.script.scsi.clear();
  const Outcome outcome = drive.status();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_TRUE(tells(outcome, "refuses its SMART status, with status 0x02, sense 5/20/00"));
}

TEST(AtaHealth, ReplacedAndPendingBlocksAreDefects) {
  AtaDrive drive;
  const Outcome clean = drive.defects();
  EXPECT_EQ(clean.state, CompletionState::Ok) << clean.text;
  EXPECT_EQ(measuredIn(clean, "PendingBlocks"), 0);
  drive.attribute(0, 5, 100, 8);
  drive.attribute(3, 197, 100, 1);
  drive.keep();
  const Outcome outcome = drive.defects();
  EXPECT_EQ(outcome.state, CompletionState::Warning);
  EXPECT_TRUE(tells(outcome, "8 blocks were replaced (attribute 5)\n"));
  EXPECT_TRUE(tells(outcome, "1 blocks cannot be read and wait to be replaced (attribute 197)\n"));
}

TEST(AtaHealth, DamagedAndShortPagesAreNotBelieved) {
  AtaDrive drive;
  Bytes damaged = AtaDrive::summed(drive.data);
  damaged[20] ^= 1;
  drive.script.scsi[kReadData] = DriveScript::data(damaged);
  EXPECT_TRUE(tells(drive.defects(), "The checksum of its SMART data is wrong"));
  drive.script.scsi[kReadData] = DriveScript::data(Bytes(100));
  EXPECT_TRUE(tells(drive.defects(), "less than all of its SMART data"));
}

TEST(AtaHealth, APageOfZerosHasTheRightSumAndTellsNothing) {
  AtaDrive drive;
  drive.script.scsi[kReadData] = DriveScript::data(Bytes(512));
  EXPECT_TRUE(tells(drive.defects(), "The drive gave nothing but zeros for its SMART data\n"));
}

TEST(AtaSelfTest, IsEndedInTheDriveWhereItsStateCannotBeReadAnyMore) {
  AtaDrive drive;
  drive.script.afterEach = [&] {
    // Zeros would be a test that has passed.
    if (drive.script.scsiAsked.back() == kStartShort)
      drive.script.scsi[kReadData] = DriveScript::data(Bytes(512));
  };
  const Outcome outcome = drive.selfTest();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete) << outcome.text;
  EXPECT_EQ(drive.script.scsiAsked.back(), kAbort);
}

TEST(AtaSelfTest, IsStartedFollowedAndFound) {
  AtaDrive drive;
  int looks = 0;
  drive.script.afterEach = [&] {
    if (drive.script.scsiAsked.back() == kStartShort) put(drive.data, 363, {0xF7});
    if (drive.script.scsiAsked.back() == kReadData && ++looks == 5) put(drive.data, 363, {0x00});
    drive.keep();
  };
  const Outcome outcome = drive.selfTest();
  EXPECT_EQ(outcome.state, CompletionState::Ok) << outcome.text;
  EXPECT_NEAR(drive.control.fractions().at(0), 0.3, 1e-9);
}

TEST(AtaSelfTest, AFailingPartAndItsBlockAreNamed) {
  AtaDrive drive;
  drive.script.afterEach = [&] {
    if (drive.script.scsiAsked.back() != kStartShort) return;
    put(drive.data, 363, {0x70});
    put(drive.log, 508, {2});
    put(drive.log, 2 + 24 + 5, {0x67, 0x12, 0, 0});
    drive.keep();
  };
  const Outcome outcome = drive.selfTest();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_TRUE(tells(outcome, "The reading part of it failed, at logical block 4711\n"))
      << outcome.text;
}

// Catches a drive that takes the command, does nothing, and passes for what it found years ago.
TEST(AtaSelfTest, TheResultOfAnEarlierOneIsNotTakenForIts) {
  AtaDrive drive;
  put(drive.log, 508, {1});
  drive.keep();
  const Outcome outcome = drive.selfTest();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_TRUE(tells(outcome, "The drive has no result of it"));
  EXPECT_EQ(drive.script.scsiAsked.back(), kAbort);
}

TEST(AtaSelfTest, ADriveWithoutALogIsBelieved) {
  AtaDrive drive;
  EXPECT_EQ(drive.selfTest().state, CompletionState::Ok);
}

TEST(AtaSelfTest, IsEndedInTheDriveWhenTheRunIsStopped) {
  AtaDrive drive;
  drive.script.afterEach = [&] {
    if (drive.script.scsiAsked.back() == kStartShort) put(drive.data, 363, {0xF7});
    drive.keep();
  };
  drive.control.stopAfter(10);
  EXPECT_EQ(drive.selfTest().state, CompletionState::Stopped);
  EXPECT_EQ(drive.script.scsiAsked.back(), kAbort);
}

const Bytes kExceptions{0x4D, 0, 0x6F};
const Bytes kResults{0x4D, 0, 0x50};
const Bytes kSense{0x03};
const Bytes kDefects{0x37, 0, 0x0B};

Bytes exceptions(unsigned code, unsigned qualifier) {
  Bytes page(12);
  put(page, 0, {0x2F, 0, 0, 8, 0, 0, 3, 4, code, qualifier, 33, 60});
  return page;
}

struct ScsiDrive : AskedDrive {
  ScsiDrive() : AskedDrive(Bus::Scsi), results(0x194) {
    script.scsi[kExceptions] = DriveScript::data(exceptions(0, 0));
    script.scsi[kSense] =
        DriveScript::data({0x70, 0, 0, 0, 0, 0, 0, 10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    script.scsi[{0x1D}] = DriveScript::data({});
    put(results, 0, {0x10, 0, 0x01, 0x90, 0, 1, 3, 0x10, 0x20});
    keep();
  }
  void keep() { script.scsi[kResults] = DriveScript::data(results); }
  Bytes results;
};

TEST(ScsiHealth, AGoodDrivePasses) {
  ScsiDrive drive;
  const Outcome outcome = drive.status();
  EXPECT_EQ(outcome.state, CompletionState::Ok) << outcome.text;
  EXPECT_EQ(measuredIn(outcome, "Temperature"), 33);
}

struct CodeRow {
  unsigned code, qualifier;
  CompletionState state;
};

TEST(ScsiHealth, WhatTheDrivePredictsIsBelieved) {
  for (const CodeRow& row :
       {CodeRow{0x5D, 0x10, CompletionState::Failed}, CodeRow{0x5D, 0xFF, CompletionState::Failed},
        CodeRow{0x0B, 0x01, CompletionState::Warning},
        CodeRow{0x0B, 0x02, CompletionState::Warning}, CodeRow{0x29, 0x00, CompletionState::Ok}}) {
    ScsiDrive drive;
    drive.script.scsi[kExceptions] = DriveScript::data(exceptions(row.code, row.qualifier));
    EXPECT_EQ(drive.status().state, row.state) << row.code;
  }
}

TEST(ScsiHealth, SoIsWhatItSaysBesideAnAnswer) {
  ScsiDrive drive;
  drive.script.scsi.erase(kExceptions);
  EXPECT_EQ(drive.status().state, CompletionState::Incomplete);
  drive.script.scsi[kSense] = DriveScript::data({0x72, 6, 0x5D, 0x10, 0, 0, 0, 0});
  EXPECT_EQ(drive.status().state, CompletionState::Failed);
}

TEST(ScsiHealth, GrownDefectsAreCounted) {
  ScsiDrive drive;
  EXPECT_EQ(drive.defects().state, CompletionState::Incomplete);
  drive.script.scsi[kDefects] = DriveScript::data({0, 0x0D, 0, 0});
  EXPECT_EQ(drive.defects().state, CompletionState::Ok);
  drive.script.scsi[kDefects] = DriveScript::data({0, 0x0D, 0, 24});
  const Outcome outcome = drive.defects();
  EXPECT_EQ(outcome.state, CompletionState::Warning);
  EXPECT_EQ(measuredIn(outcome, "GrownDefects"), 3);
}

TEST(ScsiHealth, APageThatSaysThatItIsEmptyIsNotBelieved) {
  ScsiDrive drive;
  Bytes page(252);
  put(page, 0, {0x2F, 0, 0, 0});
  drive.script.scsi[kExceptions] = DriveScript::data(page);
  const Outcome outcome = drive.status();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_TRUE(tells(outcome, "less than all of its informational exceptions\n"));
}

TEST(ScsiSelfTest, TheResultOfAnEarlierOneIsNotTakenForIts) {
  ScsiDrive drive;
  put(drive.results, 8, {0x20});
  drive.keep();
  const Outcome outcome = drive.selfTest();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_TRUE(tells(outcome, "The drive has no result of it"));
  EXPECT_EQ(drive.script.scsiAsked.back(), (Bytes{0x1D, 0x80, 0, 0, 0, 0}));
}

TEST(ScsiSelfTest, IsEndedInTheDriveWhereItsLogCannotBeReadAnyMore) {
  ScsiDrive drive;
  drive.script.afterEach = [&] {
    if (drive.script.scsiAsked.back()[0] == 0x1D) drive.script.scsi.erase(kResults);
  };
  EXPECT_EQ(drive.selfTest().state, CompletionState::Incomplete);
  EXPECT_EQ(drive.script.scsiAsked.back(), (Bytes{0x1D, 0x80, 0, 0, 0, 0}));
}

TEST(ScsiSelfTest, IsStartedFollowedAndFound) {
  ScsiDrive drive;
  int looks = 0;
  drive.script.scsi[kSense] =
      DriveScript::data({0x70, 0, 2, 0, 0, 0, 0, 10, 0, 0, 0, 0, 4, 9, 0, 0x80, 0x80, 0});
  drive.script.afterEach = [&] {
    const Bytes& asked = drive.script.scsiAsked.back();
    if (asked[0] == 0x1D) drive.results[8] = 0x2F;
    if (asked[0] == 0x4D && ++looks == 4) drive.results[8] = 0x20;
    drive.keep();
  };
  const Outcome outcome = drive.selfTest();
  EXPECT_EQ(outcome.state, CompletionState::Ok) << outcome.text;
  EXPECT_EQ(drive.control.fractions().at(0), 0.5);
  EXPECT_EQ(drive.script.scsiAsked.at(1), (Bytes{0x1D, 0x20, 0, 0, 0, 0}));
}

TEST(ScsiSelfTest, AFailingPartAndItsBlockAreNamed) {
  ScsiDrive drive;
  drive.script.afterEach = [&] {
    if (drive.script.scsiAsked.back()[0] == 0x1D)
      put(drive.results, 8, {0x47, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0x12, 0x67});
    drive.keep();
  };
  EXPECT_TRUE(tells(drive.selfTest(SelfTestKind::Extended),
                    "Part 3 of it failed, at logical block 4711\n"));
}

TEST(ScsiSelfTest, IsEndedInTheDriveWhenTheRunIsStopped) {
  ScsiDrive drive;
  drive.script.afterEach = [&] {
    if (drive.script.scsiAsked.back()[0] == 0x1D) drive.results[8] = 0x2F;
    drive.keep();
  };
  drive.control.stopAfter(10);
  EXPECT_EQ(drive.selfTest().state, CompletionState::Stopped);
  EXPECT_EQ(drive.script.scsiAsked.back(), (Bytes{0x1D, 0x80, 0, 0, 0, 0}));
}

TEST(DriveAnswers, OfAnyLengthAndContentAreReadWithoutHarm) {
  std::uint8_t noise = 1;
  for (std::size_t length = 0; length < 600; length += 7) {
    Bytes bytes(length);
    for (std::uint8_t& byte : bytes) byte = noise = static_cast<std::uint8_t>(noise * 73 + 41);
    for (const Bus bus : {Bus::Nvme, Bus::Ata, Bus::Scsi}) {
      AskedDrive drive(bus);
      drive.control.stopAfter(8);
      for (const unsigned first : {0x85U, 0x4DU, 0x37U, 0x03U, 0x1DU})
        drive.script.scsi[{static_cast<std::uint8_t>(first)}] = {
            {}, static_cast<std::uint8_t>(length % 3), bytes, bytes};
      for (const std::uint32_t word : {kHealthLog, kSelfTestLog})
        drive.script.nvme[{0x02, word}] = {{}, 0, bytes};
      drive.script.nvme[{0x06, 1}] = {{}, 0, bytes};
      drive.status();
      drive.defects();
      drive.selfTest();
    }
  }
}

TEST(DiskHealth, IsOfferedForDrivesThatCanTell) {
  for (const auto& [bus, health, selfTest] :
       {std::tuple{Bus::Nvme, true, true}, std::tuple{Bus::Ata, true, true},
        std::tuple{Bus::Scsi, true, true}, std::tuple{Bus::Usb, true, false},
        std::tuple{Bus::Virtual, false, false}, std::tuple{Bus::Card, false, false}}) {
    AskedDrive drive(bus);
    HealthDiagnostic status(drive.finder(), drive.opener(), HealthQuestion::Status);
    SelfTestDiagnostic test({drive.finder(), drive.opener(), {}, {}}, SelfTestKind::Short);
    EXPECT_EQ(!status.devices().empty(), health);
    EXPECT_EQ(!test.devices().empty(), selfTest);
  }
}

}  // namespace
}  // namespace providers::disk
