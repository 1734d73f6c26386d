// Copies of the scripted installation: at a path that is not plain ASCII, with other line ends, and
// with rights that are too wide.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "tests/host/CommandRunner.h"
#include "tests/substitute/cmpi.nsp/OthersWrite.h"

#if !defined(_WIN32)
#include <unistd.h>
#endif

namespace host_test {
namespace {

namespace fs = std::filesystem;

const char* const kExclusions =
    "<?xml version='1.0'?>\n"
    "<vor version='1.0'>\n"
    "  <test\n    name='Scripted Fail'/>\n"
    "  <test name='Scripted Twin'/>\n"
    "</vor>\n";

const char* const kListing =
    "Scripted Pass,fan0,Front Fan\n"
    "Scripted Warning,fan0,Front Fan\n"
    "Scripted Incomplete,fan0,Front Fan\n"
    "Scripted Abort,fan0,Front Fan\n"
    "Scripted Refusal,fan0,Front Fan\n"
    "Scripted Throw,fan0,Front Fan\n"
    "Scripted Once,fan0,Front Fan\n";

/// A copy of the scripted installation in a folder with blanks, an accent and letters of another
/// script, with a data file of its own.
class InstallationCopy : public testing::Test {
 protected:
  InstallationCopy() {
    fs::create_directories(m_base);
    fs::copy(fs::u8path(DIAGS_TEST_INSTALLATIONS "/scripted"), m_root, fs::copy_options::recursive);
    fs::create_directories(m_root / "kfr" / "data");
    std::ofstream(m_root / "kfr" / "data" / "excludetests.xml", std::ios::binary) << kExclusions;
  }
  ~InstallationCopy() override { fs::remove_all(m_base); }

  CommandResult diags(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--root", m_root.u8string()});
    return runCommand(arguments);
  }

  /// Gives every line of the installation's text files the end that Windows' editors write.
  void writeCarriageReturns() const {
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(m_root)) {
      const fs::path kind = entry.path().extension();
      if (kind != ".xml" && kind != ".mof" && kind != ".registration") continue;
      const std::string text = readText(entry.path().u8string());
      std::ofstream file(entry.path(), std::ios::binary);
      for (const char c : text) file << (c == '\n' ? "\r" : "") << c;
    }
  }

  fs::path m_base =
      fs::temp_directory_path() / ("diags copy " + std::to_string(std::random_device()()));
  fs::path m_root = m_base / fs::u8path(
                                 "Pr\xC3\xBC"
                                 "f stand \xE6\x97\xA5\xE6\x9C\xAC");
};

TEST_F(InstallationCopy, AtAPathWithBlanksAndForeignLettersListsItsTests) {
  const CommandResult list = diags({"list"});
  EXPECT_EQ(list.err, "");
  EXPECT_EQ(list.out, kListing);
}

TEST_F(InstallationCopy, AtAPathWithBlanksAndForeignLettersRunsAProvider) {
  const CommandResult run = diags({"run", "Scripted Pass"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("Verdict: Pass\n"), std::string::npos) << run.out;
}

TEST_F(InstallationCopy, ItsPathIsPrintedAsItWasGiven) {
  EXPECT_EQ(diags({"check"}).out, "No faults found in " + m_root.u8string() + "\n");
}

TEST_F(InstallationCopy, CarriageReturnsAtItsLineEndsMakeNoDifference) {
  writeCarriageReturns();
  EXPECT_EQ(diags({"list"}).out, kListing);
  EXPECT_EQ(diags({"check"}).status, 0);
}

TEST_F(InstallationCopy, WhereAProviderIsRefusedItsMissingTestsAreNoRiddle) {
  for (const fs::directory_entry& entry : fs::directory_iterator(m_root / "providers")) {
    const fs::path kind = entry.path().extension();
    if (kind == ".so" || kind == ".dll") cmpinsp::letOthersWrite(entry.path());
  }
  EXPECT_EQ(
      diags({"list"}).err,
      "diags: not every provider can be used: ScriptedProvider (refused); diags providers says "
      "why\n"
      "diags: No matching diagnostic test or device found.\n");
  EXPECT_EQ(diags({"providers"}).err, "");
}

// Everybody may write it, who may so make a test of their own be run.
TEST_F(InstallationCopy, AClassFileThatOthersCanWriteIsAFaultForCheck) {
  const fs::path file = m_root / "schema" / "scripted.mof";
  EXPECT_EQ(diags({"check"}).out.find("can be written by other users"), std::string::npos);
  cmpinsp::letOthersWrite(file);
  const CommandResult check = diags({"check"});
  EXPECT_NE(check.out.find(file.u8string() + " can be written by other users"), std::string::npos)
      << check.out;
  EXPECT_NE(check.status, 0);
  EXPECT_EQ(check.err.find("others could change"), std::string::npos) << check.err;
}

#if !defined(_WIN32)

TEST_F(InstallationCopy, RootIsToldInOneLineWhatOthersCouldChange) {
  if (geteuid() != 0) GTEST_SKIP() << "it is for root alone";
  EXPECT_EQ(diags({"list"}).err, "");
  cmpinsp::letOthersWrite(m_root / "schema" / "scripted.mof");
  const CommandResult list = diags({"list"});
  EXPECT_EQ(list.err, "diags: others could change this installation: " +
                          (m_root / "schema" / "scripted.mof").u8string() +
                          " can be written by other users (mode 0777); diags check names every "
                          "place\n");
  EXPECT_EQ(list.out, kListing);
}

TEST_F(InstallationCopy, RootIsToldWhoseTheInstallationIs) {
  if (geteuid() != 0) GTEST_SKIP() << "it is for root alone";
  ASSERT_EQ(chown(m_root.c_str(), 12345, 12345), 0);
  const std::string err = diags({"inspect", "CIM_Nothing"}).err;
  EXPECT_EQ(err.find("diags: the installation " + m_root.u8string() +
                     " belongs to a user without a name (id 12345), and root uses it\n"),
            0U)
      << err;
}

#endif

TEST_F(InstallationCopy, ADataFileThatIsNotReadToItsEndIsNamedByEveryCommand) {
  std::ofstream(m_root / "kfr" / "data" / "excludetests.xml") << "<vor>\n<test name='x'>\n</vor>\n";
  const std::string file = (m_root / "kfr" / "data" / "excludetests.xml").u8string();
  for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
           {"list"}, {"run", "Scripted Pass"}, {"inspect", "TEST_Device"}, {"providers"}}) {
    EXPECT_EQ(diags(command).err, "diags: " + file + ":3: mismatched tag\n") << command.front();
  }
}

/// Copies with a second provider, whose library is missing or not to be loaded.
class UnusableProvider : public InstallationCopy {
 protected:
  UnusableProvider() {
    fs::remove_all(m_root / "kfr");
    std::ofstream(m_root / "providers" / "ghost.registration")
        << "CIM_AvailableDiagnosticService root/cimv2 GhostProvider ghost instance\n";
  }

  void writeLibrary() const {
#if defined(_WIN32)
    const char* const name = "ghost.dll";
#else
    const char* const name = "libghost.so";
#endif
    std::ofstream(m_root / "providers" / name) << "This is no library.\n";
  }

  static std::string lineFor(const std::string& state) {
    return "diags: not every provider can be used: GhostProvider (" + state +
           "); diags providers says why\n";
  }
};

TEST_F(UnusableProvider, IsNamedByEachCommandThatListsOrRuns) {
  EXPECT_EQ(diags({"list"}).err, lineFor("missing"));
  EXPECT_EQ(diags({"list", "--raw"}).err, lineFor("missing"));
  EXPECT_EQ(diags({"run", "Scripted Pass"}).err, lineFor("missing"));
  EXPECT_EQ(diags({"results", "Scripted Pass"}).err, lineFor("missing"));
  EXPECT_EQ(diags({"inspect", "TEST_Device"}).err, lineFor("missing"));
}

// Catches a library that is there, and shows only when it is used that it is none.
TEST_F(UnusableProvider, IsNamedWhenItsLibraryTurnsOutToBeBroken) {
  writeLibrary();
  EXPECT_EQ(diags({"list"}).err, lineFor("broken"));
  EXPECT_EQ(diags({"inspect", "TEST_Device"}).err, "");
}

// Catches a report of nothing but passes, whose reader cannot know of the tests that are missing.
TEST_F(UnusableProvider, IsNamedInTheReportsOfARun) {
  const std::string note = "tests may be missing: provider GhostProvider cannot be used (missing)";
  for (const char* const format : {"--jsonl", "--events", "--html"}) {
    const CommandResult run = diags({"run", "Scripted Pass", format, "-"});
    EXPECT_NE(run.out.find(note), std::string::npos) << format << "\n" << run.out;
    EXPECT_EQ(run.err.find(note), std::string::npos) << format << ": told before in other words";
  }
}

TEST_F(UnusableProvider, CostsARunOfOneTestNothing) {
  EXPECT_EQ(diags({"run", "Scripted Pass"}).status, 0);
}

/// Tests that pass, so that nothing else speaks for another status.
const char* const kFailingTests =
    "<vor version='1.0'><test name='Scripted Warning'/><test name='Scripted Incomplete'/>"
    "<test name='Scripted Fail'/><test name='Scripted Abort'/><test name='Scripted Refusal'/>"
    "<test name='Scripted Throw'/></vor>\n";

TEST_F(UnusableProvider, MakesARunOfEveryTestEndWithoutSuccess) {
  fs::create_directories(m_root / "kfr" / "data");
  std::ofstream(m_root / "kfr" / "data" / "excludetests.xml") << kFailingTests;
  const CommandResult run = diags({"run", "--all"});
  EXPECT_EQ(run.status, 3);
  EXPECT_NE(run.out.find("4 tests: 4 passed, 0 failed"), std::string::npos) << run.out;
  EXPECT_NE(run.err.find(lineFor("missing")), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("--ignore-providers"), std::string::npos) << run.err;
  const CommandResult ignoring = diags({"run", "--all", "--ignore-providers"});
  EXPECT_EQ(ignoring.status, 0);
  EXPECT_EQ(ignoring.err, lineFor("missing"));
}

}  // namespace
}  // namespace host_test
