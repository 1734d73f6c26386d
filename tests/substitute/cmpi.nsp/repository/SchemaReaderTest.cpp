#include <gtest/gtest.h>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/repository/SchemaReader.h"
#include "substitute/cmpi.nsp/repository/SourceText.h"
#include "tests/substitute/cmpi.nsp/Problems.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"

#if !defined(_WIN32)
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace cmpinsp {
namespace {

struct Fixture : testing::Test {
  void build() { reader.build(qualifiers, classes); }

  /// The problems, with the folder's path left out.
  std::string faults() const {
    std::string text = linesOf(problems);
    const std::string prefix =
        folder.text() + static_cast<char>(std::filesystem::path::preferred_separator);
    for (std::size_t at = text.find(prefix); at != std::string::npos; at = text.find(prefix)) {
      text.erase(at, prefix.size());
    }
    return text;
  }

  TemporaryFolder folder;
  std::vector<substitute::Problem> problems;
  SchemaReader reader{problems};
  QualifierTable qualifiers;
  ClassTable classes;
};

using SchemaReaderTest = Fixture;

TEST_F(SchemaReaderTest, FoldersAreReadDeeplyInWhateverOrder) {
  folder.write("a.mof", "class B : A { };");
  folder.write("sub/deep/b.MOF", "class A { };");
  folder.write("notes.txt", "class X { };");
  reader.readFolder(folder.text(), true);
  build();
  EXPECT_EQ(faults(), "");
  EXPECT_TRUE(classes.isA("B", "A"));
  EXPECT_FALSE(classes.find("X"));
}

TEST_F(SchemaReaderTest, FilesComeInTheOrderOfTheirPathsFolderByFolder) {
  std::vector<std::string> wanted;
  for (const char* name : {"a/b.mof", "a/x.MOF", "a.b/x.mof", "b.mof"}) {
    wanted.push_back(std::filesystem::u8path(folder.write(name, "")).make_preferred().u8string());
  }
  folder.write("mof", "");
  folder.write("c.mof.txt", "");
  folder.write(".mof", "");
  EXPECT_EQ(mofFilesIn(folder.text(), true, problems), wanted);
  EXPECT_EQ(mofFilesIn(folder.text(), false, problems), std::vector<std::string>{wanted.back()});
}

TEST_F(SchemaReaderTest, AMissingFolderIsAnEmptyOne) {
  reader.readFolder(folder.text() + "/nowhere", true);
  build();
  EXPECT_EQ(faults(), "");
}

TEST_F(SchemaReaderTest, AFolderThatCannotBeListedIsToldWithTheReason) {
  const std::string none = folder.write("none", "a file in the place of a folder");
  reader.readFolder(none, true);
  EXPECT_EQ(faults().find("none: the MOF files in it cannot be found: "), 0u) << faults();
  EXPECT_FALSE(reader.readEverything());
}

TEST_F(SchemaReaderTest, FilesBeyondTheLimitAreTold) {
  for (const char* name : {"a.mof", "b.mof", "c.mof", "d.mof"}) folder.write(name, "");
  SchemaReader narrow(problems, 2);
  narrow.readFolder(folder.text(), false);
  EXPECT_EQ(faults(), "c.mof: left out with every further one: the schema has more than 2 files\n");
}

#if !defined(_WIN32)

TEST_F(SchemaReaderTest, AFileThatTwoPathsLeadToIsReadOnce) {
  std::filesystem::create_symlink(folder.write("b.mof", "instance of B { };"),
                                  folder.path() / "a.mof");
  folder.write("c.mof", "#pragma include(\"gone.mof\")");
  std::filesystem::create_symlink("c.mof", folder.path() / "d.mof");
  reader.readFolder(folder.text(), true);
  EXPECT_EQ(reader.sources().size(), 5u) << "each path may lead elsewhere later on";
  EXPECT_EQ(problems.size(), 1u) << faults();
  EXPECT_EQ(reader.takeUnits().size(), 2u);
}

TEST_F(SchemaReaderTest, AFolderThatCannotBeEnteredLeavesTheOthers) {
  folder.write("b/b.mof", "class B { };");
  folder.write("c/c.mof", "class C { };");
  ASSERT_EQ(chmod(folder.text().c_str(), 0755), 0);
  ASSERT_EQ(chmod((folder.path() / "b").c_str(), 0), 0);
  // Root enters every folder.
  const uid_t user = geteuid();
  constexpr uid_t kNobody = 65534;
  ASSERT_EQ(seteuid(user == 0 ? kNobody : user), 0);
  reader.readFolder(folder.text(), true);
  build();
  ASSERT_EQ(seteuid(user), 0);
  ASSERT_EQ(chmod((folder.path() / "b").c_str(), 0700), 0);
  EXPECT_EQ(faults(), "b: the MOF files in it cannot be found: Permission denied\n");
  EXPECT_TRUE(classes.find("C"));
}

#else

TEST_F(SchemaReaderTest, AFileIsReadOnceInWhateverCaseItIsNamed) {
  folder.write("a.mof", "#pragma include(\"B.MOF\")");
  folder.write("b.mof", "instance of B { };");
  reader.readFolder(folder.text(), true);
  EXPECT_EQ(reader.takeUnits().size(), 2u);
}

#endif

TEST_F(SchemaReaderTest, IncludesStartAtTheIncludingFileAndAreReadOnce) {
  folder.write("main.mof", "#pragma include(\"sub/a.mof\")\n#pragma include(\"sub/../b.mof\")\n");
  folder.write("sub/a.mof",
               "#pragma include(\"../b.mof\")\n#pragma include(\"a.mof\")\nclass A { };");
  folder.write("b.mof", "#pragma include(\"main.mof\")\nclass B { };");
  reader.readFolder(folder.text(), true);
  build();
  EXPECT_EQ(faults(), "");
  EXPECT_EQ(reader.takeUnits().size(), 3u);
  EXPECT_EQ(classes.size(), 2u);
}

TEST_F(SchemaReaderTest, AnIncludedFileStartsInTheNamespaceThatIsInForce) {
  folder.write("main.mof",
               "#pragma namespace(\"root/acme\")\n#pragma include(\"sub/a.mof\")\n"
               "#pragma namespace(\"root/other\")\ninstance of M { };");
  folder.write("sub/a.mof", "instance of A { };\n");
  reader.readFile(folder.text() + "/main.mof");
  EXPECT_EQ(faults(), "");
  const std::vector<CompilationUnit> units = reader.takeUnits();
  ASSERT_EQ(units.size(), 2U);
  EXPECT_EQ(units[0].instances.at(0).nameSpace, "root/other");
  EXPECT_EQ(units[1].instances.at(0).nameSpace, "root/acme");
}

TEST_F(SchemaReaderTest, AFileSharesItsAliasesWithWhatItIncludesAlone) {
  folder.write("a.mof", "#pragma include(\"sub/b.mof\")\n");
  folder.write("c.mof", "");
  folder.write("sub/b.mof", "");
  reader.readFolder(folder.text(), true);
  const std::vector<CompilationUnit> units = reader.takeUnits();
  ASSERT_EQ(units.size(), 3U);
  EXPECT_EQ(units[0].aliasScope, units[1].aliasScope);
  EXPECT_NE(units[1].aliasScope, units[2].aliasScope);
}

// Catches a file that counts on its own, without the namespace and the aliases of the one that
// includes it, because its name comes first.
TEST_F(SchemaReaderTest, AFileIsReadWhereItIsIncludedWhateverItsName) {
  folder.write("a.mof", "#pragma include(\"b.mof\")\ninstance of A { };");
  folder.write("b.mof", "instance of B { };\n");
  folder.write("c.mof", "instance of C { };\n");
  folder.write("sub/z.mof",
               "#pragma namespace(\"root/acme\")\n#pragma include(\"../a.mof\")\n"
               "instance of Z { };");
  reader.readFolder(folder.text(), true);
  EXPECT_EQ(faults(), "");
  std::string read;
  for (const CompilationUnit& unit : reader.takeUnits()) {
    const InstanceSyntax& one = unit.instances.at(0);
    read += one.className + " " + std::to_string(unit.aliasScope) + " " + one.nameSpace + "\n";
  }
  EXPECT_EQ(read, "C 1 \nZ 2 root/acme\nA 2 root/acme\nB 2 root/acme\n");
}

TEST_F(SchemaReaderTest, FilesThatIncludeEachOtherAreAllRead) {
  folder.write("a.mof", "#pragma include(\"b.mof\")\nclass A { };");
  folder.write("b.mof", "#pragma include(\"a.mof\")\nclass B { };");
  folder.write("c.mof", "#pragma include(\"c.mof\")\nclass C { };");
  reader.readFolder(folder.text(), false);
  build();
  EXPECT_EQ(faults(), "");
  EXPECT_EQ(classes.size(), 3u);
}

// Catches a fault that is told each time that the file is looked at.
TEST_F(SchemaReaderTest, AFaultOfAnIncludedFileIsToldOnce) {
  folder.write("a.mof", "class ;");
  folder.write("z.mof", "#pragma namespace(\"root/acme\")\n#pragma include(\"a.mof\")");
  reader.readFolder(folder.text(), false);
  EXPECT_EQ(faults(), "a.mof:1:7: expected the name of the class, found \";\"\n");
}

TEST_F(SchemaReaderTest, AFaultInAnIncludedFileIsThatFiles) {
  folder.write("sub/b.mof", "class B { };\nclass ;");
  reader.readFile(folder.write("a.mof", "#pragma include(\"sub/b.mof\")\nclass A : B { };"));
  build();
  EXPECT_EQ(faults(), (std::filesystem::path("sub") / "b.mof").string() +
                          ":2:7: expected the name of the class, found \";\"\n");
  EXPECT_TRUE(classes.find("A"));
}

TEST_F(SchemaReaderTest, AnIncludeThatCannotBeReadIsReportedWhereItIsWritten) {
  reader.readFile(folder.write("a.mof", "\n#pragma include(\"gone.mof\")\nclass A { };"));
  build();
  EXPECT_EQ(faults().find("a.mof:2:9: cannot include: "), 0u) << faults();
  EXPECT_TRUE(classes.find("A"));
}

TEST_F(SchemaReaderTest, AnAbsoluteIncludeIsRefused) {
  reader.readFile(folder.write("a.mof", "#pragma include(\"/etc/passwd\")"));
  EXPECT_EQ(faults(), "a.mof:1:9: an include path starts at the including file's folder\n");
}

TEST_F(SchemaReaderTest, DeclaredQualifiersHaveTheirTypesAndFlavors) {
  reader.readFile(folder.write("a.mof", R"(
    Qualifier Level : uint8 = 7, Scope(property, method), Flavor(Restricted, DisableOverride);
    Qualifier Tags : string[], Scope(any), Flavor(Translatable);
    Qualifier Bad : uint8 = 300, Scope(any);
    class A { [Level, Tags{"x"}] uint8 p; };
    class B : A { [Override("p")] uint8 p; };)"));
  build();
  EXPECT_EQ(faults(), "a.mof:4:29: expected a value of type uint8\n");
  const auto* level = qualifiers.find("LEVEL");
  ASSERT_NE(level, nullptr);
  EXPECT_FALSE(level->toSubclass);
  EXPECT_FALSE(level->overridable);
  EXPECT_TRUE(qualifiers.find("tags")->translatable);
  EXPECT_EQ(classes.find("A")->properties[0].qualifiers[0].value.ToString(10), "7");
  const auto& inherited = classes.find("B")->properties[0].qualifiers;
  EXPECT_EQ(vorcore::findQualifier(inherited, "Level"), nullptr);
  EXPECT_EQ(vorcore::findQualifier(inherited, "Tags")->ToString(10), "{x}");
}

TEST_F(SchemaReaderTest, EncodingsAreToldApart) {
  const std::string utf16 = "class B { string p = \"\\xe9\"; };";
  std::string wide = "\xFF\xFE";
  for (const char c : utf16) wide += std::string{c, '\0'};
  folder.write("utf8.mof",
               "\xEF\xBB\xBF"
               "class A { string p = \"\xC3\xA9\"; };");
  folder.write("utf16.mof", wide);
  folder.write("latin1.mof", "class C { string p = \"\xE9\"; };");
  reader.readFolder(folder.text(), true);
  build();
  EXPECT_EQ(faults(), "");
  for (const char* name : {"A", "B", "C"}) {
    ASSERT_TRUE(classes.find(name)) << name;
    EXPECT_EQ(classes.find(name)->properties[0].defaultValue.ToText(), "\xC3\xA9") << name;
  }
}

TEST(SourceText, BadUtf8IsLatin1) {
  const struct {
    const char* name;
    std::string bytes;
    std::string wanted;
  } rows[] = {
      {"overlong", "\xC0\x80", "\xC3\x80\xC2\x80"},
      {"cut off", "\xE2\x82", "\xC3\xA2\xC2\x82"},
      {"a surrogate", "\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xC2\x80"},
      {"beyond the last plane", "\xF5\x80\x80\x80", "\xC3\xB5\xC2\x80\xC2\x80\xC2\x80"},
      {"valid", "\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"},
      {"UTF-16 with a pair", std::string("\xFE\xFF\xD8\x3D\xDE\x00", 6), "\xF0\x9F\x98\x80"},
      {"UTF-16 with half a pair", std::string("\xFE\xFF\xD8\x3D", 4), "\xEF\xBF\xBD"},
      {"UTF-16 with an odd byte", std::string("\xFF\xFE\x41\x00\x42", 5), "A"},
  };
  for (const auto& row : rows) EXPECT_EQ(decodeSourceText(row.bytes), row.wanted) << row.name;
}

TEST(SourceText, AMissingFileIsNotFound) {
  try {
    readSourceText("/nowhere/at/all.mof");
    FAIL();
  } catch (const NZELVOR20::TVORException& error) {
    EXPECT_EQ(error.GetStatus().GetStatusCode(), NZELVOR20::eVORNotFound);
    EXPECT_NE(std::string(error.what()).find("/nowhere/at/all.mof"), std::string::npos);
  }
}

}  // namespace
}  // namespace cmpinsp
