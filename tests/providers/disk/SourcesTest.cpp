#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "providers/disk/reading/BlockSource.h"
#include "providers/disk/reading/SlotMemory.h"
#include "providers/disk/reading/ThreadSource.h"

namespace providers::disk {
namespace {

constexpr std::uint32_t kBytes = 4096;

/// A file of blocks, each of which has its number in its first byte.
class NumberedFile {
 public:
  NumberedFile()
      : m_path(std::filesystem::temp_directory_path() /
               ("diags-blocks-" + std::to_string(std::random_device()()))) {
    std::ofstream file(m_path, std::ios::binary);
    for (int i = 0; i < 16; ++i) file << std::string(kBytes, static_cast<char>(i));
  }
  NumberedFile(const NumberedFile&) = delete;
  NumberedFile& operator=(const NumberedFile&) = delete;
  ~NumberedFile() {
    std::error_code ignored;
    std::filesystem::remove(m_path, ignored);
  }
  std::string path() const { return m_path.string(); }

 private:
  const std::filesystem::path m_path;
};

ReadAt readNumbers() {
  return [](const Extent& extent, std::uint8_t* into) {
    std::memset(into, static_cast<int>(extent.offset / kBytes), extent.bytes);
    return ReadAnswer{0, extent.bytes, ReadError::None};
  };
}

void expectNumbers(BlockSource& source) {
  for (unsigned slot = 0; slot < source.slots(); ++slot)
    source.start(slot, {std::uint64_t{15 - slot} * kBytes, kBytes});
  std::vector<ReadAnswer> ended;
  for (int i = 0; i < 100 && ended.size() < source.slots(); ++i) source.collect(ended, 1);
  ASSERT_EQ(ended.size(), source.slots());
  for (const ReadAnswer& answer : ended) {
    EXPECT_EQ(answer.error, ReadError::None);
    EXPECT_EQ(answer.bytes, kBytes);
    EXPECT_EQ(source.data(answer.slot)[0], 15 - answer.slot);
    EXPECT_EQ(source.data(answer.slot)[kBytes - 1], 15 - answer.slot);
  }
}

TEST(BlockSource, EachSlotGetsWhatItAskedFor) {
  const NumberedFile file;
  const OpenedSource opened = openSource(file.path(), {4, kBytes});
  if (!opened.source) GTEST_SKIP() << opened.problem;
  expectNumbers(*opened.source);
  expectNumbers(*opened.source);
}

TEST(BlockSource, BehindTheEndThereIsNothing) {
  const NumberedFile file;
  const OpenedSource opened = openSource(file.path(), {1, kBytes});
  if (!opened.source) GTEST_SKIP() << opened.problem;
  opened.source->start(0, {std::uint64_t{16} * kBytes, kBytes});
  std::vector<ReadAnswer> ended;
  opened.source->collect(ended, 5);
  ASSERT_EQ(ended.size(), 1U);
  EXPECT_EQ(ended[0].bytes, 0U);
  EXPECT_EQ(ended[0].error, ReadError::None);
}

TEST(BlockSource, WhatCannotBeOpenedIsNamed) {
  const OpenedSource opened = openSource("/nowhere/sda", {1, kBytes});
  EXPECT_EQ(opened.source, nullptr);
  EXPECT_EQ(opened.problem.find("/nowhere/sda cannot be opened for reading"), 0U);
}

TEST(BlockSource, AFolderIsNoDisk) {
  EXPECT_EQ(openSource(std::filesystem::temp_directory_path().string(), {1, kBytes}).source,
            nullptr);
}

TEST(ThreadSource, EachSlotGetsWhatItAskedFor) {
  const auto source = makeThreadSource(readNumbers(), {8, kBytes});
  expectNumbers(*source);
  expectNumbers(*source);
}

TEST(ThreadSource, PassesErrorsOn) {
  const auto source = makeThreadSource(
      [](const Extent&, std::uint8_t*) {
        return ReadAnswer{0, 0, ReadError::Medium};
      },
      {1, kBytes});
  source->start(0, {0, kBytes});
  std::vector<ReadAnswer> ended;
  source->collect(ended, 5);
  ASSERT_EQ(ended.size(), 1U);
  EXPECT_EQ(ended[0].error, ReadError::Medium);
}

TEST(ThreadSource, ReadsAreReallyInFlightAtTheSameTime) {
  std::atomic<int> inside{0};
  const auto source = makeThreadSource(
      [&inside](const Extent& extent, std::uint8_t*) {
        ++inside;
        while (inside < 4) std::this_thread::yield();
        return ReadAnswer{0, extent.bytes, ReadError::None};
      },
      {4, kBytes});
  for (unsigned slot = 0; slot < 4; ++slot) source->start(slot, {0, kBytes});
  std::vector<ReadAnswer> ended;
  for (int i = 0; i < 100 && ended.size() < 4; ++i) source->collect(ended, 1);
  EXPECT_EQ(ended.size(), 4U);
}

TEST(ThreadSource, NothingToCollectIsNoTrouble) {
  const auto source = makeThreadSource(readNumbers(), {1, kBytes});
  std::vector<ReadAnswer> ended;
  source->collect(ended, 0.001);
  EXPECT_TRUE(ended.empty());
}

TEST(SlotMemory, IsAlignedToTheBlocksOfDisksThatHaveLargeOnes) {
  for (const std::uint32_t bytes : {4096U, 16384U, 65536U, 1U << 20}) {
    const SlotMemory memory(3, bytes);
    for (unsigned slot = 0; slot < 3; ++slot)
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory.of(slot)) % bytes, 0U) << bytes;
  }
}

}  // namespace
}  // namespace providers::disk
