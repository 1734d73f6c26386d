#include "substitute/cmpi.nsp/broker/objects/StringObject.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

class StringObject : public InCall {};

// Older providers read the text straight from `hdl`.
TEST_F(StringObject, HdlIsTheText) {
  const CMPIString* string = CMNewString(broker(), "hello", &st);
  EXPECT_EQ(st.rc, CMPI_RC_OK);
  EXPECT_STREQ(static_cast<const char*>(string->hdl), "hello");
  EXPECT_EQ(string->hdl, CMGetCharPtr(string));
}

TEST_F(StringObject, NullTextGivesAnEmptyString) {
  EXPECT_STREQ(text(CMNewString(broker(), nullptr, nullptr)), "");
}

TEST_F(StringObject, TextThatIsNoUtf8IsReadAsLatin1) {
  EXPECT_STREQ(text(CMNewString(broker(),
                                "Gr\xFC\xDF"
                                "e",
                                nullptr)),
               "Gr\xC3\xBC\xC3\x9F"
               "e");
}

TEST_F(StringObject, ACloneIsIndependent) {
  CMPIString* string = CMNewString(broker(), "one", nullptr);
  CMPIString* copy = CMClone(string, &st);
  static_cast<char*>(string->hdl)[0] = 'X';
  EXPECT_STREQ(text(copy), "one");
  EXPECT_EQ(CMRelease(copy).rc, CMPI_RC_OK);
}

TEST_F(StringObject, WhatTheProviderWritesIntoItIsRead) {
  CMPIString* string = CMNewString(broker(), "one", nullptr);
  static_cast<char*>(string->hdl)[1] = '\0';
  EXPECT_EQ(textOrNothing(string), "o");
}

TEST_F(StringObject, ABadHandleIsTold) {
  EXPECT_EQ(kStringTable.getCharPtr(nullptr, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_NE(st.msg, nullptr);
  EXPECT_EQ(kStringTable.getCharPtr(static_cast<CMPIString*>(foreignAddress()), &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(StringObject, CodePagesThereAndBack) {
  const CMPIString* string = CMNewString(broker(), "\xC3\xA4\xF0\x9F\x98\x80", nullptr);
  char* units = string->ft->newCharsCP(string, CMPI_CP_UTF16, &st);
  ASSERT_EQ(st.rc, CMPI_RC_OK);
  EXPECT_STREQ(text(CMNewStringCP(broker(), units, CMPI_CP_UTF16, &st)), CMGetCharPtr(string));
  broker()->mft->freeChars(broker(), units);
  EXPECT_EQ(string->ft->newCharsCP(string, CMPI_CP_US_ASCII, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NOT_IN_CODEPAGE);
  EXPECT_EQ(CMNewStringCP(broker(), "\xFC", CMPI_CP_US_ASCII, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NOT_IN_CODEPAGE);
  EXPECT_STREQ(text(CMNewStringCP(broker(), "\xFC", CMPI_CP_SYSTEM, &st)), "\xC3\xBC");
  EXPECT_EQ(CMNewStringCP(broker(), "x", static_cast<CMPICodepageID>(0), &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

}  // namespace
}  // namespace cmpinsp::broker
