#include <gtest/gtest.h>

#include <filesystem>

#include "providers/sensors/chips/Chips.h"
#include "tests/providers/FileTree.h"

namespace providers::sensors {
namespace {

namespace fs = std::filesystem;

class ChipsTest : public ::testing::Test {
 protected:
  ChipsTest() {
    tree.add("sys/class/hwmon/hwmon0/name", "board\n");
    tree.add("sys/class/hwmon/hwmon0/temp1_input", "41000\n");
  }
  ChipReader open(const std::string& folder) { return openChips(folder, tree.root() + "/sys"); }

  FileTree tree;
};

// Catches sensors that are handed over in the layout of another version.
TEST_F(ChipsTest, OfAModuleOfAnotherVersionAreReadFromTheSystemsFiles) {
  const fs::path module = fs::path(tree.root()) / "libdiagsSensorsChips.so";
  fs::copy_file(OLD_CHIPS, module);
  for (const fs::path& path : {fs::path(tree.root()), module})
    fs::permissions(path, fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
  const ChipReader chips = open(tree.root());
  EXPECT_EQ(chips.name,
            "the system's files, since libdiagsSensorsChips.so is not used: it is of another "
            "version than the test, for it has no diagsSensorChips2");
  ASSERT_EQ(chips.read().size(), 1U);
  EXPECT_EQ(chips.read().at(0).value, 41);
}

// Catches a module that has not the version that its own test asks for.
TEST_F(ChipsTest, OfThisInstallationAreNotRefused) {
  if (!fs::exists(fs::path(INSTALLED_CHIPS) / "libdiagsSensorsChips.so"))
    GTEST_SKIP() << "it was built without libsensors";
  EXPECT_EQ(open(INSTALLED_CHIPS).name.find("is not"), std::string::npos);
}

}  // namespace
}  // namespace providers::sensors
