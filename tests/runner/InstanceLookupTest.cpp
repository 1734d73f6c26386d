#include <gtest/gtest.h>

#include "runner/InstanceLookup.h"
#include "tests/runner/Row.h"
#include "tests/support/Outcome.h"
#include "tests/support/World.h"

namespace diagsrunner {
namespace {

using NZELVOR20::TCIMReference;
using NZELVOR20::TCIMValue;
using support::Outcome;

/// A world with a disk, looked up with options that differ from call to call.
class DiskLookup : public support::World {
 public:
  support::InstancePtr disk = addInstance("disk", "CIM_Disk", "DeviceID", "sda");
  ClassHandle diskClass = theClass("CIM_Disk");
  const NZELVOR20::TOptionsMap forNamespace{{"for", TCIMValue("namespace")}};
  const NZELVOR20::TOptionsMap forInstance{{"for", TCIMValue("instance")}};

  Outcome fetch() {
    return support::outcomeOf([this] {
      return support::describe(
          fetchInstance(disk->reference(), diskClass, {forNamespace, forInstance}));
    });
  }
  Outcome fetchByUpcall() {
    return support::outcomeOf([this] {
      return support::describe(
          fetchThroughUpcall(disk->reference(), diskClass, {forNamespace, forInstance}));
    });
  }
};

const char kPath[] = "root/cimv2:CIM_Disk.DeviceID=\"sda\"";

TEST(FamilyOptions, HoldTheFamilyAlone) {
  support::World world;
  EXPECT_EQ(support::describe(familyOptions("plugin")), "{nspID=\"plugin\"}");
}

TEST(FetchInstance, AsksTheNamespaceThatServesTheClass) {
  DiskLookup world;
  const Outcome outcome = world.fetch();
  EXPECT_EQ(outcome.text, "inst disk");
  EXPECT_EQ(outcome.all, support::lines({"class CIM_Disk.GetNamespace({for=\"namespace\"})",
                                         "ns cmpi.GetInstance(" + std::string(kPath) +
                                             ", {for=\"instance\"})"}));
}

TEST(FetchInstance, SaysWhatIsMissing) {
  DiskLookup world;
  world.theClass("CIM_Disk")->serveBy({});
  EXPECT_EQ(world.fetch().text, "diagsrunner: no namespace that serves the class");
  world.diskClass.reset();
  const Outcome outcome = world.fetch();
  EXPECT_EQ(outcome.kind, Outcome::Kind::standardException);
  EXPECT_EQ(outcome.text, "diagsrunner: no class of the referenced instance");
}

TEST(FetchInstance, HandsAnEmptyInstanceOn) {
  DiskLookup world;
  world.cmpi->setInTurn(kPath, {support::InstancePtr()});
  EXPECT_EQ(world.fetch().text, "inst (empty)");
}

TEST(FetchThroughUpcall, LooksTheClassUpThereByName) {
  DiskLookup world;
  const Outcome outcome = world.fetchByUpcall();
  EXPECT_EQ(outcome.text, "inst disk");
  EXPECT_EQ(
      outcome.all,
      support::lines(
          {"class CIM_Disk.GetName()", "class CIM_Disk.GetNamespace({for=\"namespace\"})",
           "ns cmpi.GetUpcallNamespace()", "ns upcall.GetClass(\"CIM_Disk\", {for=\"instance\"})",
           "class upcall:CIM_Disk.GetNamespace({for=\"namespace\"})",
           "ns plugin.GetInstance(" + std::string(kPath) + ", {for=\"instance\"})"}));
}

TEST(FetchThroughUpcall, ReplacesTheClassByTheOneFound) {
  DiskLookup world;
  world.fetchByUpcall();
  EXPECT_EQ(world.diskClass, world.upcallClass("CIM_Disk"));
}

struct Missing : support::Row {
  void (*spoil)(DiskLookup& world);
  const char* message;
};

const Missing kMissing[] = {{{"NoClass"},
                             [](DiskLookup& w) { w.diskClass.reset(); },
                             "diagsrunner: no class of the referenced instance"},
                            {{"NoServingNamespace"},
                             [](DiskLookup& w) { w.theClass("CIM_Disk")->serveBy({}); },
                             "diagsrunner: no CMPI namespace that serves class CIM_Disk"},
                            {{"AServingNamespaceWithoutProviders"},
                             [](DiskLookup& w) { w.theClass("CIM_Disk")->serveBy(w.host); },
                             "diagsrunner: no CMPI namespace that serves class CIM_Disk"},
                            {{"NoUpcallNamespace"},
                             [](DiskLookup& w) { w.cmpi->setUpcall({}); },
                             "diagsrunner: no upcall namespace"},
                            {{"NoClassThere"},
                             [](DiskLookup& w) { w.upcall->setEmptyClass("CIM_Disk"); },
                             "diagsrunner: no class of the referenced instance"},
                            {{"NoServingNamespaceThere"},
                             [](DiskLookup& w) { w.upcallClass("CIM_Disk")->serveBy({}); },
                             "diagsrunner: no namespace that serves the class"}};

class FetchThroughUpcallWith : public testing::TestWithParam<Missing> {};

TEST_P(FetchThroughUpcallWith, SaysWhatIsMissing) {
  DiskLookup world;
  GetParam().spoil(world);
  const Outcome outcome = world.fetchByUpcall();
  EXPECT_EQ(outcome.kind, Outcome::Kind::standardException);
  EXPECT_EQ(outcome.text, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(, FetchThroughUpcallWith, testing::ValuesIn(kMissing), support::RowName());

}  // namespace
}  // namespace diagsrunner
