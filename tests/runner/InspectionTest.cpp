#include <gtest/gtest.h>

#include "tests/support/Outcome.h"
#include "tests/support/WithRunner.h"

namespace support {
namespace {

using NZELVOR20::TCIMValue;

const char kProduct[] = "ZELSG_VORProduct";
const char kNotFound[] = "Class Not Found\n";

/// Two disks in the namespace of the runner, and one product at each of two providers.
class Inspected : public WithRunner<> {
 public:
  Inspected() {
    addInstance("disk1", "CIM_Disk", "DeviceID", "sda")->set("Size", TCIMValue::Uint32(7));
    addInstance("disk2", "CIM_Disk", "DeviceID", "sdb");
    addProduct(first, "Memory Tests");
    addProduct(second, "Disk Tests");
    root->addProvider("memory.so", first);
    root->addProvider("disk.so", second);
  }

  NamespacePtr first = ScriptedNamespace::makeCmpi("first");
  NamespacePtr second = ScriptedNamespace::makeCmpi("second");

 private:
  void addProduct(const NamespacePtr& ns, const std::string& name) {
    const ClassPtr product(new ScriptedClass(kProduct, ns->name() + ":product"));
    const InstancePtr instance =
        ScriptedInstance::makeCmpi(ns->name() + "Product", {kProduct, "Name", name, product});
    instance->set("Name", TCIMValue(name));
    product->add(instance);
    ns->addClass(product);
  }
};

const char kDisks[] =
    "TRunnerCollectClassInstances(root/cimv2:CIM_Disk.DeviceID=\"sda\")\n"
    "DeviceID : sda\nSize : 7\n\n"
    "TRunnerCollectClassInstances(root/cimv2:CIM_Disk.DeviceID=\"sdb\")\n"
    "DeviceID : sdb\n\n";

const char kMemoryProduct[] =
    "TRunnerCollectClassInstances(root/cimv2:ZELSG_VORProduct.Name=\"Memory Tests\")\n"
    "Name : Memory Tests\n\n";
const char kDiskProduct[] =
    "TRunnerCollectClassInstances(root/cimv2:ZELSG_VORProduct.Name=\"Disk Tests\")\n"
    "Name : Disk Tests\n\n";

TEST(EI, WritesTheInstancesOfTheClass) {
  Inspected world;
  world.runner().EI("CIM_Disk");
  EXPECT_EQ(world.journal.output(), kDisks);
  EXPECT_EQ(world.journal.log(), lines({trace("DiagsRunner::EI")}));
}

TEST(EI, LogsFirstAndAsksTheRunnersNamespaceWithoutOptions) {
  Inspected world;
  world.theClass("CIM_Empty");
  world.runner().EI("CIM_Empty");
  EXPECT_EQ(world.journal.all(),
            lines({trace("DiagsRunner::EI"), "ns root.GetClass(\"CIM_Empty\", {})",
                   "class CIM_Empty.EnumerateInstances(deep=true, {})"}));
}

TEST(EI, AsksTheNamespaceThatItIsGiven) {
  Inspected world;
  world.runner().EI("CIM_Disk", world.host->handle());
  EXPECT_EQ(world.journal.output(), kDisks);
  EXPECT_EQ(world.journal.countOf("ns host.GetClass(\"CIM_Disk\", {})"), 1);
  EXPECT_EQ(world.journal.log(), lines({trace("DiagsRunner::EI")}));
}

class AClassThatIsNotThere : public testing::TestWithParam<Fault> {};

TEST_P(AClassThatIsNotThere, IsReportedOnStandardOutput) {
  Inspected world;
  DiagsRunner& runner = world.runner();
  world.script.failOn("GetClass", GetParam(), Script::kAlways);
  runner.EI("CIM_Disk");
  runner.EI("CIM_Disk", world.host->handle());
  EXPECT_EQ(world.journal.output(), std::string(kNotFound) + kNotFound);
}

INSTANTIATE_TEST_SUITE_P(, AClassThatIsNotThere, testing::ValuesIn(kEveryFault));

TEST(EI, ReportsAnUnknownClassWithBothOverloads) {
  Inspected world;
  world.runner().EI("CIM_Nothing");
  EXPECT_EQ(world.journal.all(),
            lines({trace("DiagsRunner::EI"), "ns root.GetClass(\"CIM_Nothing\", {})",
                   out(kNotFound), flushed()}));
  world.runner().EI("CIM_Nothing", world.host->handle());
  EXPECT_EQ(world.journal.output(), std::string(kNotFound) + kNotFound);
}

TEST(EI, AnEmptyNamespaceHasNoClasses) {
  Inspected world;
  world.runner().EI("CIM_Disk", {});
  world.runner().EI(kProduct, {});
  EXPECT_EQ(world.journal.output(), std::string(kNotFound) + kNotFound);
  EXPECT_EQ(world.journal.calls(), "");
}

TEST(EI, PassesOnWhatTheEnumerationThrows) {
  Inspected world;
  DiagsRunner& runner = world.runner();
  world.script.failOn("EnumerateInstances", Fault::otherException);
  EXPECT_THROW(runner.EI("CIM_Disk"), int);
}

TEST(EI, AsksEachProviderForItsProducts) {
  Inspected world;
  world.runner().EI(kProduct);
  EXPECT_EQ(world.journal.output(), std::string(kMemoryProduct) + kDiskProduct);
  EXPECT_EQ(world.journal.log(), lines({trace("DiagsRunner::EI"),
                                        trace("TRunnerCollectClassFromProvider for: memory.so"),
                                        trace("TRunnerCollectClassFromProvider for: disk.so")}));
}

TEST(EI, EnumeratesTheProvidersInsteadOfLookingTheProductClassUp) {
  Inspected world;
  world.runner().EI(kProduct);
  EXPECT_EQ(world.journal.countOf("ns root.EnumerateProviders({})"), 1);
  EXPECT_EQ(world.journal.calls().find("ns root.GetClass"), std::string::npos);
}

TEST(EI, AsksTheProvidersOfTheNamespaceThatItIsGiven) {
  Inspected world;
  world.host->addProvider("disk.so", world.second);
  world.runner().EI(kProduct, world.host->handle());
  EXPECT_EQ(world.journal.output(), kDiskProduct);
}

TEST(EI, StopsAtTheFirstProductWithTheAuxiliaryFlag) {
  Inspected world;
  DiagsRunnerAccess::flagAux(world.runner()) = true;
  world.runner().EI(kProduct);
  EXPECT_EQ(world.journal.output(), kMemoryProduct);
}

// Catches products that are written once for each provider of their namespace.
TEST(EI, WritesAProductOfANamespaceThatProvidersShareOnce) {
  Inspected world;
  world.root->addProvider("memory2.so", world.first);
  world.runner().EI(kProduct);
  EXPECT_EQ(world.journal.output(), std::string(kMemoryProduct) + kDiskProduct);
  EXPECT_EQ(world.journal.countOf(trace("TRunnerCollectClassFromProvider for: memory2.so")), 1);
  EXPECT_EQ(world.journal.countOf("ns first.GetClass(\"ZELSG_VORProduct\", {})"), 1);
}

TEST(EI, ReportsAProductClassThatNoProviderOffersOnce) {
  for (const Fault fault : {Fault::emptyHandle, Fault::vorException}) {
    Inspected world;
    DiagsRunner& runner = world.runner();
    world.script.failOn("GetClass", fault, Script::kAlways);
    runner.EI(kProduct);
    EXPECT_EQ(world.journal.output(), kNotFound);
    EXPECT_EQ(world.journal.countOf(trace("TRunnerCollectClassFromProvider for: disk.so")), 1);
  }
}

// Catches a class that counts as missing because its instances cannot be had.
TEST(EI, AProductClassWhoseEnumerationThrowsIsNotReportedAsMissing) {
  for (const Fault fault : {Fault::vorException, Fault::standardException, Fault::otherException}) {
    Inspected world;
    DiagsRunner& runner = world.runner();
    world.script.failOn("EnumerateInstances", fault, Script::kAlways);
    runner.EI(kProduct);
    EXPECT_EQ(world.journal.output(), "") << nameOf(fault);
    EXPECT_EQ(world.journal.countOf(
                  error("TRunnerCollectClassFromProvider for: disk.so threw exception ")),
              1);
  }
}

TEST(EI, PassesOnWhatTheEnumerationOfTheProvidersThrowsAndReportsNothing) {
  Inspected world;
  DiagsRunner& runner = world.runner();
  world.script.failOn("EnumerateProviders", Fault::standardException);
  EXPECT_THROW(runner.EI(kProduct), std::runtime_error);
  EXPECT_EQ(world.journal.output(), "");
}

// Catches a namespace that counts as inspected before it has answered.
TEST(EI, LogsEachOfTheProvidersThatShareANamespaceThatFails) {
  Inspected world;
  world.root->addProvider("memory2.so", world.first);
  DiagsRunner& runner = world.runner();
  world.script.failOn("ns first.GetClass", Fault::standardException, Script::kAlways);
  runner.EI(kProduct);
  for (const char* name : {"memory.so", "memory2.so"}) {
    EXPECT_EQ(world.journal.countOf(error(std::string("TRunnerCollectClassFromProvider for: ") +
                                          name + " threw exception ")),
              1)
        << name;
  }
  EXPECT_EQ(world.journal.output(), kDiskProduct);
}

TEST(EI, GoesOnAfterAProviderWhoseNameCannotBeAskedFor) {
  for (const Fault fault : {Fault::vorException, Fault::standardException, Fault::otherException}) {
    Inspected world;
    DiagsRunner& runner = world.runner();
    world.script.failOn("provider memory.so.GetName", fault);
    runner.EI(kProduct);
    EXPECT_EQ(world.journal.output(), kDiskProduct) << nameOf(fault);
    EXPECT_EQ(world.journal.log(),
              lines({trace("DiagsRunner::EI"),
                     error("TRunnerCollectClassFromProvider for:  threw exception "),
                     trace("TRunnerCollectClassFromProvider for: disk.so")}));
  }
}

TEST(EI, FindsAProductClassThatOneProviderAloneOffers) {
  Inspected world;
  DiagsRunner& runner = world.runner();
  world.script.failOn("GetClass", Fault::vorException);
  runner.EI(kProduct);
  EXPECT_EQ(world.journal.output(), kDiskProduct);
}

TEST(EI, ComparesTheProductClassCaseSensitively) {
  Inspected world;
  world.runner().EI("zelsg_vorproduct");
  EXPECT_EQ(world.journal.output(), kNotFound);
}

}  // namespace
}  // namespace support
