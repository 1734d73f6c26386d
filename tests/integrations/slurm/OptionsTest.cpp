#include <gtest/gtest.h>

#include "integrations/slurm/Options.h"
#include "integrations/slurm/SettingError.h"

namespace slurm {
namespace {

TEST(ASlurmVerb, IsTheFirstArgumentOrTheNameOfALink) {
  EXPECT_EQ(verbOf({"/usr/lib/diagsrunner/slurm/diags-slurm", "prolog"}), Verb::kProlog);
  EXPECT_EQ(verbOf({"/usr/lib/diagsrunner/slurm/health"}), Verb::kHealth);
  EXPECT_EQ(verbOf({"diags-epilog", "--plan", "quick"}), Verb::kEpilog);
  EXPECT_FALSE(verbOf({"diags-slurm"}));
  EXPECT_FALSE(verbOf({"diags-slurm", "--help"}));
  EXPECT_FALSE(verbOf({}));
}

TEST(SlurmOptions, AreTakenOver) {
  const Request request = requestFrom({"diags-slurm", "epilog", "--plan", "standard", "--budget",
                                       "20s", "--drain=false", "--drain-warned", "--node", "n7"});
  EXPECT_EQ(request.verb, Verb::kEpilog);
  EXPECT_EQ(request.settings.plan, "standard");
  EXPECT_EQ(request.settings.budget, Duration(20'000));
  EXPECT_FALSE(request.settings.drain);
  EXPECT_TRUE(request.settings.drainWarned);
  EXPECT_FALSE(request.settings.drainUnfinished);
  EXPECT_EQ(request.settings.node, "n7");
}

TEST(SlurmOptions, OfALinkNeedNoVerb) {
  EXPECT_EQ(requestFrom({"/x/prolog", "--every", "5m"}).settings.every, Duration(300'000));
}

TEST(SlurmOptions, HelpIsAnAnswer) {
  const Request request = requestFrom({"diags-slurm", "--help"});
  ASSERT_TRUE(request.answer);
  EXPECT_NE(request.answer->find("prolog"), std::string::npos);
}

struct WrongRow {
  const char* name;
  std::vector<std::string> arguments;
  const char* complaint;
};

class WrongSlurmOptions : public testing::TestWithParam<WrongRow> {};

TEST_P(WrongSlurmOptions, AreNamed) {
  try {
    requestFrom(GetParam().arguments);
    FAIL() << "taken for right";
  } catch (const SettingError& error) {
    EXPECT_NE(std::string(error.what()).find(GetParam().complaint), std::string::npos)
        << error.what();
  }
}

const WrongRow kWrongRows[] = {
    {"NoVerb", {"diags-slurm"}, "subcommand"},
    {"UnknownVerb", {"diags-slurm", "resume"}, "resume"},
    {"UnknownOption", {"diags-slurm", "health", "--bugdet=3s"}, "--bugdet=3s"},
    {"NoTime", {"diags-slurm", "health", "--budget", "long"}, "--budget: \"long\" is no time"},
    {"TooShort", {"diags-slurm", "health", "--budget", "1s"}, "--budget: must be at least 2s"},
    {"NoTruth", {"diags-slurm", "health", "--drain=perhaps"}, "perhaps"},
    {"RelativeFile", {"diags-slurm", "health", "--diags", "diags"}, "--diags: \"diags\""},
    {"RelativeConfig", {"diags-slurm", "health", "--config", "x.toml"}, "--config: \"x.toml\""},
    {"NoConfig", {"diags-slurm", "health", "--config", "/none/x.toml"}, "/none/x.toml: No such"},
    {"NodeList", {"diags-slurm", "health", "--node", "n1,n2"}, "--node: \"n1,n2\""},
};
INSTANTIATE_TEST_SUITE_P(All, WrongSlurmOptions, testing::ValuesIn(kWrongRows),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace slurm
