#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "substitute/vorcore/system/FileLogger.h"
#include "tests/substitute/vorcore/Expectations.h"
#include "tests/substitute/vorcore/ScratchFolder.h"

namespace vorcore {
namespace {

std::string systemText(int error) {
  return std::error_code(error, std::generic_category()).message();
}

constexpr char kIsLink[] = "it is a link, which is not followed";

class FileLoggerPosixTest : public testing::Test {
 protected:
  std::string path() const { return m_folder.path() + "/core.log"; }
  std::string refusal(const std::string& reason) const {
    return "access denied: log file " + path() + ": " + reason;
  }

  ScratchFolder m_folder;
};

TEST_F(FileLoggerPosixTest, ALinkIsNotFollowed) {
  m_folder.write("victim", "precious");
  std::filesystem::create_symlink(m_folder.path() + "/victim", path());
  EXPECT_EQ(failureOf([&] { FileLogger(path(), 3); }), refusal(kIsLink));
  EXPECT_EQ(m_folder.read("victim"), "precious");
}

TEST_F(FileLoggerPosixTest, ALinkToNothingMakesNoFile) {
  std::filesystem::create_symlink(m_folder.path() + "/victim", path());
  EXPECT_EQ(failureOf([&] { FileLogger(path(), 3); }), refusal(kIsLink));
  EXPECT_FALSE(std::filesystem::exists(m_folder.path() + "/victim"));
}

// Catches the system's "too many levels" for a link that is not followed, said where it is true
// too.
TEST_F(FileLoggerPosixTest, FoldersThatLeadInACircleAreTheSystemsAffair) {
  std::filesystem::create_symlink("circle", m_folder.path() + "/circle");
  const std::string inside = m_folder.path() + "/circle/core.log";
  EXPECT_EQ(failureOf([&] { FileLogger(inside, 3); }),
            "access denied: log file " + inside + ": " + systemText(ELOOP));
}

TEST_F(FileLoggerPosixTest, AFifoWithoutAReaderIsRefusedAtOnce) {
  ASSERT_EQ(::mkfifo(path().c_str(), 0600), 0);
  EXPECT_EQ(failureOf([&] { FileLogger(path(), 3); }), refusal(systemText(ENXIO)));
}

TEST_F(FileLoggerPosixTest, AFifoWithAReaderIsNoLogFileEither) {
  ASSERT_EQ(::mkfifo(path().c_str(), 0600), 0);
  const int reader = ::open(path().c_str(), O_RDONLY | O_NONBLOCK);
  EXPECT_EQ(failureOf([&] { FileLogger(path(), 3); }), refusal(systemText(EINVAL)));
  ::close(reader);
}

TEST_F(FileLoggerPosixTest, ADeviceIsNoLogFile) {
  EXPECT_EQ(failureOf([] { FileLogger("/dev/null", 3); }),
            "access denied: log file /dev/null: " + systemText(EINVAL));
}

/// In a process of its own: the streams of this one are the test program's.
TEST_F(FileLoggerPosixTest, TheLogDoesNotTakeThePlaceOfAClosedStandardStream) {
  const auto logWithoutStreams = [this] {
    ::close(0);
    ::close(1);
    FileLogger log(path(), 3);
    const bool areClosed = ::fcntl(0, F_GETFD) == -1 && ::fcntl(1, F_GETFD) == -1;
    log.Log(0, "kept");
    std::_Exit(areClosed ? 0 : 1);
  };
  EXPECT_EXIT(logWithoutStreams(), testing::ExitedWithCode(0), "");
  EXPECT_NE(m_folder.read("core.log").find("[error] kept"), std::string::npos);
}

/// A limit on the size of files stands in for a disk that is full.
[[noreturn]] void logTooMuch(const std::string& path) {
  std::signal(SIGXFSZ, SIG_IGN);
  const rlimit limit{1000, 1000};
  ::setrlimit(RLIMIT_FSIZE, &limit);
  FileLogger log(path, 3);
  log.Log(0, std::string(2000, 'x'));
  log.Log(0, "second");
  std::_Exit(0);
}

TEST_F(FileLoggerPosixTest, AFullDiskIsToldOnce) {
  EXPECT_EXIT(logTooMuch(path()), testing::ExitedWithCode(0),
              "^The log file .*core.log cannot be written: " + systemText(EFBIG) + "\n$");
}

/// A folder of somebody else's may have any name.
TEST_F(FileLoggerPosixTest, TheNameOfALogThatCannotBeWrittenDoesNotActOnATerminal) {
  EXPECT_EXIT(logTooMuch(m_folder.path() + "/\x1b[2J.log"), testing::ExitedWithCode(0),
              "/\\\\x1b\\[2J.log cannot be written: ");
}

}  // namespace
}  // namespace vorcore
