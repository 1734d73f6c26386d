// The command on an installation with a provider that falls ill wherever it is told to, beside a
// sound one.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/engine/supervisor/SickEnvironment.h"
#include "tests/host/CommandRunner.h"

namespace host_test {
namespace {

CommandResult diags(const std::string& sickness, std::vector<std::string> arguments) {
  sick::setVariable("SICKNESS", sickness);
  arguments.insert(arguments.end(), {"--root", DIAGS_SICK_INSTALLATION, "--no-cache"});
  CommandResult result = runCommand(arguments);
  sick::setVariable("SICKNESS", "");
  return result;
}

std::size_t countOf(const std::string& part, const std::string& text) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

struct StatusRow {
  const char* sickness;
  std::vector<std::string> arguments;
  int status;
};

/// A test that fails outranks all else; what befalls one provider is not the other's affair.
TEST(ASickProvidersCommand, EndsWithTheStatusOfWhatItCameTo) {
  const std::vector<StatusRow> rows = {
      {"", {"run", "--all"}, 0},
      {"starting:fault", {"run", "--all"}, 3},
      {"starting:_exit0", {"run", "--all"}, 3},
      {"polling:loop", {"run", "--all", "--timeout", "2s", "--grace", "1s"}, 3},
      {"reporting:abort", {"run", "SICK Test"}, 3},
      {"cleaning:fault", {"run", "--all"}, 0},
      {"cleaning:throw", {"run", "--all"}, 0},
      {"listing:fault", {"run", "SOUND Test"}, 0},
      {"listing:fault", {"run", "--all"}, 3},
      {"listing:fault", {"run", "SICK Test"}, 2},
      {"listing:fault", {"list"}, 0},
      {"again:fail", {"run", "SICK Test"}, 0},
      {"again:fail", {"run", "SICK Test", "--threaded", "0"}, 1},
  };
  for (const StatusRow& row : rows) {
    const CommandResult result = diags(row.sickness, row.arguments);
    EXPECT_EQ(result.status, row.status) << row.sickness << ' ' << row.arguments.back() << '\n'
                                         << result.out << result.err;
  }
}

/// Its first run passed.
TEST(ASecondRunThatFails, IsAFailureWithTheSecondRunsRecord) {
  const CommandResult run =
      diags("again:fail", {"run", "SICK Test", "--threaded", "0", "--junit", "-"});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.out.find("<failure "), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("It was once more"), std::string::npos) << run.out;
  EXPECT_EQ(run.out.find("It was well"), std::string::npos) << run.out;
}

class ARunWhoseTimeIsUp : public testing::Test {
 protected:
  static std::string report(const char* format) {
    const CommandResult run = diags(
        "reporting:seconds", {"run", "--all", "--deadline", "3s", "--grace", "20s", format, "-"});
    EXPECT_EQ(run.status, 3) << run.err;
    return run.out;
  }
  static constexpr const char* kReason = "the time of the whole run was up before it began";
};

TEST_F(ARunWhoseTimeIsUp, HasTheTestsThatNeverBeganAmongThoseSkippedInJUnit) {
  const std::string report = ARunWhoseTimeIsUp::report("--junit");
  EXPECT_NE(report.find("tests=\"2\" failures=\"0\" errors=\"0\" skipped=\"1\""), std::string::npos)
      << report;
  EXPECT_EQ(countOf(std::string("<skipped message=\"") + kReason + "\"/>", report), 1U) << report;
  EXPECT_EQ(countOf("<testcase ", report), 2U) << report;
}

TEST_F(ARunWhoseTimeIsUp, HasThemSkippedInJsonLines) {
  const std::string report = ARunWhoseTimeIsUp::report("--jsonl");
  EXPECT_EQ(countOf("\"status\":\"SKIP\"", report), 1U) << report;
  EXPECT_GT(countOf(kReason, report), 0U) << report;
}

TEST_F(ARunWhoseTimeIsUp, IsNoCleanPassOnItsPage) {
  const std::string report = ARunWhoseTimeIsUp::report("--html");
  EXPECT_NE(report.find("The run was stopped before all its tests had begun."), std::string::npos);
  EXPECT_GT(countOf(kReason, report), 0U);
}

/// It dawdles in the listing and behind its test.
TEST(AProviderThatDawdles, IsNamedOnceInACommand) {
  const CommandResult run = diags("cleaning:sleep", {"run", "--all", "--grace", "1s"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(countOf("SickProvider did not come to an end of cleaning up", run.err + run.out), 1U)
      << run.err << run.out;
}

}  // namespace
}  // namespace host_test
