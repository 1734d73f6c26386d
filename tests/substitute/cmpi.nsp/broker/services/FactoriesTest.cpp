#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"
#include "tests/substitute/cmpi.nsp/broker/KeptLog.h"

namespace cmpinsp::broker {
namespace {

class Factories : public InCall {
 protected:
  CMPIBoolean isA(const char* className, const char* ancestor) {
    CMPIObjectPath* path = CMNewObjectPath(broker(), "root", className, nullptr);
    return CMClassPathIsA(broker(), path, ancestor, &st);
  }
};

TEST_F(Factories, ClassPathIsAKnowsTheTree) {
  EXPECT_EQ(isA("ACME_Fan", "acme_fan"), 1);
  EXPECT_EQ(isA("ACME_Fan", "CIM_Device"), 1);
  EXPECT_EQ(isA("CIM_Device", "ACME_Fan"), 0);
  EXPECT_EQ(st.rc, CMPI_RC_OK);
}

TEST_F(Factories, ClassPathIsATellsClassesThatNobodyDeclared) {
  EXPECT_EQ(isA("Undeclared", "undeclared"), 1);
  EXPECT_EQ(isA("Undeclared", "CIM_Device"), 0);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_CLASS);
  EXPECT_EQ(isA("ACME_Fan", "Undeclared"), 0);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_CLASS);
  EXPECT_EQ(CMClassPathIsA(broker(), fanPath(), nullptr, &st), 0);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(Factories, EveryObjectHasATypeAndAText) {
  EXPECT_STREQ(text(CDGetType(broker(), fan(), nullptr)), "CMPIInstance");
  EXPECT_EQ(CDIsOfType(broker(), fanPath(), "CMPIObjectPath", nullptr), 1);
  EXPECT_EQ(CDIsOfType(broker(), fanPath(), "CMPIInstance", nullptr), 0);
  EXPECT_STREQ(text(CDToString(broker(), fan(), nullptr)), "root/cimv2:ACME_Fan.Name=\"left\"");
  EXPECT_STREQ(text(CDToString(broker(), CMNewArray(broker(), 1, CMPI_uint8, nullptr), nullptr)),
               "{}");
  EXPECT_STREQ(text(CDToString(broker(), context, nullptr)), "CMPIContext");
  EXPECT_EQ(CDGetType(broker(), foreignAddress(), &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(Factories, MessagesTakeTheirInserts) {
  CMPIString* message = CMGetMessage3(broker(), "id", "$0 of $1: $2, $3, 5$", &st, CMFmtSint(-1),
                                      CMFmtUint64(7), CMFmtChars("done"));
  EXPECT_STREQ(text(message), "-1 of 7: done, $3, 5$");
  EXPECT_STREQ(text(CMGetMessage2(broker(), "id", "$1 $0", &st, CMFmtBoolean(1), CMFmtReal(0.5))),
               "0.5 true");
  EXPECT_STREQ(text(CMGetMessage1(broker(), "id", "<$0>", &st,
                                  CMFmtString(CMNewString(broker(), "s", nullptr)))),
               "<s>");
  EXPECT_STREQ(text(broker()->eft->getMessage2(broker(), "id", nullptr, "$0", &st, 1,
                                               CMFmtUint(4294967295U))),
               "4294967295");
}

TEST_F(Factories, AMessageThatCannotBeFilledIsStillAMessage) {
  CMPIString* message =
      broker()->eft->getMessage(broker(), "id", "<$0>", &st, 1, CMPI_dateTime, nullptr);
  EXPECT_STREQ(text(message), "<$0>");
  EXPECT_EQ(st.rc, CMPI_RC_ERR_TYPE_MISMATCH);
  EXPECT_STREQ(text(CMGetMessage0(broker(), nullptr, nullptr, nullptr)), "");
}

TEST_F(Factories, LogsAndTracesWithoutALogger) {
  CMPIString* string = CMNewString(broker(), "text", nullptr);
  EXPECT_EQ(CMLogMessage(broker(), CMPI_SEV_ERROR, "id", "text", nullptr).rc, CMPI_RC_OK);
  EXPECT_EQ(CMTraceMessage(broker(), CMPI_LEV_INFO, nullptr, nullptr, string).rc, CMPI_RC_OK);
}

struct InsertRow {
  const char* format;
  CMPICount count;
  const char* wanted;
};

// Catches the characters around the digits, and one insert too many or too few.
TEST_F(Factories, AMessageHasTenInsertsAtMost) {
  const InsertRow rows[] = {{"$9$0", 10, "ja"},
                            {"$/$:", 10, "$/$:"},
                            {"$9$8", 9, "$9i"},
                            {"$", 1, "$"},
                            {"$$0", 1, "$a"}};
  const auto fill = [&](const char* format, CMPICount count) {
    return text(broker()->eft->getMessage(
        broker(), "id", format, &st, count, CMFmtChars("a"), CMFmtChars("b"), CMFmtChars("c"),
        CMFmtChars("d"), CMFmtChars("e"), CMFmtChars("f"), CMFmtChars("g"), CMFmtChars("h"),
        CMFmtChars("i"), CMFmtChars("j"), CMFmtChars("k")));
  };
  for (const InsertRow& row : rows) {
    EXPECT_STREQ(fill(row.format, row.count), row.wanted);
    EXPECT_EQ(st.rc, CMPI_RC_OK);
  }
  EXPECT_STREQ(fill("$0", 11), "$0");
  EXPECT_STREQ(text(st.msg), "a message takes 10 inserts at most");
}

struct SeverityRow {
  CMPISeverity severity;
  const char* line;
};

TEST_F(Factories, WhatAProviderLogsIsALineWithItsNameAndLevel) {
  const SeverityRow rows[] = {{CMPI_SEV_ERROR, "0 provider TestProvider: id: why\n"},
                              {CMPI_SEV_WARNING, "1 provider TestProvider: id: why\n"},
                              {CMPI_SEV_INFO, "2 provider TestProvider: id: why\n"},
                              {static_cast<CMPISeverity>(0), "3 provider TestProvider: id: why\n"}};
  for (const SeverityRow& row : rows) {
    const KeptLog log;
    CMLogMessage(broker(), row.severity, "id", "why", nullptr);
    EXPECT_EQ(log.text(), row.line);
  }
  const KeptLog log;
  CMTraceMessage(broker(), CMPI_LEV_INFO, nullptr, nullptr, CMNewString(broker(), "x", nullptr));
  EXPECT_EQ(log.text(), "3 provider TestProvider: x\n");
}

TEST_F(Factories, ThereAreNoMessageFiles) {
  CMPIMsgFileHandle handle = foreignAddress();
  EXPECT_EQ(CMOpenMessageFile(broker(), "fan.cat", &handle).rc, CMPI_RC_ERR_NOT_FOUND);
  EXPECT_EQ(handle, nullptr);
  EXPECT_EQ(CMCloseMessageFile(broker(), nullptr).rc, CMPI_RC_OK);
  EXPECT_EQ(CMCloseMessageFile(broker(), foreignAddress()).rc, CMPI_RC_ERR_INVALID_HANDLE);
}

struct BadQuery {
  const char* query;
  const char* language;
  CMPIrc code;
};

constexpr BadQuery kBadQueries[] = {
    {"SELECT * FROM", "WQL", CMPI_RC_ERR_INVALID_QUERY},
    {"SELECT * FROM A", "SQL", CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED},
    {"SELECT * FROM A, B", "WQL", CMPI_RC_ERR_QUERY_FEATURE_NOT_SUPPORTED},
    {nullptr, "WQL", CMPI_RC_ERR_INVALID_PARAMETER},
    {"SELECT * FROM A", nullptr, CMPI_RC_ERR_INVALID_PARAMETER},
};

TEST_F(Factories, BadQueriesAreRefusedWithTheReason) {
  for (const BadQuery& bad : kBadQueries) {
    CMPIArray* projection = reinterpret_cast<CMPIArray*>(foreignAddress());
    EXPECT_EQ(CMNewSelectExp(broker(), bad.query, bad.language, &projection, &st), nullptr);
    EXPECT_EQ(st.rc, bad.code) << text(st.msg);
    EXPECT_EQ(projection, nullptr);
    EXPECT_EQ(CMNewEnumerationFilter(broker(), bad.language, bad.query, &st), nullptr);
    EXPECT_EQ(st.rc, bad.code) << text(st.msg);
  }
}

// Catches a broker that is taken for no object at all, and one that is any object's type.
TEST_F(Factories, TheBrokerIsOfTypeBroker) {
  const CMPIBroker copy = *broker();
  EXPECT_STREQ(text(CDGetType(broker(), broker(), &st)), "CMPIBroker");
  EXPECT_STREQ(text(CDGetType(&copy, &copy, &st)), "CMPIBroker");
  EXPECT_STREQ(text(CDGetType(&copy, broker(), &st)), "CMPIBroker");
  EXPECT_TRUE(CDIsOfType(broker(), broker(), "CMPIBroker", &st));
  EXPECT_FALSE(CDIsOfType(broker(), fanPath(), "CMPIBroker", &st));
  EXPECT_EQ(CDGetType(broker(), foreignAddress(), &st), nullptr);
}

TEST_F(Factories, AnotherBrokerIsRefused) {
  CMPIBroker other = *broker();
  other.hdl = foreignAddress();
  EXPECT_EQ(CMNewString(&other, "x", &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(kBrokerEncTable.newString(nullptr, "x", &st), nullptr);
  EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_HANDLE);
}

}  // namespace
}  // namespace cmpinsp::broker
