#include <cstring>

#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

class ArgsObject : public InCall {
 protected:
  CMPIArgs* args = CMNewArgs(broker(), nullptr);
};

TEST_F(ArgsObject, KeepsArgumentsInOrder) {
  CMAddArg(args, "B", "x", CMPI_chars);
  CMAddArg(args, "A", "y", CMPI_chars);
  CMPIString* name = nullptr;
  EXPECT_EQ(CMGetArgCount(args, nullptr), 2U);
  EXPECT_STREQ(text(CMGetArgAt(args, 0, &name, nullptr).value.string), "x");
  EXPECT_STREQ(text(name), "B");
}

TEST_F(ArgsObject, ReplacesAnArgumentWithoutCase) {
  CMAddArg(args, "Name", "x", CMPI_chars);
  CMAddArg(args, "NAME", "y", CMPI_chars);
  EXPECT_EQ(CMGetArgCount(args, nullptr), 1U);
  EXPECT_STREQ(text(CMGetArg(args, "name", nullptr).value.string), "y");
}

struct Scalar {
  const char* name;
  CMPIType type;
  CMPIValue value;
};

std::vector<Scalar> scalars() {
  std::vector<Scalar> rows;
  const auto add = [&rows](const char* name, CMPIType type, auto member, auto value) {
    CMPIValue stored;
    std::memset(&stored, 0, sizeof stored);
    stored.*member = value;
    rows.push_back({name, type, stored});
  };
  add("boolean", CMPI_boolean, &CMPIValue::boolean, CMPIBoolean{1});
  add("char16", CMPI_char16, &CMPIValue::char16, CMPIChar16{0xE4});
  add("uint8", CMPI_uint8, &CMPIValue::uint8, CMPIUint8{0xFF});
  add("uint16", CMPI_uint16, &CMPIValue::uint16, CMPIUint16{0xFFFF});
  add("uint32", CMPI_uint32, &CMPIValue::uint32, CMPIUint32{0xFFFFFFFF});
  add("uint64", CMPI_uint64, &CMPIValue::uint64, ~CMPIUint64{0});
  add("sint8", CMPI_sint8, &CMPIValue::sint8, CMPISint8{-5});
  add("sint16", CMPI_sint16, &CMPIValue::sint16, CMPISint16{-5});
  add("sint32", CMPI_sint32, &CMPIValue::sint32, CMPISint32{-5});
  add("sint64", CMPI_sint64, &CMPIValue::sint64, CMPISint64{-5});
  add("real32", CMPI_real32, &CMPIValue::real32, CMPIReal32{1.5F});
  add("real64", CMPI_real64, &CMPIValue::real64, CMPIReal64{1.5});
  return rows;
}

std::size_t widthOf(CMPIType type) {
  switch (type) {
    case CMPI_boolean:
    case CMPI_uint8:
    case CMPI_sint8:
      return 1;
    case CMPI_char16:
    case CMPI_uint16:
    case CMPI_sint16:
      return 2;
    case CMPI_uint32:
    case CMPI_sint32:
    case CMPI_real32:
      return 4;
    default:
      return 8;
  }
}

TEST_F(ArgsObject, EveryScalarComesBack) {
  for (const Scalar& row : scalars()) {
    EXPECT_EQ(CMAddArg(args, "V", &row.value, row.type).rc, CMPI_RC_OK) << row.name;
    const CMPIData data = CMGetArg(args, "V", &st);
    EXPECT_EQ(data.type, row.type) << row.name;
    EXPECT_EQ(data.state, CMPI_goodValue) << row.name;
    EXPECT_EQ(std::memcmp(&data.value, &row.value, widthOf(row.type)), 0) << row.name;
  }
}

// Providers pass the address of a variable of the type's own width; reading more finds garbage, or
// a page that is not there.
TEST_F(ArgsObject, OnlyTheTypesOwnBytesAreRead) {
  for (const Scalar& row : scalars()) {
    unsigned char bytes[17];
    std::memset(bytes, 0xAA, sizeof bytes);
    std::memcpy(bytes + 1, &row.value, widthOf(row.type));
    CMAddArg(args, "V", bytes + 1, row.type);
    const CMPIData data = CMGetArg(args, "V", nullptr);
    EXPECT_EQ(std::memcmp(&data.value, &row.value, widthOf(row.type)), 0) << row.name;
  }
}

TEST_F(ArgsObject, ABooleanIsExactlyOne) {
  const CMPIBoolean odd = 0x40;
  CMAddArg(args, "V", &odd, CMPI_boolean);
  EXPECT_EQ(CMGetArg(args, "V", nullptr).value.boolean, 1);
}

TEST_F(ArgsObject, TextIsCopiedAndComesBackAsAString) {
  char buffer[] = "text";
  CMAddArg(args, "V", buffer, CMPI_chars);
  buffer[0] = 'X';
  const CMPIData data = CMGetArg(args, "V", nullptr);
  EXPECT_EQ(data.type, CMPI_string);
  EXPECT_STREQ(text(data.value.string), "text");
}

TEST_F(ArgsObject, ACharacterPointerHasOneLevelMore) {
  const char* pointer = "text";
  CMAddArg(args, "V", &pointer, CMPI_charsptr);
  EXPECT_STREQ(text(CMGetArg(args, "V", nullptr).value.string), "text");
}

TEST_F(ArgsObject, ObjectsComeBackAsObjects) {
  CMPIString* string = CMNewString(broker(), "s", nullptr);
  CMPIDateTime* time = CMNewDateTimeFromBinary(broker(), 1, CMPI_true, nullptr);
  CMPIObjectPath* path = fanPath();
  CMPIInstance* instance = fan();
  CMAddArg(args, "S", &string, CMPI_string);
  CMAddArg(args, "T", &time, CMPI_dateTime);
  CMAddArg(args, "P", &path, CMPI_ref);
  CMAddArg(args, "I", &instance, CMPI_instance);
  EXPECT_STREQ(text(CMGetArg(args, "S", nullptr).value.string), "s");
  EXPECT_EQ(CMGetBinaryFormat(CMGetArg(args, "T", nullptr).value.dateTime, nullptr), 1U);
  const CMPIData reference = CMGetArg(args, "P", nullptr);
  EXPECT_EQ(reference.type, CMPI_ref);
  EXPECT_STREQ(text(CMGetKey(reference.value.ref, "Name", nullptr).value.string), "left");
  const CMPIData embedded = CMGetArg(args, "I", nullptr);
  EXPECT_EQ(embedded.type, CMPI_instance);
  EXPECT_STREQ(text(CMGetProperty(embedded.value.inst, "Name", nullptr).value.string), "left");
}

// What was passed is the provider's: changing it later must not change what was stored.
TEST_F(ArgsObject, StoredObjectsAreCopies) {
  CMPIInstance* instance = fan();
  CMPIArray* array = CMNewArray(broker(), 1, CMPI_chars, nullptr);
  CMAddArg(args, "I", &instance, CMPI_instance);
  CMAddArg(args, "A", &array, CMPI_stringA);
  CMSetProperty(instance, "Name", "changed", CMPI_chars);
  CMSetArrayElementAt(array, 0, "changed", CMPI_chars);
  const CMPIData embedded = CMGetArg(args, "I", nullptr);
  EXPECT_STREQ(text(CMGetProperty(embedded.value.inst, "Name", nullptr).value.string), "left");
  const CMPIData stored = CMGetArg(args, "A", nullptr);
  EXPECT_TRUE(CMIsNullValue(CMGetArrayElementAt(stored.value.array, 0, nullptr)));
}

struct NullRow {
  const char* name;
  CMPIType type;
  bool throughVariable;
};

constexpr NullRow kNullRows[] = {
    {"chars", CMPI_chars, false},      {"uint16", CMPI_uint16, false},
    {"string", CMPI_string, true},     {"dateTime", CMPI_dateTime, true},
    {"ref", CMPI_ref, true},           {"instance", CMPI_instance, true},
    {"array", CMPI_uint16A, true},     {"chars array", CMPI_charsA, true},
    {"charsptr", CMPI_charsptr, true}, {"array, no variable", CMPI_uint16A, false},
    {"null type", CMPI_null, false},
};

TEST_F(ArgsObject, NullsAreStoredAsNulls) {
  const void* null = nullptr;
  for (const NullRow& row : kNullRows) {
    const void* value = row.throughVariable ? &null : nullptr;
    EXPECT_EQ(CMAddArg(args, "V", value, row.type).rc, CMPI_RC_OK) << row.name;
    EXPECT_TRUE(CMIsNullValue(CMGetArg(args, "V", &st))) << row.name;
    EXPECT_EQ(st.rc, CMPI_RC_OK) << row.name;
  }
}

TEST_F(ArgsObject, GarbageObjectsAreRefused) {
  void* garbage = foreignAddress();
  CMPIString* string = CMNewString(broker(), "s", nullptr);
  for (const int type : {CMPI_string, CMPI_dateTime, CMPI_ref, CMPI_instance, CMPI_stringA}) {
    EXPECT_EQ(CMAddArg(args, "V", &garbage, static_cast<CMPIType>(type)).rc,
              CMPI_RC_ERR_INVALID_HANDLE)
        << type;
  }
  EXPECT_EQ(CMAddArg(args, "V", &string, CMPI_instance).rc, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(ArgsObject, TypesThatAreNoValuesAreRefused) {
  const CMPIUint64 value = 0;
  for (const int type : {CMPI_args, CMPI_enumeration, CMPI_filter, CMPI_class, CMPI_ptr, 0x77}) {
    EXPECT_EQ(CMAddArg(args, "V", &value, static_cast<CMPIType>(type)).rc,
              CMPI_RC_ERR_INVALID_DATA_TYPE)
        << type;
  }
}

TEST_F(ArgsObject, WhatIsAbsentIsNoSuchProperty) {
  EXPECT_NE(CMGetArg(args, "None", &st).state & CMPI_badValue, 0);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  CMGetArgAt(args, 0, nullptr, &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(ArgsObject, ANameIsNeeded) {
  EXPECT_EQ(CMAddArg(args, nullptr, "x", CMPI_chars).rc, CMPI_RC_ERR_INVALID_PARAMETER);
  CMGetArg(args, nullptr, &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(ArgsObject, ABadHandleIsTold) {
  auto* bad = static_cast<CMPIArgs*>(foreignAddress());
  EXPECT_EQ(kArgsTable.addArg(bad, "x", nullptr, CMPI_null).rc, CMPI_RC_ERR_INVALID_HANDLE);
  kArgsTable.getArg(bad, "x", &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
  kArgsTable.getArgAt(nullptr, 0, nullptr, &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(kArgsTable.getArgCount(bad, nullptr), 0U);
  EXPECT_EQ(kArgsTable.clone(bad, nullptr), nullptr);
  EXPECT_EQ(kArgsTable.release(bad).rc, CMPI_RC_ERR_INVALID_HANDLE);
}

}  // namespace
}  // namespace cmpinsp::broker
