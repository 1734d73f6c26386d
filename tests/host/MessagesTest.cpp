#include <gtest/gtest.h>

#include <functional>
#include <new>

#include "framework/TVORException.h"
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
  using NZELVOR20::TVORException;
  using NZELVOR20::TVORStatusCode;
  const TVORStatusCode status(NZELVOR20::eVORNotFound, "class CIM_Foo");
  EXPECT_EQ(textOf([&] { throw TVORException(status); }), status.TranslateStatusCode());
  EXPECT_EQ(textOf([] { throw std::runtime_error("out of paper"); }), "out of paper");
  EXPECT_EQ(textOf([] { throw std::bad_alloc(); }), "out of memory");
  EXPECT_EQ(textOf([] { throw 7; }), "an exception of an unknown kind");
}

}  // namespace
}  // namespace host
