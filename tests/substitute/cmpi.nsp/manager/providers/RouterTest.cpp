#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "substitute/cmpi.nsp/manager/providers/Router.h"
#include "tests/substitute/cmpi.nsp/manager/Zoo.h"

namespace cmpinsp {
namespace {

/// Routes as "Provider:Class@namespace", in their order.
std::string textOf(const std::vector<Route>& routes) {
  std::string text;
  for (const Route& route : routes) {
    text += (text.empty() ? "" : " ") + route.provider->registration().name + ":" +
            route.className + "@" + route.nameSpace;
  }
  return text;
}

/// A router over the classes of the zoo.
struct RouterTest : testing::Test {
  void SetUp() override {
    std::vector<substitute::Problem> problems;
    const std::vector<CompilationUnit> units{parseMof("zoo.mof", zooSchema(), problems)};
    QualifierTable qualifiers;
    buildClasses(units, qualifiers, classes, problems);
    for (const auto& provider : served) {
      providers.push_back(boost::make_shared<ManagedProvider>(
          RegisteredProvider{provider.first, "diagsZoo", {}, provider.second}, ZOO_FOLDER, trust,
          *zoo.manager));
    }
    router = std::make_unique<Router>(classes, providers);
  }

  const ZooProviders served{
      {"Beings", {zooServes("ZOO_Being", kInstanceInterface)}},
      {"Animals",
       {zooServes("ZOO_Animal", kInstanceInterface), zooServes("ZOO_Cat", kInstanceInterface)}},
      {"Cats", {zooServes("ZOO_Cat", kMethodInterface, "root/cats")}},
      {"Links", {zooServes("ZOO_Cares", kAssociationInterface, "root/x")}},
      {"Tends",
       {zooServes("ZOO_Tends", kAssociationInterface),
        zooServes("ZOO_Cares", kInstanceInterface)}}};
  const Zoo zoo{ZooProviders{}};
  LibraryTrust trust{ZOO_FOLDER};
  ClassTable classes;
  std::vector<ManagedProviderPtr> providers;
  std::unique_ptr<Router> router;
};

TEST_F(RouterTest, DirectKeepsToClassNamespaceAndInterface) {
  EXPECT_EQ(textOf(router->direct("zoo_cat", "", kInstanceInterface)),
            "Animals:ZOO_Cat@root/cimv2");
  EXPECT_EQ(textOf(router->direct("ZOO_Cat", "", kMethodInterface)), "Cats:ZOO_Cat@root/cats");
  EXPECT_EQ(textOf(router->direct("ZOO_Cat", "root/cimv2", kMethodInterface)), "");
  EXPECT_EQ(textOf(router->direct("ZOO_Cat", "root/cats", kMethodInterface | kInstanceInterface)),
            "Cats:ZOO_Cat@root/cats");
  EXPECT_EQ(textOf(router->direct("ZOO_Dog", "", kInstanceInterface)), "");
}

TEST_F(RouterTest, DownwardsGoesFromTheClassToItsSubclasses) {
  EXPECT_EQ(textOf(router->downwards("ZOO_Being", "", kInstanceInterface)),
            "Beings:ZOO_Being@root/cimv2 Animals:ZOO_Animal@root/cimv2 Animals:ZOO_Cat@root/cimv2");
}

// Every provider once, asked for the class as it was given.
TEST_F(RouterTest, UpwardsGoesFromTheClassToItsSuperclasses) {
  EXPECT_EQ(textOf(router->upwards("ZOO_Cat", "", kInstanceInterface)),
            "Animals:ZOO_Cat@root/cimv2 Beings:ZOO_Cat@root/cimv2");
  EXPECT_EQ(textOf(router->upwards("ZOO_Animal", "", kInstanceInterface)),
            "Animals:ZOO_Animal@root/cimv2 Beings:ZOO_Animal@root/cimv2");
}

// What a class is below is known before it is made.
TEST_F(RouterTest, ARouteIsFoundWithoutMakingAClass) {
  ClassTable later;  // without a source, which could make one
  ASSERT_TRUE(later.addLater("ZOO_Being", "", 0));
  ASSERT_TRUE(later.addLater("ZOO_Animal", "ZOO_Being", 0));
  ASSERT_TRUE(later.addLater("ZOO_Cat", "ZOO_Animal", 0));
  const Router ofLater(later, providers);
  for (const char* const name : {"ZOO_Cat", "ZOO_Animal", "ZOO_Being"}) {
    EXPECT_EQ(textOf(ofLater.towardsInstance(name, "", kInstanceInterface)),
              textOf(router->towardsInstance(name, "", kInstanceInterface)));
  }
}

TEST_F(RouterTest, TowardsAnInstanceGoesUpAndThenDown) {
  EXPECT_EQ(textOf(router->towardsInstance("ZOO_Animal", "", kInstanceInterface)),
            "Animals:ZOO_Animal@root/cimv2 Beings:ZOO_Animal@root/cimv2 "
            "Animals:ZOO_Cat@root/cimv2");
}

TEST_F(RouterTest, AssociationsAreThoseOfTheClassAndItsSubclassesOrAll) {
  EXPECT_EQ(textOf(router->associations("ZOO_Cares", "")),
            "Links:ZOO_Cares@root/x Tends:ZOO_Cares@root/cimv2");
  EXPECT_EQ(textOf(router->associations("ZOO_Tends", "")), "Tends:ZOO_Tends@root/cimv2");
  EXPECT_EQ(textOf(router->associations("", "")), "Links:@root/x Tends:@root/cimv2");
  EXPECT_EQ(textOf(router->associations("", "root/x")), "Links:@root/x");
  EXPECT_EQ(textOf(router->associations("ZOO_Cares", "root/cimv2")), "Tends:ZOO_Cares@root/cimv2");
}

TEST_F(RouterTest, KnowsWhatIsRegisteredWhereverThatIs) {
  EXPECT_TRUE(router->isRegistered("zoo_tends"));
  EXPECT_FALSE(router->isRegistered("ZOO_Dog"));
}

}  // namespace
}  // namespace cmpinsp
