#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "integrations/slurm/Jobs.h"

namespace slurm {
namespace {

namespace fs = std::filesystem;

class SlurmJobs : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "slurm-jobs-XXXXXX").string();
    ASSERT_NE(::mkdtemp(name.data()), nullptr);
    m_folder = name;
  }
  void TearDown() override { fs::remove_all(m_folder); }

  void process(const std::string& id, const std::string& name) const {
    fs::create_directory(m_folder / id);
    std::ofstream(m_folder / id / "comm") << name << '\n';
  }

  bool areThere() const { return isJobRunning(m_folder.string()); }

 private:
  fs::path m_folder;
};

TEST_F(SlurmJobs, AreKnownByTheirSteps) {
  process("17", "slurmd");
  process("self", "slurmstepd");
  process("18", "slurmstepd-like");
  EXPECT_FALSE(areThere());
  process("4711", "slurmstepd");
  EXPECT_TRUE(areThere());
}

TEST_F(SlurmJobs, AreNoneWhereNothingCanBeRead) { EXPECT_FALSE(isJobRunning("/none/of/these")); }

}  // namespace
}  // namespace slurm
