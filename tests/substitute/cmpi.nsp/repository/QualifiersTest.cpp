#include <gtest/gtest.h>

#include <string>

#include "substitute/cmpi.nsp/repository/QualifierTable.h"
#include "substitute/vorcore/values/TypeNames.h"
#include "tests/substitute/cmpi.nsp/repository/Schema.h"

namespace cmpinsp {
namespace {

/// A qualifier of the CIM schema: its type, the default of a boolean, and what differs from an
/// overridable one that subclasses inherit.
struct Row {
  const char* name;
  const char* wanted;
};

const Row kRows[] = {
    {"Abstract", "boolean false restricted"},
    {"Aggregate", "boolean false fixed"},
    {"Aggregation", "boolean false fixed"},
    {"ArrayType", "string fixed"},
    {"Association", "boolean false fixed"},
    {"BitMap", "string[]"},
    {"BitValues", "string[] translatable"},
    {"ClassConstraint", "string[]"},
    {"Composition", "boolean false fixed"},
    {"Correlatable", "string[]"},
    {"Counter", "boolean false"},
    {"Deprecated", "string[] restricted"},
    {"Description", "string translatable"},
    {"DisplayName", "string translatable"},
    {"DN", "boolean false fixed"},
    {"EmbeddedInstance", "string"},
    {"EmbeddedObject", "boolean false fixed"},
    {"Exception", "boolean false fixed"},
    {"Experimental", "boolean false restricted"},
    {"Gauge", "boolean false"},
    {"In", "boolean true fixed"},
    {"Indication", "boolean false fixed"},
    {"IsPUnit", "boolean false"},
    {"Key", "boolean false fixed"},
    {"MappingStrings", "string[]"},
    {"Max", "sint64"},
    {"MaxLen", "sint64"},
    {"MaxValue", "sint64"},
    {"MethodConstraint", "string[]"},
    {"Min", "sint64"},
    {"MinLen", "sint64"},
    {"MinValue", "sint64"},
    {"ModelCorrespondence", "string[]"},
    {"NullValue", "string fixed"},
    {"Octetstring", "boolean false fixed"},
    {"Out", "boolean false fixed"},
    {"Override", "string restricted"},
    {"Propagated", "string fixed"},
    {"PropertyConstraint", "string[]"},
    {"PUnit", "string"},
    {"Read", "boolean true"},
    {"Reference", "string"},
    {"Required", "boolean false fixed"},
    {"Revision", "string translatable"},
    {"Schema", "string fixed translatable"},
    {"Static", "boolean false fixed"},
    {"Structure", "boolean false fixed"},
    {"Terminal", "boolean false"},
    {"UMLPackagePath", "string"},
    {"Units", "string translatable"},
    {"ValueMap", "string[]"},
    {"Values", "string[] translatable"},
    {"Version", "string restricted translatable"},
    {"Weak", "boolean false fixed"},
    {"Write", "boolean false"},
    {"XMLNamespaceName", "string"},
};

std::string described(const NZELVOR20::TCIMQualifierDecl& declaration) {
  std::string text = vorcore::typeName(declaration.type);
  if (declaration.isArray) text += "[]";
  if (!declaration.defaultValue.IsNull()) text += " " + declaration.defaultValue.ToString(10);
  if (!declaration.toSubclass) text += " restricted";
  if (!declaration.overridable) text += " fixed";
  if (declaration.translatable) text += " translatable";
  return text;
}

TEST(QualifierTable, KnowsTheQualifiersOfTheSchemaWithoutAFileThatDeclaresThem) {
  const QualifierTable table;
  for (const Row& row : kRows) {
    const auto* declaration = table.find(row.name);
    ASSERT_NE(declaration, nullptr) << row.name;
    EXPECT_EQ(declaration->name, row.name);
    EXPECT_EQ(described(*declaration), row.wanted) << row.name;
    EXPECT_EQ(declaration->defaultValue.GetType(), declaration->type) << row.name;
    EXPECT_EQ(declaration->defaultValue.IsArray(), declaration->isArray) << row.name;
  }
  EXPECT_EQ(table.all().size(), std::size(kRows));
}

TEST(QualifierTable, ListsEveryDeclarationInTheOrderOfNamesWithoutCase) {
  QualifierTable table;
  NZELVOR20::TCIMQualifierDecl declaration;
  declaration.name = "abstracted";
  table.declare(declaration);
  const auto all = table.all();
  EXPECT_EQ(all.at(0)->name, "Abstract");
  EXPECT_EQ(all.at(1)->name, "abstracted");
  EXPECT_EQ(all.at(2)->name, "Aggregate");
}

TEST(QualifierTable, TheLaterDeclarationOfANameCounts) {
  QualifierTable table;
  const std::size_t before = table.all().size();
  NZELVOR20::TCIMQualifierDecl declaration;
  declaration.name = "KEY";
  table.declare(declaration);
  EXPECT_EQ(table.all().size(), before);
  EXPECT_EQ(table.find("key")->name, "KEY");
}

/// Whether the property p of class C has the qualifier Units, which classes A and B above it write
/// beside it as `first` and `second`; "-" where the class does not write it.
bool reachesThird(const std::string& first, const std::string& second) {
  const auto property = [](const std::string& flavor) {
    return flavor == "-" ? std::string("[Override(\"p\")] uint8 p;")
                         : "[Units(\"V\")" + flavor + "] uint8 p;";
  };
  const Schema schema("class A { " + property(first) + " }; class B : A { " + property(second) +
                      " }; class C : B { [Override(\"p\")] uint8 p; };");
  EXPECT_EQ(schema.faults(), "") << first << second;
  return vorcore::findQualifier(schema.property("C", "p").qualifiers, "Units") != nullptr;
}

// Catches a flavor that a class higher up keeps in force against one written later.
TEST(Qualifiers, AFlavorHoldsUntilAClassFurtherDownWritesAnother) {
  const std::string restricted = " : Restricted";
  const std::string passedOn = " : ToSubclass";
  const struct {
    std::string first;
    std::string second;
    bool wanted;
  } rows[] = {
      {"", "-", true},
      {"", "", true},
      {"", restricted, false},
      {"", passedOn, true},
      {restricted, "-", false},
      {restricted, "", true},
      {restricted, passedOn, true},
      {restricted, restricted, false},
      {passedOn, "-", true},
      {passedOn, "", true},
      {passedOn, restricted, false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(reachesThird(row.first, row.second), row.wanted) << row.first << "," << row.second;
  }
}

TEST(Qualifiers, AFlavorMayChangeTwiceOnTheWayDown) {
  const Schema schema(R"(
    class A { [Units("V") : Restricted] uint8 p; };
    class B : A { [Override("p"), Units("W") : ToSubclass] uint8 p; };
    class C : B { [Override("p"), Units("X") : Restricted] uint8 p; };
    class D : C { [Override("p")] uint8 p; };
    class E : D { [Override("p"), Units("Y")] uint8 p; };
    class F : E { [Override("p")] uint8 p; };)");
  const auto units = [&](const char* name) {
    const auto* value = vorcore::findQualifier(schema.property(name, "p").qualifiers, "Units");
    return value == nullptr ? std::string("-") : value->GetText();
  };
  EXPECT_EQ(units("A") + units("B") + units("C") + units("D") + units("E") + units("F"), "VWX-YY");
}

// Catches a table for many qualifiers that does not know those that were there before.
TEST(Qualifiers, OneOfManyTakesThePlaceOfTheInheritedOne) {
  for (const int more : {1, 15, 16, 17, 40}) {
    std::string own;
    for (int i = 0; i < more; ++i) own += ", Q" + std::to_string(i) + "(" + std::to_string(i) + ")";
    const Schema schema(
        "class A { [Units(\"V\")] uint8 p; };\n"
        "class B : A { [uNITS(\"W\")" +
        own + "] uint8 p; };");
    const auto& qualifiers = schema.property("B", "p").qualifiers;
    EXPECT_EQ(qualifiers.size(), static_cast<std::size_t>(more) + 1) << more;
    EXPECT_EQ(vorcore::findQualifier(qualifiers, "Units")->GetText(), "W") << more;
  }
}

TEST(Qualifiers, FlavorsOfAMethodAndItsParametersHoldToo) {
  const Schema schema(R"(
    class A { [Units("V") : Restricted] uint8 m([Units("V") : Restricted, MaxLen(3)] string p); };
    class B : A { [Override("m")] uint8 m(string p); };)");
  EXPECT_EQ(vorcore::findQualifier(schema.classes.find("B")->findMethod("m")->qualifiers, "Units"),
            nullptr);
  EXPECT_EQ(vorcore::findQualifier(schema.parameter("B", "m", 0).qualifiers, "Units"), nullptr);
  EXPECT_NE(vorcore::findQualifier(schema.parameter("B", "m", 0).qualifiers, "MaxLen"), nullptr);
}

TEST(Qualifiers, OfTwoInOneClassTheLaterOneCountsThoughSubclassesMayNotChangeIt) {
  const Schema schema("class A { [Key, Key(false)] uint8 p; };");
  EXPECT_EQ(schema.faults(), "");
  EXPECT_FALSE(schema.property("A", "p").isKey);
}

TEST(Qualifiers, ABooleanWithoutAValueIsTrueWhateverItsDefault) {
  const Schema schema("class A { [Write, Read, Counter(false)] uint8 p; };");
  const auto value = [&](const char* name) {
    return vorcore::findQualifier(schema.property("A", "p").qualifiers, name)->ToBoolean();
  };
  EXPECT_TRUE(value("Write"));
  EXPECT_TRUE(value("Read"));
  EXPECT_FALSE(value("Counter"));
}

}  // namespace
}  // namespace cmpinsp
