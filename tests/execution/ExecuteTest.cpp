#include <gtest/gtest.h>

#include "framework/EVORStatusCode.h"
#include "tests/results/Events.h"
#include "tests/support/Outcome.h"
#include "tests/support/WithRunner.h"

namespace support {
namespace {

using Access = DiagsRunnerAccess;
using NZELVOR20::TCIMValue;
using NZELVOR20::TParameterMap;

const char kNoMatch[] = "No matching diagnostic test or device found.\n";
const char kClearing[] = "registry.ClearInstances()";
const std::string kFallback = trace(
    "DiagsRunner::Execute - No Concrete Job Found for RunDiagnostic, attempting "
    "RunDiagnosticService");
const std::string kFallbackFailed =
    trace("DiagsRunner::Execute - exception from RunDiagnosticService detected");

std::string entering(const std::string& id) {
  return trace("Entering DiagsRunner::Execute with testID = " + id);
}

std::string element(const ScriptedTest& test) {
  return "{ManagedElement=" + test.element->path().text() + "}";
}

std::string invocation(const std::string& method, const std::string& parameters) {
  return "inst service1.InvokeMethod(\"" + method + "\", " + parameters + ", {})";
}

class Execute : public testing::Test {
 protected:
  std::string execute() { return execute(machine.memory.id); }
  std::string execute(const std::string& id) {
    return runner.Execute(id, "not read", machine.hostHandle);
  }
  Outcome outcome() {
    return outcomeOf([&] { return execute(); });
  }
  int clearings() { return machine.journal.countOf(kClearing); }
  int invocations(const std::string& method) {
    return machine.journal.countOf(invocation(method, element(machine.memory)));
  }
  std::string lastLine() {
    const std::string all = machine.journal.all();
    return all.substr(all.rfind('\n', all.size() - 2) + 1);
  }

  WithRunner<Machine> machine;
  DiagsRunner& runner = machine.listed();
};

TEST_F(Execute, GivesTheTextOfTheRunAndClearsTheRegistryLast) {
  EXPECT_EQ(execute(), "Pass");
  EXPECT_EQ(machine.journal.all().find(entering(machine.memory.id) + "\n"), 0U);
  EXPECT_EQ(clearings(), 1);
  EXPECT_EQ(lastLine(), lines({kClearing}));
}

TEST_F(Execute, LeavesServiceOutputParametersAndFlagBehind) {
  Access::runFinished(runner).set(true);
  execute();
  EXPECT_FALSE(Access::runFinished(runner).isSet());
  EXPECT_EQ(describe(Access::runService(runner)), "inst service1");
  EXPECT_EQ(describe(Access::runParams(runner)),
            "{Job=root/cimv2:CIM_ConcreteJob.InstanceID=\"job-mem\"}");
  EXPECT_EQ(Access::finishedTests(runner), (Access::Texts{{machine.memory.id, "job-mem"}}));
}

TEST_F(Execute, InvokesTheMethodOnceWithTheElementAlone) {
  Access::runParams(runner)["Setting"] = TCIMValue("of an earlier run");
  execute();
  EXPECT_EQ(invocations("RunDiagnostic"), 1);
  EXPECT_EQ(invocations("RunDiagnosticService"), 0);
}

TEST_F(Execute, TheFlagIsDownWhileTheMethodRuns) {
  Access::runFinished(runner).set(true);
  bool isUp = true;
  machine.script.onCall("InvokeMethod", [&] { isUp = Access::runFinished(runner).isSet(); });
  execute();
  EXPECT_FALSE(isUp);
}

TEST_F(Execute, AnUnknownIdentifierTouchesNothing) {
  machine.setFinished("Other,a,b", "job-0");
  Access::runFinished(runner).set(true);
  EXPECT_EQ(execute("Other,a,b"), kNoMatch);
  EXPECT_EQ(machine.journal.all(),
            lines({entering("Other,a,b"),
                   trace("DiagsRunner::Execute testID is not found in m_diagNS")}));
  EXPECT_TRUE(Access::runFinished(runner).isSet());
  EXPECT_EQ(Access::finishedTests(runner), (Access::Texts{{"Other,a,b", "job-0"}}));
  EXPECT_EQ(Access::diagNS(runner).count("Other,a,b"), 0U);
}

TEST_F(Execute, AnIdentifierThatCannotBeSplitIsNotSearchedFor) {
  for (const char* id : {"Memory Test", "Memory Test,mem0"}) {
    machine.setListed(id);
    machine.journal.clear();
    EXPECT_EQ(execute(id), std::string(" ") + kNoMatch);
    EXPECT_EQ(machine.journal.all(),
              lines({entering(id), trace(std::string("DiagsRunner::Execute looking for:") + id),
                     trace("returning no matching"), kClearing}));
  }
}

TEST_F(Execute, AFormerRunOfATestThatIsGoneIsForgotten) {
  const std::string id = "Memory Test,mem9,System Memory";
  machine.setListed(id);
  machine.setFinished(id, "job-0");
  machine.setFinished(machine.memory.id, "job-1");
  Access::runFinished(runner).set(true);
  EXPECT_EQ(execute(id), std::string(" ") + kNoMatch);
  EXPECT_EQ(machine.journal.log(),
            lines({entering(id), trace("DiagsRunner::Execute looking for:" + id),
                   trace("erased test from map"), trace("returning no matching")}));
  EXPECT_EQ(lastLine(), lines({kClearing}));
  EXPECT_EQ(Access::finishedTests(runner), (Access::Texts{{machine.memory.id, "job-1"}}));
  EXPECT_FALSE(Access::runFinished(runner).isSet());
  EXPECT_EQ(Access::testIndex(runner).count(id), 0U);
}

TEST_F(Execute, ANoMatchKeepsServiceAndParametersOfTheLastRun) {
  execute();
  const std::string parameters = describe(Access::runParams(runner));
  machine.setListed("Gone,a,b");
  execute("Gone,a,b");
  EXPECT_EQ(describe(Access::runService(runner)), "inst service1");
  EXPECT_EQ(describe(Access::runParams(runner)), parameters);
}

TEST_F(Execute, TheJobIsTheFirstOutputParameterWhateverItsName) {
  const TCIMValue job(machine.finishJob(machine.memory, "job-x", {{7, 100}}));
  machine.addRecord("Memory Test", "record for job-x", "Aborted");
  machine.memory.service->setMethodOutput("RunDiagnostic",
                                          {{"Alpha", job}, {"Job", TCIMValue("no reference")}});
  EXPECT_EQ(execute(), "Aborted");
}

TEST_F(Execute, ATestWithoutOutputIsTriedByTheOtherMethodOnce) {
  machine.memory.service->setMethodOutput("RunDiagnostic", {});
  EXPECT_EQ(execute(), "Pass");
  EXPECT_EQ(invocations("RunDiagnostic"), 1);
  EXPECT_EQ(invocations("RunDiagnosticService"), 1);
  EXPECT_EQ(machine.journal.countOf(kFallback), 1);
  EXPECT_EQ(clearings(), 1);
  EXPECT_EQ(describe(Access::runParams(runner)),
            "{Job=root/cimv2:CIM_ConcreteJob.InstanceID=\"job-mem\"}");
}

TEST_F(Execute, ATestWithoutAnyOutputHasNoStatus) {
  machine.memory.service->setMethodOutput("RunDiagnostic", {});
  machine.memory.service->setMethodOutput("RunDiagnosticService", {});
  EXPECT_EQ(execute(), "No Status\n");
  const std::string all = machine.journal.all();
  EXPECT_EQ(all.substr(all.find("inst service1.InvokeMethod")),
            lines({invocation("RunDiagnostic", element(machine.memory)), kFallback,
                   invocation("RunDiagnosticService", element(machine.memory)), kClearing}));
  EXPECT_TRUE(Access::runParams(runner).empty());
  EXPECT_TRUE(Access::finishedTests(runner).empty());
}

TEST_F(Execute, AFrameworkExceptionOfTheOtherMethodIsLoggedAndTheTextIsEmpty) {
  machine.memory.service->setMethodOutput("RunDiagnostic", {});
  machine.script.failOn("\"RunDiagnosticService\"", Fault::vorException);
  EXPECT_EQ(execute(), "");
  EXPECT_EQ(machine.journal.log(),
            lines({entering(machine.memory.id), kFallback, kFallbackFailed}));
  EXPECT_EQ(lastLine(), lines({kClearing}));
}

TEST_F(Execute, SoIsOneOfTheJobThatTheOtherMethodStarted) {
  machine.memory.service->setMethodOutput("RunDiagnostic", {});
  machine.script.failOn("ns cmpi.GetInstance(root/cimv2:CIM_ConcreteJob", Fault::vorException);
  EXPECT_EQ(execute(), "");
  EXPECT_EQ(machine.journal.countOf(kFallbackFailed), 1);
  EXPECT_EQ(clearings(), 1);
}

TEST_F(Execute, OneInTheResultsIsAnsweredThere) {
  machine.memory.service->setMethodOutput("RunDiagnostic", {});
  machine.script.failOn("CopyInstance", Fault::vorException);
  EXPECT_EQ(execute(), "No Results.\n");
  EXPECT_EQ(machine.journal.countOf(kFallbackFailed), 0);
}

TEST_F(Execute, OtherExceptionsOfTheOtherMethodPass) {
  machine.memory.service->setMethodOutput("RunDiagnostic", {});
  machine.script.failOn("\"RunDiagnosticService\"", Fault::standardException);
  EXPECT_EQ(outcome().text, kScriptedFailure);
  EXPECT_EQ(machine.journal.countOf(kFallbackFailed), 0);
  EXPECT_EQ(clearings(), 0);
}

TEST_F(Execute, EveryExceptionOfTheFirstMethodPasses) {
  for (const Fault fault : {Fault::vorException, Fault::standardException, Fault::otherException}) {
    machine.journal.clear();
    machine.script.failOn("InvokeMethod", fault);
    EXPECT_FALSE(outcome().returned()) << nameOf(fault);
    EXPECT_EQ(clearings(), 0) << nameOf(fault);
    EXPECT_EQ(describe(Access::runParams(runner)), element(machine.memory)) << nameOf(fault);
  }
}

TEST_F(Execute, AFrameworkExceptionOfTheFirstMethodsJobPasses) {
  machine.script.failOn("ns cmpi.GetInstance(root/cimv2:CIM_ConcreteJob", Fault::vorException);
  EXPECT_EQ(outcome().kind, Outcome::Kind::vorException);
  EXPECT_EQ(clearings(), 0);
}

TEST_F(Execute, AnOutputThatIsNoReferencePassesFromTheFirstMethodAlone) {
  const TParameterMap output{{"Job", TCIMValue("text")}};
  machine.memory.service->setMethodOutput("RunDiagnostic", output);
  EXPECT_EQ(outcome().status, NZELVOR20::eVORTypeMismatch);
  machine.memory.service->setMethodOutput("RunDiagnostic", {});
  machine.memory.service->setMethodOutput("RunDiagnosticService", output);
  machine.journal.clear();
  EXPECT_EQ(execute(), "");
  EXPECT_EQ(machine.journal.countOf(kFallbackFailed), 1);
}

TEST_F(Execute, TheReturnValueOfTheMethodIsNotLookedAt) {
  const TCIMValue job(machine.finishJob(machine.memory, "job-mem", {{7, 100}}));
  machine.memory.service->setMethod("RunDiagnostic", [&](TParameterMap& parameters) {
    parameters = {{"Job", job}};
    return TCIMValue::Uint32(4711);
  });
  EXPECT_EQ(execute(), "Pass");
}

TEST_F(Execute, AServiceThatIsNoCmpiInstanceIsNamedInTheException) {
  const InstancePtr plain = ScriptedInstance::makePlain("plain", machine.memory.service->path());
  plain->set("Name", TCIMValue("Memory Test"));
  machine.cmpi->addInstance(plain);
  const Outcome ended = outcome();
  EXPECT_EQ(ended.kind, Outcome::Kind::standardException);
  EXPECT_EQ(ended.text, "diagsrunner: no CMPI instance of the diagnostic service");
  EXPECT_FALSE(Access::runService(runner));
  EXPECT_EQ(describe(Access::runParams(runner)), element(machine.memory));
  EXPECT_EQ(clearings(), 0);
}

TEST_F(Execute, ARegistryThatFailsPasses) {
  machine.script.failOn(kClearing, Fault::vorException);
  EXPECT_EQ(outcome().kind, Outcome::Kind::vorException);
}

TEST_F(Execute, AnEmptyNamespaceOfTheHostIsHandedOn) {
  machine.hostHandle.reset();
  EXPECT_EQ(execute(), "Pass");
  EXPECT_EQ(machine.journal.countOf("TCIMCopy.CopyInstance(inst record1, ns (empty))"), 1);
}

TEST_F(Execute, WithoutALoggerTheAnswersStay) {
  machine.logger.isAbsent = true;
  machine.setListed("Gone,a,b");
  EXPECT_EQ(execute(), "Pass");
  EXPECT_EQ(execute("Gone,a,b"), std::string(" ") + kNoMatch);
  EXPECT_EQ(execute("Other,a,b"), kNoMatch);
  EXPECT_EQ(machine.journal.log(), "");
}

}  // namespace
}  // namespace support
