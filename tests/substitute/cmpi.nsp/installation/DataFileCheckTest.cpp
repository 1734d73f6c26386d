#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>

#include "substitute/cmpi.nsp/installation/DataFileCheck.h"
#include "tests/substitute/cmpi.nsp/Problems.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"

namespace cmpinsp {
namespace {

/// What the check says about one file, with the folder left out of the lines.
std::string faultsOf(const char* fileName, const std::string& content) {
  const TemporaryFolder folder;
  const std::string path = folder.write(fileName, content);
  std::string text = linesOf(checkDataFiles(folder.text()));
  for (std::size_t at = text.find(path); at != std::string::npos; at = text.find(path)) {
    text.erase(at, path.size());
  }
  return text;
}

struct Row {
  const char* name;
  std::string content;
  std::string wanted;
};

void expectRows(const char* fileName, const std::vector<Row>& rows) {
  for (const Row& row : rows) EXPECT_EQ(faultsOf(fileName, row.content), row.wanted) << row.name;
}

TEST(DataFileCheck, MissingFilesAreNoFault) {
  const TemporaryFolder folder;
  EXPECT_EQ(linesOf(checkDataFiles(folder.text())), "");
  EXPECT_EQ(linesOf(checkDataFiles(folder.text() + "/nowhere")), "");
}

TEST(DataFileCheck, ExcludedTests) {
  expectRows(
      "excludetests.xml",
      {{"good", "<VOR version='1'>\n<Test name='x'/><!-- c --></VOR>", ""},
       {"no version", "<vor/>", ":1: <vor> has no attribute \"version\"\n"},
       {"no name", "<vor version=''>\n<test/></vor>", ":2: <test> has no attribute \"name\"\n"},
       {"a name in capitals", "<vor version=''><test Name='x'/></vor>",
        ":1: <test> has no attribute \"name\"\n"
        ":1: <test> has the unknown attribute \"Name\"\n"},
       {"an unknown element", "<vor version=''>\n\n<tset name='x'/></vor>",
        ":3: unknown element <tset>\n"},
       {"a test inside a test", "<vor version=''><test name='a'><test name='b'/></test></vor>",
        ":1: <test> does not belong here\n"},
       {"another root", "<test name='a'/>", ":1: <test> does not belong here\n"}});
}

TEST(DataFileCheck, ExclusionMatrix) {
  expectRows("excludetestmatrix.xml",
             {{"any root",
               "<whatever x='1'><biosid name='abc'><diagnostictest name='x'/></biosid>"
               "</whatever>",
               ""},
              {"no root", "<biosid name='abc'><diagnostictest/></biosid>", ""},
              {"capitals in the identifier", "<r>\n<biosid name='ABC'/></r>",
               ":2: the identifier \"ABC\" has capital letters, so that it matches no machine\n"},
              {"an unknown attribute", "<r><biosid id='abc'/></r>",
               ":1: <biosid> has the unknown attribute \"id\"\n"},
              {"a test outside", "<r><diagnostictest name='x'/></r>",
               ":1: <diagnostictest> does not belong here\n"}});
}

TEST(DataFileCheck, VendorMessages) {
  const std::string good =
      "<diaganalysis version='1'><diagnostictest name='a'><result state='ok'><errorcode>1"
      "</errorcode><msg>m</msg><action priority='1'>a</action><oemaction>b</oemaction></result>"
      "</diagnostictest></diaganalysis>";
  expectRows("vendor_diagnostic_msgs.xml",
             {{"good", good, ""},
              {"a result outside a test", "<diaganalysis version='1'>\n<result/></diaganalysis>",
               ":2: <result> does not belong here\n"},
              {"an unknown attribute",
               "<diaganalysis version='1'><diagnostictest name='a' id='b'/></diaganalysis>",
               ":1: <diagnostictest> has the unknown attribute \"id\"\n"}});
}

/// A file of vendor messages with one test of the name `name`.
std::string vendorFile(const std::string& name, const std::string& content) {
  return "<diaganalysis version='1'>\n<diagnostictest name='" + name + "'>" + content +
         "</diagnostictest>\n</diaganalysis>";
}

TEST(DataFileCheck, VendorMessagesThatAreNeverLookedUp) {
  const std::string lost =
      "\" are never looked up: tests of such names share those of "
      "\"fusion-io:diag service\"\n";
  expectRows(
      "vendor_diagnostic_msgs.xml",
      {{"the name of the family", vendorFile("fusion-io:diag service", ""), ""},
       {"in capitals", vendorFile("Fusion-io:Diag Service", ""), ""},
       {"a vendor's test outside of the family", vendorFile("zel:mem", ""), ""},
       {"another vendor's", vendorFile("acme:diag service", ""), ""},
       {"zel", vendorFile("ZEL:mem:Diag Service", ""),
        ":2: the messages of \"ZEL:mem:Diag Service" + lost},
       {"fio", vendorFile("fio:diag service", ""), ":2: the messages of \"fio:diag service" + lost},
       {"fusion-io", vendorFile("my fusion-io:x:diag service", ""),
        ":2: the messages of \"my fusion-io:x:diag service" + lost},
       {"a comma", vendorFile("a,b", ""),
        ":2: the name \"a,b\" has a comma, so that it matches no test\n"}});
}

TEST(DataFileCheck, VendorMessagesOfStatesThatNoRecordHas) {
  const auto result = [](const std::string& state) { return "<result state='" + state + "'/>"; };
  std::vector<Row> rows;
  for (const char* state :
       {"ok", "Warning", "incomplete", "FAILED", "aborted", "stopped", "other", "unknown"}) {
    rows.push_back({state, vendorFile("BRCM", result(state)), ""});
  }
  for (const char* state : {"OK", "aborted", "failed"}) {
    rows.push_back({state, vendorFile("fusion-io:diag service", result(state)), ""});
  }
  for (const char* state : {"warning", "incomplete", "stopped"}) {
    rows.push_back({state, vendorFile("fusion-io:diag service", result(state)),
                    ":2: no test of this name ends in the state \"" + std::string(state) +
                        "\" but in ok, aborted, failed\n"});
  }
  rows.push_back({"a misspelt one", vendorFile("BRCM", result("Fail")),
                  ":2: unknown state \"Fail\"; known are ok, warning, incomplete, failed, aborted, "
                  "stopped, other, unknown\n"});
  rows.push_back({"an empty one", vendorFile("BRCM", result("")),
                  ":2: unknown state \"\"; known are ok, warning, incomplete, failed, aborted, "
                  "stopped, other, unknown\n"});
  rows.push_back({"none", vendorFile("BRCM", "<result/>"), ""});
  expectRows("vendor_diagnostic_msgs.xml", rows);
}

TEST(DataFileCheck, TextThatIsJoinedToTheNextMessage) {
  const std::string joined = ": text that belongs to no message: it is joined to the next one\n";
  expectRows(
      "vendor_diagnostic_msgs.xml",
      {{"in a result", vendorFile("a", "\n<result>lost<msg>m</msg></result>"), ":3" + joined},
       {"in a test", vendorFile("a", "x<result/>"), ":2" + joined},
       {"in the root", "<diaganalysis version='1'>x</diaganalysis>", ":1" + joined},
       {"behind a message", vendorFile("a", "<result><msg>m</msg>.</result>"), ":2" + joined},
       {"blanks", vendorFile("a", " \t\n <result> <msg>m</msg>\r\n</result>"), ""},
       {"in each element that takes it",
        vendorFile("a",
                   "<result><errorcode>1</errorcode><Msg>m</Msg><action>a</action>"
                   "<oemaction>b</oemaction></result>"),
        ""},
       {"in an unknown element in a message",
        vendorFile("a", "<result><msg>a <b>bold</b> word</msg></result>"),
        ":2: unknown element <b>\n"},
       {"the messages of a test without a name, and not its actions",
        vendorFile("", "<result><errorcode>1</errorcode><msg>m</msg><action>a</action></result>"),
        ":2" + joined + ":2" + joined}});
}

// Catches a name that is kept beyond its test.
TEST(DataFileCheck, ATestWithoutANameBehindOneThatHasOneTakesNoMessage) {
  EXPECT_EQ(faultsOf("vendor_diagnostic_msgs.xml",
                     "<diaganalysis version='1'><diagnostictest name='a'/>\n<diagnostictest>"
                     "<result><msg>m</msg></result></diagnostictest></diaganalysis>"),
            ":2: <diagnostictest> has no attribute \"name\"\n"
            ":2: text that belongs to no message: it is joined to the next one\n");
}

TEST(DataFileCheck, NothingBehindAZeroByteIsRead) {
  using namespace std::string_literals;
  const std::string fault = ": a zero byte, at which the file ends for its reader\n";
  expectRows("excludetests.xml",
             {{"in the text", "<vor version='1'>\n</vor>\0<test/>"s, ":2" + fault},
              {"at the end", "<vor version='1'/>\0"s, ":1" + fault},
              {"alone", "\0\0"s, ":1" + fault}});
}

TEST(DataFileCheck, AFolderIsNoDataFile) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.path() / "excludetests.xml");
  EXPECT_EQ(linesOf(checkDataFiles(folder.text())),
            (folder.path() / "excludetests.xml").u8string() +
                ": the file cannot be read: it is no regular file\n");
}

class LargeDataFiles : public testing::TestWithParam<std::uintmax_t> {};

// Catches a size that is cut to 32 bits, and a check that takes as much memory as the file.
TEST_P(LargeDataFiles, AreNamedInsteadOfRead) {
  const TemporaryFolder folder;
  const std::string path = folder.write("excludetests.xml", "<vor version='1'/>");
  std::filesystem::resize_file(std::filesystem::u8path(path), GetParam());
  EXPECT_EQ(linesOf(checkDataFiles(folder.text())),
            path + ": the file is too large: " + std::to_string(GetParam()) +
                " bytes, and no more than 268435456 are checked\n");
}

INSTANTIATE_TEST_SUITE_P(All, LargeDataFiles,
                         testing::Values((std::uintmax_t{256} << 20U) + 1, std::uintmax_t{1} << 32U,
                                         std::uintmax_t{5} << 30U));

TEST(DataFileCheck, TextThatIsNotWellFormedIsReportedWithItsLine) {
  EXPECT_EQ(faultsOf("excludetests.xml", "<vor version='1'>\n<test name='x'>\n</vor>").find(":3: "),
            0u);
  EXPECT_EQ(faultsOf("excludetests.xml", ""), ": the file is empty\n");
}

TEST(DataFileCheck, OnlyWhatEndsTheReadingCutsAFile) {
  const TemporaryFolder folder;
  folder.write("excludetests.xml", "<vor version='1'>\n<tset/><test>\n</vor>");
  const std::vector<substitute::Problem> problems = checkDataFiles(folder.text());
  ASSERT_EQ(problems.size(), 3U) << linesOf(problems);
  EXPECT_FALSE(problems[0].isCut);
  EXPECT_FALSE(problems[1].isCut);
  EXPECT_TRUE(problems[2].isCut);
  folder.write("excludetests.xml", "");
  EXPECT_TRUE(checkDataFiles(folder.text()).at(0).isCut);
}

}  // namespace
}  // namespace cmpinsp
