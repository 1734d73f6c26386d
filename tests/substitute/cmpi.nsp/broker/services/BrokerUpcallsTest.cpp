#include "substitute/cmpi.nsp/broker/Limits.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

class BrokerUpcalls : public InCall {
 protected:
  void SetUp() override {
    upcalls.addFan("left");
    upcalls.addFan("right");
  }
  static CMPICount lengthOf(CMPIEnumeration* en) {
    CMPICount count = 0;
    for (; en != nullptr && CMHasNext(en, nullptr) == 1; ++count) CMGetNext(en, nullptr);
    return count;
  }
};

TEST_F(BrokerUpcalls, EnumerateInstancesAndNames) {
  CMPIEnumeration* fans = CBEnumInstances(broker(), context, fanPath(nullptr), nullptr, &st);
  ASSERT_EQ(st.rc, CMPI_RC_OK);
  const CMPIData first = CMGetNext(fans, &st);
  EXPECT_EQ(first.type, CMPI_instance);
  EXPECT_STREQ(text(CMGetProperty(first.value.inst, "Name", nullptr).value.string), "left");
  CMPIEnumeration* names = CBEnumInstanceNames(broker(), context, fanPath(nullptr), &st);
  const CMPIData name = CMGetNext(names, &st);
  EXPECT_EQ(name.type, CMPI_ref);
  EXPECT_STREQ(text(CMGetKey(name.value.ref, "Name", nullptr).value.string), "left");
}

TEST_F(BrokerUpcalls, PastTheEndThereAreNoMoreElements) {
  CMPIEnumeration* names = CBEnumInstanceNames(broker(), context, fanPath(nullptr), nullptr);
  EXPECT_EQ(lengthOf(names), 2U);
  const CMPIData data = CMGetNext(names, &st);
  EXPECT_EQ(st.rc, CMPI_RC_NO_MORE_ELEMENTS);
  EXPECT_NE(data.state, CMPI_goodValue);
}

TEST_F(BrokerUpcalls, AnEnumerationBecomesAnArray) {
  CMPIEnumeration* fans = CBEnumInstances(broker(), context, fanPath(nullptr), nullptr, nullptr);
  CMPIArray* array = CMToArray(fans, &st);
  EXPECT_EQ(CMGetArrayType(array, nullptr), CMPI_instance);
  EXPECT_EQ(CMGetArrayCount(array, nullptr), 2U);
  const CMPIData second = CMGetArrayElementAt(array, 1, nullptr);
  EXPECT_STREQ(text(CMGetProperty(second.value.inst, "Name", nullptr).value.string), "right");
  CMPIEnumeration* names = CBEnumInstanceNames(broker(), context, fanPath(nullptr), nullptr);
  EXPECT_EQ(CMGetArrayType(CMToArray(names, nullptr), nullptr), CMPI_ref);
}

// Catches an array that shows more than the enumeration that it was made of.
TEST_F(BrokerUpcalls, AnArrayOfAnEnumerationHasTheWantedPropertiesAlone) {
  const char* props[] = {"On", nullptr};
  CMPIEnumeration* fans = CBEnumInstances(broker(), context, fanPath(nullptr), props, nullptr);
  const CMPIData first = CMGetArrayElementAt(CMToArray(fans, nullptr), 0, nullptr);
  EXPECT_STREQ(text(CMGetProperty(first.value.inst, "Name", nullptr).value.string), "left");
  EXPECT_TRUE(CMIsNullValue(CMGetProperty(first.value.inst, "Speed", nullptr)));
}

TEST_F(BrokerUpcalls, ACloneOfAnEnumerationGoesItsOwnWay) {
  CMPIEnumeration* fans = CBEnumInstances(broker(), context, fanPath(nullptr), nullptr, nullptr);
  CMGetNext(fans, nullptr);
  CMPIEnumeration* copy = CMClone(fans, nullptr);
  EXPECT_EQ(lengthOf(fans), 1U);
  EXPECT_EQ(lengthOf(copy), 1U);
  CMRelease(copy);
}

TEST_F(BrokerUpcalls, NothingFoundIsAnEmptyEnumeration) {
  upcalls.instances.clear();
  CMPIEnumeration* fans = CBEnumInstances(broker(), context, fanPath(nullptr), nullptr, &st);
  ASSERT_NE(fans, nullptr);
  EXPECT_EQ(CMHasNext(fans, nullptr), 0);
}

TEST_F(BrokerUpcalls, GetInstanceShowsWhatWasAskedFor) {
  const char* props[] = {"Speed", nullptr};
  CMPIInstance* inst = CBGetInstance(broker(), context, fanPath(), props, &st);
  EXPECT_EQ(CMGetPropertyCount(inst, nullptr), 2U);
  EXPECT_EQ(CMGetProperty(inst, "Speed", nullptr).value.uint16, 900);
  EXPECT_EQ(upcalls.asked.at(0), "getInstance root/cimv2:ACME_Fan.Name=\"left\" Speed");
}

// What the broker holds is not the provider's to change.
TEST_F(BrokerUpcalls, ChangingWhatCameBackChangesNothingElse) {
  CMPIInstance* inst = CBGetInstance(broker(), context, fanPath(), nullptr, &st);
  CMSetProperty(inst, "Name", "mine", CMPI_chars);
  EXPECT_EQ(upcalls.instances[0]->values[0], NZELVOR20::TCIMValue("left"));
}

TEST_F(BrokerUpcalls, FailuresComeBackAsStatusWithText) {
  EXPECT_EQ(CBGetInstance(broker(), context, fanPath("none"), nullptr, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NOT_FOUND);
  EXPECT_NE(std::string(text(st.msg)).find("none"), std::string::npos);
  EXPECT_EQ(CBGetInstance(broker(), context, fanPath("none"), nullptr, nullptr), nullptr);
}

TEST_F(BrokerUpcalls, TheNamespaceComesFromTheContextWhereThePathHasNone) {
  CMPIObjectPath* path = CMNewObjectPath(broker(), nullptr, "ACME_Fan", nullptr);
  CBEnumInstanceNames(broker(), context, path, &st);
  EXPECT_EQ(upcalls.asked.at(0), "enumerateInstanceNames root/cimv2:ACME_Fan");
}

TEST_F(BrokerUpcalls, InstancesAreMadeChangedAndDeleted) {
  CMPIObjectPath* made = CBCreateInstance(broker(), context, fanPath(), fan("new"), &st);
  EXPECT_STREQ(text(CMObjectPathToString(made, nullptr)), "root/cimv2:ACME_Fan.Name=\"new\"");
  EXPECT_EQ(CBModifyInstance(broker(), context, fanPath(), fan(), nullptr).rc, CMPI_RC_OK);
  EXPECT_EQ(CBDeleteInstance(broker(), context, fanPath()).rc, CMPI_RC_OK);
  EXPECT_EQ(upcalls.asked.size(), 3U);
}

TEST_F(BrokerUpcalls, AssociationsCarryTheirRestrictions) {
  CMPIObjectPath* path = CMNewObjectPath(broker(), "r", "A", nullptr);
  EXPECT_EQ(lengthOf(CBAssociators(broker(), context, path, "a", "c", "r", "o", nullptr, &st)), 2U);
  EXPECT_EQ(lengthOf(CBAssociatorNames(broker(), context, path, nullptr, "c", nullptr, "", &st)),
            2U);
  EXPECT_EQ(lengthOf(CBReferences(broker(), context, path, "a", "r", nullptr, &st)), 2U);
  EXPECT_EQ(lengthOf(CBReferenceNames(broker(), context, path, nullptr, nullptr, &st)), 2U);
  const std::vector<std::string> wanted = {"associators r:A a|c|r|o", "associatorNames r:A |c||",
                                           "references r:A |a|r|", "referenceNames r:A |||"};
  EXPECT_EQ(upcalls.asked, wanted);
}

TEST_F(BrokerUpcalls, MethodsTakeAndGiveArguments) {
  CMPIArgs* in = CMNewArgs(broker(), nullptr);
  CMPIArgs* out = CMNewArgs(broker(), nullptr);
  CMAddArg(in, "A", "x", CMPI_chars);
  const CMPIData value = CBInvokeMethod(broker(), context, fanPath(), "Spin", in, out, &st);
  EXPECT_STREQ(text(value.value.string), "done");
  EXPECT_STREQ(text(CMGetArg(out, "A", nullptr).value.string), "x");
  CBInvokeMethod(broker(), context, fanPath(), "Spin", nullptr, nullptr, &st);
  EXPECT_EQ(st.rc, CMPI_RC_OK);
  CBInvokeMethod(broker(), context, fanPath(), nullptr, in, out, &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(BrokerUpcalls, SinglePropertiesAndQueriesArePassedOn) {
  const CMPIUint16 speed = 5;
  EXPECT_EQ(CBSetProperty(broker(), context, fanPath(), "Speed", &speed, CMPI_uint16).rc,
            CMPI_RC_OK);
  EXPECT_EQ(CBGetProperty(broker(), context, fanPath(), "Speed", &st).value.uint16, 7);
  EXPECT_EQ(lengthOf(CBExecQuery(broker(), context, fanPath(), "q", "WQL", &st)), 2U);
}

TEST_F(BrokerUpcalls, WithoutAFilterTheFilteredFormsAreThePlainOnes) {
  const CMPIBrokerFT* bft = broker()->bft;
  EXPECT_EQ(lengthOf(bft->enumerateInstancesFiltered(broker(), context, fanPath(), nullptr, nullptr,
                                                     nullptr, &st)),
            2U);
  EXPECT_EQ(lengthOf(bft->referencesFiltered(broker(), context, fanPath(), nullptr, nullptr,
                                             nullptr, nullptr, "not read", &st)),
            2U);
  EXPECT_EQ(lengthOf(bft->associatorsFiltered(broker(), context, fanPath(), nullptr, nullptr,
                                              nullptr, nullptr, nullptr, nullptr, "", &st)),
            2U);
}

TEST_F(BrokerUpcalls, AFilterPicksInstances) {
  const CMPIBrokerFT* bft = broker()->bft;
  const char* fql = "DMTF:FQL";
  const auto picked = [&](const char* query) {
    const auto enumerated = lengthOf(
        bft->enumerateInstancesFiltered(broker(), context, fanPath(), nullptr, fql, query, &st));
    EXPECT_EQ(lengthOf(bft->referencesFiltered(broker(), context, fanPath(), nullptr, nullptr,
                                               nullptr, fql, query, &st)),
              enumerated);
    EXPECT_EQ(lengthOf(bft->associatorsFiltered(broker(), context, fanPath(), nullptr, nullptr,
                                                nullptr, nullptr, nullptr, fql, query, &st)),
              enumerated);
    return enumerated;
  };
  EXPECT_EQ(picked("Speed = 900"), 2U);
  EXPECT_EQ(picked("Speed > 900"), 0U);
  EXPECT_EQ(picked("Speed = 900 AND Name = 'left'"), 1U);
}

// Catches a filter that sees no more of an instance than the caller wants to see.
TEST_F(BrokerUpcalls, AFilterMayLookAtWhatIsNotAskedFor) {
  const char* props[] = {"Name", nullptr};
  CMPIEnumeration* found = broker()->bft->enumerateInstancesFiltered(
      broker(), context, fanPath(), props, "WQL", "SELECT * FROM CIM_Device WHERE Name = 'left'",
      &st);
  ASSERT_EQ(st.rc, CMPI_RC_OK) << text(st.msg);
  ASSERT_EQ(CMHasNext(found, nullptr), 1);
  const CMPIInstance* one = CMGetNext(found, nullptr).value.inst;
  CMGetProperty(one, "Speed", &st);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(BrokerUpcalls, ABadFilterIsRefused) {
  const CMPIBrokerFT* bft = broker()->bft;
  EXPECT_EQ(bft->referencesFiltered(broker(), context, fanPath(), nullptr, nullptr, nullptr, "SQL",
                                    "x", &st),
            nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED);
  EXPECT_EQ(bft->enumerateInstancesFiltered(broker(), context, fanPath(), nullptr, "DMTF:FQL",
                                            "Speed = 'fast'", &st),
            nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_TYPE_MISMATCH);
}

TEST_F(BrokerUpcalls, AnIndicationThatNobodyWantsIsNoError) {
  EXPECT_EQ(CBDeliverIndication(broker(), context, "root", fan()).rc, CMPI_RC_OK);
  EXPECT_EQ(CBDeliverIndication(broker(), context, "root", nullptr).rc, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(BrokerUpcalls, TooManyAnswersAreAnError) {
  const std::size_t before = answerLimit();
  setAnswerLimit(1);
  EXPECT_EQ(CBEnumInstanceNames(broker(), context, fanPath(), &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED);
  setAnswerLimit(before);
}

TEST_F(BrokerUpcalls, BadHandlesAreTold) {
  EXPECT_EQ(CBEnumInstances(broker(), nullptr, fanPath(), nullptr, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(CBEnumInstances(broker(), context, nullptr, nullptr, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
  auto* bad = static_cast<CMPIEnumeration*>(foreignAddress());
  EXPECT_EQ(kEnumerationTable.hasNext(bad, &st), 0);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(kEnumerationTable.toArray(bad, nullptr), nullptr);
  EXPECT_EQ(CBPrepareAttachThread(broker(), nullptr), nullptr);
}

// A provider's thread may still be there when its provider is gone.
TEST_F(BrokerUpcalls, ARetiredBrokerLetsNothingThrough) {
  own.retire();
  EXPECT_EQ(CBEnumInstances(broker(), context, fanPath(), nullptr, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_FAILED);
  EXPECT_TRUE(upcalls.asked.empty());
}

}  // namespace
}  // namespace cmpinsp::broker
