#include <gtest/gtest.h>

#include "host/Messages.h"
#include "host/TestCatalogue.h"

namespace host {
namespace {

using Texts = std::vector<std::string>;

TestCatalogue machine() {
  return TestCatalogue({{"Memory Test,mem0,System Memory", "Memory Test"},
                        {"Fan Test,fan0,Front Fan", "Fan Test"},
                        {"Fan Test,fan1,Rear Fan", "Fan Test"},
                        {"nameless", ""}});
}

std::string complaintAbout(const std::string& name) {
  try {
    return "resolved to " + machine().resolve(name);
  } catch (const UsageError& error) {
    return error.what();
  }
}

TEST(TestCatalogue, AWholeIdentifierMeansItself) {
  EXPECT_EQ(machine().resolve("Fan Test,fan1,Rear Fan"), "Fan Test,fan1,Rear Fan");
}

TEST(TestCatalogue, AServiceNameThatOneTestHasMeansThatTest) {
  EXPECT_EQ(machine().resolve("Memory Test"), "Memory Test,mem0,System Memory");
}

TEST(TestCatalogue, AServiceNameThatTwoTestsHaveIsRefusedWithBoth) {
  EXPECT_EQ(complaintAbout("Fan Test"),
            "ambiguous test \"Fan Test\"; it may be \"Fan Test,fan0,Front Fan\", "
            "\"Fan Test,fan1,Rear Fan\"");
}

TEST(TestCatalogue, AnUnknownNameIsRefusedWithWhatIsCloseToIt) {
  EXPECT_EQ(complaintAbout("Memory Tst"),
            "unknown test \"Memory Tst\"; close to it: \"Memory Test\"");
}

TEST(TestCatalogue, AnUnknownNameFarFromAllPointsAtTheList) {
  EXPECT_EQ(complaintAbout("zzzzzzzzzz"),
            "unknown test \"zzzzzzzzzz\"; diags list names the tests");
}

TEST(TestCatalogue, AnEmptyNameIsUnknownEvenWhereATestHasNoFields) {
  EXPECT_EQ(complaintAbout(""), "unknown test \"\"; diags list names the tests");
}

TEST(TestCatalogue, PartOfAServiceNameIsNotEnough) {
  EXPECT_EQ(complaintAbout("Memory"),
            "unknown test \"Memory\"; close to it: \"Memory Test,mem0,System Memory\", "
            "\"Memory Test\"");
}

TEST(TestCatalogue, OneUnknownNameRefusesTheWholeLot) {
  EXPECT_THROW(machine().resolveAll({"Memory Test", "zzzzzzzzzz"}), UsageError);
}

TEST(TestCatalogue, ATestThatIsListedTwiceIsOneTest) {
  const TestCatalogue twice({{"A,1,x", "A"}, {"A,1,x", "A"}});
  EXPECT_EQ(twice.identifiers(), Texts{"A,1,x"});
  EXPECT_EQ(twice.resolve("A"), "A,1,x");
}

TEST(TestCatalogue, ANameThatCannotBeTypedIsGivenAsItWasPrinted) {
  const TestCatalogue odd({OfferedTest{"A\x1b,1,x", "A\x1b"}});
  EXPECT_EQ(odd.resolve("A\\x1b,1,x"), "A\x1b,1,x");
  EXPECT_EQ(odd.resolve("A\\x1b"), "A\x1b,1,x");
}

// Catches a test that passes itself off for another one by a name that is printed like it.
TEST(TestCatalogue, AnIdentifierMeansItselfBeforeWhatIsPrintedLikeIt) {
  const TestCatalogue odd({{"A\x1b,1,x", "A\x1b"}, {"A\\x1b,1,x", "A\\x1b"}});
  EXPECT_EQ(odd.resolve("A\\x1b,1,x"), "A\\x1b,1,x");
}

TEST(SplitListing, EveryTestEndsWithABar) {
  EXPECT_EQ(splitListing("A|B,1,x|"), (Texts{"A", "B,1,x"}));
  EXPECT_EQ(splitListing("No matching diagnostic test or device found.\n"), Texts{});
  EXPECT_EQ(splitListing(""), Texts{});
}

}  // namespace
}  // namespace host
