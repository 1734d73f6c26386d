#include "substitute/cmpi.nsp/broker/calls/Provider.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

using NZELVOR20::TCIMValue;
using NZELVOR20::TVORException;

const ObjectPath kFan{"root/cimv2", "ACME_Fan", {{"Name", TCIMValue("left")}}};

class PropertyInterface : public testing::Test {
 protected:
  /// The status and the text with which `operation` fails.
  template <typename Operation>
  static std::string failureOf(Operation operation) {
    try {
      operation();
    } catch (const TVORException& failure) {
      return std::to_string(failure.GetStatus().GetStatusCode()) + " " + failure.what();
    }
    return "nothing failed";
  }
  static std::string status(NZELVOR20::EVORStatusCode code) { return std::to_string(code) + " "; }

  FakeUpcalls upcalls;
  Provider provider{"Props", PROVIDER_FILE, upcalls};
};

// Catches a value that is passed to the provider, or taken from it, in another type than the class
// declares.
TEST_F(PropertyInterface, AValueGoesInAndComesOutInItsDeclaredType) {
  provider.setProperty(kFan, "Speed", TCIMValue::Uint32(700));
  EXPECT_EQ(provider.getProperty(kFan, "Speed"), TCIMValue::Uint16(700));
}

TEST_F(PropertyInterface, ANullValueIsNoMissingOne) {
  EXPECT_TRUE(provider.getProperty(kFan, "Child").IsNull());
  EXPECT_NE(failureOf([&] {
              provider.getProperty(kFan, "Tags");
            }).find("provider Props, getProperty: no value was returned for Tags"),
            std::string::npos);
}

TEST_F(PropertyInterface, ANullValueReachesTheProviderAsOne) {
  EXPECT_NE(failureOf([&] {
              provider.setProperty(kFan, "Speed", TCIMValue());
            }).find("provider Props, setProperty: no speed"),
            std::string::npos);
}

TEST_F(PropertyInterface, FailuresNameProviderOperationAndReason) {
  const std::string read = failureOf([&] { provider.getProperty(kFan, "Name"); });
  EXPECT_EQ(read.find(status(NZELVOR20::eVORAccessDenied)), 0U) << read;
  EXPECT_NE(read.find("provider Props, getProperty: secret"), std::string::npos) << read;
  const std::string type = failureOf([&] { provider.getProperty(kFan, "On"); });
  EXPECT_EQ(type.find(status(NZELVOR20::eVORTypeMismatch)), 0U) << type;
  EXPECT_NE(type.find("provider Props, getProperty: ACME_Fan.On"), std::string::npos) << type;
  const std::string written = failureOf([&] { provider.setProperty(kFan, "Colour", TCIMValue()); });
  EXPECT_EQ(written.find(status(NZELVOR20::eVORNoSuchProperty)), 0U) << written;
  EXPECT_NE(written.find("provider Props, setProperty: Colour"), std::string::npos) << written;
}

TEST_F(PropertyInterface, AProviderWithoutItSaysSo) {
  Provider other("Test", PROVIDER_FILE, upcalls);
  EXPECT_EQ(failureOf([&] {
              other.getProperty(kFan, "Speed");
            }).find(status(NZELVOR20::eVORNotSupported)),
            0U);
}

}  // namespace
}  // namespace cmpinsp::broker
