// The command on the streams of several machines: what it ends with, and where it writes.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/fleet/Streams.h"
#include "tests/host/CommandRunner.h"

namespace host_test {
namespace {

using fleet_test::Folder;
using fleet_test::Stream;

class FleetCommand : public testing::Test {
 protected:
  void add(const std::string& file, const Stream& stream) { m_folder.write(file, stream.text()); }
  void addSound(const std::string& name) {
    add(name + ".jsonl", Stream().machine(name).test("x").finish());
  }
  CommandResult fleet(std::vector<std::string> arguments = {}) const {
    arguments.insert(arguments.begin(), {"fleet", m_folder.name()});
    return runCommand(arguments);
  }

  Folder m_folder{std::string("command-") +
                  testing::UnitTest::GetInstance()->current_test_info()->name()};
};

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST_F(FleetCommand, ASoundFleetIsStatusZero) {
  addSound("a");
  addSound("b");
  const CommandResult result = fleet();
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(has(result.out, "2 machines: 2 passed")) << result.out;
}

TEST_F(FleetCommand, AFailingMachineOutweighsWhatIsMissing) {
  addSound("a");
  add("b.jsonl", Stream().machine("b").test("x", "FAIL").finish("FAIL"));
  add("c.jsonl", Stream().machine("c").begin("1", "x"));
  const CommandResult result = fleet();
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(has(result.err, "c.jsonl, line 3: the stream ends before the run does, in x"))
      << result.err;
}

TEST_F(FleetCommand, WhatIsMissingIsStatusThree) {
  addSound("a");
  EXPECT_EQ(fleet({"--expect", m_folder.write("names.txt", "a\r\n\nb\n")}).status, 3);
  EXPECT_EQ(fleet({"--expect", m_folder.write("names.txt", "a\n")}).status, 0);
  EXPECT_EQ(fleet({"--expect", m_folder.write("names.txt",
                                              "\xEF\xBB\xBF"
                                              "a\r\n")})
                .status,
            0);
  m_folder.write("bad.json", "{}\n");
  EXPECT_EQ(fleet().status, 3);
}

TEST_F(FleetCommand, AMachineThatSkippedEverythingDidNotPass) {
  add("a.jsonl", Stream().machine("a").begin("1", "x").end("1", "SKIP").finish("NOT_APPLICABLE"));
  EXPECT_EQ(fleet().status, 3);
}

TEST_F(FleetCommand, WithoutAStreamThereIsNothing) {
  const CommandResult result = fleet();
  EXPECT_EQ(result.status, 4);
  EXPECT_EQ(result.err, "diags: no stream that can be read\n");
}

TEST_F(FleetCommand, AListOfMachinesWithoutAnyIsRefused) {
  addSound("a");
  const std::string names = m_folder.write("names.txt", " \n\n # rack 4\n");
  const CommandResult result = fleet({"--expect", names});
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(has(result.err, "names.txt: names no machine")) << result.err;
  EXPECT_EQ(fleet({"--expect", m_folder.name()}).status, 2);
  EXPECT_EQ(fleet({"--expect", m_folder.name() + "/none"}).status, 2);
}

TEST_F(FleetCommand, JsonStandsAloneOnStandardOutput) {
  addSound("a");
  m_folder.write("bad.json", "");
  const CommandResult result = fleet({"--json"});
  EXPECT_EQ(result.out.front(), '{');
  EXPECT_EQ(result.out.find('\n'), result.out.size() - 1);
  EXPECT_TRUE(has(result.err, "bad.json: is empty"));
}

TEST_F(FleetCommand, ThePageIsWrittenInsteadOfTheTable) {
  addSound("a");
  const std::string page = (m_folder.path() / "page.html").u8string();
  const CommandResult result = fleet({"--html", page});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "");
  EXPECT_TRUE(has(readText(page), "<!DOCTYPE html>"));
  EXPECT_TRUE(has(fleet({"--html", "-"}).out, "<!DOCTYPE html>"));
  EXPECT_EQ(fleet({"--html", "-", "--json"}).status, 2);
}

TEST_F(FleetCommand, APageOfNothingLeavesNoFile) {
  const std::filesystem::path page = m_folder.path() / "page.html";
  EXPECT_EQ(fleet({"--html", page.u8string()}).status, 4);
  EXPECT_FALSE(std::filesystem::exists(page));
}

TEST_F(FleetCommand, NamesFromStreamsDoNotActOnTheTerminal) {
  add("a.jsonl", Stream().machine("\\u001b[31mred\\n<b>").test("x\\u202e", "FAIL").finish("FAIL"));
  const CommandResult result = fleet();
  EXPECT_FALSE(has(result.out, "\x1b"));
  EXPECT_TRUE(has(result.out, "\\x1b[31mred\\x0a<b>")) << result.out;
}

}  // namespace
}  // namespace host_test
