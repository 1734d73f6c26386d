#include <gtest/gtest.h>

#include <algorithm>

#include "substitute/cmpi.nsp/installation/SystemMessage.h"
#include "substitute/cmpi.nsp/repository/SourceText.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace cmpinsp {
namespace {

TEST(SystemMessage, OfAGeneralErrorIsItsOwn) {
  const std::error_code error = std::make_error_code(std::errc::no_such_file_or_directory);
  EXPECT_EQ(systemMessage(error), error.message());
}

TEST(SystemMessage, OfTheSystemIsOneLine) {
  const std::string message = systemMessage(std::error_code(2, std::system_category()));
  ASSERT_FALSE(message.empty());
  EXPECT_EQ(message.find_first_of("\r\n"), std::string::npos) << message;
  EXPECT_NE(message.back(), ' ');
}

#if defined(_WIN32)

TEST(SystemMessage, IsUtf8InAnyLanguage) {
  const std::error_code error(ERROR_ACCESS_DENIED, std::system_category());
  for (const WORD language : {WORD{LANG_FRENCH}, WORD{LANG_JAPANESE}, WORD{LANG_RUSSIAN}}) {
    const std::string message = systemMessage(error, language);
    if (message == "error 5") continue;  // this Windows does not speak it
    // What is no UTF-8 would be taken for another encoding, and converted.
    EXPECT_EQ(decodeSourceText(message), message);
    EXPECT_TRUE(std::any_of(message.begin(), message.end(), [](char c) { return c < 0; }))
        << message;
  }
}

TEST(SystemMessage, OfANumberThatWindowsDoesNotKnowIsTheNumber) {
  EXPECT_EQ(systemMessage(std::error_code(0x2FFFFFFF, std::system_category())), "error 805306367");
}

#endif

}  // namespace
}  // namespace cmpinsp
