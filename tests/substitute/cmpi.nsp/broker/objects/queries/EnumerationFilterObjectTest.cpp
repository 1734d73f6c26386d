#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

class EnumerationFilterObject : public InCall {
 protected:
  CMPIEnumerationFilter* filter(const char* language, const char* query) {
    return CMNewEnumerationFilter(broker(), language, query, &st);
  }
  bool matches(const char* language, const char* query) {
    CMPIEnumerationFilter* made = filter(language, query);
    return made->ft->match(made, fan(), &st) == CMPI_true;
  }
};

TEST_F(EnumerationFilterObject, MatchesByItsCondition) {
  EXPECT_TRUE(matches("DMTF:FQL", "Name = 'left'"));
  EXPECT_FALSE(matches("DMTF:FQL", "Name = 'right'"));
  EXPECT_FALSE(matches("DMTF:FQL", "Speed = 1"));
  EXPECT_TRUE(matches("DMTF:CQL", "SELECT * FROM CIM_Device WHERE Name = 'left'"));
  EXPECT_FALSE(matches("WQL", "SELECT * FROM CIM_Other"));
  EXPECT_EQ(st.rc, CMPI_RC_OK);
}

TEST_F(EnumerationFilterObject, RefusesAPropertyThatTheClassDoesNotHave) {
  EXPECT_FALSE(matches("DMTF:FQL", "Colour = 1"));
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(EnumerationFilterObject, ACloneOutlivesIt) {
  CMPIEnumerationFilter* made = filter("DMTF:FQL", "Name = 'left'");
  CMPIEnumerationFilter* copy = CMClone(made, nullptr);
  CMRelease(made);
  EXPECT_EQ(copy->ft->match(copy, fan(), nullptr), CMPI_true);
  CMRelease(copy);
}

TEST_F(EnumerationFilterObject, BadHandlesAreTold) {
  EXPECT_EQ(kEnumerationFilterTable.match(nullptr, fan(), &st), CMPI_false);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
  CMPIEnumerationFilter* made = filter("DMTF:FQL", "Name = 'left'");
  EXPECT_EQ(made->ft->match(made, nullptr, &st), CMPI_false);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
}

}  // namespace
}  // namespace cmpinsp::broker
