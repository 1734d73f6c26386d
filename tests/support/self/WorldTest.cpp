#include <gtest/gtest.h>

#include <stdexcept>

#include "framework/ICIMProperty.h"
#include "tests/support/World.h"

namespace support {
namespace {

using NZELVOR20::ICIMInstance;
using NZELVOR20::TCIMReference;
using NZELVOR20::TCIMValue;
using NZELVOR20::TCMPIInstance;
using NZELVOR20::TParameterMap;

std::string rendered(const boost::shared_ptr<ICIMInstance>& instance, const std::string& name) {
  return instance->GetProperty(name, {})->ToString();
}

TEST(World, NothingIsAliveOnceItIsGone) {
  {
    Machine machine;
    EXPECT_GT(LiveObject::count(), 0);
  }
  EXPECT_EQ(LiveObject::count(), 0);
}

TEST(World, AHandleKeptTooLongIsCounted) {
  boost::shared_ptr<ICIMInstance> kept;
  {
    World world;
    kept = world.addInstance("disk", "CIM_Disk", "DeviceID", "sda")->handle();
  }
  EXPECT_EQ(LiveObject::count(), 1);
}

TEST(World, ThereIsOneAtATime) {
  World world;
  EXPECT_THROW(World(), std::logic_error);
}

TEST(World, IsResetForTheNextOne) {
  {
    World world;
    world.setDataFile("x.xml", "<x/>");
    world.os.biosID = "KO";
    world.platform.sleep(5000);
    world.logger.Log(3, "line");
  }
  World world;
  EXPECT_EQ(world.journal.all(), "");
  EXPECT_FALSE(world.platform.hasFile(world.os.dataPath("x.xml")));
  EXPECT_EQ(world.os.biosID, "ABE1XX");
  EXPECT_EQ(world.platform.readClock(), FakePlatform::kStart);
}

TEST(World, ATestHasAServiceAnElementAndAnAssociationBetweenThem) {
  World world;
  const ScriptedTest test = world.addTest("Memory Test", "mem0", "System Memory", "X_Service");
  EXPECT_EQ(test.id, "Memory Test,mem0,System Memory");
  EXPECT_EQ(describe(test.association->value("ServiceProvided")),
            "root/cimv2:X_Service.Name=\"Memory Test\"");
  EXPECT_EQ(describe(test.association->value("UserOfService")),
            "root/cimv2:CIM_LogicalDevice.DeviceID=\"mem0\"");
  EXPECT_EQ(test.service->value("CreationClassName").ToText(), "X_Service");
  EXPECT_EQ(test.element->value("ElementName").ToText(), "System Memory");
}

TEST(World, LabelsAreNumbered) {
  World world;
  world.addTest("A", "a", "a");
  const ScriptedTest second = world.addTest("B", "b", "b");
  EXPECT_EQ(second.service->label() + second.element->label() + second.association->label(),
            "service2element2association2");
}

TEST(World, AReferenceLeadsFromItsClassToTheServingNamespaceAndTheInstance) {
  World world;
  const ScriptedTest test = world.addTest("A", "a", "a");
  const TCIMReference reference = test.service->reference();
  EXPECT_EQ(reference.GetClass()->GetNamespace({})->GetInstance(reference, {}),
            test.service->handle());
}

TEST(World, TheUpcallRouteFindsTheSameInstanceThroughThePluginNamespace) {
  World world;
  const ScriptedTest test = world.addTest("A", "a", "a");
  const TCIMReference reference = test.service->reference();
  const auto found = world.upcall->handle()->GetClass("CIM_DiagnosticTest", {});
  EXPECT_EQ(found->GetNamespace({}), world.plugin->handle());
  EXPECT_EQ(world.plugin->handle()->GetInstance(reference, {}), test.service->handle());
}

TEST(World, BothMethodsLeaveNoOutputUntilThereIsAJob) {
  World world;
  const ScriptedTest test = world.addTest("A", "a", "a");
  const auto service = boost::dynamic_pointer_cast<TCMPIInstance>(test.service->handle());
  for (const char* method : {"RunDiagnostic", "RunDiagnosticService"}) {
    TParameterMap parameters{{"ManagedElement", TCIMValue("a")}};
    service->InvokeMethod(method, parameters, {});
    EXPECT_TRUE(parameters.empty()) << method;
  }
}

TEST(World, TheMethodHandsOutTheJobWhichChangesFromFetchToFetch) {
  World world;
  const ScriptedTest test = world.addTest("A", "a", "a");
  world.finishJob(test, "job-a", {{4, 10}, {7, std::nullopt}});
  TParameterMap parameters;
  boost::dynamic_pointer_cast<TCMPIInstance>(test.service->handle())
      ->InvokeMethod("RunDiagnostic", parameters, {});
  const TCIMReference job = parameters.at("Job").ToReference();
  const auto first = world.cmpi->handle()->GetInstance(job, {});
  const auto second = world.cmpi->handle()->GetInstance(job, {});
  EXPECT_EQ(describe(first) + describe(second), "inst job1/1inst job1/2");
  EXPECT_EQ(rendered(first, "PercentComplete"), "10");
  EXPECT_EQ(rendered(second, "JobState"), "7");
  EXPECT_TRUE(second->GetProperty("PercentComplete", {})->GetValue({}).IsNull());
  EXPECT_EQ(rendered(second, "InstanceID"), "job-a");
}

TEST(World, ARecordAppearsWhenItIsSaidTo) {
  World world;
  world.addRecord("A", "job-a", "OK", "data", 2);
  const auto records = world.host->handle()->GetClass(kCompletionRecord, {});
  int handed = 0;
  const auto count = [&](boost::shared_ptr<ICIMInstance>) { return ++handed > 0; };
  records->EnumerateInstances(count, true, {});
  EXPECT_EQ(handed, 0);
  records->EnumerateInstances(count, true, {});
  EXPECT_EQ(handed, 1);
}

TEST(World, ARecordHasTheTextsGiven) {
  World world;
  const InstancePtr record = world.addRecord("A", "job-a", "Warning", "data");
  EXPECT_EQ(record->value("ServiceName").ToText(), "A");
  EXPECT_EQ(record->value("InstanceID").ToText(), "job-a");
  EXPECT_EQ(rendered(record->handle(), "CompletionState"), "Warning");
  EXPECT_EQ(rendered(record->handle(), "RecordData"), "data");
}

TEST(World, AnAssociationOfARecordHasBothEndsAsPaths) {
  World world;
  const ScriptedTest test = world.addTest("A", "a", "a");
  const InstancePtr record = world.addRecord("A", "r", "OK");
  const InstancePtr applies = world.addApplies(record, test.element);
  EXPECT_EQ(describe(applies->value("Antecedent")),
            "root/cimv2:CIM_DiagnosticCompletionRecord.InstanceID=\"r\"");
  EXPECT_EQ(describe(applies->value("Dependent")), "root/cimv2:CIM_LogicalDevice.DeviceID=\"a\"");
}

TEST(Machine, OffersTwoTestsWithTheirRecords) {
  Machine machine;
  EXPECT_EQ(machine.memory.id, "Memory Test,mem0,System Memory");
  EXPECT_EQ(machine.processor.id, "Processor Test,cpu0,Processor 0");
  EXPECT_EQ(machine.memoryRecord->value("ServiceName").ToText(), "Memory Test");
  EXPECT_EQ(machine.processorRecord->value("ServiceName").ToText(), "Processor Test");
}

}  // namespace
}  // namespace support
