#include <gtest/gtest.h>

#include "tests/results/VendorFile.h"
#include "tests/support/ForeignCapital.h"

namespace support {
namespace {

struct GoodFile {
  const char* name;
  std::string file;
  const char* table;
};

/// `content` as that of a test "t".
std::string testOf(const std::string& content) {
  return "<diaganalysis version='1'><diagnostictest name='t'>" + content +
         "</diagnostictest></diaganalysis>";
}

/// `content` as that of a result "ok" of a test "t".
std::string resultOf(const std::string& content) {
  return testOf("<result state='ok'>" + content + "</result>");
}

const GoodFile kGoodFiles[] = {
    {"empty", "", ""},
    {"root alone", "<diaganalysis version='1.0'/>", ""},
    {"test without a result", testOf(""), ""},
    {"a whole record",
     "<?xml version='1.0'?>\n"
     "<diaganalysis version='1.0'>\n"
     "  <diagnostictest name='zel:mem:diag service'>\n"
     "    <result state='failed'>\n"
     "      <errorcode>0x0001</errorcode>\n"
     "      <msg>Memory test failed.</msg>\n"
     "      <msg>A memory module reported errors.</msg>\n"
     "      <action priority='1'>Reseat the memory module.</action>\n"
     "      <action priority='2'>Replace it.</action>\n"
     "      <oemaction priority='1'>Contact your service provider.</oemaction>\n"
     "    </result>\n"
     "  </diagnostictest>\n"
     "</diaganalysis>\n",
     "zel:mem:diag service/zel:mem:diag service [failed] 0x0001: "
     "Memory test failed.|A memory module reported errors.|; "
     "1=Reseat the memory module.| 2=Replace it.|\n"},
    {"two results of a test, in file order",
     testOf("<result state='b'><errorcode>1</errorcode><msg>x</msg></result>"
            "<result state='a'><msg>y</msg></result>"),
     "t/t [b] 1: x|;\nt/t [a] : y|;\n"},
    {"nothing carries over into the next result",
     testOf("<result state='a'><errorcode>1</errorcode><msg>m</msg><action>d</action></result>"
            "<result/>"),
     "t/t [a] 1: m|; =d|\nt/t [] : ;\n"},
    {"keys in byte order, equal keys in file order",
     "<diaganalysis version='1'><diagnostictest name='b'><result state='1'/></diagnostictest>"
     "<diagnostictest name='a'><result state='2'/></diagnostictest>"
     "<diagnostictest name='b'><result state='0'/></diagnostictest>"
     "<diagnostictest name='a'><result state='1'/></diagnostictest>"
     "<diagnostictest name='a b'><result state='9'/></diagnostictest>"
     "<diagnostictest name='b'><result state='3'/></diagnostictest></diaganalysis>",
     "a/a [2] : ;\na/a [1] : ;\na b/a b [9] : ;\nb/b [1] : ;\nb/b [0] : ;\nb/b [3] : ;\n"},
    {"element names in any case",
     "<DIAGANALYSIS version='1'><DiagnosticTest name='t'><RESULT state='s'>"
     "<ErrorCode>1</ErrorCode><MSG>m</MSG><Action priority='1'>d</Action></RESULT>"
     "</DiagnosticTest></DIAGANALYSIS>",
     "t/t [s] 1: m|; 1=d|\n"},
    {"names, states and priorities are lowered",
     "<diaganalysis version='1'><diagnostictest name='ZEL:Mem'><result state='Failed'>"
     "<action priority='HIGH'>Do</action></result></diagnostictest></diaganalysis>",
     "zel:mem/zel:mem [failed] : ; high=Do|\n"},
    {"texts keep their case", resultOf("<errorcode>0xAB</errorcode><msg>A Line</msg>"),
     "t/t [ok] 0xAB: A Line|;\n"},
    {"blanks around texts go, blanks within stay",
     resultOf("<errorcode> 0x1\t</errorcode><msg>\r\n two  words\n </msg>"),
     "t/t [ok] 0x1: two  words|;\n"},
    {"a child element splits a text", resultOf("<action>Reseat <x/> the module</action>"),
     "t/t [ok] : ; =Reseatthe module|\n"},
    {"a comment does not split a text", resultOf("<msg>Reseat <!-- x --> the module</msg>"),
     "t/t [ok] : Reseat  the module|;\n"},
    {"a processing instruction does not split a text", resultOf("<msg>one <?x y?>two</msg>"),
     "t/t [ok] : one two|;\n"},
    {"CDATA is text", resultOf("<msg>a <![CDATA[<b> & c]]></msg>"), "t/t [ok] : a <b> & c|;\n"},
    {"references are resolved", resultOf("<msg>a &lt;&amp;&#65;&gt;</msg>"),
     "t/t [ok] : a <&A>|;\n"},
    {"an internal entity is expanded",
     "<!DOCTYPE diaganalysis [<!ENTITY e 'an entity'>]>" + resultOf("<msg>&e;</msg>"),
     "t/t [ok] : an entity|;\n"},
    {"an empty line and an empty code", resultOf("<errorcode/><msg/><msg> </msg>"),
     "t/t [ok] : ||;\n"},
    {"the last code counts", resultOf("<errorcode>1</errorcode><errorcode>2</errorcode>"),
     "t/t [ok] 2: ;\n"},
    {"an empty code takes the one before it away", resultOf("<errorcode>1</errorcode><errorcode/>"),
     "t/t [ok] : ;\n"},
    {"an action without priority", resultOf("<action>d</action>"), "t/t [ok] : ; =d|\n"},
    {"other attributes of an action", resultOf("<action Priority='2' x='y'>d</action>"),
     "t/t [ok] : ; =d|\n"},
    {"an action without text", resultOf("<action priority='1'/>"), "t/t [ok] : ; 1=|\n"},
    {"a priority is for one action", resultOf("<action priority='1'>a</action><action>b</action>"),
     "t/t [ok] : ; 1=a| =b|\n"},
    {"either quote",
     "<diaganalysis version=\"1\"><diagnostictest name=\"it's\"><result/>"
     "</diagnostictest></diaganalysis>",
     "it's/it's [] : ;\n"},
    {"the other kind of action is nothing", resultOf("<oemaction priority='1'>x</oemaction>"),
     "t/t [ok] : ;\n"},
    {"its priority is not the next action's",
     resultOf("<oemaction priority='9'>x</oemaction><action>d</action>"), "t/t [ok] : ; =d|\n"},
    {"a text directly in the result goes to what ends next", resultOf("stray<msg>line</msg>"),
     "t/t [ok] : strayline|;\n"},
    {"a text that nobody took goes to the next test",
     "<diaganalysis version='1'><diagnostictest name='a'><result>stray</result></diagnostictest>"
     "<diagnostictest name='b'><result><msg>line</msg></result></diagnostictest></diaganalysis>",
     "a/a [] : ;\nb/b [] : strayline|;\n"},
    {"a text of the other kind of action goes with it",
     resultOf("stray<oemaction>x</oemaction><msg>line</msg>"), "t/t [ok] : line|;\n"},
    {"elements of a test outside its result belong to the next one",
     testOf("<msg>m</msg><errorcode>1</errorcode><action>d</action><result state='s'/>"),
     "t/t [s] 1: m|; =d|\n"},
};

TEST(ResultParser, ReadsWhatTheFileSays) {
  for (const GoodFile& good : kGoodFiles) {
    EXPECT_EQ(parseVendorFile(good.file).table, good.table) << good.name;
  }
}

TEST(ResultParser, AGoodFileGivesNoReport) {
  EXPECT_EQ(parseVendorFile(kGoodFiles[3].file).reports, std::vector<std::string>());
  EXPECT_EQ(parseVendorFile(kGoodFiles[3].file, true).reports, std::vector<std::string>());
}

TEST(ResultParser, AnOEMBuildKeepsTheActionsOfItsOwn) {
  const GoodFile files[] = {
      {"both kinds",
       resultOf("<action priority='1'>plain</action><oemaction priority='A'>oem</oemaction>"),
       "t/t [ok] : ; a=oem|\n"},
      {"a text of the plain kind goes with it", resultOf("<action>x</action><msg>line</msg>"),
       "t/t [ok] : line|;\n"},
      {"the plain kind's priority is not the next one's",
       resultOf("<action priority='1'>x</action><oemaction>y</oemaction>"), "t/t [ok] : ; =y|\n"},
      {"in any case", resultOf("<OEMAction priority='1'>y</OEMAction><ACTION>x</ACTION>"),
       "t/t [ok] : ; 1=y|\n"}};
  for (const GoodFile& good : files) {
    EXPECT_EQ(parseVendorFile(good.file, true).table, good.table) << good.name;
  }
}

TEST(ResultParser, TheKindOfTheBuildIsAskedOnceAtConstruction) {
  World world;
  OpenResultParser parser;
  world.os.isOEM = true;
  std::string file = resultOf("<action>plain</action><oemaction>oem</oemaction>");
  parser.Parse(file.data());
  EXPECT_EQ(describe(parser.GetVendorMessages()), "t/t [ok] : ; =plain|\n");
  EXPECT_EQ(world.journal.all(), lines({"TOSSpecific.isOEMBuild()"}));
}

TEST(ResultParser, WhiteSpaceAroundEachChunkGoesAndTheRestIsJoined) {
  World world;
  OpenResultParser parser;
  parser.StartElement("diagnostictest", {{"name", "t"}});
  parser.StartElement("result", {});
  parser.StartElement("action", {});
  for (const char* chunk : {"\t\v Reseat \r\n", " \f", "", "the module"}) {
    parser.CharacterData(chunk);
  }
  parser.EndElement("action");
  parser.EndElement("result");
  EXPECT_EQ(describe(parser.GetVendorMessages()), "t/t [] : ; =Reseatthe module|\n");
}

// Catches element names and states that are lowered by the host's language. A test's name is: so is
// the name that it is looked up by.
TEST(ResultParser, TheWordsOfTheFormatAreTheSameInEveryLocale) {
  const ForeignCapital turkish('I');
  const Parsed parsed = parseVendorFile(
      "<DIAGANALYSIS version='1'><DIAGNOSTICTEST name='DISK'><RESULT state='INCOMPLETE'>"
      "<ACTION priority='I'>Wait.</ACTION></RESULT></DIAGNOSTICTEST></DIAGANALYSIS>");
  EXPECT_EQ(parsed.table, "d\xFDsk/d\xFDsk [incomplete] : ; i=Wait.|\n");
  EXPECT_EQ(parsed.reports, std::vector<std::string>());
}

TEST(ResultParser, TheTableCanBeCopiedAndTaken) {
  World world;
  OpenResultParser parser;
  std::string file = resultOf("<msg>m</msg>");
  parser.Parse(file.data());
  EXPECT_EQ(describe(parser.GetVendorMessages()), "t/t [ok] : m|;\n");
  EXPECT_EQ(describe(parser.GetVendorMessages()), "t/t [ok] : m|;\n");
  EXPECT_EQ(describe(std::move(parser).GetVendorMessages()), "t/t [ok] : m|;\n");
}

TEST(ResultParser, AByteAboveSevenBitsIsKept) {
  EXPECT_EQ(parseVendorFile(resultOf("<msg>caf\xC3\xA9</msg>")).table,
            "t/t [ok] : caf\xC3\xA9|;\n");
}

}  // namespace
}  // namespace support
