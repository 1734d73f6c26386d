#include <gtest/gtest.h>

#include "integrations/slurm/ConfigFile.h"
#include "integrations/slurm/SettingError.h"

namespace slurm {
namespace {

Settings read(const std::string& text, Verb verb) {
  Settings settings = defaultsOf(verb);
  readConfig(text, "slurm.toml", verb, settings);
  return settings;
}

const char* const kWhole = R"(
plan = "standard"
budget = "40s"
drain-warned = true

[health]
every = "6h"

[prolog]
budget = "20s"
)";

TEST(SlurmConfiguration, HoldsForAllVerbsAtItsTop) {
  EXPECT_EQ(read(kWhole, Verb::kHealth).plan, "standard");
  EXPECT_EQ(read(kWhole, Verb::kEpilog).budget, Duration(40'000));
  EXPECT_TRUE(read(kWhole, Verb::kProlog).drainWarned);
}

TEST(SlurmConfiguration, HoldsForOneVerbInItsSection) {
  EXPECT_EQ(read(kWhole, Verb::kHealth).every, Duration(6 * 3'600'000));
  EXPECT_EQ(read(kWhole, Verb::kEpilog).every, defaultsOf(Verb::kEpilog).every);
  EXPECT_EQ(read(kWhole, Verb::kProlog).budget, Duration(20'000));
}

TEST(SlurmConfiguration, MayBeEmpty) {
  EXPECT_EQ(read("", Verb::kHealth).budget, Duration(50'000));
  EXPECT_TRUE(read("", Verb::kHealth).drain);
}

struct FaultRow {
  const char* name;
  const char* text;
  const char* complaint;
};

class SlurmConfigurationFaults : public testing::TestWithParam<FaultRow> {};

TEST_P(SlurmConfigurationFaults, AreNamedWithFileLineAndColumn) {
  try {
    read(GetParam().text, Verb::kHealth);
    FAIL() << "no fault was found";
  } catch (const SettingError& error) {
    EXPECT_STREQ(error.what(), GetParam().complaint);
  }
}

const FaultRow kFaultRows[] = {
    {"UnknownKey", "\nbugdet = \"5s\"\n", "slurm.toml:2:1: unknown key \"bugdet\""},
    {"UnknownKeyOfAnotherVerb", "[prolog]\nplam = \"quick\"\n",
     "slurm.toml:2:1: unknown key \"plam\""},
    {"UnknownSection", "[epilogue]\n", "slurm.toml:1:2: unknown key \"epilogue\""},
    {"NoSection", "health = 5\n", "slurm.toml:1:10: a section is wanted"},
    {"Number", "every = 5\n", "slurm.toml:1:9: every: a text in quotes is wanted"},
    {"NoTime", "every = \"soon\"\n",
     "slurm.toml:1:9: every: \"soon\" is no time such as 90s, 10m or 1h30m"},
    {"TooShort", "budget = \"1s\"\n", "slurm.toml:1:10: budget: must be at least 2s"},
    {"NoTruth", "drain = \"no\"\n", "slurm.toml:1:9: drain: true or false is wanted"},
    {"RelativePath", "diags = \"bin/diags\"\n",
     "slurm.toml:1:9: diags: \"bin/diags\" is no absolute path"},
    {"RelativePlan", "plan = \"../night.toml\"\n",
     "slurm.toml:1:8: plan: \"../night.toml\" is no absolute path"},
    {"NodeList", "node = \"n[1-4]\"\n", "slurm.toml:1:8: node: \"n[1-4]\" is no name of a node"},
    {"OptionForANode", "node = \"-v\"\n", "slurm.toml:1:8: node: \"-v\" is no name of a node"},
};
INSTANTIATE_TEST_SUITE_P(All, SlurmConfigurationFaults, testing::ValuesIn(kFaultRows),
                         [](const auto& row) { return row.param.name; });

TEST(SlurmConfiguration, ThatIsNoTomlIsNamedWithItsLine) {
  try {
    read("plan = \"quick\"\nbudget = = 3\n", Verb::kHealth);
    FAIL() << "no fault was found";
  } catch (const SettingError& error) {
    EXPECT_EQ(std::string(error.what()).rfind("slurm.toml:2:", 0), 0U) << error.what();
  }
}

}  // namespace
}  // namespace slurm
