#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <streambuf>

#include "fleet/page/Page.h"
#include "tests/fleet/page/SampleAnswers.h"
#include "tests/reports/html/HostileTexts.h"

namespace fleet {
namespace {

using testing::HasSubstr;
using testing::Not;

std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

TEST(FleetPage, OfAnEmptyAnswerIsWholeAndSaysSo) {
  const std::string page = samples::pageOf({});
  EXPECT_THAT(page, HasSubstr("<h1>No machine answered</h1>"));
  EXPECT_THAT(page, testing::EndsWith("</html>\n"));
}

TEST(FleetPage, AnswersTheQuestionsAboutAFleetWithoutAnyScript) {
  const std::string page = samples::pageOf(samples::faultyFleet());
  const std::string text = page.substr(0, page.find("<script"));
  for (const char* const part :
       {"3 of 41 machines failed", "Kestrel KS-16G-5600", "3 of 5 failed, of the rest 0 of 35",
        "by chance, so many would fail in 1 of 322,580 cases", "Replace the memory module DIMM_A2.",
        "2310 MB/s, 66.4 % of the median of 39 peers, 3480 MB/s", "12.7 deviations off",
        "node-00041", "no stream", "its stream ends in the middle of Test 03",
        "streams/torn.jsonl:12", "it is no JSON", "node-00007", "stuck bit 17"}) {
    EXPECT_THAT(text, HasSubstr(part));
  }
}

TEST(FleetPage, StreamsThatWereLeftOutStandBeforeOddities) {
  const std::string page = samples::pageOf(samples::faultyFleet());
  EXPECT_LT(page.find("torn.jsonl"), page.find("odd.jsonl"));
}

TEST(FleetPage, SeveralFleetsInOneAnswerAreNamed) {
  Answer answer = samples::soundFleet(5, 2);
  answer.components = {{3, 1, 0}, {2, 1, 4}};
  const std::string page = samples::pageOf(answer);
  EXPECT_THAT(page, HasSubstr("2 fleets, which have no test in common"));
  EXPECT_THAT(page, HasSubstr("3 machines with 1 test, such as <b>node-00001</b>"));
  EXPECT_THAT(page, HasSubstr("2 machines with 1 test, such as <b>node-00005</b>"));
  answer.components.pop_back();
  EXPECT_THAT(samples::pageOf(answer), Not(HasSubstr("Several fleets")));
}

TEST(FleetPage, AnIdleSectionIsNotThere) {
  const std::string page = samples::pageOf(samples::soundFleet(2, 2));
  for (const char* const id : {"groups", "tests", "slow", "silent", "fleets", "streams"}) {
    EXPECT_THAT(page, Not(HasSubstr("<section id=\"" + std::string(id)))) << id;
  }
}

TEST(FleetPage, HoldsNoHostileTextRaw) {
  for (const auto& hostile : reports::samples::hostileTexts()) {
    const std::string page = samples::pageOf(samples::answerOf(hostile.text));
    EXPECT_EQ(countOf(page, "<script"), 3U) << hostile.name;
    EXPECT_EQ(countOf(page, "</script>"), 3U) << hostile.name;
    EXPECT_EQ(countOf(page, "</style>"), 2U) << hostile.name;
    for (const char* const raw :
         {"<img", "<base", "<a href=\"javascript", "<b>\xc0", "\x1b", "\u202e", "\u2066"}) {
      EXPECT_THAT(page, Not(HasSubstr(raw))) << hostile.name;
    }
  }
}

TEST(FleetPage, NamesOfAMegabyteAreCut) {
  EXPECT_LT(samples::pageOf(samples::answerOf(std::string(1'000'000, 'x'))).size(), 70'000U);
}

TEST(FleetPage, LongListsSayHowMuchIsMissing) {
  Answer answer = samples::largeFleet(2000, 4);
  answer.complaints.assign(7, {"torn.jsonl", 1, "it is no JSON", true});
  answer.moreComplaints = 100;
  PageLimits limits;
  limits.rows = 5;
  const std::string page = samples::pageOf(answer, limits);
  for (const char* const more : {"15 more", "55 more", "102 more"}) {
    EXPECT_THAT(page, HasSubstr(std::string(more) + " are not shown here.")) << more;
  }
}

/// Takes everything, and keeps how much came at once at most.
class Pieces : public std::streambuf {
 public:
  std::size_t most() const { return m_most; }
  std::size_t all() const { return m_all; }

 private:
  std::streamsize xsputn(const char*, std::streamsize count) override {
    m_most = std::max(m_most, static_cast<std::size_t>(count));
    m_all += static_cast<std::size_t>(count);
    return count;
  }
  int_type overflow(int_type c) override {
    ++m_all;
    return traits_type::not_eof(c);
  }

  std::size_t m_most = 0;
  std::size_t m_all = 0;
};

TEST(FleetPage, IsWrittenInPieces) {
  Pieces pieces;
  std::ostream out(&pieces);
  writePage(samples::largeFleet(10'000, 40), out);
  EXPECT_LT(pieces.most(), 32'000U);
  EXPECT_LT(pieces.all(), 4'000'000U);
}

TEST(FleetPage, IndicesThatLeadNowhereBringNothingDown) {
  Answer answer = samples::soundFleet(1, 1);
  answer.findings.push_back({9, 9, Verdict::kFailed, {}, {}, {}, {}, {}, "of nobody", {}});
  answer.slow.emplace_back();
  answer.slow[0].machine = 9;
  answer.slow[0].test = kNowhere;
  answer.groups.push_back({GroupKind::kPart, "k", "o", 1, 1, 0, 0, 1, {9}, {9}});
  answer.silent.push_back({"name", 9, 0, "why"});
  EXPECT_THAT(samples::pageOf(answer), testing::EndsWith("</html>\n"));
}

}  // namespace
}  // namespace fleet
