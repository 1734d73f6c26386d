#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

class ArrayObject : public InCall {};

TEST_F(ArrayObject, StartsWithNullsOfItsType) {
  CMPIArray* array = CMNewArray(broker(), 2, CMPI_uint16, &st);
  EXPECT_EQ(CMGetArrayCount(array, nullptr), 2U);
  EXPECT_EQ(CMGetArrayType(array, nullptr), CMPI_uint16);
  const CMPIData data = CMGetArrayElementAt(array, 1, &st);
  EXPECT_EQ(st.rc, CMPI_RC_OK);
  EXPECT_TRUE(CMIsNullValue(data));
  EXPECT_EQ(data.type, CMPI_uint16);
}

TEST_F(ArrayObject, KeepsAnElement) {
  CMPIArray* array = CMNewArray(broker(), 1, CMPI_uint16, nullptr);
  const CMPIUint16 value = 7;
  EXPECT_EQ(CMSetArrayElementAt(array, 0, &value, CMPI_uint16).rc, CMPI_RC_OK);
  EXPECT_EQ(CMGetArrayElementAt(array, 0, nullptr).value.uint16, 7);
}

TEST_F(ArrayObject, OfTextsTakesCharacters) {
  CMPIArray* array = CMNewArray(broker(), 1, CMPI_chars, nullptr);
  EXPECT_EQ(CMGetArrayType(array, nullptr), CMPI_string);
  EXPECT_EQ(CMSetArrayElementAt(array, 0, "x", CMPI_chars).rc, CMPI_RC_OK);
  EXPECT_STREQ(text(CMGetArrayElementAt(array, 0, nullptr).value.string), "x");
}

TEST_F(ArrayObject, NullMakesAnElementNull) {
  CMPIArray* array = CMNewArray(broker(), 1, CMPI_chars, nullptr);
  CMSetArrayElementAt(array, 0, "x", CMPI_chars);
  EXPECT_EQ(CMSetArrayElementAt(array, 0, nullptr, CMPI_null).rc, CMPI_RC_OK);
  EXPECT_TRUE(CMIsNullValue(CMGetArrayElementAt(array, 0, nullptr)));
}

// Providers make one before they know what is to be in it, and hand it on empty.
TEST_F(ArrayObject, OfNoTypeHoldsNulls) {
  CMPIArray* array = CMNewArray(broker(), 2, CMPI_null, &st);
  ASSERT_NE(array, nullptr);
  EXPECT_EQ(CMGetArrayCount(array, nullptr), 2U);
  EXPECT_EQ(CMGetArrayType(array, nullptr), CMPI_null);
  EXPECT_TRUE(CMIsNullValue(CMGetArrayElementAt(array, 1, nullptr)));
  EXPECT_EQ(CMSetArrayElementAt(array, 0, nullptr, CMPI_null).rc, CMPI_RC_OK);
  EXPECT_EQ(CMSetArrayElementAt(array, 0, "x", CMPI_chars).rc, CMPI_RC_ERR_TYPE_MISMATCH);
  EXPECT_EQ(CMSetProperty(fan(), "Tags", &array, CMPI_stringA).rc, CMPI_RC_OK);
}

TEST_F(ArrayObject, MayBeEmpty) {
  EXPECT_EQ(CMGetArrayCount(CMNewArray(broker(), 0, CMPI_string, nullptr), nullptr), 0U);
}

TEST_F(ArrayObject, AnotherTypeIsAMismatch) {
  CMPIArray* array = CMNewArray(broker(), 1, CMPI_uint16, nullptr);
  EXPECT_EQ(CMSetArrayElementAt(array, 0, "x", CMPI_chars).rc, CMPI_RC_ERR_TYPE_MISMATCH);
  const CMPIUint32 wide = 7;
  EXPECT_EQ(CMSetArrayElementAt(array, 0, &wide, CMPI_uint32).rc, CMPI_RC_ERR_TYPE_MISMATCH);
}

TEST_F(ArrayObject, OutsideThereIsNoSuchProperty) {
  CMPIArray* array = CMNewArray(broker(), 1, CMPI_uint16, nullptr);
  const CMPIData data = CMGetArrayElementAt(array, 1, &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  EXPECT_NE(data.state & CMPI_badValue, 0);
  EXPECT_EQ(CMSetArrayElementAt(array, 1, nullptr, CMPI_null).rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(ArrayObject, TypesThatAreNoneAreRefused) {
  for (const int type : {CMPI_ARRAY, CMPI_uint16A, CMPI_args, CMPI_enumeration, 0x0001, 0xFFFF}) {
    EXPECT_EQ(CMNewArray(broker(), 1, static_cast<CMPIType>(type), &st), nullptr) << type;
    EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_DATA_TYPE) << type;
  }
}

// A size that was computed wrongly must not take all the memory there is.
TEST_F(ArrayObject, AnAbsurdSizeIsRefused) {
  EXPECT_EQ(CMNewArray(broker(), ~CMPICount{0}, CMPI_uint8, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(ArrayObject, ABadHandleIsTold) {
  auto* bad = static_cast<CMPIArray*>(foreignAddress());
  EXPECT_EQ(kArrayTable.getSize(bad, &st), 0U);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(kArrayTable.getSimpleType(bad, nullptr), CMPI_null);
  EXPECT_EQ(kArrayTable.getElementAt(bad, 0, nullptr).state & CMPI_badValue, CMPI_badValue);
  EXPECT_EQ(kArrayTable.setElementAt(bad, 0, nullptr, CMPI_null).rc, CMPI_RC_ERR_INVALID_HANDLE);
}

}  // namespace
}  // namespace cmpinsp::broker
