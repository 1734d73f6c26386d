#include <gtest/gtest.h>

#include "exclusion/FilterDiagsParser.h"
#include "tests/exclusion/ParserInput.h"
#include "tests/runner/Row.h"
#include "tests/support/ForeignCapital.h"
#include "tests/support/World.h"

namespace support {
namespace {

using diagsrunner::ExclusionMatrix;

struct File : Row {
  std::string text;
  ExclusionMatrix matrix;
};

/// What a parser makes of `text`.
ExclusionMatrix matrixIn(const std::string& text) {
  diagsrunner::FilterDiagsParser parser;
  ParserInput input(text);
  parser.Parse(input.data());
  return parser.GetExclusionMatrix();
}

class AnExclusionMatrix : public testing::TestWithParam<File> {};

TEST_P(AnExclusionMatrix, IsReadAsFarAsItIsOneWithoutAWord) {
  World world;
  EXPECT_EQ(matrixIn(GetParam().text), GetParam().matrix);
  EXPECT_EQ(world.journal.all(), "");
}

const File kGoodFiles[] = {
    {{"OfOneMachine"},
     "<exclusions>\n  <biosid name='abe1xx'>\n"
     "    <diagnostictest name='ExampleDiagnosticService'/>\n"
     "    <diagnostictest name='zel:example test'/>\n  </biosid>\n</exclusions>\n",
     {{"abe1xx", {"ExampleDiagnosticService", "zel:example test"}}}},
    {{"OfTwoMachines"},
     "<x><biosid name='b'><diagnostictest name='1'/></biosid>"
     "<biosid name='a'><diagnostictest name='2'/></biosid></x>",
     {{"a", {"2"}}, {"b", {"1"}}}},
    {{"WithAnyRoot"}, "<biosid name='a'><diagnostictest name='1'/></biosid>", {{"a", {"1"}}}},
    {{"WithElementsInAnyCase"},
     "<x><BIOSID name='a'><DiagnosticTest name='1'/></BIOSID></x>",
     {{"a", {"1"}}}},
    {{"KeepsValuesAsTheyAreWritten"},
     "<x><biosid name=' ABE1 '><diagnostictest name=' Zel:MEM '/></biosid></x>",
     {{" ABE1 ", {" Zel:MEM "}}}},
    {{"KeepsTheOrderAndDuplicatesOfFragments"},
     "<x><biosid name='a'><diagnostictest name='2'/><diagnostictest name='1'/>"
     "<diagnostictest name='2'/></biosid></x>",
     {{"a", {"2", "1", "2"}}}},
    {{"IgnoresText"},
     "<x>text<biosid name='a'>more<diagnostictest name='1'>text</diagnostictest></biosid></x>",
     {{"a", {"1"}}}},
    {{"OfAMachineWithoutTests"}, "<x><biosid name='a'/></x>", {{"a", {}}}},
    {{"WithoutMachines"}, "<x/>", {}},
    {{"ResolvesReferences"},
     "<x><biosid name='a&amp;b'><diagnostictest name='&quot;B&quot;'/></biosid></x>",
     {{"a&b", {"\"B\""}}}},
    {{"WithCommentsAndInstructions"},
     "<?xml version='1.0'?><!-- c --><x><?t x?><biosid name='a'><!-- c --></biosid></x>",
     {{"a", {}}}},
    {{"Empty"}, "", {}}};

INSTANTIATE_TEST_SUITE_P(Good, AnExclusionMatrix, testing::ValuesIn(kGoodFiles), RowName());

const File kOddFiles[] = {
    {{"WithAMachineWithoutAName"},
     "<x><biosid><diagnostictest name='1'/></biosid></x>",
     {{"", {"1"}}}},
    {{"WithATestWithoutAName"},
     "<x><biosid name='a'><diagnostictest/></biosid></x>",
     {{"a", {""}}}},
    {{"WithAttributesInAnotherCase"},
     "<x><biosid Name='a'><diagnostictest NAME='1'/></biosid></x>",
     {{"", {""}}}},
    {{"WithUnknownAttributesAroundTheName"},
     "<x><biosid id='i' name='a' z='z'><diagnostictest z='z' name='1' id='i'/></biosid></x>",
     {{"a", {"1"}}}},
    {{"WithTheSameMachineTwice"},
     "<x><biosid name='a'><diagnostictest name='1'/></biosid>"
     "<biosid name='a'><diagnostictest name='2'/></biosid>"
     "<biosid name='b'><diagnostictest name='3'/></biosid></x>",
     {{"a", {"1"}}, {"b", {"3"}}}},
    {{"WithMachinesThatDifferInCase"},
     "<x><biosid name='a'><diagnostictest name='1'/></biosid>"
     "<biosid name='A'><diagnostictest name='2'/></biosid></x>",
     {{"A", {"2"}}, {"a", {"1"}}}},
    {{"WithTwoMachinesWithoutAName"},
     "<x><biosid><diagnostictest name='1'/></biosid><biosid/></x>",
     {{"", {"1"}}}},
    {{"WithUnknownElements"},
     "<x><y/><biosid name='a'><z><diagnostictest name='1'/></z></biosid></x>",
     {{"a", {"1"}}}},
    {{"WithATestBeforeTheMachines"},
     "<x><diagnostictest name='0'/><biosid name='a'><diagnostictest name='1'/></biosid></x>",
     {{"a", {"0", "1"}}}},
    {{"WithATestBehindTheMachines"},
     "<x><biosid name='a'/><diagnostictest name='1'/></x>",
     {{"a", {}}}},
    {{"WithATestInATest"},
     "<x><biosid name='a'><diagnostictest name='outer'><diagnostictest name='inner'/>"
     "</diagnostictest></biosid></x>",
     {{"a", {"inner", ""}}}},
    {{"WithATestWithoutANameInATest"},
     "<x><biosid name='a'><diagnostictest name='outer'><diagnostictest/>"
     "</diagnostictest></biosid></x>",
     {{"a", {"outer", ""}}}},
    {{"WithAMachineInAMachine"},
     "<x><biosid name='outer'><diagnostictest name='1'/>"
     "<biosid name='inner'><diagnostictest name='2'/></biosid>"
     "<diagnostictest name='3'/></biosid></x>",
     {{"", {"3"}}, {"inner", {"1", "2"}}}}};

INSTANTIATE_TEST_SUITE_P(Odd, AnExclusionMatrix, testing::ValuesIn(kOddFiles), RowName());

const char kWhole[] = "<x><biosid name='a'><diagnostictest name='1'/></biosid>";

const File kBrokenFiles[] = {
    {{"NoXmlAtAll"}, "not xml", {}},
    {{"BlanksAlone"}, " \n ", {}},
    {{"TheWrongEndTag"}, std::string(kWhole) + "<biosid name='b'></x>", {{"a", {"1"}}}},
    {{"AnUnquotedValue"}, std::string(kWhole) + "<biosid name=b/></x>", {{"a", {"1"}}}},
    {{"TheSameAttributeTwice"},
     std::string(kWhole) + "<biosid name='b' name='c'/></x>",
     {{"a", {"1"}}}},
    {{"AnUnknownEntity"}, std::string(kWhole) + "<biosid name='&b;'/></x>", {{"a", {"1"}}}},
    {{"BytesThatAreNoUtf8"}, std::string(kWhole) + "<biosid name='\xFF'/></x>", {{"a", {"1"}}}},
    {{"CutOffAfterAMachine"}, kWhole, {{"a", {"1"}}}},
    {{"CutOffInAMachine"}, "<x><biosid name='a'><diagnostictest name='1'/>", {}},
    {{"CutOffInAValue"}, std::string(kWhole) + "<biosid name='b", {{"a", {"1"}}}},
    {{"CutOffAtZeros"},
     std::string(kWhole) + std::string(3, '\0') + "<biosid name='b'/></x>",
     {{"a", {"1"}}}},
    {{"OfZerosAlone"}, std::string(1000, '\0'), {}},
    {{"FollowedByZeros"}, std::string(kWhole) + "</x>" + std::string(3, '\0'), {{"a", {"1"}}}},
    {{"OfEntitiesThatExpandForEver"},
     withBillionLetters(std::string(kWhole) + "<biosid name='&e8;'/></x>"),
     {{"a", {"1"}}}}};

INSTANTIATE_TEST_SUITE_P(Broken, AnExclusionMatrix, testing::ValuesIn(kBrokenFiles), RowName());

/// Keeps what is reported to it, which the parser itself drops.
class OpenFilterDiagsParser : public diagsrunner::FilterDiagsParser {
 public:
  std::vector<std::string> reports;

 protected:
  void Error(const std::string& message) override { reports.push_back(message); }
};

struct Reported : Row {
  std::string text;
  std::vector<std::string> reports;
};

class AMatrixWithFaults : public testing::TestWithParam<Reported> {};

TEST_P(AMatrixWithFaults, ReportsEachOfThem) {
  World world;
  OpenFilterDiagsParser parser;
  ParserInput input(GetParam().text);
  parser.Parse(input.data());
  EXPECT_EQ(parser.reports, GetParam().reports);
}

const char kAttribute[] = "Unrecognized Attribute.";
const char kIdentifier[] = "Unrecognized identifier";

const Reported kReported[] = {
    {{"None"}, "<biosid name='x'><diagnostictest name='1'/></biosid>", {}},
    {{"AttributesBeforeTheNameOfAMachine"},
     "<biosid c='3' a='1' name='x' b='2'/>",
     {kAttribute, kAttribute, kAttribute}},
    {{"AttributesBehindTheNameAreNotVisited"}, "<biosid name='x' z='1'/>", {}},
    {{"AttributesBeforeTheNameOfATest"},
     "<biosid name='x'><diagnostictest a='1' b='2' name='1' o='3'/></biosid>",
     {kAttribute, kAttribute}},
    {{"AttributesWithoutAName"}, "<biosid Name='x' other='1'/>", {kAttribute, kAttribute}},
    {{"AnUnknownElementAtBothEnds"}, "<x/>", {kIdentifier, kIdentifier}}};

INSTANTIATE_TEST_SUITE_P(, AMatrixWithFaults, testing::ValuesIn(kReported), RowName());

TEST(FilterDiagsParser, EveryCutGivesNothingOrTheWholeMachine) {
  World world;
  const std::string whole = std::string(kWhole) + "</x>";
  const std::size_t endOfMachine = std::string(kWhole).size();
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const ExclusionMatrix wanted =
        size < endOfMachine ? ExclusionMatrix{} : ExclusionMatrix{{"a", {"1"}}};
    EXPECT_EQ(matrixIn(whole.substr(0, size)), wanted) << size;
  }
}

// Catches element names that are lowered by the host's language.
TEST(FilterDiagsParser, ElementNamesAreThoseOfTheFormatInEveryLocale) {
  const ForeignCapital turkish('I');
  World world;
  EXPECT_EQ(matrixIn("<x><BIOSID name='ID'><DIAGNOSTICTEST name='DISK'/></BIOSID></x>"),
            (ExclusionMatrix{{"ID", {"DISK"}}}));
}

TEST(FilterDiagsParser, TheMatrixThatItGivesIsACopy) {
  World world;
  diagsrunner::FilterDiagsParser parser;
  ParserInput input("<biosid name='a'/>");
  parser.Parse(input.data());
  parser.GetExclusionMatrix().clear();
  EXPECT_EQ(parser.GetExclusionMatrix().size(), 1U);
}

}  // namespace
}  // namespace support
