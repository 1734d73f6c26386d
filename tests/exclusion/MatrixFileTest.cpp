#include <gtest/gtest.h>

#include <cstdint>

#include "tests/exclusion/MatrixWorld.h"
#include "tests/support/Outcome.h"

/// How the filter reads its file.
namespace support {
namespace {

const std::string kEntering = trace("Entering DiagsRunner::filterDiagsItems()");
const std::string kLeaving = trace("Leaving DiagsRunner::filterDiagsItems()");
const std::string kEnteringLogger = trace("Entering DiagsRunner::filterDiagsItemsLogger()");
const std::string kLeavingLogger = trace("Leaving DiagsRunner::filterDiagsItemsLogger()");

Outcome outcomeOfFilter(MatrixWorld& world) {
  return outcomeOf([&] { return world.filter(), std::string(); });
}

TEST(TheMatrixFile, ReadsTheFileAnewEachTime) {
  MatrixWorld world;
  world.addItem("A");
  world.hide({"A"}, "another");
  world.filter();
  EXPECT_EQ(world.left(), "inst association1");
  world.hide({"A"});
  world.filter();
  EXPECT_EQ(world.left(), "");
}

TEST(TheMatrixFile, ASizeQueryThatThrowsIsLoggedAndFiltersNothing) {
  MatrixWorld world;
  world.addItem("A");
  world.filter();
  EXPECT_EQ(world.journal.all(), lines({kEntering, "TOSSpecific.GetVORRootPath()",
                                        "TOSSpecific.GetFileSize(" + quoted(kMatrixPath) + ")",
                                        error("Error opening excludetestmatrix.xml")}));
  EXPECT_EQ(world.left(), "inst association1");
}

TEST(TheMatrixFile, OtherExceptionsOfTheSizeQueryPassOn) {
  MatrixWorld world;
  world.addItem("A");
  world.runner();
  world.script.failOn("GetFileSize", Fault::standardException);
  const Outcome standard = outcomeOfFilter(world);
  EXPECT_EQ(standard.kind, Outcome::Kind::standardException);
  EXPECT_EQ(standard.log, lines({kEntering}));
  world.script.failOn("GetFileSize", Fault::otherException);
  EXPECT_EQ(outcomeOfFilter(world).kind, Outcome::Kind::otherException);
  EXPECT_EQ(world.left(), "inst association1");
}

TEST(TheMatrixFile, AFileThatDoesNotOpenFiltersNothingWithoutAWord) {
  MatrixWorld world;
  world.addItem("A");
  world.os.setSize(kMatrixPath, 10);
  world.filter();
  EXPECT_EQ(world.journal.all(),
            lines({kEntering, "TOSSpecific.GetVORRootPath()",
                   "TOSSpecific.GetFileSize(" + quoted(kMatrixPath) + ")", "allocate(11)",
                   "readFile(" + quoted(kMatrixPath) + ", 10)"}));
  EXPECT_EQ(world.left(), "inst association1");
}

TEST(TheMatrixFile, WithoutMemoryForTheMatrixLogsAndThrowsStatusFour) {
  MatrixWorld world;
  world.addItem("A");
  world.hide({"A"});
  world.runner();
  world.platform.failAllocation(1);
  const Outcome outcome = outcomeOfFilter(world);
  EXPECT_EQ(outcome.kind, Outcome::Kind::vorException);
  EXPECT_EQ(outcome.status, 4);
  EXPECT_EQ(outcome.log, lines({kEntering, error("Error loading excludetestmatrix.xml")}));
  EXPECT_EQ(world.left(), "inst association1");
}

TEST(TheMatrixFile, KeepsTheSizeAsA32BitCount) {
  MatrixWorld world;
  world.hide({"A"});
  world.os.setSize(kMatrixPath, (std::uint64_t{1} << 32U) + 5);
  world.filter();
  EXPECT_EQ(world.journal.files(),
            lines({"allocate(6)", "readFile(" + quoted(kMatrixPath) + ", 5)"}));
}

TEST(TheMatrixFile, TheLargestFileDoesNotWrapTheBuffer) {
  MatrixWorld world;
  world.os.setSize(kMatrixPath, 0xFFFFFFFFU);
  world.runner();
  const Outcome outcome = outcomeOfFilter(world);
  EXPECT_EQ(outcome.status, 4);
  EXPECT_EQ(world.journal.files(), lines({"allocate(4294967296)"}));
  EXPECT_EQ(outcome.log, lines({kEntering, error("Error loading excludetestmatrix.xml")}));
}

TEST(TheMatrixFile, AMatrixThatIsCutOffHidesWhatWasRecognised) {
  MatrixWorld world;
  world.addItem("A");
  world.addItem("B");
  world.setMatrix(
      "<list><biosid name='abe1xx'><diagnostictest name='\"A\"'/></biosid>"
      "<biosid name='other'><diagnostictest name='\"B\"'");
  world.filter();
  EXPECT_EQ(world.left(), "inst association2");
  EXPECT_EQ(world.journal.log().find("log 0"), std::string::npos);
}

TEST(TheMatrixFile, AFileFullOfZerosHidesNothing) {
  MatrixWorld world;
  world.addItem("A");
  world.setMatrix(std::string(64, '\0'));
  world.filter();
  EXPECT_EQ(world.journal.log(), lines({kEntering, kEnteringLogger, kLeavingLogger, kLeaving}));
  EXPECT_EQ(world.left(), "inst association1");
}

TEST(TheMatrixFile, AnEmptyFileHidesNothing) {
  MatrixWorld world;
  world.addItem("A");
  world.setMatrix("");
  world.filter();
  EXPECT_EQ(world.journal.all(),
            joined(world.beginning()) + lines({kEnteringLogger, kLeavingLogger, kLeaving}));
}

TEST(TheMatrixFile, WithoutALoggerMissingMemoryIsStillThrown) {
  MatrixWorld world;
  world.hide({"A"});
  world.runner();
  world.logger.isAbsent = true;
  world.platform.failAllocation(1);
  EXPECT_EQ(outcomeOfFilter(world).status, 4);
}

}  // namespace
}  // namespace support
