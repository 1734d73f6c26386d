#include <gtest/gtest.h>

#include "substitute/cmpi.nsp/model/PathReference.h"
#include "tests/substitute/cmpi.nsp/broker/KeptLog.h"
#include "tests/substitute/cmpi.nsp/manager/Zoo.h"

namespace cmpinsp {
namespace {

using NZELVOR20::TCIMValue;

/// The zoo whose associations come from `provider` instead, and from whoever else is given.
Zoo zooWith(const char* provider, const ZooProviders& others = {}) {
  ZooProviders providers = wholeZoo();
  providers[3].first = provider;
  providers.insert(providers.end(), others.begin(), others.end());
  return Zoo(providers);
}

ZooProviders ties() { return {{"Zoo_Ties", {zooServes("ZOO_Cares", kInstanceInterface)}}}; }

std::string keyText(const InstanceDataPtr& data, const char* name) {
  return pathOf(data->path.findKey(name)->ToReference()).findKey("Name")->ToString(10);
}

/// "Ann-Tom" for the instance by which Ann cares for Tom.
std::string pairIn(const InstanceDataPtr& data) {
  return keyText(data, "Keeper") + "-" + keyText(data, "Animal");
}

ObjectPath caresPath(const char* keeper, const char* cat, const char* catClass = "ZOO_Cat") {
  ObjectPath path{"root/cimv2", "ZOO_Cares", {}};
  path.setKey("Keeper", TCIMValue(referenceTo(Zoo::path("ZOO_Keeper", keeper), {})));
  path.setKey("Animal", TCIMValue(referenceTo(Zoo::path(catClass, cat), {})));
  return path;
}

std::string referencesOf(const Zoo& zoo, const char* cat) {
  std::string pairs;
  zoo.manager->references(Zoo::path("ZOO_Cat", cat), {}, nullptr, [&](const InstanceDataPtr& data) {
    pairs += pairIn(data) + " ";
    return true;
  });
  return pairs;
}

std::string associatorsOf(const Zoo& zoo, const char* keeper) {
  std::string names;
  zoo.manager->associators(
      Zoo::path("ZOO_Keeper", keeper), {}, nullptr, [&](const InstanceDataPtr& data) {
        names += data->find("Name")->ToString(10) + "/" + data->find("Mood")->ToString(10) + " ";
        return true;
      });
  return names;
}

// Catches an association that nobody sees since its provider supports its names alone.
TEST(Detours, ReferencesThatAreNotSupportedAreGotByTheirNames) {
  EXPECT_EQ(referencesOf(zooWith("Zoo_Named", ties()), "Tom"), "Ann-Tom Bob-Tom ");
}

TEST(Detours, AssociatorsThatAreNotSupportedAreGotByTheirNames) {
  const broker::KeptLog log;
  EXPECT_EQ(associatorsOf(zooWith("Zoo_Named"), "Ann"), "Mia/1 Tom/2 ");
  EXPECT_EQ(log.text().find("0 Object manager: a name leads nowhere: "), 0U) << log.text();
}

TEST(Detours, NamesThatAllLeadNowhereGiveNothingAndAreInTheLog) {
  const broker::KeptLog log;
  const Zoo zoo({{"Zoo_Named", {zooServes("ZOO_Cares", kAssociationInterface)}}});
  EXPECT_EQ(associatorsOf(zoo, "Nobody"), "");
  EXPECT_NE(log.text().find("Cheshire"), std::string::npos) << log.text();
}

TEST(Detours, TheSinkStopsThem) {
  const Zoo zoo = zooWith("Zoo_Named", ties());
  int count = 0;
  zoo.manager->references(Zoo::path("ZOO_Cat", "Tom"), {}, nullptr,
                          [&](const InstanceDataPtr&) { return ++count < 1; });
  EXPECT_EQ(count, 1);
}

TEST(Detours, AnAssociationIsEnumeratedByTheNamesAtItsEnds) {
  std::string pairs;
  zooWith("Zoo_Named", ties())
      .manager->enumerateInstances({"", "ZOO_Cares", {}}, nullptr,
                                   [&](const InstanceDataPtr& data) {
                                     pairs += pairIn(data) + " ";
                                     return true;
                                   });
  EXPECT_EQ(pairs, "Ann-Mia Ann-Tom Bob-Tom ");
}

// Catches a query that finds fewer associations than an enumeration does.
TEST(Detours, AQueryFindsAnAssociationByTheNamesAtItsEnds) {
  std::string pairs;
  zooWith("Zoo_Named", ties())
      .manager->executeQuery({"", "ZOO_Cares", {}}, "SELECT * FROM ZOO_Cares", "WQL",
                             [&](const InstanceDataPtr& data) {
                               pairs += pairIn(data) + " ";
                               return true;
                             });
  EXPECT_EQ(pairs, "Ann-Mia Ann-Tom Bob-Tom ");
}

// Catches a search that leads by way of names back to itself.
TEST(Detours, NamesWhoseInstancesNobodyHasEnd) {
  EXPECT_EQ(referencesOf(zooWith("Zoo_Named"), "Tom"), "");
}

struct SearchRow {
  const char* provider;
  unsigned interface_;
  ObjectPath path;
  const char* found;
};

// Catches an instance of an association that is there when it is enumerated and not when it is got.
TEST(Detours, AnAssociationThatCannotBeGotIsSearched) {
  const SearchRow rows[] = {
      {"Zoo_Bonds", kInstanceInterface, caresPath("Bob", "Mia"), "Bob-Mia"},
      {"Zoo_Bonds", kInstanceInterface, caresPath("Ann", "Mia"), ""},
      {"Zoo_Cares", kAssociationInterface, caresPath("Bob", "Tom"), "Bob-Tom"},
      {"Zoo_Cares", kAssociationInterface, caresPath("Bob", "Mia"), ""},
      {"Zoo_Mute", kInstanceInterface, caresPath("Bob", "Tom"), ""},
  };
  for (const SearchRow& row : rows) {
    const Zoo zoo({{row.provider, {zooServes("ZOO_Cares", row.interface_)}}});
    std::string found;
    const auto get = [&] { found = pairIn(zoo.manager->getInstance(row.path, nullptr)); };
    EXPECT_EQ(Zoo::codeOf(get) == NZELVOR20::eVORSuccess, *row.found != '\0') << row.provider;
    EXPECT_EQ(found, row.found) << row.provider;
  }
}

// Catches a search that ends with the first provider, or with the first end, that knows nothing.
TEST(Detours, ASearchGoesOnWhereOneProviderKnowsNothing) {
  for (const char* first : {"Zoo_Named", "Zoo_Mute"}) {
    const Zoo zoo({{first, {zooServes("ZOO_Cares", kAssociationInterface | kInstanceInterface)}},
                   {"Zoo_Cares", {zooServes("ZOO_Cares", kAssociationInterface)}}});
    EXPECT_EQ(pairIn(zoo.manager->getInstance(caresPath("Bob", "Tom"), nullptr)), "Bob-Tom");
  }
  const Zoo bonds({{"Zoo_Mute", {zooServes("ZOO_Cares", kInstanceInterface)}},
                   {"Zoo_Bonds", {zooServes("ZOO_Cares", kInstanceInterface)}}});
  EXPECT_EQ(pairIn(bonds.manager->getInstance(caresPath("Bob", "Mia"), nullptr)), "Bob-Mia");
}

TEST(Detours, ASearchKeepsToTheNamespaceOfThePath) {
  const Zoo zoo({{"Zoo_Bonds", {zooServes("ZOO_Cares", kInstanceInterface, "*")}}});
  ObjectPath path = caresPath("Bob", "Mia");
  path.nameSpace.clear();
  EXPECT_EQ(zoo.manager->getInstance(path, nullptr)->path.nameSpace, "root/cimv2");
}

// The class of the reference is ZOO_Animal, and its provider does not know anybody by that.
TEST(Detours, AnAssociationIsSearchedFromTheEndsOfItsPathInTheirOwnClass) {
  const Zoo zoo({{"Zoo_Cares", {zooServes("ZOO_Cares", kAssociationInterface)}}});
  ObjectPath path{"root/cimv2", "ZOO_Cares", {}};
  path.setKey("Animal", TCIMValue("root/cimv2:ZOO_Cat.Name=\"Tom\""));
  path.setKey("Keeper", TCIMValue("root/cimv2:ZOO_Keeper.Name=\"Ann\""));
  EXPECT_EQ(pairIn(zoo.manager->getInstance(path, nullptr)), "Ann-Tom");
}

// Catches a walk from the first reference alone, of whose class there are no instances.
TEST(Detours, AnAssociationIsFoundFromItsSecondReferenceToo) {
  const Zoo zoo({wholeZoo()[0], wholeZoo()[3]});
  std::string pairs;
  zoo.manager->enumerateInstances({"", "ZOO_Cares", {}}, nullptr, [&](const InstanceDataPtr& data) {
    pairs += pairIn(data) + " ";
    return true;
  });
  EXPECT_EQ(pairs, "Ann-Tom Bob-Tom Ann-Mia ");
}

}  // namespace
}  // namespace cmpinsp
