#include "substitute/cmpi.nsp/broker/calls/Provider.h"
#include "substitute/cmpi.nsp/broker/objects/EmbeddedInstance.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

/// A provider that keeps three members of its broker's handle and passes those.
struct CopiedBroker : testing::Test {
  NZELVOR20::TCIMValue invoke(const char* method) {
    Arguments out;
    return provider.invokeMethod({"root/cimv2", "ACME_Fan", {}}, method, {}, out);
  }

  FakeUpcalls upcalls;
  Provider provider{"Copying", PROVIDER_FILE, upcalls};
};

TEST_F(CopiedBroker, MakesObjects) {
  const InstanceDataPtr fan = dataOf(*invoke("Make").ToInstance());
  EXPECT_EQ(*fan->find("Name"), NZELVOR20::TCIMValue("copied"));
}

TEST_F(CopiedBroker, ReachesTheObjectManager) {
  upcalls.addFan("a");
  upcalls.addFan("b");
  EXPECT_EQ(invoke("Count"), NZELVOR20::TCIMValue::Uint32(2));
}

}  // namespace
}  // namespace cmpinsp::broker
