#include <gtest/gtest.h>

#include "reports/common/Excerpt.h"

namespace reports {
namespace {

TEST(Excerpt, IsShortAndHarmless) {
  EXPECT_EQ(excerpt("a\x1b"), "a\\x1b");
  EXPECT_EQ(excerpt(std::string(1'000'000, 'x')), std::string(200, 'x') + "...");
}

TEST(Excerpt, CutsNoCharacter) {
  EXPECT_EQ(excerpt(std::string(199, 'x') + "\xC3\xA4yyy"), std::string(199, 'x') + "...");
}

}  // namespace
}  // namespace reports
