#include <gtest/gtest.h>

#include <string>

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

}  // namespace
}  // namespace host
