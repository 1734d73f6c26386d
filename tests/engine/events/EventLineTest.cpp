#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "engine/events/EventLine.h"
#include "engine/events/EventNames.h"
#include "tests/engine/events/SampleEvents.h"

namespace engine {
namespace {

class EventLines : public testing::TestWithParam<Sample> {};

TEST_P(EventLines, AreWordForWordThese) { EXPECT_EQ(lineOf(GetParam().event), GetParam().line); }

TEST_P(EventLines, AreReadBackAsTheyWereWritten) {
  EXPECT_EQ(lineOf(eventFrom(GetParam().line)), GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(All, EventLines, testing::ValuesIn(sampleEvents()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(EventLine, EveryKindHasASample) {
  std::vector<std::size_t> kinds(std::variant_size_v<Body>);
  for (const Sample& sample : sampleEvents()) ++kinds[sample.event.body.index()];
  for (std::size_t kind = 0; kind < kinds.size(); ++kind) EXPECT_GT(kinds[kind], 0U) << kind;
}

TEST(EventLine, EveryWordIsReadBack) {
  for (int cause = 0; cause <= static_cast<int>(Cause::kOther); ++cause) {
    Event event;
    event.body = Error{static_cast<Cause>(cause), "x", 0, "", "", {}};
    EXPECT_EQ(std::get<Error>(eventFrom(lineOf(event)).body).cause, static_cast<Cause>(cause));
  }
  for (int outcome = 0; outcome <= static_cast<int>(Outcome::kSkipped); ++outcome) {
    Event event;
    event.body = Ended{static_cast<Outcome>(outcome), "", 0, "", "", ""};
    EXPECT_EQ(std::get<Ended>(eventFrom(lineOf(event)).body).outcome,
              static_cast<Outcome>(outcome));
  }
}

std::string bodyOf(const Body& body) {
  Event event;
  event.body = body;
  const std::string line = lineOf(event);
  const std::size_t start = line.find(std::string("\"") + kindOf(body) + "\":");
  return line.substr(start, line.size() - start - 1);
}

TEST(EventLine, HasNothingThatATerminalActsOnAndIsReadBackAsItWas) {
  const std::string text = "a\x1B[2J\x7F \u009b2J \u202e\u2066.\u2028\U000e0041 ✓";
  const std::string line = bodyOf(Message{Severity::kInfo, text, {}});
  EXPECT_EQ(
      line,
      R"("message":{"severity":"info","text":"a\u001b[2J\u007f \u009b2J \u202e\u2066.\u2028\udb40\udc41 ✓"})");
  Event event;
  event.body = Message{Severity::kInfo, text, {}};
  EXPECT_EQ(std::get<Message>(eventFrom(lineOf(event)).body).text, text);
}

TEST(EventLine, NumbersThatJsonDoesNotHaveAreNoNulls) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(bodyOf(Measurement{"m", kInfinity, "", kNone, kInfinity, ""}),
            R"("measurement":{"name":"m","value":"inf"})");
  EXPECT_EQ(bodyOf(Progress{kNone}), R"("progress":{"percent":0.0})");
  EXPECT_EQ(bodyOf(Progress{250}), R"("progress":{"percent":100.0})");
  EXPECT_EQ(bodyOf(Ended{Outcome::kPassed, "", -1, "", "", ""}),
            R"("end":{"outcome":"passed","seconds":0.0})");
}

TEST(EventLine, NumbersAreSpeltAsTheJsonLibraryDoes) {
  constexpr double kGreatest = std::numeric_limits<double>::max();
  for (const double number :
       {0.0, -0.0, 1.0, -40.0, 0.1, 1.0 / 3, 999'999'999'999'999.0, 999'999'999'999'999.5, 1e15,
        -1e15, 9'007'199'254'740'993.0, 28'882'338'925'601'512.0, 1e-4, 1e-5, 5e-324, kGreatest}) {
    EXPECT_EQ(bodyOf(Measurement{"m", number, "", {}, {}, ""}),
              R"("measurement":{"name":"m","value":)" + nlohmann::json(number).dump() + "}");
  }
}

TEST(EventLine, OfAParameterThatIsThereTwiceTheLastCounts) {
  const RunStarted run{"1", {}, {{"a", "1"}, {"b", "2"}, {"a", "3"}}, "", "", {}, 0};
  EXPECT_NE(bodyOf(run).find(R"("parameters":{"a":"3","b":"2"})"), std::string::npos);
}

TEST(EventLine, BytesThatAreNoUtf8AreReplaced) {
  EXPECT_EQ(bodyOf(OutputLine{Stream::kOutput, "a\xFFz", false}),
            "\"output\":{\"stream\":\"output\",\"text\":\"a\xEF\xBF\xBDz\"}");
}

TEST(EventLine, ALineStaysALineWhateverATextHolds) {
  const std::string line =
      bodyOf(OutputLine{Stream::kOutput, std::string("a\n\r\x1b\0b", 6), false});
  EXPECT_EQ(line, R"("output":{"stream":"output","text":"a\n\r\u001b\u0000b"})");
}

TEST(EventLine, AParametersNameMayHoldAnyCharacter) {
  const std::string name("a\0b", 3);
  const Event event{0, {}, Source::kEngine, 0, RunStarted{"1", {}, {{name, "x"}}, "", "", {}, 0}};
  const Event read = eventFrom(lineOf(event));
  const auto& parameters = std::get<RunStarted>(read.body).parameters;
  ASSERT_EQ(parameters.size(), 1U);
  EXPECT_EQ(parameters[0], std::make_pair(name, std::string("x")));
}

TEST(EventLine, MembersOfLaterVersionsArePassedOver) {
  const Event event =
      eventFrom(R"({"sequence":1,"time":"1970-01-01T00:00:00Z","source":"engine","mood":"good",)"
                R"("progress":{"percent":5,"colour":"red"}})");
  EXPECT_EQ(std::get<Progress>(event.body).percent, 5);
}

struct BadRow {
  const char* name;
  const char* line;
  const char* reason;
};

class BadEventLines : public testing::TestWithParam<BadRow> {};

TEST_P(BadEventLines, AreRefusedWithTheFieldsName) {
  try {
    eventFrom(GetParam().line);
    FAIL() << "it was taken";
  } catch (const NoEvent& refusal) {
    EXPECT_EQ(std::string(refusal.what()).substr(0, std::string(GetParam().reason).size()),
              GetParam().reason);
  }
}

#define HEAD R"("sequence":1,"time":"1970-01-01T00:00:00Z","source":"engine")"
const BadRow kBadRows[] = {
    {"NoJson", "{", "the line is no JSON: "},
    {"TwoValues", "{} {}", "the line is no JSON: "},
    {"AList", "[]", "the event is no object"},
    {"NoSequence", "{}", "sequence is missing"},
    {"ANegativeSequence", R"({"sequence":-1})", "sequence is no number from 0"},
    {"ATimeThatIsNone", R"({"sequence":1,"time":"today"})", "time is no time of day in UTC"},
    {"ASourceThatIsNone", R"({"sequence":1,"time":"1970-01-01T00:00:00Z","source":"me"})",
     "source is \"me\", which is none of its words"},
    {"NothingHappened", "{" HEAD "}", "the event says nothing that happened"},
    {"ATestIdThatIsNoNumber", "{" HEAD R"(,"testId":"x","progress":{"percent":5}})",
     "testId is no number from 0"},
    {"ABodyThatIsNoObject", "{" HEAD R"(,"progress":5})", "progress is no object"},
    {"AFieldIsMissing", "{" HEAD R"(,"progress":{}})", "progress.percent is missing"},
    {"AFieldOfAnotherType", "{" HEAD R"(,"progress":{"percent":"5"}})",
     "progress.percent is no number"},
    {"AWordThatIsNone", "{" HEAD R"(,"end":{"outcome":"so so","seconds":1}})",
     "end.outcome is \"so so\", which is none of its words"},
    {"ALevelThatIsNone", "{" HEAD R"(,"log":{"level":4,"text":""}})",
     "log.level is none of 0 to 3"},
    {"ACodeBeyondTheRange",
     "{" HEAD R"(,"error":{"cause":"other","text":"","code":18446744073709551615}})",
     "error.code is no whole number"},
    {"AParameterThatIsNoText",
     "{" HEAD R"(,"run":{"version":"1","commandLine":[],"parameters":{"a":1}}})",
     "run.parameters.a is no text"},
    {"AnActionThatIsNoText", "{" HEAD R"(,"message":{"severity":"info","text":"","actions":[1]}})",
     "message.actions is no text"},
    {"ATooDeepOne", "[[[[[[[[[[[[[[[[[[[[", "the event lies too deep"},
};
INSTANTIATE_TEST_SUITE_P(All, BadEventLines, testing::ValuesIn(kBadRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace engine
