#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <vector>

#include "providers/disk/scratch/ScratchPlaces.h"
#include "providers/disk/services/CompareDiagnostic.h"
#include "tests/providers/FileTree.h"
#include "tests/providers/common/FakeControl.h"
#include "tests/providers/common/OutcomeTexts.h"
#include "tests/providers/disk/Sizes.h"

namespace providers::disk {
namespace {

constexpr std::uint64_t kBlocks = 2 * kMebi / kScratchBlock;

/// What a file is kept in, and how it goes wrong. Places are blocks of 4096 bytes.
struct ScratchScript {
  std::vector<std::uint8_t> content = std::vector<std::uint8_t>(2 * kMebi);
  std::map<std::uint64_t, std::uint64_t> misdirected;  ///< what is written there goes elsewhere
  std::map<std::uint64_t, std::uint64_t> swapped;      ///< what is read there comes from elsewhere
  std::set<std::uint64_t> lost;                        ///< takes the first write alone
  std::set<std::uint64_t> flipped;                     ///< one bit is wrong when read
  std::set<std::uint64_t> flippedOnce;
  std::set<std::uint64_t> unreadable;
  std::set<std::uint64_t> unreadableOnce;
  std::string folder = "/mnt";
  std::size_t unit = kScratchBlock;  ///< what is read has to be a multiple of it, at one
  double secondsForNothing = 0;      ///< that a read takes which fails
  double now = 0;
  ScratchProblem readProblem;
  ScratchProblem writeError;
  ScratchProblem flushError;
  std::map<std::uint64_t, int> writes;
};

class ScriptedFile : public ScratchFile {
 public:
  explicit ScriptedFile(ScratchScript& script) : m_script(script) {}
  std::uint64_t bytes() const override { return m_script.content.size(); }
  std::string folder() const override { return m_script.folder; }

  ScratchProblem write(std::uint64_t offset, const std::uint8_t* data, std::size_t bytes) override {
    for (std::size_t i = 0; i < bytes; i += kScratchBlock) {
      std::uint64_t block = (offset + i) / kScratchBlock;
      if (m_script.writes[block]++ > 0 && m_script.lost.count(block)) continue;
      if (m_script.misdirected.count(block)) block = m_script.misdirected.at(block);
      std::memcpy(m_script.content.data() + block * kScratchBlock, data + i, kScratchBlock);
    }
    return m_script.writeError;
  }
  ScratchProblem read(std::uint64_t offset, std::uint8_t* into, std::size_t bytes) override {
    if (!m_script.readProblem.text.empty()) return m_script.readProblem;
    const auto place = reinterpret_cast<std::uintptr_t>(into);
    if ((offset | bytes | place) % m_script.unit != 0) return {"Invalid argument", false};
    for (std::size_t i = 0; i < bytes; i += kScratchBlock) {
      const std::uint64_t block = (offset + i) / kScratchBlock;
      if (m_script.unreadable.count(block) || m_script.unreadableOnce.erase(block)) return failed();
      const std::uint64_t from = m_script.swapped.count(block) ? m_script.swapped.at(block) : block;
      std::memcpy(into + i, m_script.content.data() + from * kScratchBlock, kScratchBlock);
      if (m_script.flipped.count(block) || m_script.flippedOnce.erase(block)) into[i + 100] ^= 4;
    }
    return {};
  }
  ScratchProblem flush() override { return m_script.flushError; }

 private:
  ScratchProblem failed() {
    m_script.now += m_script.secondsForNothing;
    return {"the read failed", true};
  }

  ScratchScript& m_script;
};

struct CompareMachine {
  CompareMachine()
      : test({[this] { return std::vector<Disk>{disk}; },
              [this](const Disk&, const std::string& folder, std::uint64_t bytes) {
                askedFolder = folder;
                askedBytes = bytes;
                if (!problem.empty()) return OpenedScratch{nullptr, problem};
                return OpenedScratch{std::make_unique<ScriptedFile>(script), {}, "room"};
              },
              [this] { return script.now; }, [] { return 42U; }}) {
    disk.name = "sda";
    disk.serial = "Z1";
    settings.properties = {{"NumberOfBytes", 2 * kMebi, false}};
  }
  Outcome run() { return test.run(test.devices().at(0), settings, control); }

  Disk disk;
  ScratchScript script;
  std::string problem;
  std::string askedFolder;
  std::uint64_t askedBytes = 0;
  RunSettings settings;
  FakeControl control;
  CompareDiagnostic test;
};

TEST(Compare, AGoodDiskPassesWithEachBlockWrittenTwice) {
  CompareMachine machine;
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Ok) << outcome.text;
  EXPECT_EQ(outcome.summary, "Compared 2 MiB, 2 of 2 times");
  EXPECT_EQ(machine.script.writes.size(), kBlocks);
  EXPECT_EQ(machine.script.writes.at(7), 2);
  EXPECT_EQ(machine.control.fractions().back(), 1.0);
}

struct ScratchFaultRow {
  const char* what;
  void (*fault)(ScratchScript&);
  CompletionState state;
  std::uint32_t blocks;
  const char* text;
};

TEST(Compare, EachFaultIsToldFromTheOthersWithItsPlace) {
  using State = CompletionState;
  for (const ScratchFaultRow& row :
       {ScratchFaultRow{"a lost write", [](ScratchScript& s) { s.lost = {7}; }, State::Failed, 1,
                        "offset 28672 of the scratch file: there is what was written before"},
        ScratchFaultRow{"a misdirected write",
                        [](ScratchScript& s) {
                          s.misdirected = {{9, 7}};
                        },
                        State::Failed, 4,
                        "offset 28672 of the scratch file: there is the block of offset 36864"},
        ScratchFaultRow{"and its own place, which it never came to",
                        [](ScratchScript& s) {
                          s.misdirected = {{9, 7}};
                        },
                        State::Failed, 4, "offset 36864 of the scratch file: there are zeros"},
        ScratchFaultRow{"blocks that are swapped",
                        [](ScratchScript& s) {
                          s.swapped = {{3, 4}, {4, 3}};
                        },
                        State::Failed, 4,
                        "offset 12288 of the scratch file: there is the block of offset 16384"},
        ScratchFaultRow{
            "a wrong bit", [](ScratchScript& s) { s.flipped = {5}; }, State::Failed, 2,
            "offset 20480 of the scratch file: 1 wrong byte, the first one at 100: expected 0x"},
        ScratchFaultRow{"a bit that is wrong once", [](ScratchScript& s) { s.flippedOnce = {5}; },
                        State::Warning, 0, "Wrong at first, right when read again: offset 20480"},
        ScratchFaultRow{"a block that cannot be read",
                        [](ScratchScript& s) { s.unreadable = {300}; }, State::Failed, 2,
                        "offset 1228800 of the scratch file: the read failed"},
        ScratchFaultRow{"a read that fails once",
                        [](ScratchScript& s) { s.unreadableOnce = {300}; }, State::Warning, 0,
                        "Wrong at first, right when read again: offset 1048576"}}) {
    CompareMachine machine;
    row.fault(machine.script);
    const Outcome outcome = machine.run();
    EXPECT_EQ(outcome.state, row.state) << row.what << "\n" << outcome.text;
    EXPECT_TRUE(tells(outcome, row.text)) << row.what << "\n" << outcome.text;
    EXPECT_EQ(outcome.errors.empty() ? 0 : outcome.errors[0].count, row.blocks) << row.what;
  }
}

TEST(Compare, ABlockOfAnotherRunIsForeign) {
  std::vector<std::uint8_t> block(kScratchBlock);
  fillBlock(block.data(), {0, 1, 2});
  EXPECT_EQ(judgeBlock(block.data(), {0, 5, 2}).state, BlockState::Foreign);
}

TEST(Compare, AWrongByteInAForeignBlockMakesItCorrupt) {
  std::vector<std::uint8_t> block(kScratchBlock);
  fillBlock(block.data(), {0, 1, 2});
  block[4000] ^= 1;
  EXPECT_EQ(judgeBlock(block.data(), {0, 5, 2}).state, BlockState::Corrupt);
}

TEST(Compare, ADiskThatTakesNoMoreIsIncompleteWithTheReason) {
  for (ScratchProblem ScratchScript::*error :
       {&ScratchScript::writeError, &ScratchScript::flushError}) {
    CompareMachine machine;
    machine.script.*error = {"No space left on device", false};
    const Outcome outcome = machine.run();
    EXPECT_EQ(outcome.state, CompletionState::Incomplete);
    EXPECT_TRUE(tells(outcome, "It could not go on: No space left on device"));
    ASSERT_EQ(outcome.notes.size(), 1U);
    EXPECT_EQ(outcome.notes[0].type, RecordType::ServiceErrors) << "the drive is not to blame";
  }
}

TEST(Compare, ADriveThatFailsToWriteFails) {
  for (ScratchProblem ScratchScript::*error :
       {&ScratchScript::writeError, &ScratchScript::flushError}) {
    CompareMachine machine;
    machine.script.*error = {"Input/output error", true};
    const Outcome outcome = machine.run();
    EXPECT_EQ(outcome.state, CompletionState::Failed);
    ASSERT_EQ(outcome.notes.size(), 1U);
    EXPECT_EQ(outcome.notes[0].type, RecordType::DeviceErrors);
    EXPECT_EQ(outcome.notes[0].part.serialNumber, "Z1");
    ASSERT_EQ(outcome.errors.size(), 1U);
    EXPECT_EQ(outcome.errors[0].code, "Write failure");
  }
}

TEST(Compare, ASizeBetweenIsRoundedUp) {
  CompareMachine machine;
  machine.settings.properties = {{"NumberOfBytes", 2 * kMebi + 1, false}};
  EXPECT_EQ(machine.run().state, CompletionState::Incomplete) << "the file has two alone";
  EXPECT_EQ(machine.askedBytes, 3 * kMebi);
  machine.settings.properties = {{"NumberOfBytes", UINT64_MAX, false}};
  machine.run();
  EXPECT_EQ(machine.askedBytes, UINT64_MAX / kMebi * kMebi);
}

TEST(Compare, ABlockOfADiskThatReadsLargerOnesIsReadAgainWithItsNeighbours) {
  for (const std::size_t unit : {4096U, 16384U, 65536U, 1048576U}) {
    CompareMachine machine;
    machine.script.unit = unit;
    machine.disk.logicalBlock = static_cast<std::uint32_t>(unit);
    machine.script.flippedOnce = {301};
    const Outcome soft = machine.run();
    EXPECT_EQ(soft.state, CompletionState::Warning) << unit << "\n" << soft.text;
    machine.script.flipped = {301};
    const Outcome hard = machine.run();
    EXPECT_TRUE(tells(hard, "offset 1232896 of the scratch file: 1 wrong byte")) << hard.text;
    EXPECT_EQ(hard.errors.at(0).count, 2U) << "in each of two generations";
  }
}

TEST(Compare, ADiskOfSmallBlocksIsReadInThoseOfTheFile) {
  CompareMachine machine;
  machine.disk.logicalBlock = 512;
  machine.script.flippedOnce = {7};
  EXPECT_EQ(machine.run().state, CompletionState::Warning);
}

TEST(Compare, AReadThatTheSystemRefusesIsIncompleteAndNotTheDrivesFault) {
  CompareMachine machine;
  machine.script.readProblem = {"Cannot allocate memory", false};
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_TRUE(tells(outcome, "It could not go on: Cannot allocate memory\n"));
  EXPECT_TRUE(outcome.errors.empty());
}

TEST(Compare, ADyingDriveIsNotReadAgainForDays) {
  CompareMachine machine;
  for (std::uint64_t block = 0; block < kBlocks; ++block) machine.script.unreadable.insert(block);
  machine.script.secondsForNothing = 30;
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  EXPECT_TRUE(tells(outcome, "It was given up: to read again what fails takes too long\n"));
  EXPECT_LT(machine.script.now, 120);
}

TEST(Compare, TheTimeOfAStoppedRunCounts) {
  CompareMachine machine;
  machine.script.unreadable = {0};
  machine.script.secondsForNothing = 7;
  machine.control.stopAfter(5);  // while the first chunk is looked into
  const Outcome outcome = machine.run();
  EXPECT_EQ(measuredIn(outcome, "Duration"), 14);
}

TEST(Compare, TheEstimateIsOfNoMoreThanTheDiskHas) {
  CompareMachine machine;
  machine.disk.bytes = 40000000;
  RunSettings settings;
  settings.properties = {{"NumberOfBytes", UINT64_MAX, false}};
  EXPECT_NEAR(machine.test.passSeconds(settings), 3, 0.1);
}

TEST(Compare, LessRoomThanAskedForIsNoPass) {
  CompareMachine machine;
  machine.settings.properties = {{"NumberOfBytes", 4 * kMebi, false}};
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Incomplete);
  EXPECT_TRUE(tells(outcome, "2 MiB instead of 4 MiB"));
}

TEST(Compare, WithoutAScratchFileItIsIncomplete) {
  CompareMachine machine;
  machine.problem = "no file system of sda is mounted for writing";
  EXPECT_TRUE(tells(machine.run(), machine.problem));
}

TEST(Compare, TheFirstErrorEndsTheRunWhereThatIsAskedForEvenWithinAFailedRead) {
  CompareMachine machine;
  machine.script.unreadable = {3, 4, 5, 6};
  machine.settings.haltOnError = true;
  const Outcome outcome = machine.run();
  EXPECT_EQ(outcome.state, CompletionState::Failed);
  ASSERT_EQ(outcome.errors.size(), 1U);
  EXPECT_EQ(outcome.errors[0].count, 1U);
}

TEST(Compare, TheNameOfAFolderCannotPassForALineOfItsOwn) {
  CompareMachine machine;
  machine.script.folder = "/mnt\nWrong: \x1b[31m";
  EXPECT_TRUE(tells(machine.run(), "a scratch file in /mnt?Wrong: ?[31m on sda"));
  machine.problem = "there is not enough room in " + machine.script.folder;
  EXPECT_TRUE(tells(machine.run(), "room in /mnt?Wrong: ?[31m\n"));
}

TEST(Compare, StopsInTheMiddle) {
  CompareMachine machine;
  machine.control.stopAfter(3);
  EXPECT_EQ(machine.run().state, CompletionState::Stopped);
}

TEST(Compare, TheFolderAndTheSizeAreThoseOfTheSettings) {
  CompareMachine machine;
  machine.settings.properties = {{"NumberOfBytes", 100 * kMebi, false},
                                 {"ScratchFolder", std::string("/x"), false}};
  machine.settings.coveragePercent = 50;
  machine.run();
  EXPECT_EQ(machine.askedFolder, "/x");
  EXPECT_EQ(machine.askedBytes, 50 * kMebi);
}

TEST(Compare, SaysThatItMayDisturbAndIsNotOfferedWhereNothingCanBeWritten) {
  CompareMachine machine;
  EXPECT_TRUE(sameValue(machine.test.description().testProperties.get("Characteristics"),
                        Value(std::vector<std::uint16_t>{5})));
  machine.disk.readOnly = true;
  EXPECT_TRUE(machine.test.devices().empty());
}

Disk mountedDisk() {
  Disk disk;
  disk.name = "sda";
  disk.node = "/dev/sda";
  disk.devices = {"8:0", "8:1", "254:0"};
  disk.partitions = {{"sda1", 0, 0}};
  return disk;
}

std::vector<std::string> foldersOn(const Disk& disk, const std::string& mounts,
                                   const std::string& sys) {
  std::vector<std::string> folders;
  for (const Mount& mount : mountsOn(disk, parseMounts(mounts), sys))
    folders.push_back(mount.id + " " + mount.folder);
  return folders;
}

TEST(ScratchPlaces, AreTheWritableMountsOfTheDisk) {
  const std::string mounts =
      "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
      "23 22 254:0 / /data\\040files rw - xfs /dev/mapper/x rw\n"
      "24 22 8:1 / /readonly ro - ext4 /dev/sda1 rw\n"
      "25 22 8:17 / /other rw - ext4 /dev/sdb1 rw\n"
      "26 22 0:42 /sub /butter rw shared:5 master:1 - btrfs /dev/sda1 rw\n"
      "27 22 0:5 / /proc rw - proc proc rw\n"
      "28 22 0:43 / /claimed rw - fuse.files /dev/sda1 rw\n"
      "29 22 0:44 / /cached rw - bcachefs /dev/sda1 rw\n"
      "30 22 0:45 / /striped rw - bcachefs /dev/sda1:/dev/sdb1 rw\n"
      "nonsense\n";
  EXPECT_EQ(parseMounts(mounts).size(), 9U);
  FileTree sys;
  sys.add("fs/btrfs/features/raid56", "1").add("fs/btrfs/0815/devices/sda1/dev", "8:1\n");
  EXPECT_EQ(foldersOn(mountedDisk(), mounts, sys.root()),
            (std::vector<std::string>{"22 /", "23 /data files", "26 /butter", "29 /cached"}));
}

TEST(ScratchPlaces, AFileSystemOfSeveralDisksIsOnNoneOfThem) {
  const std::string mount = "26 22 0:42 / /butter rw - btrfs /dev/sda1 rw\n";
  FileTree sys;
  EXPECT_TRUE(foldersOn(mountedDisk(), mount, sys.root()).empty()) << "nobody tells its members";
  sys.add("fs/btrfs/0815/devices/sda1/dev", "8:1\n");
  EXPECT_EQ(foldersOn(mountedDisk(), mount, sys.root()).size(), 1U);
  sys.add("fs/btrfs/0815/devices/dm-0/dev", "254:0\n");
  EXPECT_EQ(foldersOn(mountedDisk(), mount, sys.root()).size(), 1U) << "it lies on the same disk";
  sys.add("fs/btrfs/0815/devices/sdb1/dev", "8:17\n");
  EXPECT_TRUE(foldersOn(mountedDisk(), mount, sys.root()).empty());
}

}  // namespace
}  // namespace providers::disk
