#include <gtest/gtest.h>

#include "substitute/vorcore/values/ClassDeclaration.h"

namespace vorcore {
namespace {

using NZELVOR20::TCIMValue;

ClassDeclaration withProperties(int count) {
  ClassDeclaration declaration;
  for (int number = 0; number < count; ++number) {
    PropertyDeclaration property;
    property.name = "Property" + std::to_string(number);
    declaration.properties.push_back(property);
  }
  return declaration;
}

void expectEveryPropertyFound(const ClassDeclaration& declaration) {
  for (std::size_t number = 0; number < declaration.properties.size(); ++number) {
    EXPECT_EQ(declaration.findProperty("pROPERTY" + std::to_string(number)), number);
  }
  for (const char* name : {"", "Property", "Property1000", "Property-1"}) {
    EXPECT_EQ(declaration.findProperty(name), ClassDeclaration::kNoProperty) << name;
  }
}

TEST(ClassDeclaration, PropertiesAreFoundWithAndWithoutTheIndex) {
  for (const int count : {0, 1, 4, 5, 11, 300}) {
    ClassDeclaration declaration = withProperties(count);
    expectEveryPropertyFound(declaration);
    declaration.buildIndex();
    expectEveryPropertyFound(declaration);
  }
}

TEST(ClassDeclaration, AnIndexThatIsOutOfDateIsNotUsed) {
  ClassDeclaration declaration = withProperties(20);
  declaration.buildIndex();
  declaration.properties.push_back(PropertyDeclaration());
  declaration.properties.back().name = "Late";
  EXPECT_EQ(declaration.findProperty("late"), 20U);
  EXPECT_EQ(declaration.findProperty("Property7"), 7U);
}

TEST(ClassDeclaration, ACopyIsIndependentOfItsOriginal) {
  ClassDeclaration copy;
  {
    ClassDeclaration original = withProperties(20);
    original.buildIndex();
    copy = original;
  }
  expectEveryPropertyFound(copy);
}

TEST(ClassDeclaration, MethodsAreFoundWithoutCase) {
  ClassDeclaration declaration;
  declaration.methods.resize(2);
  declaration.methods[0].name = "Start";
  declaration.methods[1].name = "RunDiagnostic";
  EXPECT_EQ(declaration.findMethod("rundiagnostic"), &declaration.methods[1]);
  EXPECT_EQ(declaration.findMethod("Stop"), nullptr);
}

TEST(ClassDeclaration, QualifiersAreFoundWithoutCaseAndTheFirstWins) {
  const std::vector<Qualifier> qualifiers = {{"Key", TCIMValue::Boolean(true)},
                                             {"KEY", TCIMValue::Boolean(false)}};
  EXPECT_EQ(findQualifier(qualifiers, "key"), &qualifiers[0].value);
  EXPECT_EQ(findQualifier(qualifiers, "Values"), nullptr);
}

TEST(Names, AreComparedWithoutCaseInAscii) {
  EXPECT_TRUE(equalNames("CIM_Foo", "cim_fOO"));
  EXPECT_FALSE(equalNames("CIM_Foo", "CIM_Foo1"));
  EXPECT_FALSE(equalNames("[", "{"));
  EXPECT_FALSE(equalNames("\xC3\x84", "\xC3\xA4"));
  EXPECT_TRUE(lessName("a", "B"));
  EXPECT_FALSE(lessName("B", "a"));
  EXPECT_FALSE(lessName("A", "a"));
  EXPECT_TRUE(lessName("ab", "ABC"));
  EXPECT_EQ(nameKey("CIM_Foo1"), "cim_foo1");
}

}  // namespace
}  // namespace vorcore
