#include <gtest/gtest.h>

#include "engine/plan/PlanError.h"
#include "engine/plan/TestNames.h"
#include "tests/engine/plan/SampleOffers.h"

namespace engine {
namespace {

using Places = std::vector<std::size_t>;

Places found(const std::vector<OfferedTest>& offer, const std::string& name) {
  return TestNames(offer).find(name, false).tests;
}

std::string complaint(const std::vector<OfferedTest>& offer, const std::string& name) {
  try {
    TestNames(offer).find(name, false);
    return "found";
  } catch (const PlanError& error) {
    return error.what();
  }
}

struct NameRow {
  const char* meaning;
  const char* name;
  Places tests;
  bool isDirect;
};

class Names : public testing::TestWithParam<NameRow> {};

TEST_P(Names, MeanTheirTests) {
  const auto offer = smallMachine();
  const NamedMatch match = TestNames(offer).find(GetParam().name, false);
  EXPECT_EQ(match.tests, GetParam().tests);
  EXPECT_EQ(match.isDirect, GetParam().isDirect);
}

const NameRow kNameRows[] = {
    {"AnIdentifier", "Fan Test,fan1,The fan1", {2}, true},
    {"AService", "Memory Test", {0}, true},
    {"ADevice", "disk0", {3, 4}, false},
    {"AGlobOfServices", "Disk*", {3, 4}, false},
    {"AGlobOfIdentifiers", "*,fan?,*", {1, 2}, false},
    {"AGlobWithSet", "*,fan[!0],*", {2}, false},
    {"All", "*", {0, 1, 2, 3, 4}, false},
};
INSTANTIATE_TEST_SUITE_P(All, Names, testing::ValuesIn(kNameRows),
                         [](const auto& row) { return std::string(row.param.meaning); });

TEST(TestNames, AServiceWithSeveralTestsIsRefusedWithThem) {
  EXPECT_EQ(complaint(smallMachine(), "Fan Test"),
            "ambiguous test \"Fan Test\"; it may be \"Fan Test,fan0,The fan0\", "
            "\"Fan Test,fan1,The fan1\"");
}

TEST(TestNames, AServiceMeansItsTestsOnEveryDeviceWhereThatIsMeant) {
  const auto offer = smallMachine();
  const NamedMatch match = TestNames(offer).find("Fan Test", true);
  EXPECT_EQ(match.tests, (Places{1, 2}));
  EXPECT_TRUE(match.isDirect);
}

TEST(TestNames, AnUnknownNameIsRefusedWithWhatIsCloseToIt) {
  EXPECT_EQ(complaint(smallMachine(), "Memory Tst"),
            "unknown test \"Memory Tst\"; close to it: \"Memory Test\"");
  EXPECT_EQ(complaint(smallMachine(), "fan7"),
            "unknown test \"fan7\"; close to it: \"fan0\", \"fan1\"");
}

TEST(TestNames, AnUnknownNameFarFromAllPointsAtTheList) {
  EXPECT_EQ(complaint(smallMachine(), "zzzzzzzzzz"),
            "unknown test \"zzzzzzzzzz\"; diags list names the tests");
}

TEST(TestNames, APatternThatFitsNothingSaysSo) {
  EXPECT_EQ(complaint(smallMachine(), "zzzzzzzzzz*"),
            "no test fits \"zzzzzzzzzz*\"; diags list names the tests");
}

TEST(TestNames, AnEmptyNameIsUnknownEvenWhereATestHasNoFields) {
  OfferedTest nameless;
  nameless.identifier = "nameless";
  EXPECT_EQ(complaint({nameless}, ""), "unknown test \"\"; diags list names the tests");
  EXPECT_FALSE(TestNames({nameless}).has(""));
}

TEST(TestNames, PartOfANameIsNotEnough) { EXPECT_FALSE(TestNames(smallMachine()).has("Memory")); }

TEST(TestNames, ATestThatIsOfferedTwiceIsOneTest) {
  const std::vector<OfferedTest> twice = {offered("Fan Test", "fan0"), offered("Fan Test", "fan0")};
  EXPECT_EQ(found(twice, "Fan Test"), Places{0});
  EXPECT_EQ(found(twice, "*"), Places{0});
}

TEST(TestNames, ANameThatCannotBeTypedIsGivenAsItIsPrinted) {
  const std::vector<OfferedTest> odd = {offered("A\x1b", "d\x1b")};
  for (const char* name : {"A\\x1b,d\\x1b,The d\\x1b", "A\\x1b", "d\\x1b", "A\\x1b*"}) {
    EXPECT_EQ(found(odd, name), Places{0}) << name;
  }
}

// Catches a test that passes itself off for another one by a name that is printed like it.
TEST(TestNames, AnIdentifierMeansItselfBeforeWhatIsPrintedLikeIt) {
  EXPECT_EQ(found({offered("A\x1b", "1"), offered("A\\x1b", "1")}, "A\\x1b,1,The 1"), Places{1});
}

TEST(TestNames, SignsOfPatternsInANameMeanThemselvesFirst) {
  EXPECT_EQ(found({offered("Test 1", "a"), offered("Test ?", "b")}, "Test ?"), Places{1});
}

TEST(TestNames, AServiceCountsBeforeADeviceOfThatName) {
  EXPECT_EQ(found({offered("other", "disk"), offered("disk", "d0")}, "disk"), Places{1});
}

TEST(TestNames, HasWhatItFinds) {
  const auto offer = smallMachine();
  const TestNames names(offer);
  for (const NameRow& row : kNameRows) EXPECT_TRUE(names.has(row.name)) << row.name;
  EXPECT_TRUE(names.has("Fan Test"));
  EXPECT_FALSE(names.has("zzzz*"));
}

}  // namespace
}  // namespace engine
