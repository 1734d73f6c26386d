#include <gtest/gtest.h>

#include "tests/execution/JobWorld.h"
#include "tests/support/Outcome.h"
#include "tests/support/WithRunner.h"

namespace support {
namespace {

using Access = DiagsRunnerAccess;
using NZELVOR20::TCIMValue;

const char kPath[] = "root/cimv2:CIM_ConcreteJob.InstanceID=\"job-1\"";

/// A listed test whose job, "job-1", is over at the first look, and a record that belongs to it.
class StartedRun : public WithRunner<> {
 public:
  explicit StartedRun(const std::string& name = "Disk Test",
                      const std::vector<JobReading>& readings = {{7, 100}})
      : test(addTest(name, "disk0", "Disk")), job(finishJob(test, "job-1", readings)) {
    setListed(test.id);
    addRecord(name, "record for job-1", "OK");
    theClass(kRecordApplies);
    journal.clear();
  }

  std::string handle() {
    runner().HandleConcrete(job, result, test.id, hostHandle);
    return result;
  }
  std::string finishedJob() { return Access::finishedTests(runner())[test.id]; }

  const ScriptedTest test;
  const NZELVOR20::TCIMReference job;
  std::string result = "former";
};

TEST(HandleConcrete, FollowsTheJobRecordsItAndGivesTheImmediateResult) {
  StartedRun run;
  EXPECT_EQ(run.handle(), "Pass");
  const std::string journal = run.journal.allButFlushes();
  const std::string wanted = text(
      joined({{trace("DiagsRunner::HandleConcrete"), std::string("ref ") + kPath + ".GetClass()",
               "class CIM_ConcreteJob.GetNamespace({})",
               std::string("ns cmpi.GetInstance(") + kPath + ", {nspID=\"cmpi\"})"},
              valueRead("job1/1", "PercentComplete"),
              valueRead("job1/1", "JobState"),
              valueRead("job1/1", "InstanceID"),
              {shownFirst(100), "class CIM_ConcreteJob.GetName()",
               trace("Entering DiagsRunner::ImmediateResults, testID is: " + run.test.id)}}));
  EXPECT_EQ(journal.substr(0, wanted.size()), wanted);
  EXPECT_EQ(run.journal.countOf("TCIMCopy.CopyInstance(inst record1, ns host)"), 1);
  EXPECT_EQ(run.finishedJob(), "job-1");
}

TEST(HandleConcrete, AFirstStateOf10GivesOneLineAndOneWaitAndGoesToCompletion) {
  StartedRun run("Disk Test", {{10, 20}});
  EXPECT_EQ(run.handle(), "Pass");
  EXPECT_EQ(run.journal.output(), "\nPercent Complete: 20%\n");
  EXPECT_EQ(run.journal.sleeps(), lines({waited()}));
  EXPECT_EQ(run.finishedJob(), "job-1");
}

TEST(HandleConcrete, AnUnknownTestLeavesEverythingAsItWas) {
  StartedRun run;
  Access::diagNS(run.runner()).clear();
  run.setFinished(run.test.id, "job-0");
  EXPECT_EQ(run.handle(), "former");
  EXPECT_EQ(run.journal.all(),
            lines({trace("DiagsRunner::HandleConcrete"),
                   trace("DiagsRunner::HandleConcrete testID is not found in m_diagNS")}));
  EXPECT_EQ(run.finishedJob(), "job-0");
}

TEST(HandleConcrete, ASecondRunReplacesTheEntryOfTheFirst) {
  StartedRun run;
  run.setFinished(run.test.id, "job-0");
  run.setFinished("other", "job-9");
  run.handle();
  EXPECT_EQ(Access::finishedTests(run.runner()),
            (Access::Texts{{run.test.id, "job-1"}, {"other", "job-9"}}));
}

struct Family {
  TCIMValue kind;
  bool hasNamespace;
  const char* options;
};

TEST(HandleConcrete, PegasusTestsTellTheirNamespaceAlongWithTheFamily) {
  for (const Family& family : {Family{"cmpi", true, "{nspID=\"cmpi\"}"},
                               {"pegasus", true, "{nsp=\"root/PG\", nspID=\"pegasus\"}"},
                               {"pegasus", false, "{nsp=null, nspID=\"pegasus\"}"},
                               {"Pegasus", true, "{nspID=\"Pegasus\"}"},
                               {"pegasus2", true, "{nspID=\"pegasus2\"}"},
                               {TCIMValue(), true, "{nspID=null}"}}) {
    StartedRun run("Disk Test", {{4, 0}, {7, 100}});
    Access::diagNS(run.runner())[run.test.id] = family.kind;
    if (family.hasNamespace) {
      Access::diagPegasusNS(run.runner())[run.test.id] = TCIMValue("root/PG");
    }
    EXPECT_EQ(run.handle(), "Pass") << family.options;
    EXPECT_EQ(run.journal.countOf(std::string("ns cmpi.GetInstance(") + kPath + ", " +
                                  family.options + ")"),
              2)
        << family.options;
    EXPECT_EQ(Access::diagPegasusNS(run.runner()).size(), family.hasNamespace ? 1U : 0U);
  }
}

TEST(HandleConcrete, TheNamespaceOfPegasusGoesWithTheAssociationsButNotWithTheResults) {
  StartedRun run("ZEL:ssd:diag service");
  run.setListed(run.test.id, "pegasus");
  run.handle();
  const std::string options = "{nsp=null, nspID=\"pegasus\"}";
  EXPECT_EQ(
      run.journal.countOf("ns root.GetClass(\"CIM_RecordAppliesToElement\", " + options + ")"), 1);
  EXPECT_EQ(run.journal.countOf("class CIM_RecordAppliesToElement.EnumerateInstances(deep=true, " +
                                options + ")"),
            1);
  EXPECT_EQ(run.journal.countOf(recordClassCall("root", "{nspID=\"pegasus\"}")), 1);
}

struct Identifier {
  const char* name;
  const char* deviceOfRecord;
  bool isWalked;
  const char* stored;
};

const Identifier kIdentifiers[] = {{"Disk Test", "disk0", false, "job-1"},
                                   {"ZEL:ssd:diag service", "disk0", true, "rec-1"},
                                   {"FIO:ssd:diag service", "disk0", true, "rec-1"},
                                   {"Fusion-io:ssd:diag service", "disk0", true, "rec-1"},
                                   {"ZEL:ssd:diag service", "disk1", true, "job-1"},
                                   {"ZEL:ssd", "disk0", false, "job-1"},
                                   {"zel:ssd:diag service", "disk0", false, "job-1"},
                                   {"ssd:diag service", "disk0", false, "job-1"}};

TEST(HandleConcrete, TheIdentifierIsThatOfTheRecordForSomeVendorsElseThatOfTheJob) {
  for (const std::uint16_t state : {std::uint16_t{7}, std::uint16_t{10}}) {
    for (const Identifier& row : kIdentifiers) {
      StartedRun run(row.name, {{state, 100}});
      run.addApplies("CIM_DiagnosticCompletionRecord.InstanceID=\"rec-1\"",
                     std::string("CIM_X.DeviceID=\"") + row.deviceOfRecord + "\"");
      run.handle();
      EXPECT_EQ(run.finishedJob(), row.stored) << row.name << " of " << row.deviceOfRecord;
      EXPECT_EQ(run.journal.countOf("ns root.GetClass(\"CIM_RecordAppliesToElement\", "
                                    "{nspID=\"cmpi\"})"),
                row.isWalked ? 1 : 0)
          << row.name;
    }
  }
}

/// A test whose record need not carry the identifier of its job, by its name or by its end.
struct Loose {
  const char* name;
  std::uint16_t state;
};

TEST(HandleConcrete, AJobWithoutIdentifierIsStoredAsAnEmptyOneWhereNoneIsNeeded) {
  for (const Loose& row :
       {Loose{"ZEL:ssd", 7}, Loose{"ZEL:ssd:diag service", 7}, Loose{"Disk Test", 10}}) {
    StartedRun run(row.name, {{row.state, 100}});
    run.setFinished(run.test.id, "job-0");
    run.script.failOn("GetProperty(\"InstanceID\"", Fault::emptyHandle);
    EXPECT_EQ(run.handle(), "Pass") << row.name << ": every record contains the empty text";
    EXPECT_EQ(Access::finishedTests(run.runner()).count(run.test.id), 1U) << row.name;
    EXPECT_EQ(run.finishedJob(), "") << row.name;
  }
}

// Catches a job of no name that takes any record of its service for its own.
TEST(HandleConcrete, AJobWithoutIdentifierEndsARunWhoseRecordIsFoundByIt) {
  StartedRun run("Disk Test");
  run.setFinished(run.test.id, "job-0");
  run.script.failOn("GetProperty(\"InstanceID\"", Fault::emptyHandle);
  EXPECT_EQ(outcomeOf([&] { return run.handle(); }).text, "diagsrunner: no property InstanceID");
  EXPECT_EQ(run.journal.output(), "");
  EXPECT_EQ(run.finishedJob(), "job-0");
}

TEST(HandleConcrete, AWalkThatFailsLeavesTheFormerRunForgotten) {
  StartedRun run("ZEL:ssd:diag service");
  run.setFinished(run.test.id, "job-0");
  run.script.failOn("CIM_RecordAppliesToElement", Fault::vorException);
  EXPECT_EQ(outcomeOf([&] { return run.handle(); }).kind, Outcome::Kind::vorException);
  EXPECT_TRUE(Access::finishedTests(run.runner()).empty());
  EXPECT_EQ(run.result, "former");
}

TEST(HandleConcrete, AJobThatFailsLaterLeavesTheFormerRun) {
  StartedRun run("Disk Test", {{4, 0}, {7, 100}});
  run.setFinished(run.test.id, "job-0");
  run.script.failOn("ns cmpi.GetInstance", Fault::standardException, 1, 1);
  EXPECT_EQ(outcomeOf([&] { return run.handle(); }).text, kScriptedFailure);
  EXPECT_EQ(run.finishedJob(), "job-0");
  EXPECT_EQ(run.result, "former");
}

TEST(HandleConcrete, WithoutARecordTheResultSaysSo) {
  StartedRun run;
  run.theClass(kCompletionRecord)->removeAll();
  EXPECT_EQ(run.handle(), "No Results.\n");
  EXPECT_EQ(run.finishedJob(), "job-1");
}

TEST(HandleConcrete, AnIdentifierWithoutCommasIsFollowedAllTheSame) {
  StartedRun run;
  run.setListed("Disk Test");
  run.runner().HandleConcrete(run.job, run.result, "Disk Test", run.hostHandle);
  EXPECT_EQ(run.result, "No Results.\n");
  EXPECT_EQ(Access::finishedTests(run.runner()), (Access::Texts{{"Disk Test", "job-1"}}));
}

TEST(HandleConcrete, AnEmptyNamespaceOfTheRunnerIsNamedInTheException) {
  StartedRun run("ZEL:ssd:diag service");
  Access::theNamespace(run.runner()).reset();
  const Outcome outcome = outcomeOf([&] { return run.handle(); });
  EXPECT_EQ(outcome.kind, Outcome::Kind::standardException);
  EXPECT_EQ(outcome.text, "diagsrunner: no namespace");
}

TEST(HandleConcrete, WithoutALoggerTheResultStays) {
  StartedRun run("ZEL:ssd:diag service", {{4, 0}, {7, 100}});
  run.logger.isAbsent = true;
  EXPECT_EQ(run.handle(), "Pass");
  EXPECT_EQ(run.journal.log(), "");
}

}  // namespace
}  // namespace support
