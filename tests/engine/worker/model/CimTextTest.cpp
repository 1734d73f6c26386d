#include <gtest/gtest.h>

#include "engine/worker/model/CimText.h"

namespace engine::worker {
namespace {

TEST(ShortenedText, EndsBetweenTwoCharacters) {
  const std::string most(60, 'x');
  EXPECT_EQ(shortened(most), most);
  EXPECT_EQ(shortened(most + "y"), most + "...");
  EXPECT_EQ(shortened(std::string(58, 'x') + "\xF0\x9F\x98\x80 and more"),
            std::string(58, 'x') + "...");
}

// Bytes that are no UTF-8 have no such place.
TEST(ShortenedText, IsShortWhateverItIs) {
  EXPECT_LE(shortened(std::string(100, '\x80')).size(), 63U);
  EXPECT_GE(shortened(std::string(100, '\x80')).size(), 56U);
}

TEST(TypeNames, AreFoundInAnyCaseAndGoBack) {
  EXPECT_EQ(typeNamed("UINT16"), NZELVOR20::ECIMType::eUint16);
  EXPECT_EQ(typeNamed("uint"), std::nullopt);
  EXPECT_STREQ(typeName(NZELVOR20::ECIMType::eDateTime), "datetime");
  EXPECT_STREQ(typeName(NZELVOR20::ECIMType::eNone), "");
}

}  // namespace
}  // namespace engine::worker
