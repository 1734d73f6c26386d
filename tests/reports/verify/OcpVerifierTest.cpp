#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <vector>

#include "reports/common/LineReader.h"
#include "reports/ocp/OcpWriter.h"
#include "reports/verify/OcpVerifier.h"
#include "tests/reports/SampleRun.h"

namespace reports {
namespace {

/// "line rule" of each finding.
std::string findingsIn(const std::string& stream) {
  std::istringstream in(stream);
  std::string found;
  verifyOcp(in, "f", [&](const Finding& finding) {
    found += (found.empty() ? "" : "; ") + std::to_string(finding.line) + " " +
             nameOf(finding.rule) + ": " + finding.text;
  });
  return found;
}

std::string everyKind() {
  std::ifstream file(DIAGS_SOURCE_DIR "/tests/reports/verify/every_kind.jsonl", std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

/// The stream of every kind with the first of what is looked for replaced.
std::string changed(const std::string& what, const std::string& by) {
  std::string stream = everyKind();
  const std::size_t place = stream.find(what);
  if (place == std::string::npos) ADD_FAILURE() << "there is no " << what;
  return stream.replace(place, what.size(), by);
}

TEST(OcpVerifier, AGoodStreamHasNoFinding) {
  EXPECT_EQ(findingsIn(everyKind()), "");
  EXPECT_EQ(findingsIn(written<OcpWriter>(sampleRun())), "");
}

TEST(OcpVerifier, WhatTheWriterMakesOfHostileTextsIsGood) {
  for (const HostileText& text : hostileTexts()) {
    EXPECT_EQ(findingsIn(written<OcpWriter>(runOf(text.text))), "") << text.name;
  }
  EXPECT_EQ(findingsIn(written<OcpWriter>(longRun())), "");
}

struct ChangeRow {
  const char* name;
  const char* what;
  const char* by;
  const char* found;
};

class Changes : public testing::TestWithParam<ChangeRow> {};

TEST_P(Changes, AreFoundWithLineAndRule) {
  EXPECT_EQ(findingsIn(changed(GetParam().what, GetParam().by)), GetParam().found);
}

#define T R"("timestamp":"2026-09-21T14:13:20Z")"
const ChangeRow kChangeRows[] = {
    {"NoJson", R"({"sequenceNumber":2,)", "{:", "3 json: the line is no JSON at byte 2"},
    {"NoUtf8", R"("message":"m","sourceLocation")", "\"message\":\"\xFF\",\"sourceLocation\"",
     "3 json: the line is no JSON at byte 112"},
    {"AGapInTheNumbers", R"({"sequenceNumber":2,)", R"({"sequenceNumber":5,)",
     "3 sequence: the sequence number is not 2; 4 sequence: the sequence number is not 6"},
    {"ABeginningThatIsNotZero", R"({"sequenceNumber":0,)", R"({"sequenceNumber":1,)",
     "1 sequence: the sequence number is not 0; 2 sequence: the sequence number is not 2"},
    {"ATimeOfAZone", T, R"("timestamp":"2026-09-21T14:13:20+02:00")",
     "1 time: the timestamp \"2026-09-21T14:13:20+02:00\" is no time in UTC"},
    {"ADayThatThereIsNot", R"("timestamp":"2026-09-21T14:13:20.123456789Z")",
     R"("timestamp":"2026-09-31T14:13:20.123456789Z")",
     "10 time: the timestamp \"2026-09-31T14:13:20.123456789Z\" is no time in UTC"},
    {"ARepeatedMember", R"("severity":"DEBUG",)", R"("severity":"DEBUG","severity":"INFO",)",
     "3 repeated: the member \"severity\" stands twice"},
    {"AnUnknownMember", R"("severity":"DEBUG",)", "\"severity\":\"DEBUG\",\"x\\u001b\":null,",
     "3 schema: testRunArtifact.log has the unknown member \"x\\x1b\""},
    {"AnUnknownWord", R"("severity":"DEBUG",)", R"("severity":"debug",)",
     "3 schema: testRunArtifact.log.severity is none of INFO, DEBUG, WARNING, ERROR, FATAL"},
    {"ANull", R"("unit":"u",)", R"("unit":null,)",
     "6 schema: testStepArtifact.measurement.unit is no text"},
    {"AWrongValueInAList", R"("type":"LESS_THAN")", R"("type":"LESS")",
     "6 schema: testStepArtifact.measurement.validators[1].type is none of EQUAL, NOT_EQUAL, "
     "LESS_THAN, LESS_THAN_OR_EQUAL, GREATER_THAN, GREATER_THAN_OR_EQUAL, REGEX_MATCH, "
     "REGEX_NO_MATCH, IN_SET, NOT_IN_SET"},
    {"ATextForAnObject", R"({"file":"a.cpp","line":5})", R"("a.cpp:5")",
     "3 object: testRunArtifact.log.sourceLocation is no object"},
    {"NoArtifact", R"("schemaVersion":{"major":2,"minor":0})", R"("x":1)",
     "1 schema: the line has the unknown member \"x\"; "
     "1 schema: the line has none of its artifacts; "
     "1 order: the schema version does not come first"},
    {"AnotherVersion", R"("major":2)", R"("major":1)", "1 schema: schemaVersion.major is not 2"},
    {"APairThatThereIsNot", R"("status":"COMPLETE","result":"PASS")",
     R"("status":"ERROR","result":"PASS")",
     "19 pair: a run with the status \"ERROR\" cannot have the result \"PASS\""},
    {"NoResultOfAWholeRun", R"("status":"COMPLETE","result":"PASS")",
     R"("status":"COMPLETE","result":"NOT_APPLICABLE")",
     "19 pair: a run with the status \"COMPLETE\" cannot have the result \"NOT_APPLICABLE\""},
    {"AStepsNameTwice", R"("testStepId":"2","testStepStart")",
     R"("testStepId":"1","testStepStart")",
     "8 unique: the testStepId \"1\" is given twice; "
     "13 unknown: the step \"2\" has not been started; "
     "18 unknown: the step \"2\" has not been started"},
    {"AnUnknownPart", R"("hardwareInfoId":"h1","subcomponent")",
     R"("hardwareInfoId":"h2","subcomponent")",
     "6 unknown: the run's start has no hardwareInfoId \"h2\""},
    {"AnUnknownProgram", R"("softwareInfoIds":["s1"])", R"("softwareInfoIds":["s2"])",
     "4 unknown: the run's start has no softwareInfoId \"s2\""},
    {"APartTwice", R"("hardwareInfos":[)",
     R"("hardwareInfos":[{"hardwareInfoId":"h1","name":"x"},)",
     "2 unique: the hardwareInfoId \"h1\" is given twice"},
    {"AnotherSeries", R"("measurementSeriesId":"q","metadata":{}}}})",
     R"("measurementSeriesId":"p","metadata":{}}}})",
     "9 unknown: the series \"p\" is not open; "
     "10 series: the element of the series \"q\" has not the index 0; "
     "11 series: the series \"q\" has 1 elements, and its end says something else"},
    {"AnIndexTwice", R"("index":1)", R"("index":0)",
     "10 series: the element of the series \"q\" has not the index 1"},
    {"AWrongCount", R"("totalCount":2)", R"("totalCount":3)",
     "11 series: the series \"q\" has 2 elements, and its end says something else"},
    {"AnOpenSeries", R"("measurementSeriesEnd":{"measurementSeriesId":"q","totalCount":2})",
     R"("log":{"severity":"INFO","message":""})",
     "17 open: the step \"1\" ends, and its series \"q\" does not"},
    {"AnOpenStep", R"("testStepId":"2","testStepEnd":{"status":"ERROR"})",
     R"("testStepId":"2","log":{"severity":"INFO","message":""})",
     "19 open: the step \"2\" has no end"},
    {"ASecondStartOfTheRun",
     R"("testRunArtifact":{"log":{"severity":"DEBUG","message":"m",)"
     R"("sourceLocation":{"file":"a.cpp","line":5}}})",
     R"("testRunArtifact":{"testRunStart":{"name":"","version":"","commandLine":"",)"
     R"("parameters":{},"dutInfo":{"dutInfoId":""}}})",
     "3 order: the run starts again"},
};
INSTANTIATE_TEST_SUITE_P(All, Changes, testing::ValuesIn(kChangeRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(OcpVerifier, TheEndOfTheRunIsTheEnd) {
  const std::string log = R"({"sequenceNumber":19,)" T
                          R"(,"testRunArtifact":{"log":{"severity":"INFO","message":""}}})";
  EXPECT_EQ(findingsIn(everyKind() + log + "\n"), "20 order: the line stands behind the run's end");
}

TEST(OcpVerifier, AStepBehindItsEndIsUnknown) {
  std::string stream = everyKind();
  const std::string end = R"({"sequenceNumber":18,)";
  stream.insert(stream.find(end),
                R"({"sequenceNumber":18,)" T
                R"(,"testStepArtifact":{"testStepId":"1","testStepEnd":{"status":"SKIP"}}})"
                "\n");
  stream.replace(stream.rfind(end), end.size(), R"({"sequenceNumber":19,)");
  EXPECT_EQ(findingsIn(stream), "19 unknown: the step \"1\" has ended before");
}

TEST(OcpVerifier, AnEmptyStreamHasNothingThatThereMustBe) {
  EXPECT_EQ(findingsIn(""), "1 order: the run has no start; 1 open: the run has no end");
}

TEST(OcpVerifier, ACutLineIsTold) {
  std::string stream = everyKind();
  stream.pop_back();
  EXPECT_EQ(findingsIn(stream), "19 cut: the line has no end");
  stream.pop_back();
  EXPECT_EQ(findingsIn(stream), "19 cut: the line has been cut off; 19 open: the run has no end");
}

TEST(OcpVerifier, BeforeItsStartARunCanSayThatItCannotStart) {
  EXPECT_EQ(findingsIn(R"({"sequenceNumber":0,)" T R"(,"schemaVersion":{"major":2,"minor":0}})"
                       "\n"
                       R"({"sequenceNumber":1,)" T
                       R"(,"testRunArtifact":{"error":{"symptom":"s","softwareInfoIds":["x"]}}})"
                       "\n"),
            "2 order: the run has no start; 2 open: the run has no end");
}

TEST(OcpVerifier, DepthCostsNothing) {
  const std::size_t depth = 1'000'000;
  const std::string deep = std::string(depth, '[') + std::string(depth, ']');
  EXPECT_EQ(findingsIn(changed(R"("k":1)", "\"k\":" + deep)), "");
  EXPECT_EQ(findingsIn(changed(R"("k":1)", "\"k\":" + deep + "]")).substr(0, 40),
            "6 json: the line is no JSON at byte 2000");
}

TEST(OcpVerifier, ALineThatIsLongerThanAnyIsPassedOver) {
  const std::string line(LineReader::kLongest + 1, ' ');
  EXPECT_EQ(findingsIn(line + "\n" + everyKind()).substr(0, 49),
            "1 long: the line is longer than 64 MiB; 2 sequenc");
}

}  // namespace
}  // namespace reports
