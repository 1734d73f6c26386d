#include <gtest/gtest.h>

#include <map>
#include <string>

#include "history/HistoryError.h"
#include "history/StateDirectory.h"

namespace history {
namespace {

Environment with(std::map<std::string, std::string> variables) {
  return [variables = std::move(variables)](const char* name) {
    const auto found = variables.find(name);
    return found == variables.end() ? std::string() : found->second;
  };
}

std::string placeIn(std::map<std::string, std::string> variables) {
  try {
    return defaultStateDirectory(with(std::move(variables))).generic_u8string();
  } catch (const HistoryError&) {
    return "none";
  }
}

#if defined(_WIN32)

TEST(StateDirectoryTest, IsInTheUsersDataFolder) {
  EXPECT_EQ(placeIn({{"LOCALAPPDATA", "C:\\Users\\ä\\AppData\\Local"}}),
            "C:/Users/ä/AppData/Local/diagsrunner");
  EXPECT_EQ(placeIn({{"LOCALAPPDATA", "relative"}}), "none");
  EXPECT_EQ(placeIn({}), "none");
}

#else

TEST(StateDirectoryTest, IsInTheUsersDataFolder) {
  EXPECT_EQ(placeIn({{"XDG_DATA_HOME", "/data"}, {"HOME", "/home/ä"}}), "/data/diagsrunner");
  EXPECT_EQ(placeIn({{"HOME", "/home/ä"}}), "/home/ä/.local/share/diagsrunner");
  EXPECT_EQ(placeIn({{"XDG_DATA_HOME", "relative"}, {"HOME", "/home/ä"}}),
            "/home/ä/.local/share/diagsrunner");
  EXPECT_EQ(placeIn({{"HOME", "relative"}}), "none");
  EXPECT_EQ(placeIn({}), "none");
}

#endif

}  // namespace
}  // namespace history
