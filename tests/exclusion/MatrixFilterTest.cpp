#include <gtest/gtest.h>

#include "tests/exclusion/MatrixWorld.h"
#include "tests/runner/Row.h"
#include "tests/support/Outcome.h"

namespace support {
namespace {

using NZELVOR20::TCIMValue;

const std::string kEntering = trace("Entering DiagsRunner::filterDiagsItems()");
const std::string kLeaving = trace("Leaving DiagsRunner::filterDiagsItems()");
const std::string kEnteringLogger = trace("Entering DiagsRunner::filterDiagsItemsLogger()");
const std::string kLeavingLogger = trace("Leaving DiagsRunner::filterDiagsItemsLogger()");

std::string looksAt(const std::string& name) {
  return trace("DiagsRunner::filterDiagsItems serviceProvided OP = " + servicePath(name));
}

std::string erases(int number) {
  return trace("DiagsRunner::filterDiagsItems - erasing: " + itemPath(number));
}

Outcome outcomeOfFilter(MatrixWorld& world) {
  return outcomeOf([&] { return world.filter(), std::string(); });
}

TEST(FilterDiagsItems, GoesThroughTheItemsStepByStep) {
  MatrixWorld world;
  world.addItem("A");
  world.addItem("B");
  world.hide({"none", "\"B\""});
  world.filter();
  EXPECT_EQ(world.journal.all(),
            joined(world.beginning()) +
                lines({kEnteringLogger, trace("abe1xx -> none"), trace("abe1xx -> \"B\""),
                       kLeavingLogger, "inst association1.GetProperty(\"ServiceProvided\", {})",
                       "prop association1.ServiceProvided.GetValue({})",
                       "ref " + servicePath("A") + ".GetPath()", looksAt("A"),
                       "inst association2.GetProperty(\"ServiceProvided\", {})",
                       "prop association2.ServiceProvided.GetValue({})",
                       "ref " + servicePath("B") + ".GetPath()", looksAt("B"),
                       "inst association2.GetObjectPath({})", "ref " + itemPath(2) + ".GetPath()",
                       erases(2), kLeaving}));
  EXPECT_EQ(world.left(), "inst association1");
}

TEST(FilterDiagsItems, AnEmptyListStillReadsAndLogsTheMatrix) {
  MatrixWorld world;
  world.hide({"a"});
  world.filter();
  EXPECT_EQ(world.journal.all(),
            joined(world.beginning()) +
                lines({kEnteringLogger, trace("abe1xx -> a"), kLeavingLogger, kLeaving}));
}

TEST(FilterDiagsItems, AMachineThatIsNotInTheMatrixFiltersNothingAndLooksAtNothing) {
  MatrixWorld world;
  world.addItem("A");
  world.hide({"A"}, "other");
  world.filter();
  EXPECT_EQ(world.journal.log(),
            lines({kEntering, kEnteringLogger, trace("other -> A"), kLeavingLogger, kLeaving}));
  EXPECT_EQ(world.journal.calls(), "");
  EXPECT_EQ(world.left(), "inst association1");
}

struct Firmware : Row {
  const char* told;
  const char* key;
  bool isFound;
};

const Firmware kMachines[] = {{{"InLowerCase"}, "abe1xx", "abe1xx", true},
                              {{"InCapitals"}, "ABE1XX", "abe1xx", true},
                              {{"WrittenInCapitals"}, "ABE1XX", "ABE1XX", false},
                              {{"WrittenWithACapital"}, "abe1xx", "Abe1xx", false},
                              {{"WithABlank"}, "abe1xx", "abe1xx ", false},
                              {{"WrittenInPart"}, "abe1xx", "abe1", false},
                              {{"ThatTellsNothing"}, "", "", true}};

class TheMachine : public testing::TestWithParam<Firmware> {};

TEST_P(TheMachine, IsLookedUpInLowerCase) {
  MatrixWorld world;
  world.os.biosID = GetParam().told;
  world.addItem("A");
  world.hide({"A"}, GetParam().key);
  world.filter();
  EXPECT_EQ(world.left(), GetParam().isFound ? "" : "inst association1");
}

INSTANTIATE_TEST_SUITE_P(, TheMachine, testing::ValuesIn(kMachines), RowName());

TEST(FilterDiagsItems, LowersTheCaseOfTheIdentifierItself) {
  MatrixWorld world;
  world.addItem("A");
  world.hide({"A"});
  DiagsRunnerAccess::biosID(world.runner()) = "ABE1xx";
  world.filter();
  EXPECT_EQ(world.left(), "");
  EXPECT_EQ(DiagsRunnerAccess::biosID(world.runner()), "ABE1xx");
}

struct Fragments : Row {
  std::vector<std::string> fragments;
  const char* left;  ///< of the services "Memory", "Memory Long", "Disk"
};

const char kAll[] = "inst association1 inst association2 inst association3";

const Fragments kFragments[] = {
    {{"None"}, {}, kAll},
    {{"ThatOccursNowhere"}, {"Network"}, kAll},
    {{"InAnotherCase"}, {"memory"}, kAll},
    {{"ThatIsAWholeName"}, {"\"Disk\""}, "inst association1 inst association2"},
    {{"ShortOnesHideSeveral"}, {"Mem"}, "inst association3"},
    {{"FromTheClassName"}, {"CIM_DiagnosticTest."}, ""},
    {{"FromTheNamespace"}, {"root/cimv2:"}, ""},
    {{"TheEmptyOneHidesAll"}, {""}, ""},
    {{"TheSecondOfTwo"}, {"Network", "Long"}, "inst association1 inst association3"},
    {{"BothOfTwo"}, {"Long", "Disk"}, "inst association1"},
    {{"TwoOfOneService"}, {"Disk", "isk"}, "inst association1 inst association2"}};

class AFragment : public testing::TestWithParam<Fragments> {};

TEST_P(AFragment, HidesTheServicesInWhosePathItOccurs) {
  MatrixWorld world;
  world.addItem("Memory");
  world.addItem("Memory Long");
  world.addItem("Disk");
  world.hide(GetParam().fragments);
  world.filter();
  EXPECT_EQ(world.left(), GetParam().left);
}

INSTANTIATE_TEST_SUITE_P(, AFragment, testing::ValuesIn(kFragments), RowName());

TEST(FilterDiagsItems, ATestWithoutANameInTheMatrixHidesEverything) {
  MatrixWorld world;
  world.addItem("A");
  world.addItem("B");
  world.setMatrix("<list><biosid name='abe1xx'><diagnostictest/></biosid></list>");
  world.filter();
  EXPECT_EQ(world.left(), "");
}

TEST(FilterDiagsItems, ASecondBlockForTheMachineIsIgnored) {
  MatrixWorld world;
  world.addItem("A");
  world.addItem("B");
  world.setMatrix(
      "<list><biosid name='abe1xx'><diagnostictest name='\"A\"'/></biosid>"
      "<biosid name='abe1xx'><diagnostictest name='\"B\"'/></biosid></list>");
  world.filter();
  EXPECT_EQ(world.left(), "inst association2");
}

TEST(FilterDiagsItems, RemovesAdjacentItemsAndKeepsTheOrderOfTheRest) {
  MatrixWorld world;
  for (const char* name : {"hide1", "hide2", "a", "hide3", "hide4", "hide5", "b", "c", "hide6"}) {
    world.addItem(name);
  }
  world.hide({"hide"});
  world.filter();
  EXPECT_EQ(world.left(), "inst association3 inst association7 inst association8");
}

TEST(FilterDiagsItems, ReleasesWhatItRemoves) {
  MatrixWorld world;
  const InstancePtr item = world.addItem("A");
  const long before = item.use_count();
  world.hide({"A"});
  world.filter();
  EXPECT_EQ(item.use_count(), before - 1);
}

TEST(FilterDiagsItems, AnItemWhosePropertyIsEmptyStays) {
  MatrixWorld world;
  world.addItem("A")->setEmpty("ServiceProvided");
  world.addItem("B");
  world.hide({""});
  world.filter();
  EXPECT_EQ(world.left(), "inst association1");
  EXPECT_EQ(world.journal.log(), lines({kEntering, kEnteringLogger, trace("abe1xx -> "),
                                        kLeavingLogger, looksAt("B"), erases(2), kLeaving}));
}

TEST(FilterDiagsItems, AnItemThatIsEmptyItselfStays) {
  MatrixWorld world;
  world.items.emplace_back();
  world.addItem("A");
  world.hide({""});
  world.filter();
  EXPECT_EQ(world.left(), "inst (empty)");
}

TEST(FilterDiagsItems, AnItemThatCannotBeReadEndsItWithEarlierMatchesGone) {
  MatrixWorld world;
  world.addItem("hide1");
  world.addItem("kept");
  world.addItem("hide2");
  world.addItem("hide3")->remove("ServiceProvided");
  world.addItem("hide4");
  world.addItem("last");
  world.hide({"hide"});
  world.runner();
  const Outcome outcome = outcomeOfFilter(world);
  EXPECT_EQ(outcome.kind, Outcome::Kind::vorException);
  EXPECT_EQ(world.left(),
            "inst association2 inst association4 inst association5 inst association6");
  EXPECT_EQ(outcome.log,
            lines({kEntering, kEnteringLogger, trace("abe1xx -> hide"), kLeavingLogger,
                   looksAt("hide1"), erases(1), looksAt("kept"), looksAt("hide2"), erases(3)}));
}

TEST(FilterDiagsItems, AnItemThatProvidesNoReferenceEndsIt) {
  MatrixWorld world;
  world.addItem("A")->set("ServiceProvided", TCIMValue("a text"));
  world.hide({"A"});
  world.runner();
  EXPECT_EQ(outcomeOfFilter(world).kind, Outcome::Kind::vorException);
  EXPECT_EQ(world.left(), "inst association1");
}

TEST(FilterDiagsItems, AnItemThatCannotTellItsPathStays) {
  MatrixWorld world;
  world.addItem("A");
  world.hide({"A"});
  world.runner();
  world.script.failOn("GetObjectPath", Fault::otherException);
  EXPECT_EQ(outcomeOfFilter(world).kind, Outcome::Kind::otherException);
  EXPECT_EQ(world.left(), "inst association1");
}

TEST(FilterDiagsItems, FiltersWithoutALogger) {
  MatrixWorld world;
  world.addItem("A");
  world.hide({"A"});
  world.runner();
  world.logger.isAbsent = true;
  world.filter();
  EXPECT_EQ(world.left(), "");
  EXPECT_EQ(world.journal.log(), "");
}

TEST(FilterDiagsItemsLogger, LogsEachFragmentInTheOrderOfTheIdentifiers) {
  MatrixWorld world;
  world.runner().filterDiagsItemsLogger(
      {{"b", {"2", "1"}}, {"a", {"3"}}, {"B", {""}}, {"", {"4"}}, {"c", {}}});
  EXPECT_EQ(world.journal.all(),
            lines({kEnteringLogger, trace(" -> 4"), trace("B -> "), trace("a -> 3"),
                   trace("b -> 2"), trace("b -> 1"), kLeavingLogger}));
}

TEST(FilterDiagsItemsLogger, AnEmptyMatrixLogsItsEndsAlone) {
  MatrixWorld world;
  world.runner().filterDiagsItemsLogger({});
  EXPECT_EQ(world.journal.all(), lines({kEnteringLogger, kLeavingLogger}));
}

TEST(FilterDiagsItemsLogger, ChangesNothingWithoutALogger) {
  MatrixWorld world;
  world.runner();
  world.logger.isAbsent = true;
  world.runner().filterDiagsItemsLogger({{"a", {"1"}}});
  EXPECT_EQ(world.journal.all(), "");
}

}  // namespace
}  // namespace support
