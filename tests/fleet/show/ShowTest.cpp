#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "fleet/show/Json.h"
#include "fleet/show/Sentences.h"
#include "fleet/show/Table.h"

namespace fleet {
namespace {

const std::string kHostile = "n\x1b[31m\n<b>\xff\xE2\x80\xAE";

Answer answerOf(std::uint32_t machines, const std::string& name) {
  Answer answer;
  answer.tests.push_back({name, {}});
  for (std::uint32_t i = 0; i < machines; ++i) {
    Machine machine;
    machine.name = name + std::to_string(i);
    machine.source = name;
    machine.verdict = Verdict::kFailed;
    machine.verdicts = {Verdict::kFailed};
    answer.machines.push_back(machine);
    Finding finding;
    finding.machine = i;
    finding.test = 0;
    finding.part = finding.text = name;
    answer.findings.push_back(finding);
  }
  answer.tests[0].verdicts[static_cast<std::size_t>(Verdict::kFailed)] = machines;
  answer.totals.machines[static_cast<std::size_t>(Verdict::kFailed)] = machines;
  answer.silent.push_back({name, kNowhere, 0, name});
  Group group;
  group.kind = GroupKind::kBatch;
  group.key = group.of = name;
  answer.groups.push_back(group);
  Slow slow;
  slow.device = slow.model = slow.serial = slow.measurement = slow.unit = name;
  answer.slow.push_back(slow);
  answer.complaints.push_back({name, 7, name, true});
  return answer;
}

std::string tableOf(const Answer& answer, const TableOptions& options) {
  std::ostringstream out;
  writeTable(out, answer, options);
  return out.str();
}

TEST(FleetTable, IsAsLongAsWasAskedForAndCountsTheRest) {
  const std::string table = tableOf(answerOf(100, "n"), {5, false});
  EXPECT_NE(table.find("100 machines: 100 failed; 1 did not answer\n"), std::string::npos);
  EXPECT_NE(table.find("  n4   1 test; n: n: n\n"), std::string::npos) << table;
  EXPECT_EQ(table.find("  n5 "), std::string::npos);
  EXPECT_NE(table.find("  and 95 more (--limit, --verbose)\n"), std::string::npos);
  EXPECT_NE(tableOf(answerOf(100, "n"), {5, true}).find("  n99 "), std::string::npos);
}

TEST(FleetTable, NothingFromAStreamActsOnTheTerminal) {
  for (const char byte : tableOf(answerOf(3, kHostile), {20, true})) {
    EXPECT_TRUE(byte == '\n' || static_cast<unsigned char>(byte) >= 0x20);
  }
  EXPECT_EQ(tableOf(answerOf(1, kHostile), {}).find("\xE2\x80\xAE"), std::string::npos);
}

TEST(FleetJson, HasEverythingAndIsHarmless) {
  const std::string text = jsonOf(answerOf(2, kHostile));
  for (const char byte : text) EXPECT_GE(static_cast<unsigned char>(byte), 0x20);
  const nlohmann::json json = nlohmann::json::parse(text);
  EXPECT_EQ(json["machines"].size(), 2U);
  EXPECT_EQ(json["machines"][0]["verdicts"][0], "failed");
  EXPECT_EQ(json["findings"][1]["machine"], 1);
  EXPECT_EQ(json["groups"][0]["kind"], "batch");
  EXPECT_EQ(json["slow"][0]["is"], "slow");
  EXPECT_FALSE(json["silent"][0].contains("machine"));
  EXPECT_EQ(json["complaints"][0]["line"], 7);
  EXPECT_EQ(json["tests"][0]["machines"]["failed"], 2);
  EXPECT_EQ(json["totals"]["machines"]["failed"], 2);
}

TEST(FleetSentences, ASlowPartIsTold) {
  Answer answer = answerOf(1, "n");
  Slow& slow = answer.slow[0];
  slow.device = "A2";
  slow.model = "M16";
  slow.serial = "S7";
  slow.measurement = "bandwidth";
  slow.unit = "GiB/s";
  slow.value = 8;
  slow.median = 10;
  slow.ratio = 0.8;
  slow.score = 9.25;
  slow.peers = 30;
  slow.measurements = 20;
  EXPECT_EQ(sentenceOf(answer, slow),
            "n, A2 (M16, serial number S7): 20 % slower than its peers on average of 20 "
            "measurements; bandwidth 8 GiB/s, median 10 GiB/s (9.2 deviations, 30 peers)");
}

TEST(FleetSentences, AComplaintNamesFileAndLine) {
  EXPECT_EQ(sentenceOf(Complaint{"f", 5, "is odd", false}), "f, line 5: is odd");
  EXPECT_EQ(sentenceOf(Complaint{"f", 0, "is odd", false}), "f: is odd");
  EXPECT_EQ(sentenceOf(Complaint{"", 0, "two fleets", false}), "two fleets");
}

}  // namespace
}  // namespace fleet
