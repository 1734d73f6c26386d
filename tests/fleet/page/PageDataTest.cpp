#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "fleet/page/PageData.h"
#include "tests/fleet/page/SampleAnswers.h"
#include "tests/reports/html/HostileTexts.h"

namespace fleet::page {
namespace {

/// Places in a machine's row.
enum Column { kName, kKind, kTests, kResults, kSlow, kFacts, kNotes };

std::string textOf(const Answer& answer, const PageLimits& limits = {}) {
  std::ostringstream out;
  writeData(out, answer, limits);
  return out.str();
}

nlohmann::json dataOf(const Answer& answer, const PageLimits& limits = {}) {
  return nlohmann::json::parse(textOf(answer, limits));
}

struct ScriptRow {
  const char* name;
  const char* json;
  const char* inside;
};

const ScriptRow kScripts[] = {
    {"nothing", "", ""},
    {"plain", R"(["a",1])", R"(["a",1])"},
    {"the end of a script", R"("</script>")", "\"\\u003c/script>\""},
    {"a comment", R"("<!--<script>")", "\"\\u003c!--\\u003cscript>\""},
};

TEST(FleetPageData, NothingEndsOrOpensTheScriptThatItStandsIn) {
  for (const ScriptRow& row : kScripts) EXPECT_EQ(insideScript(row.json), row.inside) << row.name;
}

TEST(FleetPageData, HoldsNoHostileTextRawAndIsReadBackAsWhatIsSeen) {
  for (const auto& hostile : reports::samples::hostileTexts()) {
    const std::string text = textOf(samples::answerOf(hostile.text));
    for (const char* const raw : {"<", "\x1b", "\x07", "\u202e", "\u2066", "\x7f"}) {
      EXPECT_EQ(text.find(raw), std::string::npos) << hostile.name;
    }
    EXPECT_TRUE(nlohmann::json::accept(text)) << hostile.name;
  }
  const nlohmann::json data = dataOf(samples::answerOf("<b>\x1b[2J\u2028"));
  EXPECT_EQ(data["machines"][0][kName], "<b>\\x1b[2J\\u2028");
}

TEST(FleetPageData, ARowHasTheMachineAndALetterForEachOfItsTests) {
  const nlohmann::json rows = dataOf(samples::faultyFleet())["machines"];
  EXPECT_EQ(rows[0][kName], "node-00001");
  EXPECT_EQ(rows[0][kTests], nlohmann::json({0, 1, 2, 3}));
  EXPECT_EQ(rows[0][kResults], "pppp");
  EXPECT_EQ(rows[6][kResults], "pfpp");
  EXPECT_EQ(rows[9][kResults], "ppwp");
  EXPECT_EQ(rows[11][kResults], "ppps");
  EXPECT_EQ(rows[20][kResults], "ppup");
  EXPECT_EQ(rows[30][kSlow], 1);
}

TEST(FleetPageData, TestsThatAnEarlierMachineHasHadAreNotListedAgain) {
  const nlohmann::json rows = dataOf(samples::faultyFleet())["machines"];
  EXPECT_EQ(rows[1][kTests], 0);
  EXPECT_EQ(rows[12][kTests], nlohmann::json({0, 1, 2}));
  EXPECT_EQ(rows[12][kResults], "ppp");
  EXPECT_EQ(rows[13][kTests], 0);
}

TEST(FleetPageData, AMachineWithoutAnyStreamHasARowWithoutResults) {
  const nlohmann::json data = dataOf(samples::faultyFleet());
  const nlohmann::json row = data["machines"].back();
  EXPECT_EQ(data["machines"].size(), 41U);
  EXPECT_EQ(row[kName], "node-00041");
  EXPECT_EQ(data["kinds"][row[kKind].get<std::size_t>()][0], "none");
  EXPECT_EQ(row[kResults], "");
  EXPECT_EQ(row[kNotes][0][2], "no stream");
}

TEST(FleetPageData, AMachinesKindIsItsVerdict) {
  const nlohmann::json data = dataOf(samples::faultyFleet());
  const auto kind = [&](std::size_t machine) {
    return data["kinds"][data["machines"][machine][kKind].get<std::size_t>()][0];
  };
  EXPECT_EQ(kind(0), "passed");
  EXPECT_EQ(kind(6), "failed");
  EXPECT_EQ(kind(9), "warned");
  EXPECT_EQ(kind(20), "unfinished");
}

TEST(FleetPageData, NotesOfAMachineAreBoundedAndSayHowManyAreMissing) {
  Answer answer = samples::soundFleet(1, 1);
  for (int i = 0; i < 30; ++i)
    answer.findings.push_back({0, 0, Verdict::kFailed, {}, {}, {}, {}, {}, "x", {}});
  PageLimits limits;
  limits.notes = 4;
  const nlohmann::json notes = dataOf(answer, limits)["machines"][0][kNotes];
  ASSERT_EQ(notes.size(), 5U);
  EXPECT_EQ(notes[4][1], "26 more");
}

TEST(FleetPageData, NotesOfAllMachinesTogetherAreBounded) {
  Answer answer = samples::soundFleet(1000, 1);
  for (std::uint32_t i = 0; i < 1000; ++i) {
    answer.findings.push_back(
        {i, 0, Verdict::kFailed, {}, {}, {}, {}, {}, std::string(300, 'x'), {}});
  }
  PageLimits limits;
  limits.noteBytes = 10'000;
  const std::size_t bare = textOf(samples::soundFleet(1000, 1)).size();
  EXPECT_LT(textOf(answer, limits).size(), bare + 10'000 + 1000 * 70);
}

TEST(FleetPageData, TextsAreCutToTheirLimits) {
  const std::string text = textOf(samples::answerOf(std::string(1'000'000, 'x')));
  EXPECT_LT(text.size(), 20'000U);
}

TEST(FleetPageData, AGroupHasItsMachinesAndNoneThatIsNotThere) {
  Answer answer = samples::faultyFleet();
  answer.groups[0].machines.push_back(4711);
  const nlohmann::json groups = dataOf(answer)["groups"];
  EXPECT_EQ(groups[0]["name"], "memory \u00b7 Kestrel KS-16G-5600");
  EXPECT_EQ(groups[0]["machines"], nlohmann::json({6, 16, 36}));
}

}  // namespace
}  // namespace fleet::page
