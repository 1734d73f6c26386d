#include <cstdlib>

#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

int nameTheUser() {
#if defined(_WIN32)
  return _wputenv(L"USERNAME=J\u00fcrgen \u732b");
#else
  return setenv("USER", "J\u00fcrgen \u732b", 1);
#endif
}

// The name is asked for once in a process, with the first context.
const bool kIsUserNamed = nameTheUser() == 0;

class ContextObject : public InCall {};

TEST_F(ContextObject, HasTheEntriesThatProvidersReadWithoutALook) {
  EXPECT_STREQ(text(CMGetContextEntry(context, CMPIInitNameSpace, &st).value.string), "root/cimv2");
  const CMPIData flags = CMGetContextEntry(context, CMPIInvocationFlags, &st);
  EXPECT_EQ(flags.type, CMPI_uint32);
  EXPECT_EQ(flags.value.uint32, 0U);
  ASSERT_TRUE(kIsUserNamed);
  EXPECT_STREQ(text(CMGetContextEntry(context, CMPIPrincipal, &st).value.string),
               "J\u00fcrgen \u732b");
  for (const char* name : {CMPIRole, CMPIAcceptLanguage, CMPIContentLanguage}) {
    EXPECT_STREQ(text(CMGetContextEntry(context, name, &st).value.string), "") << name;
    EXPECT_EQ(st.rc, CMPI_RC_OK) << name;
  }
  EXPECT_EQ(CMGetContextEntryCount(context, nullptr), 6U);
}

TEST_F(ContextObject, TakesEntriesOfTheProviders) {
  const CMPIUint32 flags = CMPI_FLAG_LocalOnly;
  CMAddContextEntry(context, CMPIInvocationFlags, &flags, CMPI_uint32);
  EXPECT_EQ(CMGetContextEntry(context, CMPIInvocationFlags, nullptr).value.uint32, 1U);
  EXPECT_EQ(CMGetContextEntryCount(context, nullptr), 6U);
}

TEST_F(ContextObject, KeepsPlainMemory) {
  int variable = 0;
  CMPIValue value;
  value.dataPtr.ptr = &variable;
  value.dataPtr.length = sizeof variable;
  CMAddContextEntry(context, "Mine", &value, CMPI_ptr);
  const CMPIData data = CMGetContextEntry(context, "mine", &st);
  EXPECT_EQ(data.type, CMPI_ptr);
  EXPECT_EQ(data.value.dataPtr.ptr, &variable);
  CMPIString* name = nullptr;
  EXPECT_EQ(CMGetContextEntryAt(context, 6, &name, nullptr).value.dataPtr.length, sizeof variable);
  EXPECT_STREQ(text(name), "Mine");
}

// Catches two entries of one name, of which the older one is found.
TEST_F(ContextObject, ANameHasTheEntryThatWasAddedLast) {
  CMPIValue value;
  value.dataPtr = {nullptr, 0};
  CMAddContextEntry(context, "Mine", &value, CMPI_ptr);
  CMAddContextEntry(context, "mine", "text", CMPI_chars);
  EXPECT_STREQ(text(CMGetContextEntry(context, "Mine", nullptr).value.string), "text");
  EXPECT_EQ(CMGetContextEntryCount(context, nullptr), 7U);
  CMAddContextEntry(context, "Mine", &value, CMPI_ptr);
  EXPECT_EQ(CMGetContextEntry(context, "Mine", nullptr).type, CMPI_ptr);
  EXPECT_EQ(CMGetContextEntryCount(context, nullptr), 7U);
}

// Catches the second entry of a name that is not UTF-8.
TEST_F(ContextObject, ANameThatIsNotUtf8HasOneEntryToo) {
  const char* const name = "Gr\xF6\xDF";
  int variable = 0;
  CMPIValue value;
  value.dataPtr = {nullptr, 0};
  CMAddContextEntry(context, name, &value, CMPI_ptr);
  value.dataPtr = {&variable, sizeof variable};
  CMAddContextEntry(context, name, &value, CMPI_ptr);
  EXPECT_EQ(CMGetContextEntryCount(context, nullptr), 7U);
  EXPECT_EQ(CMGetContextEntry(context, name, nullptr).value.dataPtr.ptr, &variable);
}

TEST_F(ContextObject, WhatIsAbsentIsNoSuchProperty) {
  CMGetContextEntry(context, "None", &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  CMGetContextEntryAt(context, 6, nullptr, &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(ContextObject, ABadHandleIsTold) {
  auto* bad = static_cast<CMPIContext*>(foreignAddress());
  kContextTable.getEntry(bad, "x", &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(kContextTable.getEntryCount(bad, nullptr), 0U);
  EXPECT_EQ(kContextTable.addEntry(bad, "x", nullptr, CMPI_null).rc, CMPI_RC_ERR_INVALID_HANDLE);
}

}  // namespace
}  // namespace cmpinsp::broker
