#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "host/verbs/PlanOptions.h"

namespace host {
namespace {

std::string refusalOfFile(const std::string& file) {
  Options options;
  options.run.plan = file;
  try {
    planOf(options);
    return "taken";
  } catch (const engine::PlanError& error) {
    return error.what();
  }
}

// Catches a command that waits for somebody who writes into the pipe.
TEST(PlanOptionsPosix, APipeIsRefusedAtOnce) {
  const std::string pipe = testing::TempDir() + "diags-plan-" + std::to_string(getpid()) + ".toml";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(refusalOfFile(pipe), pipe + ": this is a pipe or a device; a plan is a file");
  unlink(pipe.c_str());
}

TEST(PlanOptionsPosix, ADeviceIsRefusedAtOnce) {
  EXPECT_EQ(refusalOfFile("/dev/zero"), "/dev/zero: this is a pipe or a device; a plan is a file");
}

TEST(PlanOptionsPosix, ALinkInACircleCannotBeRead) {
  const std::string link = testing::TempDir() + "diags-link-" + std::to_string(getpid()) + ".toml";
  ASSERT_EQ(symlink(link.c_str(), link.c_str()), 0);
  EXPECT_EQ(refusalOfFile(link), link + ": cannot be read");
  unlink(link.c_str());
}

}  // namespace
}  // namespace host
