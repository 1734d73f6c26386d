#include <gtest/gtest.h>

#include <filesystem>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/registration/RegistrationFolder.h"
#include "substitute/cmpi.nsp/registration/RegistrationTable.h"
#include "tests/substitute/cmpi.nsp/Problems.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"

namespace cmpinsp {
namespace {

Registration registration(const std::string& className, const std::string& provider,
                          const std::string& library, const std::string& nameSpace,
                          unsigned interfaces, const std::string& file, unsigned long line) {
  return {className, {nameSpace}, provider, library, interfaces, {file, line, 1}};
}

std::string textOf(const std::vector<RegisteredProvider>& providers) {
  std::string text;
  for (const RegisteredProvider& provider : providers) {
    text += provider.name + "@" + provider.library + ":";
    for (const Registration& served : provider.classes) {
      text += " " + served.className + "(" + std::to_string(served.interfaces);
      for (const std::string& name : served.namespaces) text += " " + name;
      text += ")";
    }
    text += "\n";
  }
  return text;
}

TEST(RegistrationTable, StatementsAboutOneClassAddUp) {
  std::vector<substitute::Problem> problems;
  const auto providers = mergeRegistrations(
      {registration("A", "P", "l", "root/x", kInstanceInterface, "a.registration", 1),
       registration("a", "P", "l", "/root/y", kMethodInterface, "a.registration", 2),
       registration("B", "P", "l", "root/x", kMethodInterface, "a.registration", 3),
       registration("A", "Q", "m", "root/x", kInstanceInterface, "a.registration", 4)},
      problems);
  EXPECT_EQ(linesOf(problems), "");
  EXPECT_EQ(textOf(providers), "P@l: A(5 root/x root/y) B(4 root/x)\nQ@m: A(1 root/x)\n");
}

TEST(RegistrationTable, TheSameStatementInTwoFilesIsOne) {
  std::vector<substitute::Problem> problems;
  const auto providers =
      mergeRegistrations({registration("A", "P", "l", "root/x", 1, "a.registration", 1),
                          registration("A", "P", "l", "Root/X", 1, "a.reg", 1)},
                         problems);
  EXPECT_EQ(linesOf(problems), "");
  EXPECT_EQ(textOf(providers), "P@l: A(1 root/x)\n");
}

TEST(RegistrationTable, ContradictionsNameBothPlaces) {
  std::vector<substitute::Problem> problems;
  const auto providers = mergeRegistrations({registration("A", "P", "l", "n", 1, "a.reg", 1),
                                             registration("A", "P", "l", "n", 5, "b.reg", 7),
                                             registration("A", "P", "m", "n", 1, "c.reg", 9)},
                                            problems);
  EXPECT_EQ(linesOf(problems),
            "c.reg:9:1: provider P is registered in library m, but in library l at a.reg:1:1\n"
            "b.reg:7:1: class A of provider P is registered with \"instance method\", but with "
            "\"instance\" at a.reg:1:1\n");
  EXPECT_EQ(textOf(providers), "P@l: A(5 n)\n");
}

TEST(RegistrationTable, TypesMayBeSpreadOverLinesOrInstancesOfOneFileAlone) {
  const struct {
    const char* first;
    const char* second;
    bool isContradiction;
  } rows[] = {{"a.registration", "a.registration", false},
              {"a.mof", "a.mof", false},
              {"a.reg", "a.reg", true},
              {"a.mof", "b.mof", true},
              {"a.registration", "a.reg", true}};
  for (const auto& row : rows) {
    std::vector<substitute::Problem> problems;
    const auto providers = mergeRegistrations({registration("A", "P", "l", "n", 1, row.first, 1),
                                               registration("A", "P", "l", "n", 4, row.second, 2)},
                                              problems);
    EXPECT_EQ(problems.size(), row.isContradiction ? 1U : 0U) << row.first << row.second;
    EXPECT_EQ(textOf(providers), "P@l: A(5 n)\n") << row.first << row.second;
  }
}

TEST(RegistrationTable, WhatTwoFilesSayInAllIsCompared) {
  std::vector<substitute::Problem> problems;
  const auto providers =
      mergeRegistrations({registration("A", "P", "l", "n", 5, "a.reg", 1),
                          registration("A", "P", "l", "n", 1, "a.registration", 1),
                          registration("A", "P", "l", "n", 4, "a.registration", 2)},
                         problems);
  EXPECT_EQ(linesOf(problems), "");
  EXPECT_EQ(textOf(providers), "P@l: A(5 n)\n");
}

TEST(RegistrationTable, AContradictionLeavesTheFirstStatementAsItWasMade) {
  std::vector<substitute::Problem> problems;
  mergeRegistrations({registration("A", "P", "l", "n", 1, "a.reg", 1),
                      registration("A", "P", "l", "n", 5, "b.reg", 1),
                      registration("A", "P", "l", "n", 1, "c.reg", 1)},
                     problems);
  EXPECT_EQ(linesOf(problems),
            "b.reg:1:1: class A of provider P is registered with \"instance method\", but with "
            "\"instance\" at a.reg:1:1\n");
}

TEST(RegistrationTable, ALibraryMayBeNamedInSeveralWays) {
  const std::string fileName = libraryFileName("l");
  std::vector<substitute::Problem> problems;
  const auto providers =
      mergeRegistrations({registration("A", "P", "l", "n", 1, "a.reg", 1),
                          registration("A", "P", fileName, "n", 1, "b.reg", 1),
                          registration("B", "P", "/usr/lib/cmpi/" + fileName, "n", 1, "c.reg", 1)},
                         problems);
  EXPECT_EQ(linesOf(problems), "");
  EXPECT_EQ(textOf(providers), "P@l: A(1 n) B(1 n)\n");
}

TEST(RegistrationTable, NamespacesMatchWithoutCase) {
  const Registration one = registration("A", "P", "l", "root/x", 1, "f", 1);
  const Registration all = registration("A", "P", "l", "*", 1, "f", 1);
  EXPECT_TRUE(servesNamespace(one, "ROOT/X"));
  EXPECT_TRUE(servesNamespace(one, ""));
  EXPECT_FALSE(servesNamespace(one, "root/y"));
  EXPECT_TRUE(servesNamespace(all, "root/y"));
}

TEST(RegistrationTable, LibraryNamesBecomeFileNames) {
#if defined(_WIN32)
  EXPECT_EQ(libraryFileName("acme"), "acme.dll");
  EXPECT_EQ(libraryFileName("acme.dll"), "acme.dll");
  EXPECT_EQ(libraryFileName("ACME.DLL"), "ACME.DLL");
#else
  EXPECT_EQ(libraryFileName("acme"), "libacme.so");
  EXPECT_EQ(libraryFileName("libacme.so"), "libacme.so");
  EXPECT_EQ(libraryFileName("libacme.so.1"), "libacme.so.1");
#endif
}

TEST(RegistrationTable, OfAPathToALibraryOnlyItsNameCounts) {
  const std::string fileName = libraryFileName("acme");
  for (const char* folder : {"/usr/lib64/cmpi/", "../", "cmpi/", "C:\\Program Files\\Acme\\"}) {
    EXPECT_EQ(libraryFileName(std::string(folder) + fileName), fileName) << folder;
    EXPECT_EQ(libraryFileName(std::string(folder) + "acme"), fileName) << folder;
  }
}

TEST(RegistrationTable, LibraryNamesThatAreNoFileNamesAreRefused) {
  for (const char* name :
       {"", ".", "..", ".hidden", "a/", "a/..", "/usr/lib/.so", "c:evil", "a:stream", "a\nb"}) {
    EXPECT_THROW(libraryFileName(name), NZELVOR20::TVORException) << name;
  }
}

TEST(RegistrationFolder, BothKindsOfFilesAreReadInNameOrder) {
  const TemporaryFolder folder;
  folder.write("b.reg", "[B]\nprovider: P\nlocation: l\ntype: instance\nnamespace: n\n");
  folder.write("a.registration", "A n P l instance\n");
  folder.write("c.txt", "C n P l instance\n");
  std::vector<substitute::Problem> problems;
  const auto registrations = readRegistrationFolder(folder.text(), problems).classes;
  EXPECT_EQ(linesOf(problems), "");
  ASSERT_EQ(registrations.size(), 2u);
  EXPECT_EQ(registrations[0].className, "A");
  EXPECT_EQ(registrations[1].className, "B");
}

// Catches a message that has the path in front and once more inside.
TEST(RegistrationFolder, AFileThatCannotBeReadIsNamedOnce) {
  const TemporaryFolder folder;
  const std::filesystem::path file = folder.path() / "a.reg";
  std::filesystem::create_directory(file);
  std::vector<substitute::Problem> problems;
  readRegistrationFolder(folder.text(), problems);
  ASSERT_EQ(problems.size(), 1u);
  EXPECT_EQ(problems[0].file, file.u8string());
  EXPECT_EQ(problems[0].message.find(folder.text()), std::string::npos) << problems[0].message;
}

TEST(RegistrationTable, EachOfManyNamespacesCountsOnceInWhateverCase) {
  std::vector<Registration> registrations;
  std::vector<std::string> wanted;
  for (int i = 0; i < 1000; ++i) {
    wanted.push_back("root/number/" + std::to_string(i));
    registrations.push_back(
        {"A", {wanted.back()}, "P", "l", kInstanceInterface, {"f.registration"}});
  }
  registrations.push_back(
      {"A", {"ROOT/Number/7"}, "P", "l", kInstanceInterface, {"f.registration"}});
  std::vector<substitute::Problem> problems;
  const auto providers = mergeRegistrations(std::move(registrations), problems);
  EXPECT_EQ(providers.at(0).classes.at(0).namespaces, wanted);
}

TEST(RegistrationTable, EachOfManyClassesIsThere) {
  std::vector<Registration> registrations;
  for (int i = 0; i < 1000; ++i) {
    registrations.push_back({"A" + std::to_string(i), {"n"}, "P", "l", kInstanceInterface, {"f"}});
  }
  std::vector<substitute::Problem> problems;
  EXPECT_EQ(mergeRegistrations(std::move(registrations), problems).at(0).classes.size(), 1000u);
}

TEST(RegistrationFolder, AMissingFolderIsAnEmptyOne) {
  std::vector<substitute::Problem> problems;
  EXPECT_TRUE(readRegistrationFolder("/nowhere/at/all", problems).classes.empty());
  EXPECT_TRUE(problems.empty());
}

}  // namespace
}  // namespace cmpinsp
