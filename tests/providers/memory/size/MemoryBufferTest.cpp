#include <gtest/gtest.h>

#include <limits>
#include <new>

#include "providers/memory/size/MemoryBuffer.h"
#include "tests/providers/memory/size/MappedMemory.h"

namespace providers::memory {
namespace {

constexpr std::size_t kMebi = std::size_t{1024} * 1024;
constexpr std::size_t kPage = 4096;

TEST(MemoryBuffer, HasItsWordsZeroedAndOnPages) {
  const MemoryBuffer buffer(kMebi);
  ASSERT_EQ(buffer.wordCount(), kMebi / 8);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(buffer.words()) % kPage, 0U);
  std::uint64_t all = 0;
  for (std::size_t i = 0; i < buffer.wordCount(); ++i) all |= buffer.words()[i];
  EXPECT_EQ(all, 0U);
}

// Catches a system that is made to give all of it before anybody asks whether there is enough, and
// from near one thread for all.
TEST(MemoryBuffer, TakesNoMemoryBeforeItIsTouched) {
  constexpr std::size_t kLarge = 64 * kMebi;
  const std::size_t before = residentBytes();
  MemoryBuffer buffer(kLarge);
  EXPECT_LT(residentBytes(), before + kLarge / 2);
  for (std::size_t i = 0; i < buffer.wordCount(); i += kPage / 8) buffer.words()[i] = 1;
  buffer.keepInPlace({0, kLarge / kLineBytes});
  EXPECT_GE(residentBytes(), before + kLarge / 2) << "or this test sees nothing";
}

TEST(MemoryBuffer, CanBeWrittenToItsLastWord) {
  const MemoryBuffer buffer(kMebi);
  buffer.words()[buffer.wordCount() - 1] = 7;
  EXPECT_EQ(buffer.words()[buffer.wordCount() - 1], 7U);
}

TEST(MemoryBuffer, GivesItsMemoryBack) {
  const std::uint64_t* words = nullptr;
  {
    const MemoryBuffer buffer(kMebi);
    words = buffer.words();
    EXPECT_TRUE(isMapped(words));
    EXPECT_TRUE(isMapped(words + buffer.wordCount() - 1));
  }
  EXPECT_FALSE(isMapped(words));
  EXPECT_FALSE(isMapped(words + kMebi / 8 - 1));
}

// Catches a process that takes a page for itself which it has just found to be broken.
TEST(MemoryBuffer, GivesNoPageBackThatIsBroken) {
  const std::uint64_t* words = nullptr;
  constexpr std::size_t kPageWords = kPage / 8;
  {
    MemoryBuffer buffer(8 * kPage);
    words = buffer.words();
    for (std::size_t page = 0; page < 8; ++page) buffer.words()[page * kPageWords] = page;
    buffer.withhold(7 * kPage);
    buffer.withhold(3 * kPage + 8);
    buffer.withhold(2 * kPage);
  }
  for (std::size_t page = 0; page < 8; ++page) {
    const bool isBroken = page == 2 || page == 3 || page == 7;
    EXPECT_EQ(isMapped(words + page * kPageWords), isBroken) << page;
    if (isBroken) {
      EXPECT_EQ(words[page * kPageWords], page);
    }
  }
}

TEST(MemoryBuffer, OfMoreThanThereCanBeIsRefused) {
  EXPECT_THROW(MemoryBuffer(std::numeric_limits<std::size_t>::max() / kPage * kPage),
               std::bad_alloc);
}

}  // namespace
}  // namespace providers::memory
