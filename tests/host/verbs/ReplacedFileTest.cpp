#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "host/Messages.h"
#include "host/verbs/ReplacedFile.h"

namespace host {
namespace {

namespace fs = std::filesystem;

class ReplacedFileTest : public testing::Test {
 protected:
  ReplacedFileTest() { fs::create_directory(m_folder); }
  ~ReplacedFileTest() override { fs::remove_all(m_folder); }

  std::string file(const std::string& name) const { return (m_folder / name).u8string(); }

  static void put(const std::string& name, const std::string& text) {
    std::ofstream(fs::u8path(name), std::ios::binary) << text;
  }
  static std::string textOf(const std::string& name) {
    std::ifstream in(fs::u8path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  std::ptrdiff_t filesThere() const {
    return std::distance(fs::directory_iterator(m_folder), fs::directory_iterator());
  }

 private:
  fs::path m_folder =
      fs::temp_directory_path() / ("diags replaced " + std::to_string(std::random_device()()));
};

TEST_F(ReplacedFileTest, IsWhatItWasUntilTheReportIsWhole) {
  put(file("a.prom"), "yesterday's");
  ReplacedFile metrics(file("a.prom"));
  metrics.begin();
  metrics.stream() << "today's";
  EXPECT_EQ(textOf(file("a.prom")), "yesterday's");
  metrics.settle();
  EXPECT_EQ(textOf(file("a.prom")), "today's");
}

TEST_F(ReplacedFileTest, LeavesNothingBesideIt) {
  ReplacedFile metrics(file("a.prom"));
  EXPECT_EQ(filesThere(), 0);
  metrics.settle();
  EXPECT_EQ(filesThere(), 1);
}

TEST_F(ReplacedFileTest, ARunThatIsCutOffLeavesNoFile) {
  {
    ReplacedFile metrics(file("a.prom"));
    metrics.begin();
    metrics.stream() << "half";
  }
  EXPECT_EQ(filesThere(), 0);
}

TEST_F(ReplacedFileTest, AFolderThatIsNotThereIsNamedBeforeTheRun) {
  try {
    const ReplacedFile metrics(file("missing/a.prom"));
    FAIL() << "no exception";
  } catch (const UsageError& error) {
    EXPECT_EQ(std::string(error.what()).find(file("missing/a.prom") + " cannot be written"), 0U);
  }
}

TEST_F(ReplacedFileTest, AFolderIsNoFile) {
  fs::create_directory(fs::u8path(file("folder")));
  EXPECT_THROW(ReplacedFile(file("folder")), UsageError);
}

// Catches one whose folder went, or became another user's, while the run went on.
TEST_F(ReplacedFileTest, WhatCannotBeReplacedIsNamed) {
  ReplacedFile metrics(file("a.prom"));
  fs::create_directories(fs::u8path(file("a.prom")) / "in the way");
  EXPECT_THROW(metrics.settle(), std::runtime_error);
  EXPECT_EQ(filesThere(), 1);
}

}  // namespace
}  // namespace host
