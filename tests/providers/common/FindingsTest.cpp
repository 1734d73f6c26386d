#include <gtest/gtest.h>

#include "providers/common/Findings.h"
#include "providers/common/NumberSetting.h"

namespace providers {
namespace {

Finding finding(CompletionState state, const std::string& code) {
  return {state, code, "It is " + code, "mend it", {"part", "place", {}}};
}

TEST(Findings, TheWorstMakesTheState) {
  Outcome outcome;
  addFindings(outcome, {finding(CompletionState::Warning, "odd")});
  EXPECT_EQ(outcome.state, CompletionState::Warning);
  addFindings(outcome,
              {finding(CompletionState::Failed, "bad"), finding(CompletionState::Warning, "odd")});
  EXPECT_EQ(outcome.state, CompletionState::Failed);
}

TEST(Findings, FailuresAreCountedAndWarningsAreNot) {
  Outcome outcome;
  addFindings(outcome,
              {finding(CompletionState::Failed, "bad"), finding(CompletionState::Warning, "odd"),
               finding(CompletionState::Failed, "bad")});
  ASSERT_EQ(outcome.errors.size(), 1U);
  EXPECT_EQ(outcome.errors[0].code, "bad");
  EXPECT_EQ(outcome.errors[0].count, 2U);
}

TEST(Findings, EachIsANoteWithWhatToDo) {
  Outcome outcome;
  addFindings(outcome, {finding(CompletionState::Warning, "odd")});
  EXPECT_EQ(outcome.text, "It is odd\nWhat to do: mend it\n");
  ASSERT_EQ(outcome.notes.size(), 1U);
  EXPECT_EQ(outcome.notes[0].type, RecordType::Warnings);
  EXPECT_EQ(outcome.notes[0].correctiveAction, "Mend it\n");
  EXPECT_EQ(outcome.notes[0].part.location, "place");
  EXPECT_TRUE(outcome.correctiveAction.empty()) << "told twice";
}

TEST(Findings, AStoppedRunKeepsItsFailure) {
  Outcome outcome;
  markStopped(outcome);
  EXPECT_EQ(outcome.state, CompletionState::Stopped);
  outcome.state = CompletionState::Failed;
  markStopped(outcome);
  EXPECT_EQ(outcome.state, CompletionState::Failed);
}

TEST(NumberSetting, OfAQuickRunIsAFifthAndAtLeastOne) {
  constexpr NumberSetting kNumber{"Number", 10, 50};
  RunSettings settings;
  EXPECT_EQ(kNumber.of(settings), 10U);
  settings.quick = true;
  EXPECT_EQ(kNumber.of(settings), 2U);
  settings.properties = {{"Number", std::uint32_t{3}, false}};
  EXPECT_EQ(kNumber.of(settings), 1U);
}

}  // namespace
}  // namespace providers
