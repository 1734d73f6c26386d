#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <streambuf>

#include "fleet/reading/StreamReader.h"
#include "tests/fleet/Streams.h"

namespace fleet {
namespace {

using fleet_test::Stream;

const char* const kDimm =
    "{\"hardwareInfoId\":\"h1\",\"name\":\"DIMM\",\"location\":\"A2\",\"partType\":\"MEMORY\","
    "\"manufacturerPartNumber\":\"M16\",\"serialNumber\":\"S7\"}";

class FleetStreamReader : public testing::Test {
 protected:
  StreamResult read(const std::string& text) {
    std::istringstream in(text);
    Scratch scratch;
    return StreamReader(m_tables, scratch).read(in, "f.jsonl");
  }
  StreamResult read(const Stream& stream) { return read(stream.text()); }
  /// Where little is read of a stream.
  StreamResult readLittle(const Stream& stream) {
    std::istringstream in(stream.text());
    Scratch scratch;
    return StreamReader(m_tables, scratch, {10, 20, 2000}).read(in, "f.jsonl");
  }
  std::string complaintOf(const std::string& text) {
    const StreamResult result = read(text);
    return result.complaints.empty() ? "" : result.complaints.front().text;
  }

  Tables m_tables;
};

TEST_F(FleetStreamReader, AMachineIsTheRunsDevice) {
  const StreamResult result = read(Stream().machine("n7", "SN1").finish());
  EXPECT_EQ(result.machine.name, "n7");
  EXPECT_EQ(result.machine.serial, "SN1");
  EXPECT_EQ(result.machine.model, "M1");
  EXPECT_TRUE(result.hasEnded);
  EXPECT_TRUE(result.complaints.empty());
}

struct VerdictRow {
  const char* name;
  std::vector<std::string> artifacts;
  const char* status;
  Verdict verdict;
};

class FleetVerdict : public FleetStreamReader, public testing::WithParamInterface<VerdictRow> {};

TEST_P(FleetVerdict, IsWhatTheStepSays) {
  Stream stream;
  stream.machine("n").begin("1", "t");
  for (const std::string& artifact : GetParam().artifacts) stream.step("1", artifact);
  const StreamResult result = read(stream.end("1", GetParam().status).finish());
  ASSERT_EQ(result.outcomes.size(), 1U);
  EXPECT_EQ(result.outcomes[0].verdict, GetParam().verdict);
}

const std::string kPass = R"("diagnosis":{"verdict":"a-pass","type":"PASS"})";
const std::string kWarning = R"("diagnosis":{"verdict":"a-warning","type":"PASS"})";
const std::string kFail = R"("diagnosis":{"verdict":"a-fail","type":"FAIL"})";
const std::string kUnknown = R"("diagnosis":{"verdict":"a","type":"UNKNOWN"})";
const std::string kError = R"("error":{"symptom":"crash"})";
const std::string kAborted = R"("extension":{"name":"end","content":{"outcome":"aborted"}})";
const std::string kWarned = R"("extension":{"name":"end","content":{"outcome":"warned"}})";
const std::string kForeign = R"("extension":{"name":"other","content":{"outcome":"failed"}})";

INSTANTIATE_TEST_SUITE_P(
    Rows, FleetVerdict,
    testing::Values(
        VerdictRow{"Pass", {kPass}, "COMPLETE", Verdict::kPassed},
        VerdictRow{"NoDiagnosis", {}, "COMPLETE", Verdict::kPassed},
        VerdictRow{"Warning", {kPass, kWarning}, "COMPLETE", Verdict::kWarned},
        VerdictRow{"OneFailureAmongPasses", {kPass, kFail, kPass}, "COMPLETE", Verdict::kFailed},
        VerdictRow{"FailureBeforeAnError", {kFail, kError}, "ERROR", Verdict::kFailed},
        VerdictRow{"Error", {kError}, "ERROR", Verdict::kUnfinished},
        VerdictRow{"ErrorThoughComplete", {kError}, "COMPLETE", Verdict::kUnfinished},
        VerdictRow{"Unknown", {kUnknown}, "COMPLETE", Verdict::kUnfinished},
        VerdictRow{"Skip", {}, "SKIP", Verdict::kSkipped},
        VerdictRow{"OwnWordAborted", {kPass, kAborted}, "ERROR", Verdict::kUnfinished},
        VerdictRow{"OwnWordWarned", {kPass, kWarned}, "COMPLETE", Verdict::kWarned},
        VerdictRow{"ForeignExtension", {kPass, kForeign}, "COMPLETE", Verdict::kPassed}),
    [](const auto& row) { return row.param.name; });

struct BadRow {
  const char* name;
  std::string text;
  const char* complaint;
};

class FleetBadStream : public FleetStreamReader, public testing::WithParamInterface<BadRow> {};

TEST_P(FleetBadStream, IsLeftOutAndNamed) {
  const StreamResult result = read(GetParam().text);
  EXPECT_TRUE(result.isLeftOut);
  ASSERT_EQ(result.complaints.size(), 1U);
  EXPECT_TRUE(result.complaints[0].isLeftOut);
  EXPECT_EQ(result.complaints[0].file, "f.jsonl");
  EXPECT_EQ(result.complaints[0].text, GetParam().complaint);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FleetBadStream,
    testing::Values(
        BadRow{"Empty", "", "is empty"},
        BadRow{"Blank", "\n \n", "is no OCP stream: it has blank lines alone"},
        BadRow{"Binary", std::string("\x00\x01\xff", 3),
               "is no OCP stream: the line is no JSON at byte 1"},
        BadRow{"OtherJson", "{\"a\":1}\n",
               "is no OCP stream: it does not begin with a version of the format"},
        BadRow{"List", "[1,[2]]\n",
               "is no OCP stream: it does not begin with a version of the format"},
        BadRow{"WrongVersion", "{\"schemaVersion\":{\"major\":3,\"minor\":0}}\n",
               "is a stream of version 3 of the format; 2 can be read"},
        BadRow{"VersionAsText", "{\"schemaVersion\":{\"major\":\"2\"}}\n",
               "is no OCP stream: it does not begin with a version of the format"},
        BadRow{"SecondHalf", "me\":\"n\"}}\n", "is no OCP stream: the line is no JSON at byte 1"},
        BadRow{"NoRun", Stream().text(), "has no start of a run, which names the machine"}),
    [](const auto& row) { return row.param.name; });

TEST_F(FleetStreamReader, AStreamThatWasCutOffCountsUpToItsLastLine) {
  const std::string whole = Stream().machine("n").test("a").begin("9", "b").text();
  const StreamResult result = read(whole + "{\"sequenceNum");
  EXPECT_FALSE(result.isLeftOut);
  EXPECT_FALSE(result.hasEnded);
  ASSERT_EQ(result.outcomes.size(), 2U);
  EXPECT_EQ(result.outcomes[0].verdict, Verdict::kPassed);
  EXPECT_EQ(result.outcomes[1].verdict, Verdict::kUnfinished);
  EXPECT_EQ(result.lastOpen, "b");
}

TEST_F(FleetStreamReader, WhatFollowsALineThatIsNoJsonIsPassedOverAndTheLineNamed) {
  const StreamResult result =
      read(Stream().machine("n").test("a").raw("nonsense\n").test("b").finish());
  ASSERT_EQ(result.outcomes.size(), 1U);
  EXPECT_EQ(result.complaints[0].line, 6U);
  EXPECT_EQ(result.complaints[0].text, "is no JSON at byte 2; what follows is passed over");
}

TEST_F(FleetStreamReader, ASecondStreamInAFileIsPassedOver) {
  EXPECT_EQ(complaintOf(Stream().machine("n").finish().text() + Stream().machine("m").text()),
            "another stream begins in the file; it is passed over");
}

TEST_F(FleetStreamReader, RepetitionsAreOneTestAndTheWorstCounts) {
  const StreamResult result =
      read(Stream().machine("n").test("t", "FAIL").test("t (repetition 2)").finish());
  ASSERT_EQ(result.outcomes.size(), 1U);
  EXPECT_EQ(result.outcomes[0].verdict, Verdict::kFailed);
}

TEST_F(FleetStreamReader, TheServiceIsTheTestWhereItIsTold) {
  const StreamResult result = read(Stream()
                                       .machine("n")
                                       .begin("1", "S,d0,e")
                                       .step("1",
                                             "\"extension\":{\"name\":\"test\","
                                             "\"content\":{\"service\":\"S\",\"device\":\"d0\"}}")
                                       .end("1")
                                       .finish());
  ASSERT_EQ(result.outcomes.size(), 1U);
  EXPECT_EQ(m_tables.names.textOf(result.outcomes[0].test), "S");
  EXPECT_EQ(m_tables.names.textOf(result.outcomes[0].device), "d0");
}

TEST_F(FleetStreamReader, RepeatedValuesAreOneMean) {
  const StreamResult result = read(Stream()
                                       .machine("n")
                                       .begin("1", "t")
                                       .measurement("1", "bw", 2)
                                       .measurement("1", "bw", 4)
                                       .end("1")
                                       .finish());
  ASSERT_EQ(result.values.size(), 1U);
  EXPECT_FLOAT_EQ(result.values[0].value, 3);
  EXPECT_EQ(result.measurements, 2U);
}

TEST_F(FleetStreamReader, TheElementsOfASeriesAreMeasuredValues) {
  const StreamResult result = read(
      Stream()
          .machine("n")
          .begin("1", "t")
          .step("1", R"("measurementSeriesStart":{"measurementSeriesId":"s","name":"bw"})")
          .step("1",
                R"("measurementSeriesElement":{"measurementSeriesId":"s","index":0,"value":5})")
          .step("1",
                R"("measurementSeriesElement":{"measurementSeriesId":"x","index":0,"value":9})")
          .end("1")
          .finish());
  ASSERT_EQ(result.values.size(), 1U);
  EXPECT_FLOAT_EQ(result.values[0].value, 5);
}

TEST_F(FleetStreamReader, WhatIsNoNumberIsNotMeasured) {
  const StreamResult result = read(Stream()
                                       .machine("n")
                                       .begin("1", "t")
                                       .step("1", R"("measurement":{"name":"m","value":"9"})")
                                       .step("1", R"("measurement":{"name":"m","value":true})")
                                       .step("1", R"("measurement":{"name":"m","value":[7]})")
                                       .end("1")
                                       .finish());
  EXPECT_TRUE(result.values.empty());
}

TEST_F(FleetStreamReader, AFindingHasItsPartAndWhatIsRecommended) {
  const StreamResult result =
      read(Stream()
               .machine("n", "", kDimm)
               .begin("1", "t")
               .diagnosis("1", "FAIL",
                          R"(,"message":"3 errors\nRecommended: swap","hardwareInfoId":"h1")")
               .end("1")
               .finish("FAIL"));
  ASSERT_EQ(result.findings.size(), 1U);
  const Finding& finding = result.findings[0].finding;
  EXPECT_EQ(finding.part, "DIMM");
  EXPECT_EQ(finding.partPlace, "A2");
  EXPECT_EQ(finding.partKind, "memory");
  EXPECT_EQ(finding.partModel, "M16");
  EXPECT_EQ(finding.partSerial, "S7");
  EXPECT_EQ(finding.text, "3 errors");
  EXPECT_EQ(finding.action, "swap");
}

TEST_F(FleetStreamReader, NamesOfMegabytesAreCut) {
  const std::string huge(10'000'000, 'x');
  const std::string large(1'000'000, 'x');  // ten of them take the thread sanitizer half a minute
  const StreamResult result = read(Stream().machine(huge).begin("1", large).end("1").finish());
  EXPECT_EQ(result.machine.name.size(), kLongestText);
  EXPECT_EQ(m_tables.names.textOf(result.outcomes[0].test).size(), kLongestText);
}

TEST_F(FleetStreamReader, EndlessFindingsAreNotKept) {
  Stream stream;
  stream.machine("n").begin("1", "t");
  for (int i = 0; i < 1000; ++i) stream.diagnosis("1", "FAIL");
  EXPECT_LE(read(stream.end("1").finish()).findings.size(), 32U);
}

TEST_F(FleetStreamReader, MoreTestsThanAMachineCanHaveAreToldOnce) {
  Stream stream;
  stream.machine("n");
  for (int i = 0; i < 10'010; ++i) stream.test("t" + std::to_string(i));
  const StreamResult result = read(stream.finish());
  EXPECT_EQ(result.outcomes.size(), 10'000U);
  ASSERT_EQ(result.complaints.size(), 1U);
  EXPECT_EQ(result.complaints[0].text,
            "has more tests than a machine can; the rest is passed over");
}

// Catches tables that grow with what one stream makes up, past what is read of it.
TEST_F(FleetStreamReader, NamesBeyondMeasureAreToldAndTakeNoRoom) {
  Stream stream;
  stream.machine("n").begin("1", "t");
  for (int i = 0; i < 30; ++i) stream.measurement("1", "m" + std::to_string(i), 1);
  const StreamResult result = readLittle(stream.end("1").finish());
  EXPECT_EQ(result.values.size(), 20U);
  EXPECT_EQ(m_tables.series().size(), 20U);
  ASSERT_EQ(result.complaints.size(), 1U);
  EXPECT_EQ(result.complaints[0].text,
            "has more measurements than a machine can; the rest is passed over");
}

TEST_F(FleetStreamReader, LongNamesOfMeasurementsTakeNoMoreRoomThanMany) {
  Stream stream;
  stream.machine("n").begin("1", "t");
  const std::string longName(400, 'x');
  for (int i = 0; i < 10; ++i) stream.measurement("1", longName + std::to_string(i), 1);
  const StreamResult result = readLittle(stream.end("1").finish());
  EXPECT_EQ(m_tables.series().size(), 4U);
  EXPECT_EQ(result.complaints.size(), 1U);
}

TEST_F(FleetStreamReader, TestsThatComeAndGoBeyondMeasureLeaveNoNames) {
  Stream stream;
  stream.machine("n");
  for (int i = 0; i < 100; ++i) stream.test("t" + std::to_string(i));
  const StreamResult result = readLittle(stream.finish());
  EXPECT_EQ(result.complaints.size(), 1U);
  EXPECT_LT(m_tables.names.numberOf("one more"), 35U);
}

TEST_F(FleetStreamReader, ATestThatRunsWithoutEndIsOneTest) {
  Stream stream;
  stream.machine("n");
  for (int i = 0; i < 100; ++i) stream.test("t (repetition " + std::to_string(i) + ")");
  const StreamResult result = readLittle(stream.finish());
  EXPECT_EQ(result.outcomes.size(), 1U);
  EXPECT_TRUE(result.complaints.empty());
}

TEST_F(FleetStreamReader, SeriesThatAreBegunBeyondMeasureAreTold) {
  Stream stream;
  stream.machine("n").begin("1", "t");
  for (int i = 0; i < 11; ++i) {
    stream.step("1", "\"measurementSeriesStart\":{\"measurementSeriesId\":\"s" + std::to_string(i) +
                         "\",\"name\":\"bw\"}");
  }
  const StreamResult result = readLittle(stream.end("1").finish());
  ASSERT_EQ(result.complaints.size(), 1U);
  EXPECT_EQ(result.complaints[0].text,
            "has more measurements than a machine can; the rest is passed over");
}

TEST_F(FleetStreamReader, AnIdentifierOfAnyLengthFindsItsTestAgain) {
  const std::string id(10'000, 'i');
  const StreamResult result = read(Stream().machine("n").begin(id, "t").end(id).finish());
  ASSERT_EQ(result.outcomes.size(), 1U);
  EXPECT_EQ(result.outcomes[0].verdict, Verdict::kPassed);
}

/// A line without an end.
class Endless : public std::streambuf {
 public:
  std::size_t given() const { return m_given; }

 private:
  std::streamsize xsgetn(char* to, std::streamsize most) override {
    std::fill_n(to, most, 'x');
    m_given += static_cast<std::size_t>(most);
    return most;
  }
  std::size_t m_given = 0;
};

// Catches a reader that says of such a file that it has blank lines alone, and one that reads all
// of what it passes over.
TEST_F(FleetStreamReader, AFileOfOneEndlessLineIsNoStream) {
  Endless bytes;
  std::istream in(&bytes);
  Scratch scratch;
  const StreamResult result = StreamReader(m_tables, scratch).read(in, "f");
  EXPECT_TRUE(result.isLeftOut);
  ASSERT_EQ(result.complaints.size(), 1U);
  EXPECT_EQ(result.complaints[0].text, "is no OCP stream: the line is longer than 64 MiB");
  EXPECT_LT(bytes.given(), std::size_t{65} * 1024 * 1024);
}

TEST_F(FleetStreamReader, ADeepLineCostsNothing) {
  const std::string deep(200'000, '[');
  const StreamResult result = read(Stream().machine("n").raw("{\"a\":" + deep + "\n").text());
  EXPECT_EQ(result.complaints.size(), 2U);
}

}  // namespace
}  // namespace fleet
