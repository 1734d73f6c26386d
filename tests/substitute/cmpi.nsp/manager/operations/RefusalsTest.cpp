#include <gtest/gtest.h>

#include "substitute/cmpi.nsp/manager/operations/Refusals.h"
#include "tests/substitute/cmpi.nsp/broker/KeptLog.h"
#include "tests/substitute/cmpi.nsp/manager/Zoo.h"

namespace cmpinsp {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kMute =
    "class ZOO_Dog looks empty, since nobody enumerates it: not supported: provider Zoo_Mute, "
    "enumerateInstances: no word (CMPI status 7)";

/// Providers that are asked for dogs, and what that enumeration is to say of them.
struct RefusalRow {
  const char* what;
  ZooProviders providers;
  const char* asked;
  bool isTold;
};

ZooProviders muteAnd(const ZooProviders& others) {
  ZooProviders providers{{"Zoo_Mute", {zooServes("ZOO_Dog", kInstanceInterface)}}};
  providers.insert(providers.end(), others.begin(), others.end());
  return providers;
}

// Catches an enumeration that everybody refused and that cannot be told from one of a class without
// instances.
TEST(Refusals, OfEveryProviderOfAClassAreTold) {
  const RefusalRow rows[] = {
      {"alone", muteAnd({}), "ZOO_Dog", true},
      {"below the class asked for", muteAnd({}), "ZOO_Animal", true},
      {"beside a class that answers", muteAnd({wholeZoo()[0]}), "ZOO_Animal", true},
      {"beside a provider that answers", muteAnd({wholeZoo()[1]}), "ZOO_Dog", false},
  };
  for (const RefusalRow& row : rows) {
    const broker::KeptLog log;
    const Zoo zoo(row.providers);
    zoo.namesOf(row.asked);
    const bool isLogged = log.text() == std::string("1 Object manager: ") + kMute + "\n";
    EXPECT_EQ(isLogged, row.isTold) << row.what << "\n" << log.text();
    EXPECT_EQ(zoo.manager->takeRefusals(), row.isTold ? Texts{kMute} : Texts{}) << row.what;
  }
}

TEST(Refusals, NameTheOperation) {
  const Zoo zoo(muteAnd({}));
  zoo.manager->enumerateInstanceNames({"", "ZOO_Dog", {}}, [](const ObjectPath&) { return true; });
  const Texts texts = zoo.manager->takeRefusals();
  ASSERT_EQ(texts.size(), 1U);
  EXPECT_NE(texts[0].find("provider Zoo_Mute, enumerateInstanceNames: "), std::string::npos);
}

TEST(Refusals, AreNotToldWhereDeclaredInstancesStandIn) {
  const Zoo zoo({{"Zoo_Mute", {zooServes("ZOO_Cage", kInstanceInterface)}}});
  EXPECT_EQ(zoo.namesOf("ZOO_Cage"), "North ");
  EXPECT_EQ(zoo.manager->takeRefusals(), Texts{});
}

// The declared instance is in another namespace.
TEST(Refusals, AreToldWhereNoDeclaredInstanceStandsIn) {
  const Zoo zoo({{"Zoo_Mute", {zooServes("ZOO_Cage", kInstanceInterface, "root/zoo")}}});
  EXPECT_EQ(zoo.namesOf("ZOO_Cage", true, "root/zoo"), "");
  EXPECT_EQ(zoo.manager->takeRefusals().size(), 1U);
}

// It delivers one, and then says that it does not support that.
TEST(Refusals, OfAProviderThatHasDeliveredAreNotTold) {
  const Zoo zoo({{"Zoo_Fickle", {zooServes("ZOO_Cage", kInstanceInterface, "root/zoo")}}});
  EXPECT_EQ(zoo.namesOf("ZOO_Cage", true, "root/zoo"), "North ");
  EXPECT_EQ(zoo.manager->takeRefusals(), Texts{});
}

TEST(Refusals, AreNotToldWhereTheAssociationIsFoundFromItsEnds) {
  ZooProviders providers = wholeZoo();
  providers.push_back({"Zoo_Mute", {zooServes("ZOO_Cares", kInstanceInterface)}});
  const Zoo zoo(providers);
  EXPECT_NE(zoo.namesOf("ZOO_Cares"), "");
  EXPECT_EQ(zoo.manager->takeRefusals(), Texts{});
}

TEST(Refusals, NameEveryProviderOnce) {
  Refusals refusals;
  refusals.add("A", Outcome::eRefused, "one");
  refusals.add("B", Outcome::eRefused, "other");
  refusals.add("a", Outcome::eRefused, "two");
  refusals.add("A", Outcome::eRefused, "one");
  EXPECT_EQ(refusals.texts(), (Texts{"class A looks empty, since nobody enumerates it: one; two",
                                     "class B looks empty, since nobody enumerates it: other"}));
}

TEST(Refusals, BesideAFailureAreNotTold) {
  Refusals refusals;
  refusals.add("A", Outcome::eRefused, "one");
  refusals.add("A", Outcome::eFailed, "");
  EXPECT_EQ(refusals.texts(), Texts{});
}

TEST(KeptRefusals, AreTakenOnceEach) {
  KeptRefusals kept;
  for (const char* text : {"one", "two", "one"}) kept.keep(text);
  EXPECT_EQ(kept.take(), (Texts{"one", "two"}));
  EXPECT_EQ(kept.take(), Texts{});
  kept.keep("one");
  EXPECT_EQ(kept.take(), Texts{"one"});
}

// Catches a host that never asks and a provider whose texts are all different.
TEST(KeptRefusals, DoNotGrowWithoutEnd) {
  KeptRefusals kept;
  for (int number = 0; number < 1000; ++number) kept.keep(std::to_string(number));
  EXPECT_EQ(kept.take().size(), 100U);
}

}  // namespace
}  // namespace cmpinsp
