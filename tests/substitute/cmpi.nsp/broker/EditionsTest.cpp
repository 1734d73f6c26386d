#include "substitute/cmpi.nsp/broker/Provider.h"
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

}  // namespace
}  // namespace cmpinsp::broker
