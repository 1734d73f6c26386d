#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

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

TEST_F(ConfigurationTest, TheLogFileIsTheCoreLogUpToItsLevel) {
  Configuration configuration;
  configuration.logFile = m_folder.path() + "/core.log";
  configuration.logLevel = 1;
  configure(configuration);
  TRootObject::GetCoreLogger()->Log(1, "kept");
  TRootObject::GetCoreLogger()->Log(2, "left out");
  const std::string logged = m_folder.read("core.log");
  EXPECT_THAT(logged, testing::HasSubstr("[warning] kept"));
  EXPECT_THAT(logged, testing::Not(testing::HasSubstr("left out")));
}

TEST_F(ConfigurationTest, BothAFileAndALoggerGetTheLog) {
  class LastLine : public NZELVOR20::ILogger {
   public:
    void Log(int, const std::string& text) override { line = text; }
    std::string line;
  };
  const auto logger = boost::make_shared<LastLine>();
  Configuration configuration;
  configuration.logFile = m_folder.path() + "/core.log";
  configuration.logLevel = 1;
  configuration.logger = logger;
  configure(configuration);
  TRootObject::GetCoreLogger()->Log(1, "for both");
  TRootObject::GetCoreLogger()->Log(3, "for one");
  EXPECT_EQ(logger->line, "for one");
  EXPECT_THAT(m_folder.read("core.log"), testing::HasSubstr("[warning] for both"));
  EXPECT_THAT(m_folder.read("core.log"), testing::Not(testing::HasSubstr("for one")));
}

TEST_F(ConfigurationTest, AnUnwritableFileIsRefusedAndNothingChanges) {
  m_folder.write("plain", "x");
  Configuration configuration;
  configuration.root = "/elsewhere";
  configuration.logFile = m_folder.path() + "/plain/core.log";
  EXPECT_THAT(failureOf([&] { configure(configuration); }),
              testing::StartsWith("access denied: log file " + configuration.logFile + ": "));
  EXPECT_EQ(TRootObject::GetCoreLogger(), nullptr);
  EXPECT_NE(TOSSpecific::GetVORRootPath(), "/elsewhere");
}

}  // namespace
}  // namespace vorcore
