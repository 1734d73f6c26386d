#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <regex>
#include <thread>
#include <vector>

#include "framework/TOSSpecific.h"
#include "framework/TRootObject.h"
#include "substitute/vorcore/system/Configuration.h"
#include "tests/substitute/vorcore/Expectations.h"
#include "tests/substitute/vorcore/ScratchFolder.h"

namespace vorcore {
namespace {

using NZELVOR20::TOSSpecific;
using NZELVOR20::TRootObject;

/// Ends each test with the defaults, as the next one expects them.
class ConfigurationTest : public testing::Test {
 protected:
  ~ConfigurationTest() override { configure(Configuration()); }

  std::string logged() {
    std::string text = m_folder.read("core.log");
    const std::regex time("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}");
    std::string withoutReturns;
    for (const char letter : text) {
      if (letter != '\r') withoutReturns += letter;
    }
    return std::regex_replace(withoutReturns, time, "TIME");
  }

  void logToFile(int level) {
    Configuration configuration;
    configuration.logFile = m_folder.path() + "/core.log";
    configuration.logLevel = level;
    configure(configuration);
  }

  ScratchFolder m_folder;
};

TEST_F(ConfigurationTest, ThereIsNoCoreLogByDefault) {
  EXPECT_EQ(TRootObject::GetCoreLogger(), nullptr);
}

TEST_F(ConfigurationTest, TheHostsOwnLoggerIsTheCoreLog) {
  class NullLogger : public NZELVOR20::ILogger {
   public:
    void Log(int, const std::string&) override {}
  };
  Configuration configuration;
  configuration.logger = boost::make_shared<NullLogger>();
  configure(configuration);
  EXPECT_EQ(TRootObject::GetCoreLogger(), configuration.logger.get());
}

TEST_F(ConfigurationTest, EveryLineHasItsTimeAndLevelName) {
  logToFile(3);
  for (int level = -1; level <= 3; ++level) TRootObject::GetCoreLogger()->Log(level, "{} text");
  configure(Configuration());
  EXPECT_EQ(logged(),
            "TIME [error] {} text\nTIME [error] {} text\nTIME [warning] {} text\n"
            "TIME [info] {} text\nTIME [trace] {} text\n");
}

TEST_F(ConfigurationTest, LinesAboveTheLevelAreNotWritten) {
  logToFile(1);
  for (int level = 0; level <= 3; ++level) {
    TRootObject::GetCoreLogger()->Log(level, std::to_string(level));
  }
  configure(Configuration());
  EXPECT_EQ(logged(), "TIME [error] 0\nTIME [warning] 1\n");
}

TEST_F(ConfigurationTest, ATraceLineAboveThreeIsStillATraceLine) {
  logToFile(9);
  TRootObject::GetCoreLogger()->Log(5, "deep");
  configure(Configuration());
  EXPECT_EQ(logged(), "TIME [trace] deep\n");
}

TEST_F(ConfigurationTest, AnErrorReachesTheFileAtOnce) {
  logToFile(3);
  TRootObject::GetCoreLogger()->Log(0, "now");
  EXPECT_EQ(logged(), "TIME [error] now\n");
}

TEST_F(ConfigurationTest, SeveralLinesStayTogetherUnchanged) {
  logToFile(3);
  TRootObject::GetCoreLogger()->Log(0, "one\n  two");
  EXPECT_EQ(logged(), "TIME [error] one\n  two\n");
}

TEST_F(ConfigurationTest, TheFileIsAppendedTo) {
  m_folder.write("core.log", "before\n");
  logToFile(3);
  TRootObject::GetCoreLogger()->Log(0, "after");
  EXPECT_EQ(logged(), "before\nTIME [error] after\n");
}

TEST_F(ConfigurationTest, AnUnwritableFileIsRefusedAndNothingChanges) {
  m_folder.write("plain", "x");
  Configuration configuration;
  configuration.root = "/elsewhere";
  configuration.logFile = m_folder.path() + "/plain/core.log";
  EXPECT_EQ(failureOf([&] { configure(configuration); }),
            "access denied: log file " + configuration.logFile);
  EXPECT_EQ(TRootObject::GetCoreLogger(), nullptr);
  EXPECT_NE(TOSSpecific::GetVORRootPath(), "/elsewhere");
}

TEST_F(ConfigurationTest, LinesOfSeveralThreadsStayWhole) {
  logToFile(3);
  std::vector<std::thread> threads;
  for (int number = 0; number < 4; ++number) {
    threads.emplace_back([] {
      for (int line = 0; line < 200; ++line) TRootObject::GetCoreLogger()->Log(3, "0123456789");
    });
  }
  for (std::thread& thread : threads) thread.join();
  configure(Configuration());
  std::string wanted;
  for (int line = 0; line < 800; ++line) wanted += "TIME [trace] 0123456789\n";
  EXPECT_EQ(logged(), wanted);
}

}  // namespace
}  // namespace vorcore
