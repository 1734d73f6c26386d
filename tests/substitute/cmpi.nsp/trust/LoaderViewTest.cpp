#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "substitute/cmpi.nsp/trust/LoaderView.h"

namespace cmpinsp {
namespace {

TEST(LoaderView, KnowsWhatThisProcessHasLoaded) {
  const LoaderView view = viewOfThisProcess();
  EXPECT_TRUE(view.isLoaded("libc.so.6"));
  EXPECT_TRUE(view.isLoaded("libc.so.6")) << "when it is asked again";
  EXPECT_FALSE(view.isLoaded("libdiagsNowhere.so"));
}

TEST(LoaderView, FindsTheSystemsLibrariesWhereTheyAre) {
  const LoaderView view = viewOfThisProcess();
  std::vector<std::string> files = view.cached("libc.so.6");
  for (const std::string& folder : view.defaultFolders) files.push_back(folder + "/libc.so.6");
  EXPECT_FALSE(view.defaultFolders.empty());
  EXPECT_TRUE(std::any_of(files.begin(), files.end(),
                          [](const std::string& file) { return std::filesystem::exists(file); }));
}

TEST(LoaderView, TheEnvironmentsFoldersAreThoseOfItsVariable) {
  if (std::getenv("LD_LIBRARY_PATH") != nullptr) GTEST_SKIP() << "the loader has other ones";
  setenv("LD_LIBRARY_PATH", "/first/;:/$LIBX", 1);
  const std::vector<std::string> folders = viewOfThisProcess().environmentFolders;
  unsetenv("LD_LIBRARY_PATH");
  const std::string current = std::filesystem::current_path();
  EXPECT_EQ(folders, (std::vector<std::string>{"/first", current, "/$LIBX"}));
  EXPECT_TRUE(viewOfThisProcess().environmentFolders.empty());
}

/// Looks in a process that began with that environment.
TEST(LoaderViewDeathTest, ADefaultFolderStaysOneWhereTheEnvironmentNamesItToo) {
  const char* const environment = std::getenv("LD_LIBRARY_PATH");
  const bool isOurs = environment != nullptr && std::strstr(environment, ":/nowhere") != nullptr;
  if (environment != nullptr && !isOurs) GTEST_SKIP() << "the loader has other ones";
  if (!isOurs) {
    const std::vector<std::string> folders = viewOfThisProcess().defaultFolders;
    ASSERT_FALSE(folders.empty());
    setenv("LD_LIBRARY_PATH", (folders.front() + ":/nowhere").c_str(), 1);
  }
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto isSo = [] {
    const LoaderView view = viewOfThisProcess();
    const auto& folders = view.defaultFolders;
    const bool isKept = std::count(folders.begin(), folders.end(), view.environmentFolders[0]) == 1;
    return isKept && std::count(folders.begin(), folders.end(), "/nowhere") == 0;
  };
  EXPECT_EXIT(std::exit(isSo() ? 0 : 1), testing::ExitedWithCode(0), "");
  unsetenv("LD_LIBRARY_PATH");
}

TEST(LoaderView, KnowsTheProcessorsName) {
#if defined(__x86_64__)
  const std::vector<std::string> names = viewOfThisProcess().platforms;
  EXPECT_EQ(std::count(names.begin(), names.end(), "x86_64"), 1);
#else
  EXPECT_FALSE(viewOfThisProcess().platforms.empty());
#endif
}

}  // namespace
}  // namespace cmpinsp
