#include <gtest/gtest.h>

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

TEST(DataFileCheck, TextThatIsNotWellFormedIsReportedWithItsLine) {
  EXPECT_EQ(faultsOf("excludetests.xml", "<vor version='1'>\n<test name='x'>\n</vor>").find(":3: "),
            0u);
  EXPECT_EQ(faultsOf("excludetests.xml", ""), ": the file is empty\n");
}

}  // namespace
}  // namespace cmpinsp
