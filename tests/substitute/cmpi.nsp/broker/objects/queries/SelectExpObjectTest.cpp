#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

/// What an accessor knows: Speed 900, Name "left" in the way of old providers, Owner null, Colour
/// with a state that says it is bad; the class where `parm` names one.
CMPIData known(const char* name, void* parm) {
  CMPIData data{};
  const std::string asked = name;
  if (asked == "Speed") {
    data.type = CMPI_uint16;
    data.value.uint16 = 900;
  } else if (asked == "Name") {
    data.type = CMPI_chars;
    data.value.chars = const_cast<char*>("left");
  } else if (asked == "Owner") {
    data.type = CMPI_string;
    data.state = CMPI_nullValue;
  } else if (asked == "__CLASS" && parm != nullptr) {
    data.type = CMPI_chars;
    data.value.chars = static_cast<char*>(parm);
  } else {
    data.state = CMPI_badValue;
  }
  return data;
}

class SelectExpObject : public InCall {
 protected:
  CMPISelectExp* select(const std::string& condition) {
    const std::string query = "SELECT * FROM ACME_Fan WHERE " + condition;
    return CMNewSelectExp(broker(), query.c_str(), "WQL", nullptr, &st);
  }
  bool holds(const std::string& condition, char* className = nullptr) {
    CMPISelectExp* made = select(condition);
    return made->ft->evaluateUsingAccessor(made, known, className, &st) == CMPI_true;
  }
  CMPIPredicate* only(const std::string& condition) {
    CMPISelectExp* made = select(condition);
    CMPISelectCond* all = made->ft->getDOC(made, &st);
    return CMGetPredicateAt(CMGetSubCondAt(all, 0, nullptr), 0, nullptr);
  }
  /// "Name Like 'left'" as numbers and texts.
  std::string partsOf(const std::string& condition) {
    CMPIType type = 0;
    CMPIPredOp op = CMPI_PredOp_Equals;
    CMPIString* left = nullptr;
    CMPIString* right = nullptr;
    CMPIPredicate* predicate = only(condition);
    EXPECT_EQ(predicate->ft->getData(predicate, &type, &op, &left, &right).rc, CMPI_RC_OK);
    return std::string(text(left)) + " " + std::to_string(op) + " " + text(right) + " " +
           std::to_string(type);
  }
  char fanClass[9] = "ACME_Fan";
};

TEST_F(SelectExpObject, EvaluatesAnInstance) {
  CMPISelectExp* left = select("Name = 'left'");
  EXPECT_EQ(left->ft->evaluate(left, fan("left"), &st), CMPI_true);
  EXPECT_EQ(st.rc, CMPI_RC_OK);
  EXPECT_EQ(left->ft->evaluate(left, fan("right"), &st), CMPI_false);
  EXPECT_EQ(st.rc, CMPI_RC_OK);
}

TEST_F(SelectExpObject, AnInstanceOfAnotherClassIsNotSelected) {
  CMPISelectExp* made = CMNewSelectExp(broker(), "SELECT * FROM CIM_Other", "WQL", nullptr, &st);
  EXPECT_EQ(made->ft->evaluate(made, fan(), &st), CMPI_false);
  EXPECT_EQ(st.rc, CMPI_RC_OK);
}

TEST_F(SelectExpObject, EvaluatesWhatAnAccessorKnows) {
  EXPECT_TRUE(holds("Speed > 800 AND Name LIKE 'l%'"));
  EXPECT_FALSE(holds("Speed > 900"));
  EXPECT_TRUE(holds("Owner IS NULL"));
  EXPECT_FALSE(holds("Owner = 'x'"));
  EXPECT_TRUE(holds("__THIS ISA CIM_Device", fanClass));
  EXPECT_FALSE(holds("__THIS ISA CIM_Other", fanClass));
  EXPECT_EQ(st.rc, CMPI_RC_OK);
  EXPECT_FALSE(holds("__THIS ISA CIM_Device"));
  EXPECT_EQ(st.rc, CMPI_RC_OK);
}

TEST_F(SelectExpObject, WhatAnAccessorDoesNotKnowIsAnError) {
  EXPECT_FALSE(holds("Colour = 'red'"));
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  EXPECT_FALSE(holds("Speed = 'fast'"));
  EXPECT_EQ(st.rc, CMPI_RC_ERR_TYPE_MISMATCH);
}

TEST_F(SelectExpObject, AccessorsThatThrowAreAnError) {
  CMPISelectExp* made = select("Speed = 1");
  const auto throwing = [](const char*, void*) -> CMPIData { throw 7; };
  EXPECT_EQ(made->ft->evaluateUsingAccessor(made, throwing, nullptr, &st), CMPI_false);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_FAILED);
  EXPECT_EQ(made->ft->evaluateUsingAccessor(made, nullptr, nullptr, &st), CMPI_false);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(SelectExpObject, GivesItsTextBack) {
  CMPISelectExp* made = select("Name  = 'left'");
  EXPECT_STREQ(text(made->ft->getString(made, &st)), "SELECT * FROM ACME_Fan WHERE Name  = 'left'");
}

TEST_F(SelectExpObject, TheProjectionNamesWhatIsSelected) {
  CMPIArray* projection = nullptr;
  CMNewSelectExp(broker(), "SELECT Name, Speed FROM ACME_Fan", "WQL", &projection, &st);
  ASSERT_EQ(CMGetArrayCount(projection, nullptr), 2U);
  EXPECT_STREQ(text(CMGetArrayElementAt(projection, 1, nullptr).value.string), "Speed");
  CMNewSelectExp(broker(), "SELECT * FROM ACME_Fan", "WQL", &projection, &st);
  EXPECT_EQ(projection, nullptr);
}

TEST_F(SelectExpObject, HasItsConditionInBothForms) {
  CMPISelectExp* made = select("Name = 'a' OR Speed = 1 AND NOT On = TRUE");
  int type = 7;
  CMPISelectCond* any = made->ft->getDOC(made, &st);
  EXPECT_EQ(CMGetSubCondCountAndType(any, &type, nullptr), 2U);
  EXPECT_EQ(type, CMPI_COND_DOC);
  CMPISubCond* second = CMGetSubCondAt(any, 1, nullptr);
  EXPECT_EQ(CMGetPredicateCount(second, nullptr), 2U);
  CMPISelectCond* every = made->ft->getCOD(made, &st);
  EXPECT_EQ(CMGetSubCondCountAndType(every, &type, nullptr), 2U);
  EXPECT_EQ(type, CMPI_COND_COD);
  EXPECT_EQ(CMGetSubCondCountAndType(every, nullptr, nullptr), 2U);
}

TEST_F(SelectExpObject, AFormThatWouldBeTooLargeIsRefused) {
  std::string condition = "(Speed = 1 OR On = TRUE)";
  for (int i = 0; i < 40; ++i) condition += " AND (Speed = 1 OR On = TRUE)";
  CMPISelectExp* made = select(condition);
  EXPECT_EQ(made->ft->getDOC(made, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED);
}

struct Row {
  const char* condition;
  std::string wanted;
};

TEST_F(SelectExpObject, PredicatesTellTheirParts) {
  const auto parts = [](const char* left, int op, const char* right, int type) {
    return std::string(left) + " " + std::to_string(op) + " " + right + " " + std::to_string(type);
  };
  const Row rows[] = {
      {"Speed = 900", parts("Speed", 1, "900", CMPI_integerString)},
      {"Speed <> -1", parts("Speed", 2, "-1", CMPI_integerString)},
      {"Speed < 1.5", parts("Speed", 3, "1.5", CMPI_realString)},
      {"Speed >= Limit", parts("Speed", 4, "Limit", CMPI_nameString)},
      {"Speed > 1", parts("Speed", 5, "1", CMPI_integerString)},
      {"Speed <= 1", parts("Speed", 6, "1", CMPI_integerString)},
      {"Child ISA CIM_Other", parts("Child", 7, "CIM_Other", CMPI_classNameString)},
      {"NOT Child ISA CIM_Other", parts("Child", 8, "CIM_Other", CMPI_classNameString)},
      {"Name LIKE 'l%'", parts("Name", 9, "l%", CMPI_charString)},
      {"Name NOT LIKE 'l%'", parts("Name", 10, "l%", CMPI_charString)},
      {"Name IS NOT NULL", parts("Name", 11, "(null)", CMPI_null)},
      {"Name IS NULL", parts("Name", 12, "(null)", CMPI_null)},
      {"On = TRUE", parts("On", 1, "TRUE", CMPI_booleanString)},
  };
  for (const Row& row : rows) EXPECT_EQ(partsOf(row.condition), row.wanted) << row.condition;
}

TEST_F(SelectExpObject, PredicatesAreFoundByNameAndEvaluated) {
  CMPISelectExp* made = select("Name = 'left' AND Speed > 1000");
  CMPISubCond* group = CMGetSubCondAt(made->ft->getDOC(made, nullptr), 0, nullptr);
  CMPIPredicate* speed = CMGetPredicate(group, "SPEED", &st);
  EXPECT_EQ(CMEvaluatePredicateUsingAccessor(speed, known, nullptr, &st), CMPI_false);
  EXPECT_EQ(st.rc, CMPI_RC_OK);
  CMPIPredicate* name = CMGetPredicate(group, "Name", &st);
  EXPECT_EQ(CMEvaluatePredicateUsingAccessor(name, known, nullptr, &st), CMPI_true);
  EXPECT_EQ(CMGetPredicate(group, "Colour", &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  EXPECT_EQ(CMGetPredicateAt(group, 2, &st), nullptr);
  EXPECT_NE(st.rc, CMPI_RC_OK);
}

// Catches a part that points into an object which is gone.
TEST_F(SelectExpObject, ClonesOutliveWhatTheyComeFrom) {
  CMPISelectExp* made = select("Name = 'left' AND Speed > 1000");
  CMPISelectCond* forms = made->ft->getDOC(made, nullptr);
  CMPISubCond* group = CMGetSubCondAt(forms, 0, nullptr);
  CMPIPredicate* predicate = CMClone(CMGetPredicateAt(group, 0, nullptr), nullptr);
  CMPISubCond* groupClone = CMClone(group, nullptr);
  CMPISelectCond* formsClone = CMClone(forms, nullptr);
  CMPISelectExp* madeClone = CMClone(made, nullptr);
  CMRelease(made);
  EXPECT_EQ(CMEvaluatePredicateUsingAccessor(predicate, known, nullptr, &st), CMPI_true);
  EXPECT_EQ(CMGetPredicateCount(groupClone, nullptr), 2U);
  EXPECT_EQ(CMGetSubCondCountAndType(formsClone, nullptr, nullptr), 1U);
  EXPECT_EQ(madeClone->ft->evaluateUsingAccessor(madeClone, known, nullptr, &st), CMPI_false);
  CMRelease(predicate);
  CMRelease(groupClone);
  CMRelease(formsClone);
  CMRelease(madeClone);
}

TEST_F(SelectExpObject, IsGivenBackEarly) {
  CMPISelectExp* made = select("Name = 'left'");
  broker()->mft->freeSelectExp(broker(), made);
  EXPECT_EQ(kSelectExpTable.getString(made, &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
}

}  // namespace
}  // namespace cmpinsp::broker
