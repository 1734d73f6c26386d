#include <gtest/gtest.h>

#include <string>

#include "tests/substitute/cmpi.nsp/manager/Zoo.h"

namespace cmpinsp {
namespace {

using namespace NZELVOR20;

ZooProviders office() { return {{"Zoo_Office", {zooServes("ZOO_Keeper", kInstanceInterface)}}}; }

/// Names and moods of what a query selects.
std::string selected(const Zoo& zoo, const std::string& query, const std::string& language = "WQL",
                     const std::string& className = "ZOO_Being") {
  std::string text;
  zoo.manager->executeQuery({"", className, {}}, query, language, [&](const InstanceDataPtr& data) {
    const TCIMValue* mood = data->find("Mood");
    text += data->path.findKey("Name")->ToString(10);
    if (mood != nullptr && !mood->IsNull()) text += "=" + mood->ToString(10);
    text += " ";
    return true;
  });
  return text;
}

struct Row {
  const char* query;
  const char* wanted;
};

constexpr Row kEnumerated[] = {
    {"SELECT * FROM ZOO_Animal", "Tom=2 Nessie=1 Mia=1 Rex=2 "},
    {"SELECT * FROM ZOO_Animal WHERE Mood = 2", "Tom=2 Rex=2 "},
    {"SELECT * FROM ZOO_Animal WHERE Mood = 2 AND Name LIKE 'R%'", "Rex=2 "},
    {"SELECT * FROM ZOO_Animal WHERE NOT __THIS ISA ZOO_Cat", "Nessie=1 Rex=2 "},
    {"SELECT * FROM ZOO_Cat WHERE Mood > 5", ""},
    {"SELECT Name FROM ZOO_Animal WHERE Mood = 2", "Tom Rex "},
    {"SELECT Mood FROM ZOO_Dog WHERE Name = 'Rex'", "Rex=2 "},
    {"SELECT * FROM ZOO_Cage WHERE Name = 'North'", "North "},
    {"SELECT * FROM ZOO_Cage WHERE Name = 'South'", ""},
    {"SELECT * FROM ZOO_Cage WHERE Guest ISA ZOO_Cat", "North "},
};

// None of these providers answers queries.
TEST(QueryAnswers, TheConditionIsAppliedToAnEnumeration) {
  const Zoo zoo;
  for (const Row& row : kEnumerated) EXPECT_EQ(selected(zoo, row.query), row.wanted) << row.query;
}

TEST(QueryAnswers, AssociationsAreFoundByTheirEnds) {
  const Zoo zoo;
  unsigned count = 0;
  zoo.manager->executeQuery({"", "ZOO_Cares", {}},
                            "SELECT * FROM ZOO_Cares WHERE Animal ISA ZOO_Animal", "WQL",
                            [&](const InstanceDataPtr&) { return ++count != 0; });
  EXPECT_EQ(count, 3U);
}

TEST(QueryAnswers, ACallerCanStopThem) {
  const Zoo zoo;
  unsigned count = 0;
  zoo.manager->executeQuery({"", "ZOO_Animal", {}}, "SELECT * FROM ZOO_Animal WHERE Mood > 0",
                            "WQL", [&](const InstanceDataPtr&) { return ++count < 2; });
  EXPECT_EQ(count, 2U);
}

TEST(QueryAnswers, AConditionThatTheProviderLeftAloneIsApplied) {
  const Zoo zoo(office());
  EXPECT_EQ(selected(zoo, "SELECT * FROM ZOO_Keeper WHERE Mood = 2"), "Bob=2 ");
  EXPECT_EQ(selected(zoo, "SELECT * FROM ZOO_Keeper WHERE Mood IS NULL"), "");
}

// The provider has picked by the mood, and left it out as the query wanted.
TEST(QueryAnswers, WhatAProviderLeftOutIsNotHeldAgainstItsAnswers) {
  const Zoo zoo(office());
  EXPECT_EQ(selected(zoo, "SELECT Name FROM ZOO_Keeper WHERE Mood = 2"), "Bob ");
  EXPECT_EQ(selected(zoo, "SELECT Name FROM ZOO_Keeper WHERE Mood IS NOT NULL"), "Bob ");
  EXPECT_EQ(selected(zoo, "SELECT Name FROM ZOO_Keeper WHERE Mood = 2 AND Name = 'Ann'"), "");
  EXPECT_EQ(selected(zoo, "SELECT Name, Mood FROM ZOO_Keeper WHERE Mood = 2"), "");
}

TEST(QueryAnswers, WhatIsNotReadHereGoesToTheProvidersAsItIs) {
  const Zoo zoo(office());
  EXPECT_EQ(selected(zoo, "everybody, please", "ACME"), "Ann=1 Bob=2 ");
  EXPECT_EQ(selected(zoo, "SELECT * FROM ZOO_Keeper ORDER BY Name"), "Ann=1 Bob=2 ");
}

struct BadRow {
  const char* language;
  const char* query;
  EVORStatusCode code;
  const char* message;
};

constexpr BadRow kRefused[] = {
    {"WQL", "SELECT * FROM ZOO_Animal WHERE", eVORInvalidQuery, "position 31"},
    {"WQL", "SELECT * FROM ZOO_Animal WHERE Colour = 1", eVORNoSuchProperty,
     "class ZOO_Animal has no property Colour"},
    {"WQL", "SELECT Colour FROM ZOO_Animal", eVORNoSuchProperty, "no property Colour"},
    {"WQL", "SELECT * FROM ZOO_Animal WHERE Mood = 'calm'", eVORTypeMismatch,
     "Mood: a number cannot be compared with a text"},
    {"WQL", "SELECT * FROM ZOO_Animal ORDER BY Name", eVORInvalidQuery,
     "\"ORDER\" is not supported"},
    {"ACME", "SELECT * FROM ZOO_Animal", eVORInvalidQuery, "language \"ACME\" is not supported"},
    {"DMTF:FQL", "Mood = 1", eVORInvalidQuery, "a filter selects from no class"},
};

TEST(QueryAnswers, AQueryThatNobodyCanAnswerIsAnError) {
  const Zoo zoo;
  for (const BadRow& row : kRefused) {
    try {
      ADD_FAILURE() << row.query << " found " << selected(zoo, row.query, row.language);
    } catch (const TVORException& error) {
      EXPECT_EQ(error.GetStatus().GetStatusCode(), row.code) << row.query << ": " << error.what();
      EXPECT_NE(std::string(error.what()).find(row.message), std::string::npos) << error.what();
    }
  }
}

}  // namespace
}  // namespace cmpinsp
