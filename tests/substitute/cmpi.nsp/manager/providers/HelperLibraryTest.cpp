// A provider that needs a library of its own package: where that one is found, and where not.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "framework/ICIMClass.h"
#include "substitute/cmpi.nsp/Bootstrap.h"
#include "tests/substitute/cmpi.nsp/OthersWrite.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace cmpinsp {
namespace {

namespace fs = std::filesystem;

#if defined(_WIN32)
const char* const kMissing = "diagsAbsent.dll, which is neither beside it nor the system's";
void setSearchPath(const std::string& folders) {
  SetEnvironmentVariableW(L"PATH", fs::u8path(folders).c_str());
}
const char kBetween = ';';
#else
const char* const kMissing = "libdiagsAbsent.so, which is nowhere where the loader looks";
void setSearchPath(const std::string& folders) { setenv("PATH", folders.c_str(), 1); }
const char kBetween = ':';
#endif

/// A scratch installation. The search path and the current folder are as before when it goes.
struct HelperLibraryTest : testing::Test {
  ~HelperLibraryTest() override {
    fs::current_path(folderBefore);
    setSearchPath(pathBefore);
  }
  void copy(const char* file, const char* to) const {
    const fs::path target = folder.path() / to;
    fs::create_directories(target);
    fs::copy(fs::u8path(file), target / fs::u8path(file).filename());
  }
  /// Why the provider in that library cannot be used.
  std::string reasonOf(const std::string& library) const {
    folder.write("providers/x.registration",
                 "ACME_Fan root/cimv2 Helped " + library + " instance\n");
    substitute::Installation installation;
    installation.root = folder.text();
    return substitute::Framework(installation).providers(true).at(0).reason;
  }

  const std::string pathBefore = std::getenv("PATH");
  const fs::path folderBefore = fs::current_path();
  TemporaryFolder folder;
};

/// What the helper says, once it is there.
const char* const kItsAnswer = "CMPI status 27";

// Comes before the test that loads the helper: one that is loaded is not looked for again.
TEST_F(HelperLibraryTest, IsNotTakenWhereOthersCanWriteIt) {
  copy(HELPED_LIBRARY, "providers");
  copy(HELPER_LIBRARY, "providers");
  letOthersWrite(folder.path() / "providers" / fs::u8path(HELPER_LIBRARY).filename());
  const std::string reason = reasonOf("diagsHelped");
  EXPECT_NE(reason.find("can be written by other users"), std::string::npos) << reason;
}

TEST_F(HelperLibraryTest, IsFoundBesideTheProvider) {
  copy(HELPED_LIBRARY, "providers");
  copy(HELPER_LIBRARY, "providers");
  const std::string reason = reasonOf("diagsHelped");
  EXPECT_NE(reason.find(kItsAnswer), std::string::npos) << reason;
}

// Another pair of libraries: one that is loaded is not looked for again. On Windows this catches a
// loader that looks in those places, as it does unless told otherwise. That of Linux never does:
// the test catches a run path there that leads back into the build, and a reason that does not name
// what is missing. With the helper beside it the same provider works, so that nothing else was
// wrong.
TEST_F(HelperLibraryTest, IsFoundNeitherInTheCurrentFolderNorOnTheSearchPath) {
  copy(STRANDED_LIBRARY, "providers");
  copy(ABSENT_LIBRARY, "current");
  copy(ABSENT_LIBRARY, "searched");
  fs::current_path(folder.path() / "current");
  setSearchPath((folder.path() / "searched").u8string() + kBetween + pathBefore);
  std::string reason = reasonOf("diagsStranded");
  EXPECT_NE(reason.find(kMissing), std::string::npos) << reason;
  EXPECT_EQ(reason.find(kItsAnswer), std::string::npos) << reason;
  copy(ABSENT_LIBRARY, "providers");
  reason = reasonOf("diagsStranded");
  EXPECT_NE(reason.find(kItsAnswer), std::string::npos) << reason;
}

}  // namespace
}  // namespace cmpinsp
