#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

class ErrorObject : public InCall {
 protected:
  CMPIError* error = CMNewCMPIError(broker(), "ACME", "A1", "broken", ErrorSevHigh,
                                    ErrorProbCauseTimeout, CMPI_RC_ERR_NOT_FOUND, &st);
};

TEST_F(ErrorObject, KeepsWhatItWasMadeOf) {
  EXPECT_STREQ(text(error->ft->getOwningEntity(error, nullptr)), "ACME");
  EXPECT_STREQ(text(error->ft->getMessageID(error, nullptr)), "A1");
  EXPECT_STREQ(text(error->ft->getMessage(error, nullptr)), "broken");
  EXPECT_EQ(error->ft->getPerceivedSeverity(error, nullptr), ErrorSevHigh);
  EXPECT_EQ(error->ft->getProbableCause(error, nullptr), ErrorProbCauseTimeout);
  EXPECT_EQ(error->ft->getCIMStatusCode(error, nullptr), CMPI_RC_ERR_NOT_FOUND);
}

TEST_F(ErrorObject, WhatWasNotSetIsNullWithoutAnError) {
  EXPECT_EQ(error->ft->getErrorSource(error, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_OK);
  EXPECT_EQ(error->ft->getRecommendedActions(error, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_OK);
}

TEST_F(ErrorObject, TakesTheRest) {
  const CMPIErrorFT* ft = error->ft;
  ft->setErrorType(error, HardwareErrorType);
  ft->setErrorSourceFormat(error, CMPIErrorSrcFormatObjectHandle);
  ft->setOtherErrorType(error, "other");
  ft->setProbableCauseDescription(error, "cause");
  ft->setErrorSource(error, "source");
  ft->setOtherErrorSourceFormat(error, "format");
  ft->setCIMStatusCodeDescription(error, "status");
  EXPECT_EQ(ft->getErrorType(error, nullptr), HardwareErrorType);
  EXPECT_EQ(ft->getErrorSourceFormat(error, nullptr), CMPIErrorSrcFormatObjectHandle);
  EXPECT_STREQ(text(ft->getOtherErrorType(error, nullptr)), "other");
  EXPECT_STREQ(text(ft->getProbableCauseDescription(error, nullptr)), "cause");
  EXPECT_STREQ(text(ft->getErrorSource(error, nullptr)), "source");
  EXPECT_STREQ(text(ft->getOtherErrorSourceFormat(error, nullptr)), "format");
  EXPECT_STREQ(text(ft->getCIMStatusCodeDescription(error, nullptr)), "status");
}

TEST_F(ErrorObject, KeepsListsOfTexts) {
  CMPIArray* actions = CMNewArray(broker(), 1, CMPI_string, nullptr);
  CMSetArrayElementAt(actions, 0, "restart", CMPI_chars);
  EXPECT_EQ(error->ft->setRecommendedActions(error, actions).rc, CMPI_RC_OK);
  EXPECT_EQ(error->ft->setMessageArguments(error, actions).rc, CMPI_RC_OK);
  CMPIArray* kept = error->ft->getRecommendedActions(error, nullptr);
  EXPECT_STREQ(text(CMGetArrayElementAt(kept, 0, nullptr).value.string), "restart");
  EXPECT_EQ(CMGetArrayCount(error->ft->getMessageArguments(error, nullptr), nullptr), 1U);
}

TEST_F(ErrorObject, RefusesOtherLists) {
  CMPIArray* numbers = CMNewArray(broker(), 1, CMPI_uint8, nullptr);
  EXPECT_EQ(error->ft->setRecommendedActions(error, numbers).rc, CMPI_RC_ERR_TYPE_MISMATCH);
  EXPECT_EQ(error->ft->setRecommendedActions(error, nullptr).rc, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(ErrorObject, ACloneOutlivesIt) {
  CMPIError* copy = CMClone(error, &st);
  CMRelease(error);
  EXPECT_STREQ(text(copy->ft->getMessage(copy, nullptr)), "broken");
  CMRelease(copy);
  EXPECT_EQ(kErrorTable.getMessage(copy, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
}

}  // namespace
}  // namespace cmpinsp::broker
