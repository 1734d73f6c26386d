#include <gtest/gtest.h>

#include <algorithm>

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

#if !defined(_WIN32)
// Catches a class that is missing without a word, and a reading that never ends.
TEST_F(SchemaReaderTest, WhatIsNoRegularFileIsToldAndLeftOut) {
  ASSERT_EQ(mkfifo((folder.text() + "/fifo.mof").c_str(), 0600), 0);
  std::filesystem::create_symlink("/dev/zero", folder.path() / "zero.mof");
  std::filesystem::create_symlink("nowhere", folder.path() / "dangling.mof");
  std::filesystem::create_symlink("circle.mof", folder.path() / "circle.mof");
  std::filesystem::create_symlink("nowhere", folder.path() / "dangling.txt");
  folder.write("folder.mof/whole.mof", "class A { };");
  reader.readFolder(folder.text(), true);
  build();
  std::sort(problems.begin(), problems.end(),
            [](const auto& left, const auto& right) { return left.file < right.file; });
  EXPECT_EQ(faults(),
            "circle.mof: Too many levels of symbolic links\n"
            "dangling.mof: a link that leads nowhere; it is left out\n"
            "fifo.mof: not a regular file; it is left out\n"
            "zero.mof: not a regular file; it is left out\n");
  EXPECT_TRUE(classes.find("A"));
}
#endif

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

// Catches pragmas that show what other files hold: a token of them would be in the message.
TEST_F(SchemaReaderTest, AnIncludeThatLeadsOutOfTheFolderIsRefused) {
  folder.write("secret.mof", "hunter2");
  folder.write("schemas/beside.mof", "hunter2");
  for (const char* path : {"../secret.mof", "sub/../../secret.mof", "../schema/../secret.mof",
                           "..\\\\secret.mof", "../schemas/beside.mof", "..", "../schema"}) {
    folder.write("schema/a.mof", "#pragma include(\"" + std::string(path) + "\")\nclass A { };");
    std::vector<substitute::Problem> found;
    SchemaReader own(found);
    own.setSchemaFolder(folder.text() + "/schema/");
    own.readFolder(folder.text() + "/schema/", true);
    ASSERT_EQ(found.size(), 1u) << path << linesOf(found);
    EXPECT_EQ(found[0].message, "an include path does not lead out of the folder") << path;
    EXPECT_EQ(found[0].line, 1u);
    EXPECT_EQ(found[0].column, 9u);
    EXPECT_EQ(own.takeUnits().size(), 1u) << path;
    EXPECT_EQ(own.sources().size(), 1u) << path;
    EXPECT_TRUE(own.readEverything()) << path;
  }
}

TEST_F(SchemaReaderTest, APackageMayIncludeFromTheSchema) {
  folder.write("schema/sub/a.mof", "class A { };");
  folder.write("providers/b.mof", "#pragma include(\"../schema/sub/a.mof\")\nclass B : A { };");
  reader.setSchemaFolder(folder.text() + "/schema");
  reader.readFolder(folder.text() + "/providers", false);
  build();
  EXPECT_EQ(faults(), "");
  EXPECT_TRUE(classes.find("B"));
}

#if !defined(_WIN32)

// Catches links that show what other files hold.
TEST_F(SchemaReaderTest, ALinkThatLeadsOutOfTheFolderIsRefused) {
  const std::string secret = folder.write("secret", "hunter2");
  folder.write("outside/b.mof", "hunter2");
  folder.write("schema/a.mof", "#pragma include(\"linked/b.mof\")\n#pragma include(\"c.txt\")");
  std::filesystem::create_symlink(folder.path() / "outside", folder.path() / "schema" / "linked");
  std::filesystem::create_symlink(secret, folder.path() / "schema" / "c.txt");
  std::filesystem::create_symlink(folder.write("other", "hunter2"),
                                  folder.path() / "schema" / "d.mof");
  reader.readFolder(folder.text() + "/schema", true);
  EXPECT_EQ(faults(),
            "schema/a.mof:1:9: cannot include: schema/linked/b.mof: a link leads out of the "
            "folder\n"
            "schema/a.mof:2:9: cannot include: schema/c.txt: a link leads out of the folder\n"
            "schema/d.mof: a link leads out of the folder\n");
}

TEST_F(SchemaReaderTest, AFolderThatIsReachedThroughALinkIsReadAllTheSame) {
  folder.write("real/sub/a.mof", "class A { };");
  folder.write("real/b.mof", "#pragma include(\"sub/a.mof\")");
  std::filesystem::create_symlink(folder.path() / "real", folder.path() / "schema");
  reader.setSchemaFolder(folder.text() + "/schema");
  reader.readFolder(folder.text() + "/schema", true);
  build();
  EXPECT_EQ(faults(), "");
  EXPECT_TRUE(classes.find("A"));
}

#endif

TEST_F(SchemaReaderTest, AUnitKnowsWhereItLiesAndWhichFileWasAskedFor) {
  folder.write("schema/a.mof", "#pragma include(\"own/b.mof\")");
  folder.write("schema/own/b.mof", "");
  folder.write("providers/c.mof", "");
  reader.setSchemaFolder(folder.text() + "/schema");
  reader.readFolder(folder.text() + "/schema", true);
  reader.readFolder(folder.text() + "/providers", false);
  std::string text;
  for (const CompilationUnit& unit : reader.takeUnits()) {
    text += std::filesystem::u8path(unit.file).stem().string() +
            std::to_string(static_cast<int>(unit.layer)) +
            std::filesystem::u8path(unit.askedFor).stem().string() + " ";
  }
  EXPECT_EQ(text, "a1a b2a c0c ");
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
      {"before the surrogates", "\xED\x9F\xBF", "\xED\x9F\xBF"},
      {"behind the surrogates", "\xEE\x80\x80", "\xEE\x80\x80"},
      {"the second plane", "\xF0\xA0\x80\x80", "\xF0\xA0\x80\x80"},
      {"in planes further on", "\xF1\x80\x80\x80\xF3\xBF\xBF\xBF",
       "\xF1\x80\x80\x80\xF3\xBF\xBF\xBF"},
      {"the last character", "\xF4\x8F\xBF\xBF", "\xF4\x8F\xBF\xBF"},
      {"beyond the last character", "\xF4\x90\x80\x80", "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80"},
      {"overlong by three", "\xE0\x9F\xBF", "\xC3\xA0\xC2\x9F\xC2\xBF"},
      {"the first of three", "\xE0\xA0\x80", "\xE0\xA0\x80"},
      {"overlong by four", "\xF0\x8F\xBF\xBF", "\xC3\xB0\xC2\x8F\xC2\xBF\xC2\xBF"},
      {"the first of four", "\xF0\x90\x80\x80", "\xF0\x90\x80\x80"},
      {"UTF-16 before the surrogates", "\xFE\xFF\xD7\xFF", "\xED\x9F\xBF"},
      {"UTF-16 behind the surrogates", std::string("\xFE\xFF\xE0\x00", 4), "\xEE\x80\x80"},
      {"UTF-16 in the second plane", std::string("\xFE\xFF\xD8\x40\xDC\x00", 6),
       "\xF0\xA0\x80\x80"},
      {"UTF-16 at the very end", "\xFE\xFF\xDB\xFF\xDF\xFF", "\xF4\x8F\xBF\xBF"},
      {"UTF-16 with a pair that is none", std::string("\xFE\xFF\xD8\x3D\xE0\x00", 6),
       "\xEF\xBF\xBD\xEE\x80\x80"},
      {"UTF-16 with a pair", std::string("\xFE\xFF\xD8\x3D\xDE\x00", 6), "\xF0\x9F\x98\x80"},
      {"UTF-16 with half a pair", std::string("\xFE\xFF\xD8\x3D", 4), "\xEF\xBF\xBD"},
      {"UTF-16 with an odd byte", std::string("\xFF\xFE\x41\x00\x42", 5), "A"},
  };
  for (const auto& row : rows) EXPECT_EQ(decodeSourceText(row.bytes), row.wanted) << row.name;
}

TEST(SourceText, AMissingFileIsRefusedWithTheReasonAlone) {
  try {
    readSourceText("/nowhere/at/all.mof");
    FAIL();
  } catch (const SourceError& error) {
    EXPECT_STRNE(error.what(), "");
    EXPECT_EQ(std::string(error.what()).find("/nowhere"), std::string::npos) << error.what();
  }
}

}  // namespace
}  // namespace cmpinsp
