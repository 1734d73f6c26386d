#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>

#include "reports/ocp/OcpWriter.h"
#include "tests/reports/SampleRun.h"

namespace reports {
namespace {

using engine::Outcome;
using engine::Verdict;
using Json = nlohmann::json;

std::vector<Json> streamOf(const std::vector<engine::Event>& events) {
  std::istringstream lines(written<OcpWriter>(events));
  std::vector<Json> stream;
  for (std::string line; std::getline(lines, line);) stream.push_back(Json::parse(line));
  return stream;
}

/// What the run's first test becomes, by the kind of the artifacts; begin and end are left out.
std::vector<Json> artifactsOf(const std::vector<engine::Body>& bodies,
                              Outcome outcome = Outcome::kPassed) {
  EventList run;
  run.begin(1);
  for (const engine::Body& body : bodies) run.add(1, body);
  run.end(1, outcome, "Text").end(0, outcome);
  std::vector<Json> found;
  for (Json line : streamOf(run.events())) {
    if (!line.contains("testStepArtifact")) continue;
    line["testStepArtifact"].erase("testStepId");
    found.push_back(line["testStepArtifact"]);
  }
  // Start and extension; extension and end.
  return {found.begin() + 2, found.end() - 2};
}

std::vector<Json> artifactOf(const engine::Body& body) {
  return artifactsOf({body}, Outcome::kSkipped);
}

/// So that a row needs no parser.
std::vector<Json> only(const char* json) { return {Json::parse(json)}; }

TEST(OcpWriter, AStreamBeginsWithItsVersionAndTheMachine) {
  const std::vector<Json> stream = streamOf(sampleRun());
  EXPECT_EQ(stream[0]["schemaVersion"], Json::parse(R"({"major":2,"minor":0})"));
  EXPECT_EQ(stream[1]["testRunArtifact"]["testRunStart"], Json::parse(R"({
    "name":"diags","version":"1.0.0","commandLine":"diags run --all 'a b' ''",
    "parameters":{"seed":"5"},"metadata":{"tests":5},
    "dutInfo":{"dutInfoId":"dut-1","name":"bench-7","platformInfos":[{"info":"Board 5"}],
      "softwareInfos":[
        {"softwareInfoId":"software-1","name":"diags","version":"1.0.0","softwareType":"APPLICATION"},
        {"softwareInfoId":"software-2","name":"firmware","version":"F1.02","softwareType":"FIRMWARE"}],
      "hardwareInfos":[
        {"hardwareInfoId":"hardware-1","name":"Board 5","partType":"system","manufacturer":"Maker",
         "manufacturerPartNumber":"B5","version":"1.1","serialNumber":"SN-4711"},
        {"hardwareInfoId":"hardware-2","name":"DIMM 1","partType":"memory",
         "location":"P0 CHANNEL A","manufacturer":"Maker","manufacturerPartNumber":"M-16",
         "serialNumber":"0xCAFE01"}]}})"));
}

TEST(OcpWriter, LinesAreNumberedAndHaveTheTimesOfTheEvents) {
  const std::vector<Json> stream = streamOf(sampleRun());
  for (std::size_t i = 0; i < stream.size(); ++i) EXPECT_EQ(stream[i]["sequenceNumber"], i);
  EXPECT_EQ(stream[1]["timestamp"], "2026-09-21T14:13:20.000000Z");
  EXPECT_EQ(stream[2]["timestamp"], "2026-09-21T14:13:20.001000Z");
}

TEST(OcpWriter, ATestIsAStepWithItsIdentifierAndRepetition) {
  EventList run;
  run.add(7, engine::TestStarted{"T", "S", "d", "e", 2, 12.5}).end(7, Outcome::kPassed);
  const std::vector<Json> stream = streamOf(run.events());
  EXPECT_EQ(stream[2]["testStepArtifact"],
            Json::parse(R"-({"testStepId":"7","testStepStart":{"name":"T (repetition 2)"}})-"));
  EXPECT_EQ(stream[3]["testStepArtifact"]["extension"],
            Json::parse(R"({"name":"test","content":{"service":"S","device":"d","element":"e",
                            "repetition":2,"estimate":12.5}})"));
}

TEST(OcpWriter, WhatIsSaidInATestIsLogged) {
  EXPECT_EQ(artifactOf(engine::StepStarted{"x"}),
            only(R"({"log":{"severity":"INFO","message":"Step: x"}})"));
  EXPECT_EQ(artifactOf(engine::OutputLine{engine::Stream::kError, "x", false}),
            only(R"({"log":{"severity":"INFO","message":"[stderr] x"}})"));
  EXPECT_EQ(artifactOf(engine::LogLine{0, "x"}),
            only(R"({"log":{"severity":"ERROR","message":"x"}})"));
  EXPECT_EQ(artifactOf(engine::LogLine{3, "x"}),
            only(R"({"log":{"severity":"DEBUG","message":"x"}})"));
  EXPECT_EQ(artifactOf(engine::Message{engine::Severity::kWarning, "x", {"y"}}),
            only(R"({"log":{"severity":"WARNING","message":"x\nRecommended: y"}})"));
}

TEST(OcpWriter, ProgressIsAnExtension) {
  EXPECT_EQ(artifactOf(engine::Progress{50}),
            only(R"({"extension":{"name":"progress","content":{"percent":50}}})"));
}

TEST(OcpWriter, AMeasurementHasItsLimitsAsValidators) {
  EXPECT_EQ(artifactOf(engine::Measurement{"m", 1.5, "GiB/s", 1.0, 2.0, "Bank"}),
            only(R"({"measurement":{"name":"m","value":1.5,"unit":"GiB/s","validators":[
              {"name":"minimum","type":"GREATER_THAN_OR_EQUAL","value":1},
              {"name":"maximum","type":"LESS_THAN_OR_EQUAL","value":2}],
              "subcomponent":{"name":"Bank"}}})"));
  EXPECT_EQ(artifactOf(engine::Measurement{"m", true, "", {}, {}, ""}),
            only(R"({"measurement":{"name":"m","value":true}})"));
}

TEST(OcpWriter, NumbersThatJsonDoesNotHaveAreTextsAndNoLimits) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(artifactOf(engine::Measurement{"m", kInfinity, "", -kInfinity, kInfinity, ""}),
            only(R"({"measurement":{"name":"m","value":"inf","validators":[]}})"));
}

TEST(OcpWriter, ADiagnosisCountsByServiceAndVerdict) {
  EXPECT_EQ(artifactOf(engine::Diagnosis{Verdict::kFail, "bit 5", "", {"Replace it."}}),
            only(R"({"diagnosis":{"verdict":"diags-memory-test-fail","type":"FAIL",
                     "message":"bit 5\nRecommended: Replace it."}})"));
  EXPECT_EQ(artifactOf(engine::Diagnosis{Verdict::kWarning, "", "", {}}),
            only(R"({"diagnosis":{"verdict":"diags-memory-test-warning","type":"PASS"}})"));
  EXPECT_EQ(artifactOf(engine::Diagnosis{Verdict::kUnknown, "", "", {}}),
            only(R"({"diagnosis":{"verdict":"diags-memory-test-unknown","type":"UNKNOWN"}})"));
}

TEST(OcpWriter, APartIsReferredToWhereItsNameIsThatOfOneAlone) {
  EventList run;
  const auto part = [](const char* name) { return engine::Part{"disk", name, "", "", "", "", ""}; };
  run.add(0, engine::RunStarted{"", {}, {}, "", "", {part("a"), part("b"), part("b")}, 0}).begin(1);
  run.add(1, engine::Diagnosis{Verdict::kPass, "", "a", {}});
  run.add(1, engine::Diagnosis{Verdict::kPass, "", "b", {}});
  const std::vector<Json> stream = streamOf(run.events());
  EXPECT_EQ(stream[4]["testStepArtifact"]["diagnosis"]["hardwareInfoId"], "hardware-1");
  EXPECT_EQ(stream[5]["testStepArtifact"]["diagnosis"]["subcomponent"]["name"], "b");
}

TEST(OcpWriter, APartOfSeveralWithOneNameIsReferredToByItsPlace) {
  EventList run;
  const auto module = [](const char* place) {
    return engine::Part{"memory", "DIMM 0: 16 GiB", place, "", "", "", ""};
  };
  run.add(0,
          engine::RunStarted{"", {}, {}, "", "", {module("P0, DIMM 0"), module("P1, DIMM 0")}, 0});
  run.begin(1);
  run.add(1, engine::Diagnosis{Verdict::kPass, "", "P1, DIMM 0", {}});
  run.add(1, engine::Diagnosis{Verdict::kPass, "", "DIMM 0: 16 GiB", {}});
  const std::vector<Json> stream = streamOf(run.events());
  const Json& device = stream[1]["testRunArtifact"]["testRunStart"]["dutInfo"];
  EXPECT_NE(device["hardwareInfos"][0]["hardwareInfoId"],
            device["hardwareInfos"][1]["hardwareInfoId"]);
  EXPECT_EQ(stream[4]["testStepArtifact"]["diagnosis"]["hardwareInfoId"], "hardware-2");
  EXPECT_EQ(stream[5]["testStepArtifact"]["diagnosis"]["subcomponent"]["name"], "DIMM 0: 16 GiB");
}

TEST(OcpWriter, AVerdictWithoutADiagnosisBecomesOne) {
  const auto diagnosis = only(R"({"diagnosis":{"verdict":"diags-memory-test-fail","type":"FAIL",
                                   "message":"Text"}})");
  EXPECT_EQ(artifactsOf({}, Outcome::kFailed), diagnosis);
  const engine::Diagnosis same{Verdict::kFail, "Text", "", {}};
  EXPECT_EQ(artifactsOf({same}, Outcome::kFailed), diagnosis);
}

TEST(OcpWriter, AnErrorSaysAllThatIsKnown) {
  EXPECT_EQ(artifactsOf({engine::Error{engine::Cause::kTimedOut, "x", 9, "P", "o", {"l"}}},
                        Outcome::kBroken),
            only(R"({"error":{"symptom":"timedOut",
                     "message":"x\nCode: 9\nProvider: P\nOperation: o\nLibrary: l"}})"));
}

TEST(OcpWriter, ATestThatDidNotFinishHasAnErrorInAnyCase) {
  EXPECT_EQ(artifactsOf({}, Outcome::kAborted),
            only(R"({"error":{"symptom":"aborted","message":"Text"}})"));
}

TEST(OcpWriter, TroubleBehindAVerdictIsNoErrorButALogLine) {
  const std::vector<Json> artifacts =
      artifactsOf({engine::Diagnosis{Verdict::kPass, "", "", {}},
                   engine::Error{engine::Cause::kCrashed, "x", 0, "", "", {}}});
  ASSERT_EQ(artifacts.size(), 2U);
  EXPECT_EQ(artifacts[1], Json::parse(R"({"log":{"severity":"ERROR","message":"x"}})"));
}

TEST(OcpWriter, ACrashBehindAPartsVerdictStillIsTheStepsError) {
  const std::vector<Json> artifacts =
      artifactsOf({engine::Diagnosis{Verdict::kPass, "", "", {}},
                   engine::Error{engine::Cause::kCrashed, "x", 0, "", "", {}}},
                  Outcome::kBroken);
  EXPECT_EQ(artifacts.back(), Json::parse(R"({"error":{"symptom":"crashed","message":"Text"}})"));
}

TEST(OcpWriter, EventsOutOfOrderStillMakeAStreamThatKeepsItsRules) {
  EventList run;
  run.add(2, engine::Progress{5}).end(2, Outcome::kPassed).add(2, engine::StepStarted{"late"});
  run.begin(2).begin(3).end(0, Outcome::kBroken).begin(4);
  const std::vector<Json> stream = streamOf(run.events());
  std::string kinds;
  for (const Json& line : stream) {
    for (const char* kind : {"testRunStart", "testRunEnd", "log", "testStepStart", "testStepEnd"}) {
      const char* const artifact =
          line.contains("testRunArtifact") ? "testRunArtifact" : "testStepArtifact";
      if (line.value(artifact, Json::object()).contains(kind)) kinds += std::string(kind) + " ";
    }
  }
  EXPECT_EQ(kinds,
            "testRunStart testStepStart testStepEnd log log testStepStart testStepEnd testRunEnd ");
}

}  // namespace
}  // namespace reports
