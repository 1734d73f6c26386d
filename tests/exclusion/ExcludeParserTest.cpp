#include <gtest/gtest.h>

#include <algorithm>

#include "exclusion/ExcludeParser.h"
#include "tests/exclusion/ParserInput.h"
#include "tests/runner/Row.h"
#include "tests/support/ForeignCapital.h"
#include "tests/support/World.h"

namespace support {
namespace {

using Names = std::vector<std::string>;

const char kNoVersion[] = "No Version Specified for VOR identifier";
const char kNoName[] = "No Name Specified for Counter identifier";
const char kNested[] = "Expecting End of Counter Before Beginning New Counter.";
const char kAttribute[] = "Unrecognized Attribute.";
const char kUnknown[] = "Unrecognized identifier";

/// A problem as it is logged.
std::string at(int line, const std::string& message) {
  return error("TPrebootTest Parser line " + std::to_string(line) + ":" + message) + "\n";
}

struct File : Row {
  std::string text;
  Names names;
  std::string log;
};

/// What a parser makes of `text`; the log is in the journal.
Names namesIn(const std::string& text) {
  diagsrunner::ExcludeParser parser;
  ParserInput input(text);
  parser.Parse(input.data());
  return parser.GetExcludedTests();
}

class AnExclusionList : public testing::TestWithParam<File> {};

TEST_P(AnExclusionList, IsReadAsFarAsItIsOne) {
  World world;
  EXPECT_EQ(namesIn(GetParam().text), GetParam().names);
  EXPECT_EQ(world.journal.all(), GetParam().log);
}

const File kGoodFiles[] = {
    {{"OfTwoTests"},
     "<vor version='1.0'>\n  <test name='zel:example test:diag service'/>\n"
     "  <test name='fio:another test'/>\n</vor>\n",
     {"zel:example test:diag service", "fio:another test"},
     ""},
    {{"WithoutTests"}, "<vor version='1.0'></vor>", {}, ""},
    {{"WithEndTagsAndText"},
     "<vor version='1'>text<test name='a'>more text</test> and <test name='b'>\n</test></vor>",
     {"a", "b"},
     ""},
    {{"WithDoubleQuotes"}, "<vor version=\"1\"><test name=\"a\"/></vor>", {"a"}, ""},
    {{"WithElementsInAnyCase"},
     "<VOR version='1'><Test name='a'/><TEST name='b'></TEST><tEsT name='c'/></VOR>",
     {"a", "b", "c"},
     ""},
    {{"KeepsNamesAsTheyAreWritten"},
     "<vor version='1'><test name='  Zel:MEM Test  '/></vor>",
     {"  Zel:MEM Test  "},
     ""},
    {{"KeepsTheOrderAndDuplicates"},
     "<vor version='1'><test name='b'/><test name='a'/><test name='b'/></vor>",
     {"b", "a", "b"},
     ""},
    {{"ResolvesReferences"},
     "<vor version='1'><test name='a &amp; b &lt;&#65;&gt; &apos;&quot;'/></vor>",
     {"a & b <A> '\""},
     ""},
    {{"ResolvesItsOwnEntities"},
     "<!DOCTYPE vor [<!ENTITY v 'zel'>]><vor version='1'><test name='&v;:a'/></vor>",
     {"zel:a"},
     ""},
    {{"WithADeclarationCommentsAndInstructions"},
     "<?xml version='1.0' encoding='UTF-8'?>\n<!-- list --><?tool x?>\n"
     "<vor version='1'><!-- <test name='no'/> --><test name='a'/><?tool y?></vor>",
     {"a"},
     ""},
    {{"WithAByteOrderMark"}, "\xEF\xBB\xBF<vor version='1'><test name='a'/></vor>", {"a"}, ""},
    {{"WithNamesOutsideAscii"},
     "<vor version='1'><test name='Pr\xC3\xBC"
     "fung'/></vor>",
     {"Pr\xC3\xBC"
      "fung"},
     ""},
    {{"WithCharacterDataSections"},
     "<vor version='1'><![CDATA[<test/>]]><test name='a'/></vor>",
     {"a"},
     ""},
    {{"WithMoreAttributesOfTheRoot"}, "<vor date='x' version='1' zone='y'/>", {}, ""},
    {{"WithAttributesAfterTheName"}, "<vor version='1'><test name='a' zone='y'/></vor>", {"a"}, ""},
    {{"WithTestsOutsideTheRoot"}, "<test name='a'/>", {"a"}, ""},
    {{"Empty"}, "", {}, ""}};

INSTANTIATE_TEST_SUITE_P(Good, AnExclusionList, testing::ValuesIn(kGoodFiles), RowName());

const File kOddFiles[] = {
    {{"WithoutAVersion"}, "<vor><test name='a'/></vor>", {"a"}, at(1, kNoVersion)},
    {{"WithAVersionInCapitals"}, "<vor Version='1'/>", {}, at(1, kNoVersion)},
    {{"WithATestWithoutAName"},
     "<vor version='1'>\n<test/>\n<test name='b'/></vor>",
     {"", "b"},
     at(2, kNoName)},
    {{"WithANameInCapitals"},
     "<vor version='1'><test NAME='a'/></vor>",
     {""},
     at(1, kAttribute) + at(1, kNoName)},
    {{"WithAnEmptyName"}, "<vor version='1'><test name=''/></vor>", {""}, ""},
    {{"WithAttributesBeforeTheName"},
     "<vor version='1'><test id='1' name='a' kind='2'/></vor>",
     {"a"},
     at(1, kAttribute) + at(1, kAttribute)},
    {{"WithAnAttributeThatSortsBehindTheNameButIsWrittenBeforeIt"},
     "<vor version='1'><test zone='1' name='a'/></vor>",
     {"a"},
     ""},
    {{"WithAnUnknownAttributeAlone"},
     "<vor version='1'><test id='a'/></vor>",
     {""},
     at(1, kAttribute) + at(1, kNoName)},
    {{"WithATestInATest"},
     "<vor version='1'>\n<test name='outer'>\n<test name='inner'/>\n</test>\n</vor>",
     {"outer", ""},
     at(3, kNested) + at(3, kNoName)},
    {{"WithATestWithAttributesInATest"},
     "<vor version='1'><test name='outer'><test a='1' name='inner' z='2'/></test></vor>",
     {"outer", ""},
     at(1, kAttribute) + at(1, kNested) + at(1, kAttribute) + at(1, kNoName)},
    {{"WithATestInATestWithoutAName"},
     "<vor version='1'><test><test name='inner'/></test></vor>",
     {"inner", ""},
     at(1, kNoName)},
    {{"WithARootInATest"},
     "<vor version='1'><test name='lost'><vor version='2'/></test></vor>",
     {""},
     ""},
    {{"WithARootWithoutAVersionInATest"},
     "<vor version='1'><test name='kept'><vor/></test></vor>",
     {"kept"},
     at(1, kNoVersion)},
    {{"WithUnknownElements"},
     "<vor version='1'>\n<counter>\n<test name='a'/>\n</counter>\n</vor>",
     {"a"},
     at(2, kUnknown) + at(4, kUnknown)},
    {{"WithAnUnknownEmptyElement"},
     "<vor version='1'><counter name='x'/></vor>",
     {},
     at(1, kUnknown) + at(1, kUnknown)},
    {{"WithAnotherRoot"},
     "<list>\n<test name='a'/>\n</list>",
     {"a"},
     at(1, kUnknown) + at(3, kUnknown)}};

INSTANTIATE_TEST_SUITE_P(Odd, AnExclusionList, testing::ValuesIn(kOddFiles), RowName());

/// A file that is not well-formed: what came before the fault stands, and one line of the log,
/// which begins as told, ends the list.
struct BrokenFile : Row {
  std::string text;
  Names names;
  int line;
};

std::string withZeros(const std::string& before, const std::string& after) {
  return before + std::string(3, '\0') + after;
}

const BrokenFile kBrokenFiles[] = {
    {{"NoXmlAtAll"}, "not xml", {}, 1},
    {{"BlanksAlone"}, " \n\n ", {}, 3},
    {{"TwoRoots"}, "<vor version='1'><test name='a'/></vor>\n<vor version='1'/>", {"a"}, 2},
    {{"TheWrongEndTag"}, "<vor version='1'>\n<test name='a'/>\n<test name='b'></vor>", {"a"}, 3},
    {{"EndTagInAnotherCase"}, "<vor version='1'>\n<test name='a'></Test></vor>", {}, 2},
    {{"AnUnquotedValue"}, "<vor version='1'><test name='a'/>\n<test name=b/></vor>", {"a"}, 2},
    {{"TheSameAttributeTwice"},
     "<vor version='1'><test name='a'/>\n<test name='b' name='c'/></vor>",
     {"a"},
     2},
    {{"AnUnknownEntity"}, "<vor version='1'><test name='a'/>\n<test name='&b;'/></vor>", {"a"}, 2},
    {{"AnUnknownEncoding"}, "<?xml version='1.0' encoding='klingon'?>\n<vor version='1'/>", {}, 1},
    {{"BytesThatAreNoUtf8"},
     "<vor version='1'><test name='a'/>\n<test name='\xFF\xFE'/></vor>",
     {"a"},
     2},
    {{"CutOffInTheRoot"}, "<vor version='1'><test name='a'/>\n", {"a"}, 2},
    {{"CutOffInATag"}, "<vor version='1'><test name='a'/>\n<test na", {"a"}, 2},
    {{"CutOffInAValue"}, "<vor version='1'><test name='a'/>\n<test name='b", {"a"}, 2},
    {{"CutOffAfterAStartTag"}, "<vor version='1'><test name='a'>", {}, 1},
    {{"CutOffInAComment"}, "<vor version='1'><test name='a'/>\n<!-- <test name='b'/>", {"a"}, 2},
    {{"ZerosInTheMiddle"},
     withZeros("<vor version='1'><test name='a'/>\n", "<test name='b'/></vor>"),
     {"a"},
     2},
    {{"ZerosInAValue"}, withZeros("<vor version='1'><test name='a", "b'/></vor>"), {}, 1}};

class ABrokenList : public testing::TestWithParam<BrokenFile> {};

TEST_P(ABrokenList, KeepsWhatCameBeforeAndReportsTheLine) {
  World world;
  EXPECT_EQ(namesIn(GetParam().text), GetParam().names);
  const std::string log = world.journal.all();
  const std::string start =
      "log 0 \"TPrebootTest Parser line " + std::to_string(GetParam().line) + ":";
  EXPECT_EQ(log.substr(0, start.size()), start) << log;
  EXPECT_GT(log.size(), start.size() + 3) << "says what is wrong: " << log;
  EXPECT_EQ(log.find('\n'), log.size() - 1) << "one line: " << log;
}

INSTANTIATE_TEST_SUITE_P(, ABrokenList, testing::ValuesIn(kBrokenFiles), RowName());

TEST(ExcludeParser, BytesBehindTheEndOfTheDocumentThatAreZeroAreNoFault) {
  World world;
  EXPECT_EQ(namesIn(withZeros("<vor version='1'><test name='a'/></vor>", "")), Names{"a"});
  EXPECT_EQ(world.journal.all(), "");
}

TEST(ExcludeParser, NothingButZerosReportsNothing) {
  World world;
  EXPECT_EQ(namesIn(std::string(1000, '\0')), Names{});
  EXPECT_EQ(world.journal.all(), "");
}

TEST(ExcludeParser, EveryCutGivesABeginningOfTheList) {
  World world;
  const std::string whole = "<vor version='1'>\n<test name='a'/><test name='b'>x</test></vor>";
  const Names names = {"a", "b"};
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Names found = namesIn(whole.substr(0, size));
    ASSERT_LE(found.size(), names.size()) << size;
    EXPECT_TRUE(std::equal(found.begin(), found.end(), names.begin())) << size;
  }
}

TEST(ExcludeParser, TheExpansionOfEntitiesIsBounded) {
  World world;
  const Names names =
      namesIn(withBillionLetters("<vor version='1'><test name='a'/><test name='&e8;'/></vor>"));
  EXPECT_EQ(names, Names{"a"});
  const std::string log = world.journal.log();
  EXPECT_EQ(log.substr(0, 34), "log 0 \"TPrebootTest Parser line 1:");
  EXPECT_NE(log.find("amplification"), std::string::npos) << log;
}

TEST(ExcludeParser, ExternalEntitiesAreNotRead) {
  World world;
  const Names names = namesIn(
      "<!DOCTYPE vor [<!ENTITY x SYSTEM '/etc/passwd'>]>"
      "<vor version='1'>&x;<test name='a'/></vor>");
  EXPECT_EQ(names, Names{"a"});
}

// Catches element names that are lowered by the host's language: every exclusion would be lost to a
// letter that is another one there.
TEST(ExcludeParser, ElementNamesAreThoseOfTheFormatInEveryLocale) {
  for (const char capital : {'V', 'T'}) {
    const ForeignCapital foreign(capital);
    World world;
    EXPECT_EQ(namesIn("<VOR version='1'><TEST name='DISK'/></VOR>"), Names{"DISK"}) << capital;
    EXPECT_EQ(world.journal.log(), "") << capital;
  }
}

TEST(ExcludeParser, TheNamesThatItGivesAreACopy) {
  World world;
  diagsrunner::ExcludeParser parser;
  ParserInput input("<vor version='1'><test name='a'/></vor>");
  parser.Parse(input.data());
  parser.GetExcludedTests().clear();
  EXPECT_EQ(parser.GetExcludedTests(), Names{"a"});
}

TEST(ExcludeParser, LogsNothingWithoutALogger) {
  World world;
  world.logger.isAbsent = true;
  EXPECT_EQ(namesIn("<vor><test/></vor>"), Names{""});
  EXPECT_EQ(world.journal.all(), "");
}

}  // namespace
}  // namespace support
