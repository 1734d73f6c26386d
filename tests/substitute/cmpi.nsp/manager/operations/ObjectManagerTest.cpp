#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "framework/ICIMClass.h"
#include "tests/substitute/cmpi.nsp/broker/KeptLog.h"
#include "tests/substitute/cmpi.nsp/manager/Zoo.h"

namespace cmpinsp {
namespace {

using NZELVOR20::TCIMValue;

TEST(ObjectManager, DeepEnumerationHasEachInstanceOnce) {
  const Zoo zoo;
  EXPECT_EQ(zoo.namesOf("ZOO_Animal"), "Tom Nessie Mia Rex ");
  EXPECT_EQ(zoo.namesOf("zoo_cat"), "Mia Tom ");
}

TEST(ObjectManager, FlatEnumerationLeavesSubclassesOut) {
  const Zoo zoo;
  EXPECT_EQ(zoo.namesOf("ZOO_Animal", false), "Nessie ");
}

TEST(ObjectManager, NamesAreEnumeratedLikeInstances) {
  const Zoo zoo;
  std::string names;
  zoo.manager->enumerateInstanceNames({"", "ZOO_Animal", {}}, [&](const ObjectPath& path) {
    names += path.toText() + "\n";
    return true;
  });
  EXPECT_EQ(names,
            "root/cimv2:ZOO_Cat.Name=\"Tom\"\nroot/cimv2:ZOO_Animal.Name=\"Nessie\"\n"
            "root/cimv2:ZOO_Cat.Name=\"Mia\"\nroot/cimv2:ZOO_Dog.Name=\"Rex\"\n");
}

TEST(ObjectManager, AnUnknownClassIsRefusedAndAnUnservedOneIsEmpty) {
  const Zoo zoo(ZooProviders{});
  EXPECT_EQ(Zoo::codeOf([&] { zoo.namesOf("ZOO_Unicorn"); }), NZELVOR20::eVORInvalidClass);
  EXPECT_EQ(zoo.namesOf("ZOO_Cat"), "");
}

TEST(ObjectManager, AClassThatIsRegisteredButNotDeclaredIsKnown) {
  const Zoo zoo({{"Zoo_Dogs", {zooServes("ZOO_Puppy", kInstanceInterface)}}});
  EXPECT_EQ(zoo.namesOf("ZOO_Puppy"), "");
  EXPECT_EQ(zoo.cmpi->GetClass("zoo_puppy", {})->GetName(), "zoo_puppy");
}

struct FoundingRow {
  const char* registered;
  const char* told;
};

// Catches a factory that is told no namespace, or one that its provider does not serve.
TEST(ObjectManager, AFactoryIsToldANamespaceThatItsProviderServes) {
  for (const FoundingRow& row : {FoundingRow{"*", "root/cimv2"}, FoundingRow{"root/x", "root/x"}}) {
    const Zoo zoo({{"Zoo_Founded", {zooServes("ZOO_Dog", kInstanceInterface, row.registered)}}});
    try {
      zoo.namesOf("ZOO_Dog");
      ADD_FAILURE() << "it was made";
    } catch (const NZELVOR20::TVORException& error) {
      const std::string told = std::string("interface: ") + row.told + " (CMPI";
      EXPECT_NE(std::string(error.what()).find(told), std::string::npos) << error.what();
    }
  }
}

TEST(ObjectManager, AFailingProviderDoesNotSilenceTheOthers) {
  ZooProviders providers = wholeZoo();
  providers.insert(providers.begin(),
                   {"Zoo_Broken", {zooServes("ZOO_Animal", kInstanceInterface)}});
  EXPECT_EQ(Zoo(providers).namesOf("ZOO_Animal"), "Tom Nessie Mia Rex ");
}

TEST(ObjectManager, AProviderThatFailsAloneFailsTheCall) {
  const Zoo zoo({{"Zoo_Broken", {zooServes("ZOO_Cat", kInstanceInterface)}}});
  try {
    zoo.namesOf("ZOO_Animal");
    FAIL();
  } catch (const NZELVOR20::TVORException& error) {
    EXPECT_NE(std::string(error.what()).find("Zoo_Broken"), std::string::npos) << error.what();
    EXPECT_NE(std::string(error.what()).find("out of order"), std::string::npos) << error.what();
  }
}

TEST(ObjectManager, AProviderWithoutItsFactoryIsNamed) {
  const Zoo zoo({{"Zoo_Nobody", {zooServes("ZOO_Cat", kInstanceInterface)}}});
  try {
    zoo.namesOf("ZOO_Cat");
    FAIL();
  } catch (const NZELVOR20::TVORException& error) {
    EXPECT_NE(std::string(error.what()).find("Zoo_Nobody"), std::string::npos) << error.what();
  }
}

TEST(ObjectManager, TheSinkStopsAnEnumerationAndItsExceptionsComeThrough) {
  const Zoo zoo;
  int count = 0;
  const auto stopAtSecond = [&](const InstanceDataPtr&) { return ++count < 2; };
  zoo.manager->enumerateInstances({"", "ZOO_Animal", {}}, nullptr, stopAtSecond);
  EXPECT_EQ(count, 2);
  const auto fail = [](const InstanceDataPtr&) -> bool { throw std::out_of_range("mine"); };
  EXPECT_THROW(zoo.manager->enumerateInstances({"", "ZOO_Animal", {}}, nullptr, fail),
               std::out_of_range);
}

TEST(ObjectManager, UnwantedPropertiesAreNullExceptKeys) {
  const Zoo zoo;
  const std::vector<std::string> names{"legs"};
  const InstanceDataPtr cat = zoo.manager->getInstance(Zoo::path("ZOO_Cat", "Tom"), &names);
  EXPECT_EQ(cat->find("Name")->ToString(10), "Tom");
  EXPECT_TRUE(cat->find("Mood")->IsNull());
}

TEST(ObjectManager, AnInstanceIsFoundByItsClassAndItsSuperclasses) {
  const Zoo zoo;
  for (const char* className : {"ZOO_Cat", "ZOO_Animal", "ZOO_Being"}) {
    const InstanceDataPtr found = zoo.manager->getInstance(Zoo::path(className, "Tom"), nullptr);
    EXPECT_EQ(found->find("Mood")->ToUint16(), 2) << className;
  }
  EXPECT_TRUE(zoo.manager->getInstance(Zoo::path("ZOO_Cat", "Tom", ""), nullptr));
}

TEST(ObjectManager, AnInstanceThatNobodyHasIsNotFound) {
  const Zoo zoo;
  const auto get = [&](const std::string& className, const std::string& name) {
    return Zoo::codeOf([&] { zoo.manager->getInstance(Zoo::path(className, name), nullptr); });
  };
  EXPECT_EQ(get("ZOO_Cat", "Grumpy"), NZELVOR20::eVORNotFound);
  EXPECT_EQ(get("ZOO_Cage", "South"), NZELVOR20::eVORNotFound);
  EXPECT_EQ(get("ZOO_Unicorn", "Tom"), NZELVOR20::eVORInvalidClass);
}

TEST(ObjectManager, NamespacesKeepProvidersApart) {
  const Zoo zoo({{"Zoo_Dogs", {zooServes("ZOO_Dog", kInstanceInterface, "root/zoo")}},
                 {"Zoo_Animals", {zooServes("ZOO_Cat", kInstanceInterface, "*")}}});
  EXPECT_EQ(zoo.namesOf("ZOO_Animal", true, "root/zoo"), "Mia Tom Rex ");
  EXPECT_EQ(zoo.namesOf("ZOO_Animal", true, "root/cimv2"), "Mia Tom ");
  EXPECT_EQ(zoo.namesOf("ZOO_Animal"), "Mia Tom Rex ");
  EXPECT_EQ(zoo.manager->getInstance(Zoo::path("ZOO_Dog", "Rex", ""), nullptr)->path.nameSpace,
            "root/zoo");
}

TEST(ObjectManager, StaticInstancesStandInWhereNobodyServes) {
  const Zoo zoo;
  EXPECT_EQ(zoo.namesOf("ZOO_Cage"), "North ");
  const InstanceDataPtr cage = zoo.manager->getInstance(Zoo::path("ZOO_Being", "North"), nullptr);
  EXPECT_EQ(cage->find("Guest")->ToReference().GetClass()->GetName(), "ZOO_Cat");
}

TEST(ObjectManager, AnAssociationWithoutInstanceProviderIsFoundFromItsEnds) {
  const Zoo zoo;
  const std::string cares = zoo.namesOf("ZOO_Cares");
  EXPECT_EQ(cares,
            "root/cimv2:ZOO_Cares.Animal=\"root/cimv2:ZOO_Cat.Name=\\\"Mia\\\"\","
            "Keeper=\"root/cimv2:ZOO_Keeper.Name=\\\"Ann\\\"\" "
            "root/cimv2:ZOO_Cares.Animal=\"root/cimv2:ZOO_Cat.Name=\\\"Tom\\\"\","
            "Keeper=\"root/cimv2:ZOO_Keeper.Name=\\\"Ann\\\"\" "
            "root/cimv2:ZOO_Cares.Animal=\"root/cimv2:ZOO_Cat.Name=\\\"Tom\\\"\","
            "Keeper=\"root/cimv2:ZOO_Keeper.Name=\\\"Bob\\\"\" ");
}

/// How many instances the class has.
int countOf(const Zoo& zoo, const std::string& className) {
  int count = 0;
  zoo.manager->enumerateInstances({"", className, {}}, nullptr,
                                  [&](const InstanceDataPtr&) { return ++count > 0; });
  return count;
}

// Catches an association provider that is left out where another one delivers instances, and an
// association that both know and that then is there twice.
TEST(ObjectManager, AnAssociationComesFromInstanceAndAssociationProvidersOnce) {
  ZooProviders providers = wholeZoo();
  providers.push_back({"Zoo_Bonds", {zooServes("ZOO_Cares", kInstanceInterface)}});
  EXPECT_EQ(countOf(Zoo(providers), "ZOO_Cares"), 4);
}

// Catches a declared instance that a provider delivered, before it said that it has none.
TEST(ObjectManager, WhatAProviderDeliveredBeforeItRefusedDoesNotComeTwice) {
  const Zoo zoo({{"Zoo_Fickle", {zooServes("ZOO_Cage", kInstanceInterface)}}});
  EXPECT_EQ(zoo.namesOf("ZOO_Cage"), "North ");
}

/// Two providers: of robots, which is out of order, and of what robots tend.
ZooProviders brokenRobots() {
  return {{"Zoo_Broken", {zooServes("ZOO_Robot", kInstanceInterface)}},
          {"Zoo_Cares", {zooServes("ZOO_Tends", kAssociationInterface)}}};
}

// Catches a failure at the ends of one association class that ends the enumeration of all of them.
TEST(ObjectManager, AnAssociationWhoseEndsFailDoesNotSilenceTheOthers) {
  const std::string cares = Zoo().namesOf("ZOO_Cares");
  ZooProviders providers = wholeZoo();
  providers[3].second.push_back(zooServes("ZOO_Tends", kAssociationInterface));
  providers.push_back(brokenRobots()[0]);
  EXPECT_EQ(Zoo(providers).namesOf("ZOO_Cares"), cares);
}

TEST(ObjectManager, AnAssociationThatFailsAloneNamesTheProviderOfItsEnds) {
  const Zoo zoo(brokenRobots());
  try {
    zoo.namesOf("ZOO_Cares");
    FAIL();
  } catch (const NZELVOR20::TVORException& error) {
    EXPECT_NE(std::string(error.what()).find("Zoo_Broken"), std::string::npos) << error.what();
  }
}

// Catches a walk that asks for the ends of an association among which that association is again.
TEST(ObjectManager, AnAssociationBelowTheClassOfItsEndsIsNotWalkedWithoutEnd) {
  const Zoo zoo({{"Zoo_Cares", {zooServes("ZOO_Road", kAssociationInterface)}}});
  EXPECT_EQ(zoo.namesOf("ZOO_Place"), "");
}

TEST(ObjectManager, AssociationsAreWalkedFromEitherEnd) {
  const Zoo zoo;
  const auto others = [&](const ObjectPath& from, const AssociationFilter& filter) {
    std::string names;
    zoo.manager->associators(from, filter, nullptr, [&](const InstanceDataPtr& data) {
      names += data->find("Name")->ToString(10) + " ";
      return true;
    });
    return names;
  };
  const ObjectPath ann = Zoo::path("ZOO_Keeper", "Ann");
  EXPECT_EQ(others(ann, {}), "Mia Tom ");
  EXPECT_EQ(others(ann, {"ZOO_Cares", "ZOO_Animal", "", ""}), "Mia Tom ");
  EXPECT_EQ(others(ann, {"", "ZOO_Dog", "", ""}), "");
  EXPECT_EQ(others(Zoo::path("ZOO_Cat", "Tom"), {}), "Ann Bob ");
  EXPECT_EQ(Zoo::codeOf([&] {
              others(ann, {"ZOO_Hates", "", "", ""});
            }),
            NZELVOR20::eVORInvalidClass);
}

TEST(ObjectManager, ReferencesAreLimitedByTheirClass) {
  const Zoo zoo;
  const auto count = [&](const AssociationFilter& filter) {
    int found = 0;
    zoo.manager->referenceNames(Zoo::path("ZOO_Cat", "Tom"), filter, [&](const ObjectPath&) {
      ++found;
      return true;
    });
    return found;
  };
  EXPECT_EQ(count({}), 2);
  EXPECT_EQ(count({"", "ZOO_Cares", "", ""}), 2);
  EXPECT_EQ(count({"", "ZOO_Cage", "", ""}), 0);
}

TEST(ObjectManager, ChangesThatNobodyMakesAreNotSupported) {
  const Zoo zoo;
  const ObjectPath tom = Zoo::path("ZOO_Cat", "Tom");
  const InstanceDataPtr data = zoo.manager->getInstance(tom, nullptr);
  EXPECT_EQ(Zoo::codeOf([&] { zoo.manager->modifyInstance(tom, data, nullptr); }),
            NZELVOR20::eVORNotSupported);
  EXPECT_EQ(Zoo::codeOf([&] { zoo.manager->deleteInstance(tom); }), NZELVOR20::eVORNotSupported);
  EXPECT_EQ(Zoo::codeOf([&] { zoo.manager->deleteInstance(Zoo::path("ZOO_Cage", "North")); }),
            NZELVOR20::eVORNotSupported);
  EXPECT_EQ(Zoo::codeOf([&] { zoo.manager->createInstance(tom, data); }),
            NZELVOR20::eVORNotSupported);
}

TEST(ObjectManager, APropertyIsReadThroughItsInstance) {
  const Zoo zoo;
  const ObjectPath tom = Zoo::path("ZOO_Cat", "Tom");
  EXPECT_EQ(zoo.manager->getProperty(tom, "mood").ToUint16(), 2);
  EXPECT_EQ(Zoo::codeOf([&] { zoo.manager->getProperty(tom, "Horns"); }),
            NZELVOR20::eVORNoSuchProperty);
}

// What has no name cannot be told from others of its kind; it is no repeat of them.
TEST(ObjectManager, InstancesWithoutTheirKeysAreNotTakenForRepeats) {
  ZooProviders providers = wholeZoo();
  providers.push_back({"Zoo_Ghosts", {zooServes("ZOO_Dog", kInstanceInterface)}});
  EXPECT_EQ(countOf(Zoo(providers), "ZOO_Dog"), 3);
}

/// The zoo, with another provider for the moods of cats.
Zoo zooWithMoods() {
  ZooProviders providers = wholeZoo();
  providers.push_back({"Zoo_Looks", {zooServes("ZOO_Cat", kPropertyInterface)}});
  return Zoo(providers);
}

// Catches a property interface that is loaded and never asked.
TEST(ObjectManager, APropertyInterfaceIsAskedFirst) {
  const Zoo zoo = zooWithMoods();
  const ObjectPath tom = Zoo::path("ZOO_Cat", "Tom");
  zoo.manager->setProperty(tom, "Mood", TCIMValue::Uint32(1));
  EXPECT_EQ(zoo.manager->getProperty(tom, "Mood"), TCIMValue::Uint16(1));
  zoo.manager->setProperty(tom, "mood", TCIMValue("7"));
  EXPECT_EQ(zoo.manager->getProperty(tom, "mood"), TCIMValue::Uint16(7));
}

TEST(ObjectManager, WhatAPropertyInterfaceDoesNotKnowIsReadThroughTheInstance) {
  const Zoo zoo = zooWithMoods();
  const ObjectPath tom = Zoo::path("ZOO_Cat", "Tom");
  EXPECT_EQ(zoo.manager->getProperty(tom, "Name"), TCIMValue("Tom"));
  EXPECT_EQ(Zoo::codeOf([&] { zoo.manager->setProperty(tom, "Name", TCIMValue("Tim")); }),
            NZELVOR20::eVORNotSupported);
  EXPECT_EQ(Zoo::codeOf([&] { zoo.manager->setProperty(tom, "Legs", TCIMValue("3")); }),
            NZELVOR20::eVORAccessDenied);
}

TEST(ObjectManager, APropertyOfAFixedInstanceIsReadFromIt) {
  const Zoo zoo;
  EXPECT_EQ(zoo.manager->getProperty(Zoo::path("ZOO_Cage", "North"), "Name"), TCIMValue("North"));
}

TEST(ObjectManager, SeveralThreadsMayAskAtOnce) {
  const Zoo zoo;
  std::atomic<int> right{0};
  const auto ask = [&] {
    Arguments out;
    for (int i = 0; i < 50; ++i) {
      if (zoo.namesOf("ZOO_Animal") == "Tom Nessie Mia Rex ") ++right;
      zoo.manager->getInstance(Zoo::path("ZOO_Cat", "Tom"), nullptr);
      zoo.manager->invokeMethod(Zoo::path("ZOO_Cat", "Tom"), "Feed",
                                {{"Grams", TCIMValue::Uint32(1)}}, out);
    }
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) threads.emplace_back(ask);
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, 400);
}

struct Invocation : testing::Test {
  NZELVOR20::EVORStatusCode feed(const TCIMValue& grams, const char* method = "Feed") {
    return Zoo::codeOf([&] {
      answer =
          zoo.manager->invokeMethod(Zoo::path("ZOO_Cat", "Tom"), method, {{"grams", grams}}, out);
    });
  }
  Zoo zoo;
  TCIMValue answer;
  Arguments out;
};

TEST_F(Invocation, ArgumentsTakeTheirDeclaredTypes) {
  EXPECT_EQ(feed(TCIMValue("20")), NZELVOR20::eVORSuccess);
  EXPECT_EQ(answer, TCIMValue::Uint32(0));
  EXPECT_EQ(feed(TCIMValue("much")), NZELVOR20::eVORTypeMismatch);
}

TEST_F(Invocation, OnlyOutputParametersComeBack) {
  feed(TCIMValue::Uint64(20), "feed");
  ASSERT_EQ(out.size(), 2u);
  EXPECT_EQ(out[0].first + "=" + out[0].second.ToString(10), "Answer=miaow");
  EXPECT_EQ(out[1].first + "=" + out[1].second.ToString(10), "Left=3");
}

TEST_F(Invocation, ARefusalHasAReturnValueAndNoOutput) {
  EXPECT_EQ(feed(TCIMValue::Uint32(2000)), NZELVOR20::eVORSuccess);
  EXPECT_EQ(answer, TCIMValue::Uint32(5));
  EXPECT_TRUE(out.empty());
}

// Catches a method that is kept from its provider since a schema of another version lacks it.
TEST_F(Invocation, AMethodThatIsNotDeclaredIsPassedOnWithALineInTheLog) {
  const broker::KeptLog log;
  EXPECT_EQ(feed(TCIMValue("20"), "Purr"), NZELVOR20::eVORSuccess);
  EXPECT_EQ(answer, TCIMValue::Uint32(9));
  EXPECT_EQ(log.text(),
            "1 Object manager: method ZOO_Cat.Purr is not declared; provider Zoo_Animals gets the "
            "call as it is\n");
}

TEST_F(Invocation, MethodsThatAreUnknownOrUnservedAreNotFound) {
  EXPECT_EQ(feed(TCIMValue::Uint32(1), "Fly"), NZELVOR20::eVORMethodNotFound);
  EXPECT_EQ(
      Zoo::codeOf([&] { zoo.manager->invokeMethod(Zoo::path("ZOO_Dog", "Rex"), "Feed", {}, out); }),
      NZELVOR20::eVORMethodNotFound);
}

TEST_F(Invocation, AFailureOfTheProviderIsAnException) {
  EXPECT_NE(feed(TCIMValue::Uint32(13)), NZELVOR20::eVORSuccess);
}

}  // namespace
}  // namespace cmpinsp
