#include <cstring>

#include "framework/ICIMInstance.h"
#include "framework/ICIMProperty.h"
#include "substitute/cmpi.nsp/broker/objects/EmbeddedInstance.h"
#include "substitute/cmpi.nsp/broker/objects/InstanceObject.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

class InstanceObject : public InCall {
 protected:
  const char* string(const CMPIInstance* inst, const char* name) {
    return text(CMGetProperty(inst, name, nullptr).value.string);
  }
  CMPIInstance* other() {
    CMPIObjectPath* path = CMNewObjectPath(broker(), "root/cimv2", "CIM_Other", nullptr);
    return CMNewInstance(broker(), path, nullptr);
  }
  /// The instance's own path as text.
  const char* pathOf(const CMPIInstance* inst) {
    return text(CMObjectPathToString(CMGetObjectPath(inst, nullptr), nullptr));
  }
};

TEST_F(InstanceObject, TheKeysOfItsPathAreItsProperties) {
  EXPECT_STREQ(string(fan(), "name"), "left");
}

TEST_F(InstanceObject, ADeclaredPropertyThatWasNotSetIsNull) {
  const CMPIData data = CMGetProperty(fan(), "Speed", &st);
  EXPECT_EQ(st.rc, CMPI_RC_OK);
  EXPECT_TRUE(CMIsNullValue(data));
  EXPECT_EQ(data.type, CMPI_uint16);
}

TEST_F(InstanceObject, AnUndeclaredPropertyIsNotThereUntilItIsSet) {
  CMPIInstance* inst = fan();
  CMGetProperty(inst, "Colour", &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  EXPECT_EQ(CMSetProperty(inst, "Colour", "grey", CMPI_chars).rc, CMPI_RC_OK);
  EXPECT_STREQ(string(inst, "COLOUR"), "grey");
}

TEST_F(InstanceObject, AnotherIntegerWidthIsConverted) {
  CMPIInstance* inst = fan();
  const CMPIUint64 speed = 900;
  EXPECT_EQ(CMSetProperty(inst, "Speed", &speed, CMPI_uint64).rc, CMPI_RC_OK);
  const CMPIData data = CMGetProperty(inst, "Speed", nullptr);
  EXPECT_EQ(data.type, CMPI_uint16);
  EXPECT_EQ(data.value.uint16, 900);
}

TEST_F(InstanceObject, TextBecomesTheDeclaredDateTime) {
  CMPIInstance* inst = fan();
  EXPECT_EQ(CMSetProperty(inst, "Started", "20240229120000.000000+000", CMPI_chars).rc, CMPI_RC_OK);
  EXPECT_EQ(CMGetProperty(inst, "Started", nullptr).type, CMPI_dateTime);
}

struct MismatchRow {
  const char* name;
  const char* property;
  const char* value;
};

constexpr MismatchRow kMismatches[] = {
    {"letters for a number", "Speed", "fast"},
    {"a number that is too large", "Speed", "70000"},
    {"no date-time", "Started", "yesterday"},
    {"a scalar for an array", "Tags", "one"},
};

TEST_F(InstanceObject, WhatDoesNotFitIsAMismatchThatNamesTheProperty) {
  CMPIInstance* inst = fan();
  for (const MismatchRow& row : kMismatches) {
    const CMPIStatus status = CMSetProperty(inst, row.property, row.value, CMPI_chars);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_TYPE_MISMATCH) << row.name;
    EXPECT_NE(std::string(text(status.msg)).find(row.property), std::string::npos) << row.name;
    EXPECT_TRUE(CMIsNullValue(CMGetProperty(inst, row.property, nullptr))) << row.name;
  }
}

TEST_F(InstanceObject, AnEmbeddedInstanceGoesIntoAStringProperty) {
  CMPIInstance* inst = fan("outer");
  CMPIInstance* child = fan("inner");
  EXPECT_EQ(CMSetProperty(inst, "Child", &child, CMPI_instance).rc, CMPI_RC_OK);
  const CMPIData data = CMGetProperty(inst, "Child", nullptr);
  EXPECT_EQ(data.type, CMPI_instance);
  EXPECT_STREQ(string(data.value.inst, "Name"), "inner");
}

// Catches the text of an object, as many providers embed it, refused where the class declares an
// embedded instance, and a type that is told of it but is not its own.
TEST_F(InstanceObject, TextGoesIntoAnEmbeddedInstanceProperty) {
  CMPIInstance* inst = other();
  EXPECT_EQ(CMSetProperty(inst, "Part", "instance of CIM_Device {};", CMPI_chars).rc, CMPI_RC_OK);
  EXPECT_EQ(CMGetProperty(inst, "Part", nullptr).type, CMPI_string);
  EXPECT_STREQ(string(inst, "Part"), "instance of CIM_Device {};");
  const auto shown = makeInstance(bodyOf<InstanceBody>(inst).share(), {})->GetProperty("Part", {});
  EXPECT_EQ(shown->GetType(), NZELVOR20::ECIMType::eString);
}

TEST_F(InstanceObject, TextsBecomeTheDeclaredDateTimes) {
  CMPIInstance* inst = other();
  CMPIArray* times = CMNewArray(broker(), 2, CMPI_string, nullptr);
  CMSetArrayElementAt(times, 0, "20240229120000.000000+000", CMPI_chars);
  EXPECT_EQ(CMSetProperty(inst, "Times", &times, CMPI_stringA).rc, CMPI_RC_OK);
  const CMPIData data = CMGetProperty(inst, "Times", nullptr);
  EXPECT_EQ(data.type, CMPI_dateTimeA);
  EXPECT_NE(CMGetArrayElementAt(data.value.array, 0, nullptr).value.dateTime, nullptr);
  EXPECT_TRUE(CMIsNullValue(CMGetArrayElementAt(data.value.array, 1, nullptr)));
}

// Catches garbage that is taken here and fails whoever reads the element later.
TEST_F(InstanceObject, GarbageAmongDateTimesIsRefused) {
  CMPIInstance* inst = other();
  CMPIArray* times = CMNewArray(broker(), 1, CMPI_string, nullptr);
  CMSetArrayElementAt(times, 0, "yesterday", CMPI_chars);
  EXPECT_EQ(CMSetProperty(inst, "Times", &times, CMPI_stringA).rc, CMPI_RC_ERR_TYPE_MISMATCH);
}

TEST_F(InstanceObject, ArraysComeBack) {
  CMPIInstance* inst = fan();
  CMPIArray* tags = CMNewArray(broker(), 2, CMPI_string, nullptr);
  CMSetArrayElementAt(tags, 1, "cold", CMPI_chars);
  EXPECT_EQ(CMSetProperty(inst, "Tags", &tags, CMPI_stringA).rc, CMPI_RC_OK);
  const CMPIData data = CMGetProperty(inst, "Tags", nullptr);
  EXPECT_EQ(data.type, CMPI_stringA);
  EXPECT_STREQ(text(CMGetArrayElementAt(data.value.array, 1, nullptr).value.string), "cold");
}

TEST_F(InstanceObject, PropertiesAreCountedAndIndexed) {
  CMPIInstance* inst = fan();
  CMSetProperty(inst, "Colour", "grey", CMPI_chars);
  CMPIString* name = nullptr;
  EXPECT_EQ(CMGetPropertyCount(inst, nullptr), 7U);
  CMGetPropertyAt(inst, 1, &name, &st);
  EXPECT_STREQ(text(name), "Speed");
  EXPECT_STREQ(text(CMGetPropertyAt(inst, 6, &name, nullptr).value.string), "grey");
  CMGetPropertyAt(inst, 7, nullptr, &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

// Many providers make the path without keys and set the key properties one by one.
TEST_F(InstanceObject, KeyPropertiesCompleteThePath) {
  CMPIInstance* inst = fan(nullptr);
  CMSetProperty(inst, "name", "later", CMPI_chars);
  EXPECT_STREQ(pathOf(inst), "root/cimv2:ACME_Fan.Name=\"later\"");
}

TEST_F(InstanceObject, AnExplicitPathWins) {
  CMPIInstance* inst = fan();
  EXPECT_EQ(CMSetObjectPath(inst, fanPath("other")).rc, CMPI_RC_OK);
  CMSetProperty(inst, "Name", "third", CMPI_chars);
  EXPECT_STREQ(pathOf(inst), "root/cimv2:ACME_Fan.Name=\"other\"");
  EXPECT_STREQ(string(inst, "Name"), "third");
}

TEST_F(InstanceObject, TheFilterTellsTheKeysOfAnUndeclaredClass) {
  CMPIObjectPath* path = CMNewObjectPath(broker(), "root", "Undeclared", nullptr);
  CMPIInstance* inst = CMNewInstance(broker(), path, nullptr);
  const char* keys[] = {"Id", nullptr};
  CMSetPropertyFilter(inst, nullptr, keys);
  CMSetProperty(inst, "Id", "7", CMPI_chars);
  CMSetProperty(inst, "Other", "8", CMPI_chars);
  EXPECT_STREQ(pathOf(inst), "root:Undeclared.Id=\"7\"");
}

TEST_F(InstanceObject, AFilterHidesWhatItDoesNotList) {
  CMPIInstance* inst = fan();
  const CMPIUint16 speed = 900;
  CMSetProperty(inst, "Speed", &speed, CMPI_uint16);
  const char* props[] = {"on", nullptr};
  EXPECT_EQ(CMSetPropertyFilter(inst, props, nullptr).rc, CMPI_RC_OK);
  const CMPIBoolean on = 1;
  CMSetProperty(inst, "On", &on, CMPI_boolean);
  EXPECT_EQ(CMSetProperty(inst, "Speed", &speed, CMPI_uint16).rc, CMPI_RC_OK);
  EXPECT_EQ(CMGetPropertyCount(inst, nullptr), 2U);
  EXPECT_EQ(CMGetProperty(inst, "On", nullptr).value.boolean, 1);
  EXPECT_STREQ(string(inst, "Name"), "left");
  CMGetProperty(inst, "Speed", &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  EXPECT_TRUE(bodyOf<InstanceBody>(inst).data().values[1].IsNull());
}

TEST_F(InstanceObject, AnEmptyFilterLeavesTheKeys) {
  CMPIInstance* inst = fan();
  const char* none[] = {nullptr};
  CMSetPropertyFilter(inst, none, nullptr);
  EXPECT_EQ(CMGetPropertyCount(inst, nullptr), 1U);
  EXPECT_STREQ(string(inst, "Name"), "left");
}

// Catches keys that only the path tells of, as with a class that nobody declared, going through the
// filter like any property.
TEST_F(InstanceObject, AFilterLeavesTheKeysThatAreKnownFromThePathAlone) {
  CMPIObjectPath* path = CMNewObjectPath(broker(), "root", "Undeclared", nullptr);
  CMAddKey(path, "Id", "7", CMPI_chars);
  CMPIInstance* inst = CMNewInstance(broker(), path, nullptr);
  const char* props[] = {"A", nullptr};
  CMSetPropertyFilter(inst, props, nullptr);
  EXPECT_EQ(CMGetPropertyCount(inst, nullptr), 1U);
  EXPECT_STREQ(string(inst, "Id"), "7");
  CMSetProperty(inst, "Id", "8", CMPI_chars);
  CMSetProperty(inst, "B", "hidden", CMPI_chars);
  EXPECT_EQ(CMGetPropertyCount(inst, nullptr), 1U);
  EXPECT_STREQ(string(inst, "Id"), "8");
  EXPECT_STREQ(pathOf(inst), "root:Undeclared.Id=\"8\"");
}

TEST_F(InstanceObject, AnAnswerWithAPropertyListShowsTheKeysOfItsPath) {
  const auto data = boost::make_shared<InstanceData>();
  data->path = {"root", "Undeclared", {{"Id", NZELVOR20::TCIMValue("7")}}};
  data->extras = {{"Id", NZELVOR20::TCIMValue("7")}, {"B", NZELVOR20::TCIMValue("hidden")}};
  const std::vector<std::string> names = {"A"};
  const InstanceBody answer(data, &names);
  EXPECT_EQ(answer.count(), 1U);
  EXPECT_NE(answer.find("Id"), nullptr);
}

TEST_F(InstanceObject, TheOriginMayBeGiven) {
  CMPIInstance* inst = fan();
  EXPECT_EQ(CMSetPropertyWithOrigin(inst, "Name", "x", CMPI_chars, "CIM_Device").rc, CMPI_RC_OK);
  EXPECT_STREQ(string(inst, "Name"), "x");
}

// Catches a clone that writes into what it shares with its original.
TEST_F(InstanceObject, ACloneMayBeChangedBeforeItsOriginal) {
  CMPIInstance* inst = fan();
  CMPIInstance* copy = CMClone(inst, &st);
  CMSetProperty(copy, "Child", "of the clone", CMPI_chars);
  CMSetProperty(copy, "Colour", "grey", CMPI_chars);
  CMSetProperty(copy, "Name", "right", CMPI_chars);
  EXPECT_TRUE(CMIsNullValue(CMGetProperty(inst, "Child", nullptr)));
  EXPECT_EQ(CMGetPropertyCount(inst, nullptr) + 1, CMGetPropertyCount(copy, nullptr));
  EXPECT_STREQ(pathOf(inst), "root/cimv2:ACME_Fan.Name=\"left\"");
  EXPECT_STREQ(pathOf(copy), "root/cimv2:ACME_Fan.Name=\"right\"");
  CMRelease(copy);
}

TEST_F(InstanceObject, ACloneIsIndependent) {
  CMPIInstance* inst = fan();
  CMPIInstance* copy = CMClone(inst, &st);
  CMSetProperty(inst, "Name", "changed", CMPI_chars);
  EXPECT_STREQ(string(copy, "Name"), "left");
  CMSetProperty(copy, "Name", "copy", CMPI_chars);
  EXPECT_STREQ(string(inst, "Name"), "changed");
  CMRelease(copy);
}

TEST_F(InstanceObject, NeedsAPathThatNamesAClass) {
  EXPECT_EQ(CMNewInstance(broker(), nullptr, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
  CMPIObjectPath* nameless = CMNewObjectPath(broker(), "root", nullptr, nullptr);
  EXPECT_EQ(CMNewInstance(broker(), nameless, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_CLASS);
}

TEST_F(InstanceObject, ABadHandleIsTold) {
  auto* bad = static_cast<CMPIInstance*>(foreignAddress());
  EXPECT_EQ(kInstanceTable.setProperty(bad, "x", nullptr, CMPI_null).rc,
            CMPI_RC_ERR_INVALID_HANDLE);
  kInstanceTable.getProperty(bad, "x", &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(kInstanceTable.getObjectPath(bad, nullptr), nullptr);
  EXPECT_EQ(kInstanceTable.getPropertyCount(bad, nullptr), 0U);
  EXPECT_EQ(kInstanceTable.setPropertyFilter(bad, nullptr, nullptr).rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(CMSetProperty(fan(), nullptr, "x", CMPI_chars).rc, CMPI_RC_ERR_INVALID_PARAMETER);
}

// Copying is what makes handing 100,000 instances on slow; what is handed on must not change.
TEST_F(InstanceObject, SharedDataIsCopiedBeforeItChanges) {
  CMPIInstance* inst = fan();
  const InstanceDataPtr shared = bodyOf<InstanceBody>(inst).share();
  EXPECT_EQ(shared.get(), &bodyOf<InstanceBody>(inst).data());
  CMSetProperty(inst, "Name", "changed", CMPI_chars);
  EXPECT_EQ(shared->values[0], NZELVOR20::TCIMValue("left"));
}

// Instances from elsewhere need not have a value for each property: nothing lies behind the last.
TEST_F(InstanceObject, WhatComesWithoutAValueIsNotThere) {
  const auto data = boost::make_shared<InstanceData>();
  data->path = {"root/cimv2", "ACME_Fan", {}};
  data->declaration = upcalls.classes().find("ACME_Fan");
  data->values = {NZELVOR20::TCIMValue("left")};
  const InstanceBody body(data);
  EXPECT_NE(body.find("Name"), nullptr);
  EXPECT_EQ(body.find("Speed"), nullptr);
  EXPECT_EQ(body.find("On"), nullptr);
  EXPECT_EQ(body.count(), 1U);
}

// Catches a property that is known by the address of its name alone: providers read names into one
// buffer.
TEST_F(InstanceObject, ANameIsKnownByItsTextNotByItsPlace) {
  CMPIInstance* inst = fan();
  char name[8] = "Child";
  CMSetProperty(inst, name, "small", CMPI_chars);
  EXPECT_STREQ(string(inst, name), "small");
  std::strcpy(name, "Name");
  EXPECT_STREQ(string(inst, name), "left");
  std::strcpy(name, "Speed");
  EXPECT_EQ(CMGetProperty(inst, name, nullptr).type, CMPI_uint16);
}

// Catches a null that turns into an array of its type.
TEST_F(InstanceObject, ANullObjectIsANullOfItsOwnType) {
  const void* const null = nullptr;
  for (const int type : {CMPI_string, CMPI_dateTime, CMPI_ref, CMPI_instance, CMPI_stringA}) {
    CMPIInstance* inst = fan();
    EXPECT_EQ(CMSetProperty(inst, "Extra", &null, static_cast<CMPIType>(type)).rc, CMPI_RC_OK);
    const CMPIData data = CMGetProperty(inst, "Extra", nullptr);
    EXPECT_TRUE(CMIsNullValue(data)) << type;
    EXPECT_EQ(data.type, type);
  }
}

}  // namespace
}  // namespace cmpinsp::broker
