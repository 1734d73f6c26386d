#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "substitute/cmpi.nsp/installation/DataFileCheck.h"
#include "tests/substitute/cmpi.nsp/Problems.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"

namespace cmpinsp {
namespace {

// Hangs where the file is opened before somebody looks at what it is.
TEST(DataFileCheckPosix, AFifoIsNotWaitedFor) {
  const TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / "excludetests.xml";
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  EXPECT_EQ(linesOf(checkDataFiles(folder.text())),
            path.string() + ": the file cannot be read: it is no regular file\n");
}

TEST(DataFileCheckPosix, ADeviceIsNotRead) {
  const TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / "excludetests.xml";
  std::filesystem::create_symlink("/dev/zero", path);
  EXPECT_EQ(linesOf(checkDataFiles(folder.text())),
            path.string() + ": the file cannot be read: it is no regular file\n");
}

}  // namespace
}  // namespace cmpinsp
