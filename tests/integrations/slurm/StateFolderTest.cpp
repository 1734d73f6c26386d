#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "integrations/slurm/SettingError.h"
#include "integrations/slurm/StateFolder.h"

namespace slurm {
namespace {

namespace fs = std::filesystem;

class SlurmState : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "slurm-state-XXXXXX").string();
    ASSERT_NE(::mkdtemp(name.data()), nullptr);
    m_base = name;
  }
  void TearDown() override { fs::remove_all(m_base); }

  std::string folder() const { return (m_base / "below" / "state").string(); }

 private:
  fs::path m_base;
};

TEST_F(SlurmState, IsKeptForEachVerb) {
  const StateFolder state(folder());
  state.keep(Verb::kHealth, {1000, "sound", "all \"well\"\n", true});
  state.keep(Verb::kProlog, {2000, "faulty", "sda", false});
  EXPECT_EQ(state.last(Verb::kHealth)->time, 1000);
  EXPECT_TRUE(state.last(Verb::kHealth)->isSettled);
  EXPECT_FALSE(state.last(Verb::kProlog)->isSettled);
  EXPECT_FALSE(state.last(Verb::kEpilog));
}

TEST_F(SlurmState, IsHeldByOneAtATime) {
  StateFolder first(folder());
  {
    StateFolder second(folder());
    EXPECT_TRUE(first.lock());
    EXPECT_FALSE(second.lock());
  }
  EXPECT_FALSE(StateFolder(folder()).lock());
}

TEST_F(SlurmState, IsRootsAlone) {
  const StateFolder state(folder());
  struct stat found {};
  ASSERT_EQ(::stat(folder().c_str(), &found), 0);
  EXPECT_EQ(found.st_mode & 0777, 0700U);
}

TEST_F(SlurmState, ThatOthersCanWriteIsRefused) {
  { const StateFolder state(folder()); }
  ASSERT_EQ(::chmod(folder().c_str(), 0777), 0);
  EXPECT_THROW(StateFolder{folder()}, SettingError);
}

TEST_F(SlurmState, ThatIsALinkIsRefused) {
  { const StateFolder state(folder()); }
  const std::string link = folder() + "-link";
  fs::create_directory_symlink(folder(), link);
  EXPECT_THROW(StateFolder{link}, SettingError);
}

TEST_F(SlurmState, ThatMakesNoSenseIsNone) {
  const StateFolder state(folder());
  for (const char* const text : {"", "{", "[]", R"({"time":"x"})"}) {
    std::ofstream(folder() + "/health.json") << text;
    EXPECT_FALSE(state.last(Verb::kHealth)) << text;
  }
}

struct RecentRow {
  const char* name;
  std::time_t last;
  bool isSettled;
  bool isRecent;
};

class SlurmIntervals : public testing::TestWithParam<RecentRow> {};

TEST_P(SlurmIntervals, BeginWithTheLastRun) {
  const LastRun last{GetParam().last, "sound", "", GetParam().isSettled};
  EXPECT_EQ(isRecent(last, 10'000, Duration(60'000)), GetParam().isRecent);
}

const RecentRow kRecentRows[] = {
    {"JustNow", 10'000, true, true},        {"Within", 9'941, true, true},
    {"Over", 9'940, true, false},           {"OfAnotherClock", 10'001, true, false},
    {"NotYetDrained", 9'999, false, false}, {"LongAgo", 0, true, false},
};
INSTANTIATE_TEST_SUITE_P(All, SlurmIntervals, testing::ValuesIn(kRecentRows),
                         [](const auto& row) { return row.param.name; });

TEST(ASlurmInterval, OfNothingIsAlwaysOver) {
  EXPECT_FALSE(isRecent({10'000, "sound", "", true}, 10'000, Duration(0)));
}

}  // namespace
}  // namespace slurm
