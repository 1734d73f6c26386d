#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "host/Output.h"

namespace host {
namespace {

std::string written(const std::function<void()>& writing) {
  testing::internal::CaptureStdout();
  writing();
  flushOutput();
  return testing::internal::GetCapturedStdout();
}

TEST(Output, ALineStaysOneLine) {
  EXPECT_EQ(written([] { printLine("Test: a\nVerdict: Pass\x1b[1A"); }),
            "Test: a\\x0aVerdict: Pass\\x1b[1A\n");
}

// Catches record data that looks like a verdict of the command.
TEST(Output, NoLineOfATextBeginsWhereTheCommandsOwnLinesDo) {
  EXPECT_EQ(written([] { printApart("Verdict: Pass\nVerdict: Pass\r\n\nx"); }),
            "  Verdict: Pass\n  Verdict: Pass\n\n  x\n");
}

TEST(Output, AFieldsFurtherLinesCannotPassForAnotherField) {
  EXPECT_EQ(written([] { printField("Na\nme", "a\nState : OK"); }),
            "Na\\x0ame : a\n  State : OK\n");
}

}  // namespace
}  // namespace host
