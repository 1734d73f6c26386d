#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

class PropertyListObject : public InCall {};

TEST_F(PropertyListObject, ListsItsNamesWithoutCase) {
  const char* props[] = {"Name", nullptr};
  CMPIPropertyList* list = CMNewPropertyList(broker(), props, &st);
  EXPECT_EQ(list->ft->isPropertyInList(list, "NAME", nullptr), 1);
  EXPECT_EQ(list->ft->isPropertyInList(list, "Other", nullptr), 0);
  EXPECT_STREQ(list->ft->getProperties(list, nullptr)[0], "Name");
  EXPECT_EQ(list->ft->getProperties(list, nullptr)[1], nullptr);
}

TEST_F(PropertyListObject, WithoutNamesItListsEverything) {
  CMPIPropertyList* list = CMNewPropertyList(broker(), nullptr, &st);
  EXPECT_EQ(list->ft->isPropertyInList(list, "Other", nullptr), 1);
  EXPECT_EQ(list->ft->getProperties(list, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_OK);
}

TEST_F(PropertyListObject, ACloneHasItsOwnNames) {
  const char* props[] = {"Name", nullptr};
  CMPIPropertyList* list = CMNewPropertyList(broker(), props, nullptr);
  CMPIPropertyList* copy = CMClone(list, nullptr);
  CMRelease(list);
  EXPECT_STREQ(copy->ft->getProperties(copy, nullptr)[0], "Name");
  CMRelease(copy);
}

TEST_F(PropertyListObject, ABadHandleIsTold) {
  EXPECT_EQ(kPropertyListTable.isPropertyInList(nullptr, "x", &st), 0);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
}

}  // namespace
}  // namespace cmpinsp::broker
