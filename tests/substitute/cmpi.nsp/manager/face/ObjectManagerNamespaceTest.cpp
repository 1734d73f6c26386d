#include <gtest/gtest.h>

#include "framework/ICIMClass.h"
#include "framework/INamespaceProvider.h"
#include "framework/TAddToVectorCallback.h"
#include "framework/TCIMQualifierDecl.h"
#include "substitute/vorcore/inmem/InmemNamespace.h"
#include "tests/substitute/cmpi.nsp/manager/Zoo.h"

namespace cmpinsp {
namespace {

using namespace NZELVOR20;

struct ObjectManagerNamespaceTest : testing::Test {
  ObjectManagerNamespaceTest() {
    memory->AllocateClass("MEM_Thing", "", {});
    memory->AllocateClass("ZOO_Cat", "", {});
    top->AddUnderlyingNamespace(memory);
    memoryFamily = memory->GetNamespaceProvider({})->GetName();
  }

  /// Who serves the class that a family is asked for.
  boost::shared_ptr<ICIMNamespace> serverOf(const char* className, const TOptionsMap& options) {
    return top->GetClass(className, options)->GetNamespace({});
  }
  static TOptionsMap family(const TCIMValue& name) { return {{"nspID", name}}; }

  Zoo zoo;
  boost::shared_ptr<ObjectManagerNamespace> top = zoo.top;
  boost::shared_ptr<TInmemNamespace> memory = TInmemNamespace::make("root/memory");
  std::string memoryFamily;
};

TEST_F(ObjectManagerNamespaceTest, AFamilyAnswersForItself) {
  EXPECT_EQ(serverOf("ZOO_Cat", family("cmpi")), zoo.cmpi);
  EXPECT_EQ(serverOf("ZOO_Cat", family(TCIMValue(memoryFamily))), memory);
  EXPECT_EQ(Zoo::codeOf([&] { top->GetClass("MEM_Thing", family("cmpi")); }), eVORInvalidClass);
}

TEST_F(ObjectManagerNamespaceTest, WithoutAFamilyTheFirstThatKnowsAnswers) {
  for (const TOptionsMap& options : {TOptionsMap{}, family("plugin"), family(TCIMValue())}) {
    EXPECT_EQ(serverOf("ZOO_Cat", options), zoo.cmpi);
    EXPECT_EQ(serverOf("MEM_Thing", options), memory);
  }
  EXPECT_EQ(Zoo::codeOf([&] { top->GetClass("NO_Such", {}); }), eVORInvalidClass);
}

TEST_F(ObjectManagerNamespaceTest, AFamilyThatIsNotThereIsNotFoundByName) {
  try {
    top->GetClass("ZOO_Cat", family("pegasus"));
    FAIL();
  } catch (const TVORException& error) {
    EXPECT_EQ(error.GetStatus().GetStatusCode(), eVORNotFound);
    EXPECT_NE(std::string(error.what()).find("pegasus"), std::string::npos);
  }
}

TEST_F(ObjectManagerNamespaceTest, InstancesAreRoutedLikeClasses) {
  const TCIMReference tom(top, "root/cimv2", "ZOO_Cat", {{"Name", TCIMValue("Tom")}});
  EXPECT_TRUE(top->GetInstance(tom, family("cmpi")));
  EXPECT_TRUE(top->GetInstance(tom, {}));
  const TCIMReference nobody(top, "root/cimv2", "ZOO_Cat", {{"Name", TCIMValue("No")}});
  EXPECT_EQ(Zoo::codeOf([&] { top->GetInstance(nobody, {}); }), eVORNotFound);
}

TEST_F(ObjectManagerNamespaceTest, NewClassesGoWhereTheyCanBeMade) {
  top->AllocateClass("NEW_Thing", "", {});
  EXPECT_EQ(serverOf("NEW_Thing", {}), memory);
}

TEST_F(ObjectManagerNamespaceTest, RootClassesOfAllNamespacesComeOnce) {
  std::string names;
  top->EnumerateRootClasses(
      [&](const boost::shared_ptr<ICIMClass>& root) {
        names += root->GetName() + " ";
        return root->GetName() != "MEM_Thing";
      },
      {});
  EXPECT_EQ(names, "ZOO_Being ZOO_Cares MEM_Thing ");
}

TEST_F(ObjectManagerNamespaceTest, NothingLiesAboveIt) {
  EXPECT_EQ(Zoo::codeOf([&] { top->SetUpcallNamespace(memory); }), eVORNotSupported);
  EXPECT_EQ(Zoo::codeOf([&] { top->AddUnderlyingNamespace({}); }), eVORInvalidParameter);
  EXPECT_EQ(memory->GetUpcallNamespace(), top);
}

}  // namespace
}  // namespace cmpinsp
