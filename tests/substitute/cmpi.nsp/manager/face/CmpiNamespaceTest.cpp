#include <gtest/gtest.h>

#include "framework/CMPINSPInstanceRegistry.h"
#include "framework/ICIMClass.h"
#include "framework/ICIMProperty.h"
#include "framework/INamespaceProvider.h"
#include "framework/TAddToVectorCallback.h"
#include "framework/TCMPIInstance.h"
#include "substitute/cmpi.nsp/broker/objects/EmbeddedInstance.h"
#include "substitute/cmpi.nsp/model/PathReference.h"
#include "tests/substitute/cmpi.nsp/manager/Zoo.h"

namespace cmpinsp {
namespace {

using namespace NZELVOR20;

struct CmpiNamespaceTest : testing::Test {
  std::vector<boost::shared_ptr<ICIMInstance>> instancesOf(const std::string& className) {
    std::vector<boost::shared_ptr<ICIMInstance>> list;
    zoo.top->GetClass(className, {})
        ->EnumerateInstances(TAddToVectorCallback<ICIMInstance>(list), true, {});
    return list;
  }
  boost::shared_ptr<ICIMInstance> tom() {
    return zoo.cmpi->GetInstance(referenceTo(Zoo::path("ZOO_Cat", "Tom"), zoo.top), {});
  }
  static std::string textOf(ICIMInstance& instance, const std::string& property) {
    return instance.GetProperty(property, {})->ToString();
  }

  Zoo zoo;
};

TEST_F(CmpiNamespaceTest, TheRunnersWayFromAReferenceToItsInstanceWorks) {
  const auto links = instancesOf("ZOO_Cares");
  ASSERT_EQ(links.size(), 3u);
  const TCIMReference keeper = links[0]->GetProperty("Keeper", {})->GetValue({}).ToReference();
  const boost::shared_ptr<ICIMNamespace> server = keeper.GetClass()->GetNamespace({});
  EXPECT_EQ(server, zoo.cmpi);
  EXPECT_EQ(textOf(*server->GetInstance(keeper, {}), "Name"), "Ann");
  auto* cmpi = dynamic_cast<TCMPINamespace*>(server.get());
  ASSERT_NE(cmpi, nullptr);
  EXPECT_EQ(cmpi->GetUpcallNamespace(), zoo.top);
}

TEST_F(CmpiNamespaceTest, PropertiesRenderThroughTheirValueMap) {
  const auto cat = tom();
  EXPECT_EQ(textOf(*cat, "mood"), "Angry");
  EXPECT_EQ(cat->GetProperty("MOOD", {})->GetValue({}), TCIMValue::Uint16(2));
  EXPECT_EQ(cat->GetProperty("mood", {})->GetName(), "Mood");
  EXPECT_EQ(cat->GetProperty("mood", {})->GetQualifier("values", {}).ToString(10), "{Calm,Angry}");
  EXPECT_TRUE(cat->GetProperty("Mood", {})->GetQualifier("Units", {}).IsNull());
  EXPECT_EQ(cat->GetPegasusNSPStr(), "");
}

TEST_F(CmpiNamespaceTest, AnUnknownPropertyIsAnError) {
  EXPECT_EQ(Zoo::codeOf([&] { tom()->GetProperty("Horns", {}); }), eVORNoSuchProperty);
  EXPECT_EQ(Zoo::codeOf([&] { tom()->SetProperty("Horns", TCIMValue("2"), {}); }),
            eVORNoSuchProperty);
}

TEST_F(CmpiNamespaceTest, SettingAPropertyLeavesEarlierHandlesAlone) {
  const auto cat = tom();
  const auto before = cat->GetProperty("Mood", {});
  const InstanceDataPtr shared = dataOf(*cat);
  cat->SetProperty("Mood", TCIMValue("1"), {});
  cat->SetProperty("Name", TCIMValue("Tim"), {});
  EXPECT_EQ(textOf(*cat, "Mood"), "Calm");
  EXPECT_EQ(before->ToString(), "Angry");
  EXPECT_EQ(shared->path.toText(), "root/cimv2:ZOO_Cat.Name=\"Tom\"");
  EXPECT_EQ(cat->GetObjectPath({}).GetPath(), "root/cimv2:ZOO_Cat.Name=\"Tim\"");
  EXPECT_EQ(Zoo::codeOf([&] { cat->SetProperty("Mood", TCIMValue("sad"), {}); }), eVORTypeMismatch);
}

TEST_F(CmpiNamespaceTest, AMethodCallReplacesTheParametersByTheOutput) {
  const auto cat = tom();
  auto* callable = dynamic_cast<TCMPIInstance*>(cat.get());
  ASSERT_NE(callable, nullptr);
  TParameterMap parameters{{"Grams", TCIMValue::Uint16(20)}};
  EXPECT_EQ(callable->InvokeMethod("Feed", parameters, {}), TCIMValue::Uint32(0));
  ASSERT_EQ(parameters.size(), 2u);
  EXPECT_EQ(parameters.begin()->first, "Answer");
}

TEST_F(CmpiNamespaceTest, ARefusedMethodCallEmptiesTheParameters) {
  const auto cat = tom();
  TParameterMap parameters{{"Grams", TCIMValue::Uint32(2000)}};
  const TCIMValue answer = dynamic_cast<TCMPIInstance&>(*cat).InvokeMethod("Feed", parameters, {});
  EXPECT_EQ(answer, TCIMValue::Uint32(5));
  EXPECT_TRUE(parameters.empty());
}

TEST_F(CmpiNamespaceTest, AFailedMethodCallLeavesTheParameters) {
  const auto cat = tom();
  TParameterMap parameters{{"Grams", TCIMValue::Uint32(13)}};
  auto& callable = dynamic_cast<TCMPIInstance&>(*cat);
  EXPECT_THROW(callable.InvokeMethod("Feed", parameters, {}), TVORException);
  EXPECT_EQ(parameters.size(), 1u);
}

TEST_F(CmpiNamespaceTest, InstancesLiveOnWhenTheNamespaceIsGone) {
  const auto cat = tom();
  const auto catClass = zoo.cmpi->GetClass("ZOO_Cat", {});
  zoo.top.reset();
  zoo.cmpi.reset();
  zoo.manager.reset();
  EXPECT_EQ(textOf(*cat, "Name"), "Tom");
  EXPECT_EQ(Zoo::codeOf([&] { cat->GetClass({}); }), eVORInvalidNamespace);
  EXPECT_FALSE(catClass->GetNamespace({}));
  TParameterMap none;
  EXPECT_EQ(Zoo::codeOf([&] { dynamic_cast<TCMPIInstance&>(*cat).InvokeMethod("Feed", none, {}); }),
            eVORInvalidNamespace);
}

TEST_F(CmpiNamespaceTest, TheRegistryKnowsWhatWasHandedOutUntilItIsCleared) {
  CMPINSPInstanceRegistry* registry = CMPINSPInstanceRegistry::GetRegistrySingleton();
  registry->ClearInstances();
  const boost::shared_ptr<ICIMInstance> cat = tom();
  const auto held = instancesOf("ZOO_Dog");
  EXPECT_EQ(registry->GetInstanceCount(), 2u);
  zoo.cmpi->ClearInstances({});
  EXPECT_EQ(registry->GetInstanceCount(), 0u);
  EXPECT_EQ(textOf(*held.at(0), "Name"), "Rex");
}

TEST_F(CmpiNamespaceTest, TheRegistryKeepsNothingAlive) {
  CMPINSPInstanceRegistry* registry = CMPINSPInstanceRegistry::GetRegistrySingleton();
  registry->ClearInstances();
  boost::weak_ptr<ICIMInstance> last;
  for (int i = 0; i < 5000; ++i) last = tom();
  EXPECT_TRUE(last.expired());
  const boost::shared_ptr<ICIMInstance> cat = tom();
  EXPECT_EQ(registry->GetInstanceCount(), 1u);
}

TEST_F(CmpiNamespaceTest, ClassesAreReached) {
  const auto cat = zoo.top->GetClass("zoo_cat", {});
  EXPECT_EQ(cat->GetName(), "ZOO_Cat");
  EXPECT_EQ(cat->GetSuperclass({})->GetName(), "ZOO_Animal");
  EXPECT_FALSE(zoo.top->GetClass("ZOO_Being", {})->GetSuperclass({}));
  EXPECT_EQ(zoo.top->GetClass("ZOO_Cares", {})->GetQualifier("Association", {}),
            TCIMValue::Boolean(true));
  std::vector<boost::shared_ptr<ICIMClass>> classes;
  zoo.top->GetClass("ZOO_Being", {})
      ->EnumerateSubclasses(TAddToVectorCallback<ICIMClass>(classes), true, {});
  EXPECT_EQ(classes.size(), 8u);
  classes.clear();
  zoo.top->EnumerateRootClasses(TAddToVectorCallback<ICIMClass>(classes), {});
  EXPECT_EQ(classes.size(), 2u);
}

TEST_F(CmpiNamespaceTest, ANewInstanceHasTheDefaults) {
  const auto cat = zoo.top->GetClass("ZOO_Cat", {})->AllocateInstance({});
  EXPECT_EQ(textOf(*cat, "Legs"), "4");
  EXPECT_EQ(textOf(*cat, "Mood"), "Calm");
  std::vector<boost::shared_ptr<ICIMProperty>> declared;
  zoo.top->GetClass("ZOO_Cat", {})
      ->EnumerateProperties(TAddToVectorCallback<ICIMProperty>(declared), {});
  ASSERT_EQ(declared.size(), 3u);
  EXPECT_EQ(declared[2]->GetName(), "Legs");
  EXPECT_EQ(declared[2]->ToString(), "4");
}

TEST_F(CmpiNamespaceTest, APropertyThatAReceiverKeepsStaysTheOneThatItGot) {
  std::vector<boost::shared_ptr<ICIMProperty>> kept;
  std::string all;
  tom()->EnumerateProperties(
      [&](const boost::shared_ptr<ICIMProperty>& property) {
        all += property->GetName() + " ";
        if (property->GetName() != "Name") kept.push_back(property);
        return true;
      },
      {});
  EXPECT_EQ(all, "Name Mood Legs ");
  ASSERT_EQ(kept.size(), 2u);
  EXPECT_EQ(kept[0]->GetName() + "=" + kept[0]->ToString(), "Mood=Angry");
  EXPECT_EQ(kept[1]->GetName(), "Legs");
}

TEST_F(CmpiNamespaceTest, QueriesForEverythingAreEnumerations) {
  std::vector<boost::shared_ptr<ICIMInstance>> list;
  zoo.top->ExecuteQuery("WQL", "SELECT * FROM ZOO_Dog", TAddToVectorCallback<ICIMInstance>(list),
                        {});
  EXPECT_EQ(list.size(), 1u);
  const auto query = [&](const char* text) {
    return Zoo::codeOf(
        [&] { zoo.cmpi->ExecuteQuery("WQL", text, TAddToVectorCallback<ICIMInstance>(list), {}); });
  };
  EXPECT_EQ(query("select * from ZOO_Dog where Name = 'Rex'"), eVORSuccess);
  EXPECT_EQ(list.size(), 2u);
  EXPECT_EQ(query("select * from ZOO_Dog where Name = 'Max'"), eVORSuccess);
  EXPECT_EQ(list.size(), 2u);
  EXPECT_EQ(query("delete everything"), eVORInvalidQuery);
  EXPECT_EQ(query("select * from ZOO_Unicorn"), eVORInvalidClass);
}

TEST_F(CmpiNamespaceTest, EveryProviderIsNamedAndLoads) {
  std::string names;
  zoo.top->EnumerateProviders(
      [&](const boost::shared_ptr<INamespaceProvider>& provider) {
        EXPECT_EQ(provider->GetNamespace({}), zoo.cmpi);
        names += provider->GetName() + " ";
        return true;
      },
      {});
  EXPECT_EQ(names, "Zoo_Animals Zoo_Dogs Zoo_Keepers Zoo_Cares ");
}

TEST_F(CmpiNamespaceTest, WhatIsNotOfferedSaysSo) {
  EXPECT_EQ(Zoo::codeOf([&] { zoo.cmpi->AllocateClass("X", "", {}); }), eVORNotSupported);
  EXPECT_EQ(Zoo::codeOf([&] { zoo.cmpi->AllocateQualifierDecl("X", {}); }), eVORNotSupported);
  EXPECT_EQ(Zoo::codeOf([&] { zoo.cmpi->Subscribe("WQL", "x", {}, {}); }), eVORNotSupported);
  EXPECT_EQ(Zoo::codeOf([&] { zoo.cmpi->AddUnderlyingNamespace(zoo.top); }), eVORNotSupported);
  EXPECT_EQ(Zoo::codeOf([&] { zoo.cmpi->Consume({}); }), eVORNotSupported);
  EXPECT_EQ(Zoo::codeOf([&] { zoo.cmpi->ModifyInstance({}, {}); }), eVORInvalidParameter);
  EXPECT_EQ(Zoo::codeOf([&] { zoo.cmpi->GetQualifierDecl("Nonsense", {}); }), eVORNotFound);
  EXPECT_EQ(zoo.cmpi->GetQualifierDecl("key", {})->name, "Key");
}

}  // namespace
}  // namespace cmpinsp
