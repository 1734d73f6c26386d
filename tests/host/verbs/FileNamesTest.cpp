#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "host/Messages.h"
#include "host/Process.h"
#include "host/verbs/FileNames.h"

namespace host {
namespace {

/// As a step of Slurm has it.
class OnANode : public testing::Test {
 protected:
  static void call(const char* node) {
#if defined(_WIN32)
    _putenv_s("SLURMD_NODENAME", node);
#else
    ::setenv("SLURMD_NODENAME", node, 1);
#endif
  }

  void TearDown() override {
    call("");
#if !defined(_WIN32)
    ::unsetenv("SLURMD_NODENAME");
#endif
  }
};

TEST_F(OnANode, AFileIsNamedAfterIt) {
  call("n3");
  EXPECT_EQ(fileNameFrom("out/%N.jsonl"), "out/n3.jsonl");
  EXPECT_EQ(fileNameFrom("%N/%N"), "n3/n3");
}

TEST_F(OnANode, OrAfterTheHostWhereThereIsNone) {
  call("");
  const std::string host = hostName();
  EXPECT_EQ(fileNameFrom("%N.jsonl"), host.substr(0, host.find('.')) + ".jsonl");
}

TEST_F(OnANode, OtherNamesStayAsTheyAre) {
  EXPECT_EQ(fileNameFrom("-"), "-");
  EXPECT_EQ(fileNameFrom("run 7.jsonl"), "run 7.jsonl");
  EXPECT_EQ(fileNameFrom("100%%.jsonl"), "100%.jsonl");
  EXPECT_EQ(fileNameFrom("%%N"), "%N");
}

TEST_F(OnANode, APercentSignBeforeAnythingElseIsRefused) {
  for (const char* const name : {"%n.jsonl", "%", "a%", "%j.jsonl", "% N"}) {
    try {
      fileNameFrom(name);
      ADD_FAILURE() << name;
    } catch (const UsageError& error) {
      EXPECT_EQ(std::string(error.what()).rfind(std::string(name) + ": %N is", 0), 0U)
          << error.what();
    }
  }
}

TEST_F(OnANode, ANameThatLeadsElsewhereIsRefused) {
  for (const char* const node : {"../etc/x", "a\\b", "c:x", ".", ".."}) {
    call(node);
    EXPECT_THROW(fileNameFrom("out/%N.jsonl"), UsageError) << node;
  }
}

}  // namespace
}  // namespace host
