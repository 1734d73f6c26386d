#include "substitute/cmpi.nsp/broker/calls/Provider.h"
#include "substitute/cmpi.nsp/broker/library/Library.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

/// What the provider says it offers, as "Instance 200, Method 200".
std::string offeredBy(const Provider& provider) {
  std::string text;
  for (const OfferedInterface& offered : provider.offered()) {
    text += (text.empty() ? "" : ", ") + offered.name + " " + std::to_string(offered.edition);
  }
  return text;
}

// Catches an interface that is left out, and an edition that is not read from the table.
TEST(Editions, EachInterfaceThatWasMadeTellsItsEdition) {
  FakeUpcalls upcalls;
  Provider provider("Test", PROVIDER_FILE, upcalls);
  EXPECT_EQ(offeredBy(provider), "");
  provider.load();
  EXPECT_EQ(offeredBy(provider), "Instance 200, Association 200, Method 200");
}

TEST(Editions, ATableThatNamesNoEditionIsOfTheProvidersOwnVersion) {
  FakeUpcalls upcalls;
  Provider provider("Empty", PROVIDER_FILE, upcalls);
  provider.load();
  EXPECT_EQ(offeredBy(provider), "Instance 100");
}

// Catches factories that are called again at each use of an interface that they do not offer.
TEST(Editions, AFactoryThatOffersNothingIsNotAskedAgain) {
  FakeUpcalls upcalls;
  Provider provider("Asking", PROVIDER_FILE, upcalls);
  provider.load();
  const auto calls = Library(PROVIDER_FILE).find<int (*)()>("genericCallsOfTest");
  const int before = calls();
  EXPECT_GT(before, 0);
  provider.load();
  Arguments out;
  EXPECT_THROW(provider.invokeMethod({"root/cimv2", "ACME_Fan", {}}, "Spin", {}, out),
               NZELVOR20::TVORException);
  EXPECT_EQ(calls(), before);
}

/// Every operation that a provider can be asked for.
void callEverything(Provider& provider) {
  const ObjectPath path{"root/cimv2", "ACME_Fan", {{"Name", NZELVOR20::TCIMValue("left")}}};
  const auto take = [](const InstanceDataPtr&) { return true; };
  const auto takePath = [](const ObjectPath&) { return true; };
  const auto fan = boost::make_shared<InstanceData>();
  fan->path = path;
  Arguments out;
  provider.enumerateInstances(path, nullptr, take);
  provider.enumerateInstanceNames(path, takePath);
  EXPECT_THROW(provider.getInstance(path, nullptr), NZELVOR20::TVORException);
  provider.createInstance(path, fan);
  provider.modifyInstance(path, fan, nullptr);
  provider.deleteInstance(path);
  provider.executeQuery(path, "select * from ACME_Fan", "WQL", take);
  provider.associators(path, {}, nullptr, take);
  provider.associatorNames(path, {}, takePath);
  provider.references(path, {}, nullptr, take);
  provider.referenceNames(path, {}, takePath);
  provider.invokeMethod(path, "Spin", {}, out);
  provider.setProperty(path, "Speed", NZELVOR20::TCIMValue::Uint16(1));
  EXPECT_EQ(provider.getProperty(path, "Speed"), NZELVOR20::TCIMValue::Uint16(1));
}

// Catches a table that is read past the end that it has in its edition: the process is killed. Each
// of the five interfaces is cleaned up once.
TEST(Editions, NothingBehindATableIsRead) {
  const auto cleanups = Library(PROVIDER_FILE).find<int (*)()>("cleanupsOfEditions");
  for (const char* edition : {"080", "090", "100", "200", "210"}) {
    SCOPED_TRACE(edition);
    const int before = cleanups();
    {
      FakeUpcalls upcalls;
      Provider provider(std::string("Edition") + edition, PROVIDER_FILE, upcalls);
      callEverything(provider);
      const std::string number = std::to_string(std::stoi(edition));
      EXPECT_EQ(offeredBy(provider), "Instance " + number + ", Association " + number +
                                         ", Method " + number + ", Property " + number +
                                         ", Indication " + number);
    }
    EXPECT_EQ(cleanups() - before, 5);
  }
}

// Headers of 2.0 differ about the function that sets a property with its origin.
TEST(Editions, AFunctionOfALaterEditionIsLeftAlone) {
  FakeUpcalls upcalls;
  const ObjectPath path{"root/cimv2", "ACME_Fan", {}};
  Provider late("Origin210", PROVIDER_FILE, upcalls);
  late.setProperty(path, "Speed", NZELVOR20::TCIMValue::Uint16(1));
  Provider early("Origin200", PROVIDER_FILE, upcalls);
  EXPECT_THROW(early.setProperty(path, "Speed", NZELVOR20::TCIMValue::Uint16(1)),
               NZELVOR20::TVORException);
}

TEST(Editions, AProviderOfIndicationsAloneLoadsAndIsLeftInPeace) {
  const Library library(PROVIDER_FILE);
  const auto cleanups = library.find<int (*)()>("cleanupsOfEditions");
  const int before = cleanups();
  {
    FakeUpcalls upcalls;
    Provider provider("IndicationOnly", PROVIDER_FILE, upcalls);
    provider.load();
    EXPECT_EQ(offeredBy(provider), "Indication 200");
  }
  EXPECT_EQ(cleanups() - before, 1);
  EXPECT_EQ(library.find<int (*)()>("indicationCallsOfEditions")(), 0);
}

}  // namespace
}  // namespace cmpinsp::broker
