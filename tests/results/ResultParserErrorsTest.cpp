#include <gtest/gtest.h>

#include "tests/results/VendorFile.h"

namespace support {
namespace {

using Reports = std::vector<std::string>;

const char kNoVersion[] = "No Version Specified for DIAGANALYSIS identifier";
const char kNoName[] = "No Name Specified for Object identifier";
const char kAttribute[] = "Unrecognized Attribute.";
const char kIdentifier[] = "Unrecognized identifier";

struct BadFile {
  const char* name;
  const char* file;
  Reports reports;
  const char* table;
};

const BadFile kBadFiles[] = {
    {"no version",
     "<diaganalysis><diagnostictest name='t'><result/></diagnostictest></diaganalysis>",
     {kNoVersion},
     "t/t [] : ;\n"},
    {"version in another case", "<diaganalysis Version='1'/>", {kNoVersion}, ""},
    {"an empty version is one", "<diaganalysis version=''/>", {}, ""},
    {"other attributes of the root", "<diaganalysis version='1' x='y'/>", {}, ""},
    {"no name", "<diagnostictest><result/></diagnostictest>", {kNoName}, "/ [] : ;\n"},
    {"an empty name",
     "<diagnostictest name=''><result/></diagnostictest>",
     {kNoName},
     "/ [] : ;\n"},
    {"name in another case",
     "<diagnostictest Name='t'><result/></diagnostictest>",
     {kAttribute, kNoName},
     "/ [] : ;\n"},
    {"unknown attributes of a test, one report each",
     "<diagnostictest a='1' name='t' z='2'><result/></diagnostictest>",
     {kAttribute, kAttribute},
     "t/t [] : ;\n"},
    {"unknown attributes of a result",
     "<diagnostictest name='t'><result State='a' state='b' x='c'/></diagnostictest>",
     {kAttribute, kAttribute},
     "t/t [b] : ;\n"},
    {"attributes of code and line are not looked at",
     "<diagnostictest name='t'><result><errorcode a='1'>E</errorcode><msg b='2'>m</msg></result>"
     "</diagnostictest>",
     {},
     "t/t [] E: m|;\n"},
    {"an unknown element is reported at both ends, and its text stays",
     "<diagnostictest name='t'><result><other>x</other><msg>m</msg></result></diagnostictest>",
     {kIdentifier, kIdentifier},
     "t/t [] : xm|;\n"},
    {"an unknown root",
     "<root><diagnostictest name='t'><result/></diagnostictest></root>",
     {kIdentifier, kIdentifier},
     "t/t [] : ;\n"},
    {"a result outside any test stands under the empty key",
     "<diaganalysis version='1'><result state='s'><errorcode>E</errorcode><msg>m</msg>"
     "<action priority='1'>d</action></result></diaganalysis>",
     {},
     "/ [s] : ; 1=Emd|\n"},
    {"a result after its test's end",
     "<diaganalysis version='1'><diagnostictest name='t'/><result state='s'><msg>m</msg></result>"
     "<diagnostictest name='u'><result><msg>n</msg></result></diagnostictest></diaganalysis>",
     {},
     "/ [s] : ;\nu/u [] : mn|;\n"},
    {"a test without name after one that has ended",
     "<diaganalysis version='1'><diagnostictest name='t'><result/></diagnostictest>"
     "<diagnostictest><result/></diagnostictest></diaganalysis>",
     {kNoName},
     "/ [] : ;\nt/t [] : ;\n"},
    {"a test without name within one has that one's, until it ends",
     "<diagnostictest name='t'><diagnostictest><result state='1'/></diagnostictest>"
     "<result state='2'/></diagnostictest>",
     {},
     "/ [2] : ;\nt/t [1] : ;\n"},
    {"a test within a test renames",
     "<diagnostictest name='t'><diagnostictest name='u'><result/></diagnostictest>"
     "</diagnostictest>",
     {},
     "u/u [] : ;\n"},
    {"a state is cleared when its result ends, also that of an outer one",
     "<diagnostictest name='t'><result state='a'><result/></result></diagnostictest>",
     {},
     "t/t [a] : ;\nt/t [] : ;\n"}};

TEST(ResultParserErrors, AreReportedAndTheRestIsRead) {
  for (const BadFile& bad : kBadFiles) {
    const Parsed parsed = parseVendorFile(bad.file);
    EXPECT_EQ(parsed.reports, bad.reports) << bad.name;
    EXPECT_EQ(parsed.table, bad.table) << bad.name;
  }
}

struct BrokenFile {
  const char* name;
  const char* file;
  const char* table;
};

/// What came before the break stands.
const BrokenFile kBrokenFiles[] = {
    {"no XML", "text", ""},
    {"a blank", " ", ""},
    {"cut off in a test", "<diagnostictest name='t'><result state='a'/><result state='b'>",
     "t/t [a] : ;\n"},
    {"cut off in a tag", "<diagnostictest name='t'><result state='a'/><result sta",
     "t/t [a] : ;\n"},
    {"cut off in a text", "<diagnostictest name='t'><result><msg>half", ""},
    {"ends that do not match", "<diagnostictest name='t'><result/></diaganalysis>", "t/t [] : ;\n"},
    {"ends in another case", "<diagnostictest name='t'><result/></DiagnosticTest>", "t/t [] : ;\n"},
    {"an attribute twice", "<diagnostictest name='t' name='u'><result/></diagnostictest>", ""},
    {"an attribute without quotes", "<diagnostictest name=t><result/></diagnostictest>", ""},
    {"a bare ampersand", "<diagnostictest name='t'><result/><msg>a & b</msg></diagnostictest>",
     "t/t [] : ;\n"},
    {"an unknown entity", "<diagnostictest name='t'><result/><msg>&x;</msg></diagnostictest>",
     "t/t [] : ;\n"},
    {"a second root", "<diagnostictest name='t'><result/></diagnostictest><diagnostictest/>",
     "t/t [] : ;\n"},
    {"text after the root", "<diagnostictest name='t'><result/></diagnostictest>text",
     "t/t [] : ;\n"},
    {"a byte that is no UTF-8", "<diagnostictest name='t'><result/><msg>\xFF</msg>",
     "t/t [] : ;\n"}};

TEST(ResultParserErrors, AFileThatIsNotWellFormedIsReportedOnceAndWhatCameBeforeStands) {
  for (const BrokenFile& broken : kBrokenFiles) {
    const Parsed parsed = parseVendorFile(broken.file);
    EXPECT_EQ(parsed.reports.size(), 1U) << broken.name;
    EXPECT_EQ(parsed.table, broken.table) << broken.name;
  }
}

TEST(ResultParserErrors, AFileEndsAtItsFirstZeroByte) {
  std::string file = "<diagnostictest name='t'><result/></diagnostictest>";
  const std::string whole = file;
  file += std::string(3, '\0') + "<garbage";
  EXPECT_EQ(parseVendorFile(file).table, parseVendorFile(whole).table);
  EXPECT_EQ(parseVendorFile(std::string(64, '\0')).table, "");
  EXPECT_EQ(parseVendorFile(std::string(64, '\0')).reports, Reports());
}

TEST(ResultParserErrors, AFileCutOffAnywhereGivesABeginningOfTheTable) {
  const std::string whole =
      "<diaganalysis version='1'><diagnostictest name='t'><result state='a'><msg>m</msg></result>"
      "<result state='b'><action priority='1'>d</action></result></diagnostictest></diaganalysis>";
  const std::string table = parseVendorFile(whole).table;
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const Parsed parsed = parseVendorFile(whole.substr(0, length));
    EXPECT_EQ(table.compare(0, parsed.table.size(), parsed.table), 0) << length;
    EXPECT_EQ(parsed.reports.size(), length == 0 ? 0U : 1U) << length;
  }
}

TEST(ResultParserErrors, TheExpansionOfEntitiesIsBounded) {
  std::string file = "<!DOCTYPE d [<!ENTITY e0 '0123456789'>";
  for (int i = 1; i <= 9; ++i) {
    const std::string inner = "&e" + std::to_string(i - 1) + ";";
    file += "<!ENTITY e" + std::to_string(i) + " '";
    for (int j = 0; j < 10; ++j) {
      file += inner;
    }
    file += "'>";
  }
  file += "]><diagnostictest name='t'><result/><msg>&e9;</msg></diagnostictest>";
  const Parsed parsed = parseVendorFile(file);
  EXPECT_EQ(parsed.reports.size(), 1U);
  EXPECT_EQ(parsed.table, "t/t [] : ;\n");
}

TEST(ResultParserErrors, TheParserItselfDropsTheReports) {
  World world;
  diagsrunner::ResultParser parser;
  std::string file = "<other><diagnostictest x='y'><result/></diagnostictest>";
  parser.Parse(file.data());
  EXPECT_EQ(describe(parser.GetVendorMessages()), "/ [] : ;\n");
  EXPECT_EQ(world.journal.all(), lines({"TOSSpecific.isOEMBuild()"}));
}

}  // namespace
}  // namespace support
