#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

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

struct Link {
  const char* name;
  const char* target;
  const char* why;
};

// Catches a look at what is there that takes every failure for "nothing": tests that the file is to
// exclude would be offered.
TEST(DataFileCheckPosix, ALinkThatLeadsToNoFileIsNotTakenForNone) {
  const Link links[] = {{"nowhere", "missing.xml", "No such file or directory"},
                        {"to itself", "excludetests.xml", "Too many levels of symbolic links"}};
  for (const Link& link : links) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "excludetests.xml";
    std::filesystem::create_symlink(link.target, path);
    EXPECT_EQ(linesOf(checkDataFiles(folder.text())),
              path.string() + ": the file cannot be read: " + link.why + "\n")
        << link.name;
  }
}

// What the folder hides may be there. Rights are not asked of root, the length of a name is.
TEST(DataFileCheckPosix, AFolderThatCannotBeSearchedIsNotTakenForAnEmptyOne) {
  const TemporaryFolder folder;
  const std::string hidden = folder.text() + "/" + std::string(300, 'x');
  EXPECT_NE(linesOf(checkDataFiles(hidden))
                .find(hidden + "/excludetests.xml: the file cannot be read: File name too long\n"),
            std::string::npos);
}

}  // namespace
}  // namespace cmpinsp
