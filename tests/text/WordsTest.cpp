#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>

#include "text/Words.h"

namespace text {
namespace {

std::string textOf(const std::function<void()>& failing) {
  try {
    failing();
  } catch (...) {
    return currentExceptionText();
  }
  return "nothing was thrown";
}

TEST(Words, EveryKindOfExceptionHasAText) {
  EXPECT_EQ(textOf([] { throw std::runtime_error("out of paper"); }), "out of paper");
  EXPECT_EQ(textOf([] { throw std::bad_alloc(); }), "out of memory");
  EXPECT_EQ(textOf([] { throw 7; }), "an exception of an unknown kind");
}

TEST(Words, TrimmingTakesBlanksAndLineEndsOffBothEnds) {
  EXPECT_EQ(trimmed(" \tNo Status \r\n"), "No Status");
  EXPECT_EQ(trimmed(" \n"), "");
  EXPECT_EQ(trimmed(""), "");
}

}  // namespace
}  // namespace text
