#include <gtest/gtest.h>

#include "framework/TVORException.h"

namespace NZELVOR20 {
namespace {

TEST(TVORStatusCode, EveryCodeHasItsText) {
  const char* const wanted[] = {"success",
                                "general failure",
                                "not found",
                                "not supported",
                                "out of memory",
                                "invalid parameter",
                                "invalid class",
                                "access denied",
                                "type mismatch",
                                "already exists",
                                "no such property",
                                "no such method",
                                "method not available",
                                "invalid namespace",
                                "provider failed",
                                "invalid query"};
  for (int code = eVORSuccess; code <= eVORInvalidQuery; ++code) {
    const TVORStatusCode status(static_cast<EVORStatusCode>(code));
    EXPECT_EQ(status.TranslateStatusCode(), wanted[code]);
    EXPECT_EQ(status.GetStatusCode(), code);
  }
}

TEST(TVORStatusCode, ANumberThatIsNotListedIsShown) {
  EXPECT_EQ(TVORStatusCode(static_cast<EVORStatusCode>(16)).TranslateStatusCode(),
            "unknown status 16");
}

TEST(TVORStatusCode, TheDetailFollowsTheText) {
  EXPECT_EQ(TVORStatusCode(eVORInvalidClass, "class CIM_Foo").TranslateStatusCode(),
            "invalid class: class CIM_Foo");
}

TEST(TVORException, SaysWhatItsStatusSays) {
  const TVORException exception(TVORStatusCode(eVORNotFound, "file x"));
  EXPECT_STREQ(exception.what(), "not found: file x");
  EXPECT_EQ(exception.GetStatus().GetStatusCode(), eVORNotFound);
}

TEST(TVORException, ACopyKeepsItsTextWhenTheOriginalIsGone) {
  const TVORException copy = [] {
    const TVORException original(TVORStatusCode(eVORFailed, std::string(100, 'x')));
    return TVORException(original);
  }();
  EXPECT_EQ(copy.what(), "general failure: " + std::string(100, 'x'));
}

}  // namespace
}  // namespace NZELVOR20
