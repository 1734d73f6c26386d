#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "tests/substitute/cmpi.nsp/repository/Schema.h"

namespace cmpinsp {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

/// The value of a qualifier as text; "-" where there is none.
std::string qualifier(const std::vector<vorcore::Qualifier>& qualifiers, const std::string& name) {
  const TCIMValue* value = vorcore::findQualifier(qualifiers, name);
  return value == nullptr ? "-" : value->ToString(10);
}

TEST(ClassBuilder, TypesAndDefaultsAreThoseDeclared) {
  const Schema schema(R"(class A {
    boolean b = true; char16 c = 'x'; uint8 u8 = 255; sint8 s8 = -128; uint16 u16 = 0xFFFF;
    sint16 s16; uint32 u32; sint32 s32; uint64 u64 = 18446744073709551615; sint64 s64;
    real32 r32 = 1; real64 r64 = 2.5; string s = "t"; datetime d = "00000000000500.000000:000";
    A REF ref; string list[] = {"x", "y"}; uint16 one[] = 7; };)");
  ASSERT_EQ(schema.faults(), "");
  const vorcore::ClassDeclarationPtr a = schema.classes.find("A");
  std::string text;
  for (const auto& property : a->properties) {
    text +=
        property.name + (property.isArray ? "[]=" : "=") + property.defaultValue.ToString(10) + " ";
    EXPECT_EQ(property.defaultValue.GetType(), property.type) << property.name;
    EXPECT_EQ(property.defaultValue.IsArray(), property.isArray) << property.name;
  }
  EXPECT_EQ(text,
            "b=true c=x u8=255 s8=-128 u16=65535 s16= u32= s32= u64=18446744073709551615 s64= "
            "r32=1 r64=2.5 s=t d=00000000000500.000000:000 ref= list[]={x,y} one[]={7} ");
  EXPECT_EQ(schema.property("A", "ref").referenceClass, "A");
  EXPECT_EQ(schema.property("A", "ref").type, ECIMType::eReference);
}

TEST(ClassBuilder, ADefaultThatDoesNotFitIsReportedAndTheClassStays) {
  const struct {
    const char* declaration;
    const char* wanted;
  } rows[] = {
      {"uint8 p = 256;", "a:1:21: class A: expected a value of type uint8\n"},
      {"uint8 p = -1;", "a:1:21: class A: expected a value of type uint8\n"},
      {"sint64 p = 9223372036854775808;", "a:1:22: class A: expected a value of type sint64\n"},
      {"string p = 1;", "a:1:22: class A: expected a value of type string\n"},
      {"boolean p = 2;", "a:1:23: class A: expected a value of type boolean\n"},
      {"uint8 p = {1};", "a:1:21: class A: expected one value, found a list\n"},
      {"datetime p = \"now\";", "a:1:24: class A: expected a value of type datetime\n"},
      {"A REF p = \"A.k=1\";", "a:1:21: class A: expected a value of type reference\n"},
  };
  for (const auto& row : rows) {
    const Schema schema("class A { " + std::string(row.declaration) + " };");
    EXPECT_EQ(schema.faults(), row.wanted) << row.declaration;
    EXPECT_TRUE(schema.property("A", "p").defaultValue.IsNull()) << row.declaration;
  }
}

TEST(ClassBuilder, SubclassesHaveWhatTheyInheritFirst) {
  const Schema schema(R"(
    class C : B { uint8 c; uint32 m2(); };
    class A { [Key] string a; uint32 m(); };
    class B : A { uint8 b; };)");
  ASSERT_EQ(schema.faults(), "");
  const vorcore::ClassDeclarationPtr c = schema.classes.find("c");
  ASSERT_EQ(c->properties.size(), 3u);
  EXPECT_EQ(c->properties[0].name, "a");
  EXPECT_TRUE(c->properties[0].isKey);
  EXPECT_EQ(c->properties[0].originClass, "A");
  EXPECT_EQ(c->properties[2].name, "c");
  EXPECT_EQ(c->methods.size(), 2u);
  EXPECT_EQ(c->superclass, "B");
}

TEST(ClassBuilder, AnOverriddenPropertyKeepsItsPlaceAndWhatIsPassedOn) {
  const Schema schema(R"(
    class A { [Key, ValueMap{"1","2"}, Values{"One","Two"}, Deprecated{"x"}, Description("d")]
              uint16 p = 1; uint8 q; };
    class B : A { [Override("p"), Description("e")] uint16 P; };
    class C : B { [Override("p")] uint16 p = 2; };)");
  ASSERT_EQ(schema.faults(), "");
  const vorcore::PropertyDeclaration& b = schema.property("B", "p");
  EXPECT_EQ(schema.classes.find("B")->findProperty("P"), 0u);
  EXPECT_TRUE(b.isKey);
  EXPECT_EQ(b.originClass, "A");
  EXPECT_EQ(b.defaultValue.ToString(10), "1");
  EXPECT_EQ(qualifier(b.qualifiers, "values"), "{One,Two}");
  EXPECT_EQ(qualifier(b.qualifiers, "Deprecated"), "-");
  EXPECT_EQ(qualifier(b.qualifiers, "Description"), "e");
  const vorcore::PropertyDeclaration& c = schema.property("C", "p");
  EXPECT_EQ(qualifier(c.qualifiers, "Description"), "e");
  EXPECT_EQ(qualifier(c.qualifiers, "ValueMap"), "{1,2}");
  EXPECT_EQ(c.defaultValue.ToString(10), "2");
}

TEST(ClassBuilder, ADefaultIsInheritedByAPropertyOfTheSameShapeAlone) {
  const Schema schema(R"(
    class A { uint8 p[] = {1}; uint8 q = 2; uint8 r = 3; };
    class B : A { [Override("p")] uint8 p; [Override("q")] uint16 q; [Override("r")] uint8 r; };)");
  ASSERT_EQ(schema.faults(), "");
  EXPECT_TRUE(schema.property("B", "p").defaultValue.IsNull());
  EXPECT_FALSE(schema.property("B", "p").defaultValue.IsArray());
  EXPECT_TRUE(schema.property("B", "q").defaultValue.IsNull());
  EXPECT_EQ(schema.property("B", "r").defaultValue.ToUint64(), 3u);
}

TEST(ClassBuilder, KindsOfClassesAreInheritedAsTheirQualifiersSay) {
  const Schema schema(R"(
    [Association, Abstract, Version("1")] class A { };
    class B : A { };
    [Abstract(false)] class C : A { };)");
  EXPECT_TRUE(schema.classes.find("A")->isAbstract);
  EXPECT_TRUE(schema.classes.find("B")->isAssociation);
  EXPECT_FALSE(schema.classes.find("B")->isAbstract);
  EXPECT_FALSE(schema.classes.find("C")->isAbstract);
  EXPECT_EQ(qualifier(schema.classes.find("B")->qualifiers, "Version"), "-");
  EXPECT_EQ(qualifier(schema.classes.find("B")->qualifiers, "Association"), "true");
}

TEST(ClassBuilder, FlavorsWrittenBesideAQualifierWin) {
  const Schema schema(R"(
    class A { [Units("V") : Restricted, Version("2") : ToSubclass] uint8 p; };
    class B : A { };
    class C : B { [Override("p")] uint8 p; };)");
  EXPECT_EQ(qualifier(schema.property("B", "p").qualifiers, "Units"), "V");
  EXPECT_EQ(qualifier(schema.property("C", "p").qualifiers, "Units"), "-");
  EXPECT_EQ(qualifier(schema.property("C", "p").qualifiers, "Version"), "2");
}

TEST(ClassBuilder, AFixedQualifierKeepsItsInheritedValue) {
  const Schema schema("class A { [Key] uint8 p; };\nclass B : A {\n [Key(false)] uint8 p; };");
  EXPECT_EQ(schema.faults(),
            "a:3:3: class B: the qualifier Key of p may not be changed by a subclass\n");
  EXPECT_TRUE(schema.property("B", "p").isKey);
}

TEST(ClassBuilder, ParametersAreInputUnlessTheySayOtherwise) {
  const Schema schema(R"(class A { uint32 m(
      string plain, [IN] string in, [OUT] string both, [IN(false), OUT] A REF out,
      [In(false), Out, EmbeddedInstance("A")] string list[]); };)");
  ASSERT_EQ(schema.faults(), "");
  const struct {
    bool in;
    bool out;
  } wanted[] = {{true, false}, {true, false}, {true, true}, {false, true}, {false, true}};
  for (std::size_t at = 0; at < 5; ++at) {
    EXPECT_EQ(schema.parameter("A", "M", at).isIn, wanted[at].in) << at;
    EXPECT_EQ(schema.parameter("A", "M", at).isOut, wanted[at].out) << at;
  }
  EXPECT_EQ(schema.parameter("A", "m", 3).type, ECIMType::eReference);
  EXPECT_EQ(schema.parameter("A", "m", 4).type, ECIMType::eInstance);
  EXPECT_TRUE(schema.parameter("A", "m", 4).isArray);
}

TEST(ClassBuilder, AnOverriddenParameterInheritsItsQualifiers) {
  const Schema schema(R"(
    class A { [Description("d")] uint32 m([IN(false), OUT] string p); };
    class B : A { [Override("m")] uint32 m(string p, string q); };)");
  EXPECT_TRUE(schema.parameter("B", "m", 0).isOut);
  EXPECT_FALSE(schema.parameter("B", "m", 0).isIn);
  EXPECT_TRUE(schema.parameter("B", "m", 1).isIn);
  EXPECT_EQ(schema.classes.find("B")->findMethod("m")->originClass, "A");
}

TEST(ClassBuilder, AStringThatHoldsAnInstanceIsAnInstance) {
  const Schema schema(R"(
    class A { [EmbeddedInstance("A")] string p; [EmbeddedObject] string q; string r; };
    class B : A { [Override("p")] string p; };)");
  EXPECT_EQ(schema.property("A", "p").type, ECIMType::eInstance);
  EXPECT_EQ(schema.property("A", "q").type, ECIMType::eInstance);
  EXPECT_EQ(schema.property("A", "r").type, ECIMType::eString);
  EXPECT_EQ(schema.property("B", "p").type, ECIMType::eInstance);
}

TEST(ClassBuilder, ClassesBelowAnUndeclaredOneAreOpen) {
  const Schema schema(std::vector<std::string>{
      "class B : A { uint8 p; };\nclass C : b { [Override(\"p\")] uint8 p; };",
      "class D { };\nclass E : a { };\nclass F : Z { };"});
  EXPECT_EQ(schema.faults(), "");
  for (const char* name : {"B", "C", "E", "F"}) {
    ASSERT_TRUE(schema.classes.find(name)) << name;
    EXPECT_TRUE(schema.classes.find(name)->isOpen) << name;
  }
  EXPECT_FALSE(schema.classes.find("D")->isOpen);
  EXPECT_EQ(schema.classes.find("B")->superclass, "A");
  EXPECT_EQ(schema.classes.find("C")->superclass, "B");
  EXPECT_EQ(schema.property("C", "p").originClass, "B");
}

TEST(ClassBuilder, UndeclaredSuperclassesAreToldOnceWithTheirFirstSubclass) {
  const Schema schema(std::vector<std::string>{
      "class B : A { };\nclass C : B { };", "class D { };\n class E : a { };\nclass F : Z { };"});
  ASSERT_EQ(schema.missing.size(), 2u);
  EXPECT_EQ(schema.missing[0].name, "A");
  EXPECT_EQ(schema.missing[0].subclass, "B");
  EXPECT_EQ(schema.missing[0].file, "a");
  EXPECT_EQ(schema.missing[0].at.line, 1u);
  EXPECT_EQ(schema.missing[0].at.column, 7u);
  EXPECT_EQ(schema.missing[0].classes, 3u);
  EXPECT_EQ(schema.missing[1].name, "Z");
  EXPECT_EQ(schema.missing[1].classes, 1u);
}

TEST(ClassBuilder, ACircleOfSuperclassesIsLeftOut) {
  const Schema schema("class A : C { }; class B : A { }; class C : B { }; class D : A { };");
  EXPECT_EQ(schema.problems.size(), 4u) << schema.faults();
  EXPECT_NE(schema.faults().find("inherits from itself"), std::string::npos);
  EXPECT_EQ(schema.classes.size(), 0u);
}

TEST(ClassBuilder, ADeepChainOfClassesNeedsNoStack) {
  std::string text;
  for (int i = 20000; i > 0; --i) {
    text += "class C" + std::to_string(i) + " : C" + std::to_string(i - 1) + " { };\n";
  }
  const Schema schema(text + "class C0 { };");
  EXPECT_EQ(schema.classes.size(), 20001u);
  EXPECT_TRUE(schema.classes.isA("C20000", "c0"));
}

TEST(ClassBuilder, OfTwoDefinitionsTheFirstStays) {
  const Schema schema(std::vector<std::string>{"class A { uint8 p; };", "class A { uint8 p ; };",
                                               "\n class A { uint8 q; };"});
  EXPECT_EQ(schema.faults(), "c:2:8: class A differs from its definition at a:1:7, which stays\n");
  EXPECT_EQ(schema.classes.find("A")->properties.size(), 1u);
  EXPECT_EQ(schema.property("A", "p").name, "p");
}

TEST(ClassTable, AncestryAndSubclassesIgnoreCase) {
  const Schema schema(
      "class A { }; class B : A { }; class c : B { }; class D : A { }; class E { };");
  const ClassTable& classes = schema.classes;
  EXPECT_TRUE(classes.isA("C", "a"));
  EXPECT_TRUE(classes.isA("nobody", "NOBODY"));
  EXPECT_FALSE(classes.isA("A", "C"));
  EXPECT_FALSE(classes.isA("E", "A"));
  EXPECT_FALSE(classes.isA("nobody", "A"));
  EXPECT_EQ(classes.subclasses("a", true), (std::vector<std::string>{"B", "c", "D"}));
  EXPECT_EQ(classes.subclasses("a", false), (std::vector<std::string>{"B", "D"}));
  EXPECT_EQ(classes.rootClasses(), (std::vector<std::string>{"A", "E"}));
}

/// Makes classes without features, and counts them.
struct CountingSource final : ClassSource {
  vorcore::ClassDeclarationPtr load(const std::string& name, std::uint32_t place) const override {
    ++count;
    if (place == 0) return {};
    const auto declaration = boost::make_shared<vorcore::ClassDeclaration>();
    declaration->name = name;
    return declaration;
  }
  mutable int count = 0;
};

TEST(ClassTable, AnUndeclaredSuperclassIsAnAncestorButNoClass) {
  const Schema schema("class B : A { }; class C : B { }; class D { };");
  EXPECT_FALSE(schema.classes.knows("A"));
  EXPECT_FALSE(schema.classes.find("A"));
  EXPECT_TRUE(schema.classes.isA("C", "a"));
  EXPECT_EQ(schema.classes.superclassOf("B"), "A");
  EXPECT_EQ(schema.classes.superclassOf("A"), "");
  EXPECT_FALSE(schema.classes.isA("D", "A"));
  EXPECT_EQ(schema.classes.subclasses("A", true), (std::vector<std::string>{"B", "C"}));
  EXPECT_EQ(schema.classes.rootClasses(), (std::vector<std::string>{"B", "D"}));
  EXPECT_EQ(schema.classes.size(), 3u);
}

TEST(ClassTable, ALaterClassMayBeOpenButNotBelowItself) {
  ClassTable classes;
  EXPECT_TRUE(classes.addLater("B", "A", 0, true));
  EXPECT_FALSE(classes.addLater("C", "c", 0, true));
  EXPECT_FALSE(classes.addLater("A", "B", 0, true));
  EXPECT_EQ(classes.rootClasses(), std::vector<std::string>{"B"});
}

TEST(ClassTable, ALaterClassIsKnownBeforeItIsMadeOnce) {
  const auto source = boost::make_shared<CountingSource>();
  ClassTable classes;
  classes.setSource(source);
  EXPECT_TRUE(classes.addLater("A", "", 1));
  EXPECT_TRUE(classes.addLater("B", "a", 1));
  EXPECT_TRUE(classes.isA("b", "A"));
  EXPECT_EQ(classes.subclasses("A", true), std::vector<std::string>{"B"});
  EXPECT_EQ(classes.superclassOf("b"), "A");
  EXPECT_EQ(source->count, 0);
  EXPECT_EQ(classes.find("b")->name, "B");
  EXPECT_EQ(classes.find("B"), classes.find("b"));
  EXPECT_EQ(source->count, 1);
}

TEST(ClassTable, ALaterClassThatCannotBeMadeIsNone) {
  ClassTable classes;
  classes.setSource(boost::make_shared<CountingSource>());
  EXPECT_TRUE(classes.addLater("A", "", 0));
  EXPECT_FALSE(classes.find("A"));
}

TEST(ClassTable, ALaterClassNeedsItsSuperclassAndANewName) {
  ClassTable classes;
  EXPECT_FALSE(classes.addLater("B", "A", 1));
  EXPECT_TRUE(classes.addLater("A", "", 1));
  EXPECT_FALSE(classes.addLater("a", "", 1));
  EXPECT_FALSE(classes.addLater("C", "C", 1));
}

}  // namespace
}  // namespace cmpinsp
