#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

class ObjectPathObject : public InCall {};

TEST_F(ObjectPathObject, KeepsItsParts) {
  CMPIObjectPath* path = CMNewObjectPath(broker(), "/root/cimv2", "ACME_Fan", &st);
  EXPECT_STREQ(text(CMGetNameSpace(path, nullptr)), "root/cimv2");
  EXPECT_STREQ(text(CMGetClassName(path, nullptr)), "ACME_Fan");
  EXPECT_STREQ(text(CMGetHostname(path, &st)), "");
  EXPECT_EQ(st.rc, CMPI_RC_OK);
  CMSetNameSpace(path, "root");
  CMSetClassName(path, "Other");
  CMSetHostname(path, "box");
  EXPECT_STREQ(text(CMGetNameSpace(path, nullptr)), "root");
  EXPECT_STREQ(text(CMGetClassName(path, nullptr)), "Other");
  EXPECT_STREQ(text(CMGetHostname(path, nullptr)), "box");
}

// Old code makes paths without a namespace and reads it back without a look.
TEST_F(ObjectPathObject, WithoutANamespaceItsTextIsEmpty) {
  EXPECT_STREQ(text(CMGetNameSpace(CMNewObjectPath(broker(), nullptr, "A", nullptr), &st)), "");
  EXPECT_EQ(st.rc, CMPI_RC_OK);
}

TEST_F(ObjectPathObject, AKeyCarriesTheKeyState) {
  const CMPIData data = CMGetKey(fanPath(), "NAME", &st);
  EXPECT_EQ(data.type, CMPI_string);
  EXPECT_EQ(data.state, CMPI_keyValue);
  EXPECT_STREQ(text(data.value.string), "left");
}

TEST_F(ObjectPathObject, KeysAreCountedAndIndexed) {
  CMPIObjectPath* path = fanPath();
  const CMPIUint32 number = 4;
  CMAddKey(path, "Number", &number, CMPI_uint32);
  CMPIString* name = nullptr;
  EXPECT_EQ(CMGetKeyCount(path, nullptr), 2U);
  EXPECT_EQ(CMGetKeyAt(path, 1, &name, nullptr).value.uint32, 4U);
  EXPECT_STREQ(text(name), "Number");
  CMGetKeyAt(path, 2, nullptr, &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(ObjectPathObject, AKeyCannotBeNull) {
  EXPECT_EQ(CMAddKey(fanPath(), "K", nullptr, CMPI_chars).rc, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(ObjectPathObject, CopiesNamespaceAndHostFromAnother) {
  CMPIObjectPath* source = CMNewObjectPath(broker(), "root/acme", "A", nullptr);
  CMSetHostname(source, "box");
  CMPIObjectPath* path = fanPath();
  EXPECT_EQ(CMSetNameSpaceFromObjectPath(path, source).rc, CMPI_RC_OK);
  EXPECT_STREQ(text(CMGetNameSpace(path, nullptr)), "root/acme");
  EXPECT_STREQ(text(CMGetClassName(path, nullptr)), "ACME_Fan");
  EXPECT_STREQ(text(CMGetHostname(path, nullptr)), "");
  EXPECT_EQ(CMSetHostAndNameSpaceFromObjectPath(path, source).rc, CMPI_RC_OK);
  EXPECT_STREQ(text(CMGetHostname(path, nullptr)), "box");
}

TEST_F(ObjectPathObject, PrintsInTheStandardForm) {
  EXPECT_STREQ(text(CMObjectPathToString(fanPath(), nullptr)), "root/cimv2:ACME_Fan.Name=\"left\"");
}

TEST_F(ObjectPathObject, AnswersQualifiersOfDeclaredClasses) {
  CMPIObjectPath* path = fanPath();
  EXPECT_STREQ(text(CMGetClassQualifier(path, "version", &st).value.string), "1.2");
  EXPECT_EQ(CMGetPropertyQualifier(path, "name", "key", &st).value.boolean, 1);
  EXPECT_STREQ(text(CMGetMethodQualifier(path, "spin", "description", &st).value.string), "Turns.");
  EXPECT_EQ(CMGetParameterQualifier(path, "spin", "rounds", "in", &st).value.boolean, 1);
  EXPECT_EQ(st.rc, CMPI_RC_OK);
}

TEST_F(ObjectPathObject, QualifiersThatAreNotThereAreTold) {
  CMPIObjectPath* path = fanPath();
  CMGetClassQualifier(path, "None", &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  CMGetPropertyQualifier(path, "None", "Key", &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  CMGetMethodQualifier(path, "None", "Key", &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  CMGetParameterQualifier(path, "Spin", "None", "In", &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  CMSetClassName(path, "Undeclared");
  CMGetClassQualifier(path, "Version", &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_CLASS);
}

TEST_F(ObjectPathObject, ABadHandleIsTold) {
  auto* bad = static_cast<CMPIObjectPath*>(foreignAddress());
  EXPECT_EQ(kObjectPathTable.getNameSpace(bad, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(kObjectPathTable.setNameSpace(bad, "x").rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(kObjectPathTable.addKey(bad, "x", nullptr, CMPI_null).rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(kObjectPathTable.getKeyCount(nullptr, nullptr), 0U);
  EXPECT_EQ(CMSetNameSpaceFromObjectPath(fanPath(), bad).rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(kObjectPathTable.toString(bad, nullptr), nullptr);
}

}  // namespace
}  // namespace cmpinsp::broker
