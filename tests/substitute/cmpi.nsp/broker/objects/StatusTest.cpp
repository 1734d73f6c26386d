#include "substitute/cmpi.nsp/broker/objects/Status.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

using namespace NZELVOR20;

struct Row {
  CMPIrc code;
  EVORStatusCode status;
};

constexpr Row kSameBothWays[] = {
    {CMPI_RC_ERR_FAILED, eVORFailed},
    {CMPI_RC_ERR_ACCESS_DENIED, eVORAccessDenied},
    {CMPI_RC_ERR_INVALID_NAMESPACE, eVORInvalidNamespace},
    {CMPI_RC_ERR_INVALID_PARAMETER, eVORInvalidParameter},
    {CMPI_RC_ERR_INVALID_CLASS, eVORInvalidClass},
    {CMPI_RC_ERR_NOT_FOUND, eVORNotFound},
    {CMPI_RC_ERR_NOT_SUPPORTED, eVORNotSupported},
    {CMPI_RC_ERR_ALREADY_EXISTS, eVORAlreadyExists},
    {CMPI_RC_ERR_NO_SUCH_PROPERTY, eVORNoSuchProperty},
    {CMPI_RC_ERR_TYPE_MISMATCH, eVORTypeMismatch},
    {CMPI_RC_ERR_INVALID_QUERY, eVORInvalidQuery},
    {CMPI_RC_ERR_METHOD_NOT_AVAILABLE, eVORMethodNotAvailable},
    {CMPI_RC_ERR_METHOD_NOT_FOUND, eVORMethodNotFound},
    {CMPI_RC_ERROR_SYSTEM, eVOROutOfMemory},
};

TEST(Status, CodesGoThereAndBack) {
  for (const Row& row : kSameBothWays) {
    EXPECT_EQ(statusFor(row.code), row.status) << row.code;
    EXPECT_EQ(codeFor(row.status), row.code) << row.status;
  }
}

TEST(Status, NumbersThatNobodyKnowsAreFailures) {
  EXPECT_EQ(statusFor(4711), eVORFailed);
  EXPECT_EQ(statusFor(-1), eVORFailed);
  EXPECT_EQ(codeFor(eVORProviderFailed), CMPI_RC_ERR_FAILED);
  EXPECT_EQ(codeFor(static_cast<EVORStatusCode>(4711)), CMPI_RC_ERR_FAILED);
}

class StatusInCall : public InCall {
 protected:
  template <typename Thrown>
  CMPIStatus after(Thrown thrown) {
    return perform([&] { throw thrown; });
  }
};

TEST_F(StatusInCall, EveryExceptionBecomesAStatusWithText) {
  EXPECT_STREQ(text(after(Failure(CMPI_RC_ERR_NOT_FOUND, "gone")).msg), "gone");
  EXPECT_EQ(after(TVORException(TVORStatusCode(eVORInvalidClass, "X"))).rc,
            CMPI_RC_ERR_INVALID_CLASS);
  EXPECT_STREQ(text(after(std::runtime_error("oops")).msg), "oops");
  EXPECT_EQ(after(std::bad_alloc()).rc, CMPI_RC_ERROR_SYSTEM);
  EXPECT_EQ(after(7).rc, CMPI_RC_ERR_FAILED);
}

TEST_F(StatusInCall, AMessageThatIsNoStringIsNotTouched) {
  EXPECT_EQ(describe(CMPIStatus{CMPI_RC_ERR_FAILED, static_cast<CMPIString*>(foreignAddress())}),
            "CMPI status 1");
  EXPECT_EQ(describe(CMPIStatus{CMPI_RC_ERR_FAILED, CMNewString(broker(), "why", nullptr)}),
            "why (CMPI status 1)");
}

}  // namespace
}  // namespace cmpinsp::broker
