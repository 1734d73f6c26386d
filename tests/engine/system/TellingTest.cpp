#include <gtest/gtest.h>

#include "engine/system/Telling.h"

namespace engine {
namespace {

TEST(Telling, BlanksAroundATextAreNotPartOfIt) {
  EXPECT_EQ(telling(std::string_view(" A B \n\0", 7)), "A B");
  EXPECT_EQ(telling("unKNOWN\n"), "");
  EXPECT_EQ(telling("Unknown 5"), "Unknown 5");
}

TEST(Telling, ANumberOfOneRepeatedDigitIsNone) {
  EXPECT_EQ(tellingSerial("FFFFFFFF"), "");
  EXPECT_EQ(tellingSerial("FFFFFFFE"), "FFFFFFFE");
}

}  // namespace
}  // namespace engine
