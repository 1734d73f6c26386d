#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "host/options/Manual.h"
#include "host/options/Options.h"
#include "host/options/Vocabulary.h"

namespace host {
namespace {

using testing::HasSubstr;
using testing::UnorderedElementsAreArray;

VerbWords verbOf(const std::string& name) {
  for (VerbWords verb : commandVocabulary().verbs) {
    if (verb.name == name) return verb;
  }
  ADD_FAILURE() << "no verb " << name;
  return {};
}

OptionWords optionOf(const std::string& verb, const std::string& name) {
  for (OptionWords option : verbOf(verb).options) {
    if (option.names.back() == name) return option;
  }
  ADD_FAILURE() << verb << " has no " << name;
  return {};
}

struct OptionRow {
  const char* verb;
  const char* name;
  const char* kind;
  int values;
  bool repeats;
};

TEST(Vocabulary, AnOptionHasTheKindAndNumberOfItsValues) {
  const OptionRow rows[] = {
      {"list", "--long", "", 0, false},       {"run", "--level", "LEVEL", 1, false},
      {"run", "--plan", "PLAN", 1, false},    {"run", "--exclude", "TEST", 1, true},
      {"run", "--html", "FILE", 1, false},    {"run", "--threaded", "MINUTES", 1, false},
      {"history", "--diff", "RUN", 2, false}, {"history", "--most", "N", 1, false},
      {"report", "--state", "DIR", 1, false}, {"run", "--set", "NAME=VALUE", 1, true},
  };
  for (const OptionRow& row : rows) {
    SCOPED_TRACE(std::string(row.verb) + " " + row.name);
    const OptionWords option = optionOf(row.verb, row.name);
    EXPECT_EQ(option.kind, row.kind);
    EXPECT_EQ(option.values, row.values);
    EXPECT_EQ(option.repeats, row.repeats);
  }
}

TEST(Vocabulary, ShortNamesBelongToTheirOption) {
  EXPECT_EQ(optionOf("run", "--quiet").names, (std::vector<std::string>{"-q", "--quiet"}));
}

TEST(Vocabulary, AVerbHasTheKindOfItsWords) {
  EXPECT_EQ(verbOf("run").kind, "TEST");
  EXPECT_TRUE(verbOf("run").repeats);
  EXPECT_EQ(verbOf("results").kind, "TEST");
  EXPECT_FALSE(verbOf("results").repeats);
  EXPECT_EQ(verbOf("verify").kind, "FILE");
  EXPECT_EQ(verbOf("list").kind, "");
}

TEST(Vocabulary, TheHiddenVerbIsNotToldButTaken) {
  for (const VerbWords& verb : commandVocabulary().verbs) EXPECT_NE(verb.name, "completion");
  EXPECT_TRUE(std::holds_alternative<Options>(parseOptions({"completion", "zsh"})));
  EXPECT_FALSE(std::holds_alternative<Options>(parseOptions({"completion", "tcsh"})));
}

// Catches a verb or an option that the manual page passes over, and text that roff would take for a
// request.
TEST(Vocabulary, TheManualHasAllOfIt) {
  const std::string manual = manualSections(commandVocabulary());
  for (const VerbWords& verb : commandVocabulary().verbs) {
    const std::size_t start = manual.find(".SS \"diags " + verb.name);
    ASSERT_NE(start, std::string::npos) << verb.name;
    const std::string section = manual.substr(start, manual.find("\n.SS", start) - start);
    EXPECT_THAT(section, HasSubstr("\n" + verb.description + ".\n"));
    for (const OptionWords& option : verb.options) {
      const std::string name = option.names.back();
      EXPECT_THAT(section, HasSubstr("\\fB\\-\\-" + name.substr(2, name.find('-', 2) - 2))) << name;
    }
  }
  EXPECT_THAT(manual, HasSubstr("\\fB\\-\\-diff\\fR \\fIRUN\\fR \\fIRUN\\fR\n"));
  EXPECT_THAT(manual, HasSubstr("\\fB\\-\\-root\\fR \\fIDIR\\fR\n"));
}

TEST(Vocabulary, EveryLevelIsOneThatTheCommandTakes) {
  for (const std::string& level : levelNames()) {
    EXPECT_TRUE(std::holds_alternative<Options>(parseOptions({"run", "A", "--level", level})));
  }
}

// Catches a plan that is shipped and never offered, or offered and not there.
TEST(Vocabulary, ThePlansAreThoseThatAreShipped) {
  std::vector<std::string> files;
  for (const auto& file : std::filesystem::directory_iterator(DIAGS_SOURCE_DIR "/data/plans")) {
    files.push_back(file.path().stem().string());
  }
  EXPECT_THAT(shippedPlans(), UnorderedElementsAreArray(files));
}

}  // namespace
}  // namespace host
