#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "engine/installation/InstallationRoot.h"

namespace engine {
namespace {

namespace fs = std::filesystem;

/// A scratch folder in which a program lies in `bin`.
class InstallationRoot : public testing::Test {
 protected:
  InstallationRoot() { make("bin"); }
  ~InstallationRoot() override { fs::remove_all(m_base); }

  void make(const std::string& folder) { fs::create_directories(m_base / fs::u8path(folder)); }
  std::string at(const std::string& folder) const {
    return (m_base / fs::u8path(folder)).make_preferred().u8string();
  }
  std::string find(const std::string& option, const std::string& environment) const {
    return findInstallationRoot({option, environment, at("bin")});
  }

 private:
  fs::path m_base =
      fs::temp_directory_path() / ("diags root " + std::to_string(std::random_device()()));
};

TEST_F(InstallationRoot, TheOptionComesBeforeTheEnvironment) {
  make("one/schema");
  make("two/schema");
  EXPECT_EQ(find(at("one"), at("two")), at("one"));
}

TEST_F(InstallationRoot, TheEnvironmentComesBeforeWhatLiesBesideTheProgram) {
  make("one/schema");
  make("installation/schema");
  EXPECT_EQ(find("", at("one")), at("one"));
}

TEST_F(InstallationRoot, TheInstallationBesideTheProgramComesBeforeTheFolderAbove) {
  make("installation/schema");
  make("schema");
  EXPECT_EQ(find("", ""), at("installation"));
}

TEST_F(InstallationRoot, APackagedProgramFindsItsLibraryFolder) {
  make("lib/diagsrunner/schema");
  make("schema");
  EXPECT_EQ(find("", ""), at("lib/diagsrunner"));
}

TEST_F(InstallationRoot, TheFolderAboveTheProgramMayBeTheInstallation) {
  make("installation");
  make("schema");
  EXPECT_EQ(fs::path(find("", "")), fs::u8path(at("bin")).parent_path());
}

TEST_F(InstallationRoot, TheProgramMayLieInTheInstallation) {
  make("bin/schema");
  EXPECT_EQ(find("", ""), at("bin"));
}

TEST_F(InstallationRoot, WhatLiesAroundAnUnpackedPackageIsNotTakenForIt) {
  make("bin/schema");
  make("schema");
  make("installation/schema");
  make("lib/diagsrunner/schema");
  EXPECT_EQ(find("", ""), at("bin"));
}

// Catches a mistyped folder in which no fault is found.
TEST_F(InstallationRoot, AFolderThatIsNoInstallationIsRefused) {
  make("one");
  try {
    find(at("one"), "");
    ADD_FAILURE() << "it was taken";
  } catch (const InstallationError& error) {
    EXPECT_EQ(std::string(error.what()),
              "--root: \"" + at("one") + "\" is no installation: it has no folder schema");
  }
}

TEST_F(InstallationRoot, SeparatorsAtTheEndAreTakenOff) {
  make("one/schema");
  EXPECT_EQ(find(at("one") + "//", ""), at("one"));
}

TEST_F(InstallationRoot, NamesBeyondAsciiAreFound) {
  make("Prüf stand/schema");
  EXPECT_EQ(find(at("Prüf stand"), ""), at("Prüf stand"));
}

TEST_F(InstallationRoot, ANamedRootThatIsNoDirectoryIsAnErrorAndNotPassedOver) {
  make("installation/schema");
  EXPECT_THROW(find(at("missing"), ""), InstallationError);
  EXPECT_THROW(find("", at("missing")), InstallationError);
}

TEST_F(InstallationRoot, WithoutAnyInstallationTheErrorSaysHowToNameOne) {
  try {
    find("", "");
    ADD_FAILURE() << "no error";
  } catch (const InstallationError& error) {
    EXPECT_STREQ(error.what(),
                 "no installation found beside this program; name one with --root DIR");
  }
}

TEST_F(InstallationRoot, AnUnknownProgramFolderIsNotTheWorkingDirectory) {
  EXPECT_THROW(findInstallationRoot({"", "", ""}), InstallationError);
}

TEST_F(InstallationRoot, AnInstallationWithoutItsWorkerCannotBeUsed) {
  try {
    findWorker(at("bin"));
    ADD_FAILURE() << "no error";
  } catch (const InstallationError& error) {
    const std::string text = error.what();
    EXPECT_EQ(text.find("the program that runs the tests is missing; looked for " + at("bin")), 0U)
        << text;
  }
}

}  // namespace
}  // namespace engine
