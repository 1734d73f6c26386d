#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>

#include "host/Messages.h"

namespace host {
namespace {

std::string errorLine(const std::string& text) {
  testing::internal::CaptureStderr();
  reportError(text);
  return testing::internal::GetCapturedStderr();
}

TEST(Messages, AnErrorIsOneLine) {
  EXPECT_EQ(errorLine("no such test"), "diags: no such test\n");
  EXPECT_EQ(errorLine("two\nlines\x1b[2J\n"), "diags: two\\x0alines\\x1b[2J\n");
  EXPECT_EQ(errorLine("Prüfung"), "diags: Prüfung\n");
}

std::string textOf(const std::function<void()>& failing) {
  try {
    failing();
  } catch (...) {
    return currentExceptionText();
  }
  return "nothing was thrown";
}

TEST(Messages, EveryKindOfExceptionHasAText) {
  EXPECT_EQ(textOf([] { throw std::runtime_error("out of paper"); }), "out of paper");
  EXPECT_EQ(textOf([] { throw std::bad_alloc(); }), "out of memory");
  EXPECT_EQ(textOf([] { throw 7; }), "an exception of an unknown kind");
}

TEST(Messages, TrimmingTakesBlanksAndLineEndsOffBothEnds) {
  EXPECT_EQ(trimmed(" \tNo Status \r\n"), "No Status");
  EXPECT_EQ(trimmed(" \n"), "");
  EXPECT_EQ(trimmed(""), "");
}

}  // namespace
}  // namespace host
