#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

#include "platform/Platform.h"

#if !defined(_WIN32)
#include <sys/resource.h>
#endif

#if defined(__linux__)
// A sanitizer's allocator ends the program, unless told so, where the usual one answers null.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_options() {
  return "allocator_may_return_null=1";
}
#endif

namespace diagsrunner::platform {
namespace {

namespace fs = std::filesystem;

#if defined(_WIN32)
/// A sleep may end this much early, in milliseconds: the clock that it goes by moves in steps.
constexpr int kTick = 16;

/// The runtime's own limit is 512.
struct FewDescriptors {
  FewDescriptors() {}
};
#else
constexpr int kTick = 0;

/// Lets this process have 256 files open at a time.
class FewDescriptors {
 public:
  FewDescriptors() {
    getrlimit(RLIMIT_NOFILE, &m_former);
    rlimit few = m_former;
    few.rlim_cur = 256;
    setrlimit(RLIMIT_NOFILE, &few);
  }
  FewDescriptors(const FewDescriptors&) = delete;
  FewDescriptors& operator=(const FewDescriptors&) = delete;
  ~FewDescriptors() { setrlimit(RLIMIT_NOFILE, &m_former); }

 private:
  rlimit m_former{};
};
#endif

/// An installation folder for one test, with a blank and a letter outside ASCII in its name.
class ReadFile : public testing::Test {
 protected:
  void SetUp() override {
    const testing::TestInfo* info = testing::UnitTest::GetInstance()->current_test_info();
    m_root =
        fs::temp_directory_path() / fs::u8path(std::string("diags pl\xC3\xA4tz ") + info->name());
    fs::remove_all(m_root);
    fs::create_directories(m_root / "kfr" / "data");
  }
  void TearDown() override { fs::remove_all(m_root); }

  void write(const std::string& name, const std::string& content) const {
    std::ofstream(m_root / "kfr" / "data" / name, std::ios::binary) << content;
  }
  /// The path as the runner forms it.
  std::string path(const std::string& name) const {
    return m_root.u8string() + "\\kfr\\data\\" + name;
  }
  /// What is in a buffer of `size` bytes "." after the file was read into its first `wanted` bytes.
  std::string read(const std::string& name, std::size_t size, std::size_t wanted) const {
    std::string buffer(size, '.');
    return readFile(path(name), buffer.data(), wanted) ? buffer : "did not open";
  }

  fs::path m_root;
};

TEST_F(ReadFile, FindsTheFileByTheLiteralFolder) {
  write("x.xml", "<x/>");
  EXPECT_EQ(read("x.xml", 4, 4), "<x/>");
}

TEST_F(ReadFile, ReadsNoMoreThanItIsToldTo) {
  write("x.xml", "<x></x>");
  EXPECT_EQ(read("x.xml", 6, 3), "<x>...");
}

TEST_F(ReadFile, LeavesTheBufferBehindAShortFileAsItWas) {
  write("x.xml", "<x>");
  EXPECT_EQ(read("x.xml", 6, 6), "<x>...");
}

TEST_F(ReadFile, OpensAnEmptyFile) {
  write("x.xml", "");
  EXPECT_EQ(read("x.xml", 2, 2), "..");
  EXPECT_EQ(read("x.xml", 2, 0), "..");
}

TEST_F(ReadFile, ReadsBytesOutsideAsciiAndZerosAsTheyAre) {
  const std::string content("\xC3\xA4\0\xFF", 4);
  write("x.xml", content);
  EXPECT_EQ(read("x.xml", 4, 4), content);
}

// Catches a file that is opened as a binary one.
TEST_F(ReadFile, TranslatesLineEndsWhereThePlatformDoes) {
  write("x.xml", "a\r\nb");
#if defined(_WIN32)
  EXPECT_EQ(read("x.xml", 4, 4), "a\nb.");
#else
  EXPECT_EQ(read("x.xml", 4, 4), "a\r\nb");
#endif
}

// Catches a file that stays open: there are not as many descriptors as this reads files.
TEST_F(ReadFile, ClosesEachFile) {
  write("x.xml", "<x/>");
  const FewDescriptors few;
  for (int i = 0; i < 600; ++i) {
    ASSERT_EQ(read("x.xml", 4, 4), "<x/>") << "read " << i;
  }
}

TEST_F(ReadFile, AMissingFileDoesNotOpen) { EXPECT_EQ(read("x.xml", 4, 4), "did not open"); }

TEST_F(ReadFile, AMissingFolderDoesNotOpen) {
  char buffer[4] = {};
  EXPECT_FALSE(readFile(m_root.u8string() + "\\kfr\\other\\x.xml", buffer, sizeof(buffer)));
}

TEST_F(ReadFile, AFolderGivesNothing) {
  fs::create_directory(m_root / "kfr" / "data" / "folder");
  std::string buffer(4, '.');
  static_cast<void>(readFile(path("folder"), buffer.data(), buffer.size()));
  EXPECT_EQ(buffer, "....");
}

TEST_F(ReadFile, TheLastLiteralFolderIsTheOneThatIsMeant) {
  write("x.xml", "<x/>");
  const fs::path inner = m_root / "kfr" / "data";
  fs::create_directories(inner / "kfr" / "data");
  std::ofstream(inner / "kfr" / "data" / "y.xml") << "<y/>";
  char buffer[5] = {};
  EXPECT_TRUE(readFile(inner.u8string() + "\\kfr\\data\\y.xml", buffer, 4));
  EXPECT_STREQ(buffer, "<y/>");
}

TEST_F(ReadFile, APathWithoutTheLiteralFolderIsTakenAsItIs) {
  write("x.xml", "<x/>");
  char buffer[5] = {};
  EXPECT_TRUE(readFile((m_root / "kfr" / "data" / "x.xml").u8string(), buffer, 4));
  EXPECT_STREQ(buffer, "<x/>");
}

TEST(AllocateZeroed, GivesZeros) {
  const std::size_t size = 100000;
  const Buffer buffer = allocateZeroed(size);
  ASSERT_NE(buffer, nullptr);
  EXPECT_EQ(std::string(buffer.get(), size), std::string(size, '\0'));
}

TEST(AllocateZeroed, IsNullWithoutMemory) {
  EXPECT_EQ(allocateZeroed(std::numeric_limits<std::size_t>::max() / 4), nullptr);
}

#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// Catches a buffer that is kept: there are not as many addresses. A sanitizer tells by itself.
TEST(Buffer, GivesItsMemoryBack) {
  constexpr std::size_t kGibibyte = std::size_t{1} << 30;
  for (int i = 0; i < 140 * 1024; ++i) {
    ASSERT_NE(allocateZeroed(kGibibyte), nullptr) << "buffer " << i;
  }
}
#endif

// The one real sleep of these tests. Catches a unit that is another one.
TEST(SleepMilliseconds, TakesAsLongAsItIsTold) {
  const auto start = std::chrono::steady_clock::now();
  sleepMilliseconds(20);
  const auto taken = std::chrono::steady_clock::now() - start;
  EXPECT_GE(taken, std::chrono::milliseconds(20 - kTick));
  EXPECT_LT(taken, std::chrono::seconds(10));
}

TEST(SleepMilliseconds, MayBeNoTimeAtAll) { EXPECT_NO_THROW(sleepMilliseconds(0)); }

TEST(CurrentTime, IsAfterThisWasWrittenAndDoesNotRunBackwards) {
  const std::int64_t first = currentTime();
  EXPECT_GT(first, 1600000000);
  EXPECT_GE(currentTime(), first);
}

struct Span {
  std::int64_t later;
  std::int64_t earlier;
  double seconds;
};

class SecondsBetween : public testing::TestWithParam<Span> {};

TEST_P(SecondsBetween, IsTheDifference) {
  EXPECT_EQ(secondsBetween(GetParam().later, GetParam().earlier), GetParam().seconds);
}

INSTANTIATE_TEST_SUITE_P(, SecondsBetween,
                         testing::Values(Span{1000, 1000, 0.0}, Span{1090, 1000, 90.0},
                                         Span{1000, 1090, -90.0},
                                         Span{5000000000, 4999999999, 1.0}));

}  // namespace
}  // namespace diagsrunner::platform
