#include <gtest/gtest.h>

#include "results/Verdict.h"
#include "tests/results/Events.h"
#include "tests/support/Outcome.h"
#include "tests/support/World.h"

namespace support {
namespace {

struct State {
  const char* rendered;
  const char* plain;   ///< the verdict for a test outside the family
  const char* family;  ///< the verdict for one of the family
};

const State kStates[] = {{"OK", "Pass", "Pass"},
                         {"Completed OK.", "Pass", "Pass"},
                         {"BOOKED", "Pass", "Pass"},
                         {"ok", "Fail", "Fail"},
                         {"Ok", "Fail", "Fail"},
                         {"O K", "Fail", "Fail"},
                         {"Aborted", "Aborted", "Aborted"},
                         {"aborted", "Fail", "Fail"},
                         {"Incomplete", "Incomplete", "Incomplete"},
                         {"incomplete", "Fail", "Fail"},
                         {"Failed", "Fail", "Fail"},
                         {"", "Fail", "Fail"},
                         {"Warning", "Fail", "Pass"},
                         {"warning", "Fail", "Fail"},
                         {"A Warning, Aborted", "Aborted", "Pass"},
                         {"Aborted, OK", "Pass", "Pass"},
                         {"Incomplete, OK", "Pass", "Pass"},
                         {"Incomplete, Aborted", "Aborted", "Aborted"}};

InstancePtr recordWith(World& world, const std::string& state) {
  return world.addRecord("service", "id", state);
}

TEST(Verdict, IsTheFirstWordThatTheStateContains) {
  for (const State& state : kStates) {
    World world;
    const InstancePtr record = recordWith(world, state.rendered);
    EXPECT_EQ(diagsrunner::verdictOf(record->handle(), "Disk Test"), state.plain)
        << quoted(state.rendered);
    EXPECT_EQ(world.journal.all(), text(renderingRead("record1", "CompletionState")));
  }
}

TEST(Verdict, TheDiagServiceFamilyLogsTheStateAndPassesWithAWarning) {
  for (const State& state : kStates) {
    World world;
    const InstancePtr record = recordWith(world, state.rendered);
    EXPECT_EQ(diagsrunner::verdictOf(record->handle(), "zel:ssd:diag service"), state.family)
        << quoted(state.rendered);
    EXPECT_EQ(world.journal.all(),
              text(joined({renderingRead("record1", "CompletionState"),
                           {trace(std::string("tempResult :") + state.rendered)}})));
  }
}

TEST(Verdict, TheFamilyIsRecognisedAnywhereInTheNameInAnyCase) {
  const std::pair<const char*, const char*> names[] = {{"Fusion-io:drive:diag service", "Pass"},
                                                       {"FIO:drive:DIAG SERVICE", "Pass"},
                                                       {"zel:drive:Diag Service", "Pass"},
                                                       {":diag service of zel:", "Pass"},
                                                       {"a zel:diag service b", "Pass"},
                                                       {"barzel:diag service", "Pass"},
                                                       {"zel:drive", "Fail"},
                                                       {"zel: diag service", "Fail"},
                                                       {"zel:diagservice", "Fail"},
                                                       {"zel drive:diag service", "Fail"},
                                                       {"fusion-io drive:diag service", "Fail"},
                                                       {"drive:diag service", "Fail"},
                                                       {"", "Fail"}};
  for (const auto& [name, verdict] : names) {
    World world;
    const InstancePtr record = recordWith(world, "Warning");
    EXPECT_EQ(diagsrunner::verdictOf(record->handle(), name), verdict) << name;
  }
}

TEST(Verdict, IsTakenFromTheRenderingAndNotFromTheValue) {
  World world;
  const InstancePtr record = recordWith(world, "OK");
  record->set("CompletionState", NZELVOR20::TCIMValue("Aborted"), "Incomplete");
  EXPECT_EQ(diagsrunner::verdictOf(record->handle(), "Disk Test"), "Incomplete");
}

TEST(Verdict, ARecordWithoutAStateIsAnException) {
  World world;
  const InstancePtr record = recordWith(world, "OK");
  record->setEmpty("CompletionState");
  const Outcome outcome =
      outcomeOf([&] { return diagsrunner::verdictOf(record->handle(), "Disk Test"); });
  EXPECT_EQ(outcome.kind, Outcome::Kind::standardException);
  EXPECT_EQ(outcome.text, "diagsrunner: no property CompletionState");
}

}  // namespace
}  // namespace support
