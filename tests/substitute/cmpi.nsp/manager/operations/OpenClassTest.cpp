#include <gtest/gtest.h>

#include "framework/ICIMClass.h"
#include "framework/ICIMInstance.h"
#include "framework/ICIMProperty.h"
#include "framework/TCIMCopy.h"
#include "substitute/vorcore/inmem/InmemNamespace.h"
#include "tests/substitute/cmpi.nsp/manager/Zoo.h"

/// Classes of a package whose superclasses the installation does not have.
namespace cmpinsp {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

const char* const kOpenSchema = R"(
  class ZOO_Animal : ZOO_Being { uint8 Legs = 4; };
  class ZOO_Cat : ZOO_Animal { [Override("Name")] string Name; };
  class ZOO_Dog : ZOO_Animal { };
  class ZOO_Keeper : ZOO_Person { };
  instance of ZOO_Dog { Name = "Rex"; Age = 3; };
  instance of ZOO_Dog { Name = "Bello"; Age = 4; };)";

Zoo openZoo() {
  return Zoo({{"Zoo_Animals",
               {zooServes("ZOO_Animal", kInstanceInterface),
                zooServes("ZOO_Cat", kInstanceInterface | kMethodInterface)}},
              {"Zoo_Keepers", {zooServes("ZOO_Keeper", kInstanceInterface)}}},
             kOpenSchema);
}

TEST(OpenClass, TakesWhatTheProviderSetsWithItsType) {
  const Zoo zoo = openZoo();
  const InstanceDataPtr tom = zoo.manager->getInstance(Zoo::path("ZOO_Cat", "Tom"), nullptr);
  ASSERT_TRUE(tom);
  EXPECT_EQ(tom->find("Mood")->GetType(), ECIMType::eUint16);
  EXPECT_EQ(tom->find("Mood")->ToUint64(), 2u);
  EXPECT_EQ(tom->find("Legs")->GetType(), ECIMType::eUint8);
}

TEST(OpenClass, HasTheKeysOfItsPaths) {
  const Zoo zoo = openZoo();
  const InstanceDataPtr ann = zoo.manager->getInstance(Zoo::path("ZOO_Keeper", "Ann"), nullptr);
  EXPECT_EQ(ann->path.toText(), "root/cimv2:ZOO_Keeper.Name=\"Ann\"");
  const InstanceDataPtr tom = zoo.manager->getInstance(Zoo::path("ZOO_Cat", "Tom"), nullptr);
  EXPECT_EQ(tom->path.toText(), "root/cimv2:ZOO_Cat.Name=\"Tom\"");
}

// Catches instances that are taken for each other since their class declares no key.
TEST(OpenClass, EachOfItsInstancesIsThereOnce) {
  const Zoo zoo = openZoo();
  EXPECT_EQ(zoo.namesOf("ZOO_Cat"), "Mia Tom ");
  EXPECT_EQ(zoo.namesOf("ZOO_Keeper"), "Ann Bob ");
  EXPECT_EQ(zoo.namesOf("ZOO_Dog"), "Rex Bello ");
}

TEST(OpenClass, AnInstanceOfOneBesideMayBelongToItsUndeclaredSuperclass) {
  const Zoo zoo = openZoo();
  EXPECT_NE(zoo.namesOf("ZOO_Animal").find("Intruder"), std::string::npos);
}

TEST(OpenClass, AKeyOfThePathStaysWhereOtherPropertiesAreWanted) {
  const Zoo zoo = openZoo();
  const std::vector<std::string> wanted{"Mood"};
  const InstanceDataPtr tom = zoo.manager->getInstance(Zoo::path("ZOO_Cat", "Tom"), &wanted);
  EXPECT_EQ(tom->find("Name")->ToText(), "Tom");
  EXPECT_EQ(tom->find("Mood")->ToUint64(), 2u);
  EXPECT_TRUE(tom->find("Legs")->IsNull());
}

TEST(OpenClass, AStaticInstanceIsFoundByTheKeysThatAreAskedFor) {
  const Zoo zoo = openZoo();
  EXPECT_EQ(
      zoo.manager->getInstance(Zoo::path("ZOO_Dog", "Bello"), nullptr)->find("Age")->ToUint64(),
      4u);
  EXPECT_EQ(Zoo::codeOf([&] { zoo.manager->getInstance(Zoo::path("ZOO_Dog", "Lassie"), nullptr); }),
            NZELVOR20::eVORNotFound);
}

TEST(OpenClass, HasNoSuperclassForAClient) {
  const Zoo zoo = openZoo();
  EXPECT_FALSE(zoo.top->GetClass("ZOO_Animal", {})->GetSuperclass({}));
  EXPECT_EQ(zoo.top->GetClass("ZOO_Cat", {})->GetSuperclass({})->GetName(), "ZOO_Animal");
  EXPECT_EQ(Zoo::codeOf([&] { zoo.top->GetClass("ZOO_Being", {}); }), NZELVOR20::eVORInvalidClass);
}

// Catches a copy, as records are kept for the report, that has the declared properties alone.
TEST(OpenClass, ACopyOfAnInstanceHasAllOfIt) {
  const Zoo zoo = openZoo();
  const auto report = NZELVOR20::TInmemNamespace::make("root/report");
  zoo.top->GetClass("ZOO_Cat", {})
      ->EnumerateInstances(
          [&](const boost::shared_ptr<NZELVOR20::ICIMInstance>& cat) {
            const auto copy = NZELVOR20::TCIMCopy::CopyInstance(cat, report);
            EXPECT_EQ(copy->GetProperty("Mood", {})->GetValue({}),
                      cat->GetProperty("Mood", {})->GetValue({}));
            EXPECT_EQ(copy->GetProperty("Name", {})->GetValue({}),
                      cat->GetProperty("Name", {})->GetValue({}));
            return true;
          },
          true, {});
}

TEST(OpenClass, TakesAnyPropertyFromAClient) {
  const Zoo zoo = openZoo();
  const auto made = zoo.top->GetClass("ZOO_Cat", {})->AllocateInstance({});
  made->SetProperty("Colour", TCIMValue("black"), {});
  EXPECT_EQ(made->GetProperty("colour", {})->GetValue({}).GetText(), "black");
}

}  // namespace
}  // namespace cmpinsp
