#include <gtest/gtest.h>

#include "framework/ICIMInstance.h"
#include "framework/ICIMProperty.h"
#include "framework/TCIMReference.h"
#include "substitute/cmpi.nsp/manager/operations/PathSet.h"
#include "substitute/cmpi.nsp/manager/operations/StaticInstances.h"
#include "substitute/cmpi.nsp/model/PathReference.h"
#include "tests/substitute/cmpi.nsp/repository/Schema.h"

namespace cmpinsp {
namespace {

using NZELVOR20::TCIMValue;

const std::string kClasses = R"(
  class A { [Key] uint16 Id; A REF Next; A REF Other; string Text = "d"; datetime When;
            [EmbeddedInstance("A")] string Inner; };
  [Association] class L { [Key] A REF From; [Key] A REF To; };
)";

struct Built {
  explicit Built(const std::string& text) : schema(kClasses + text) {
    instances = buildStaticInstances(schema.units, schema.classes, {}, schema.problems, notes);
  }
  Schema schema;
  std::vector<substitute::Problem> notes;
  StaticInstances instances;
};

TEST(StaticInstances, ValuesAndDefaultsMakeThePath) {
  const Built built("instance of a { id = \"7\"; When = \"00000000000500.000000:000\"; };");
  ASSERT_EQ(built.schema.faults(), "");
  const auto& list = built.instances.of("A");
  ASSERT_EQ(list.size(), 1u);
  EXPECT_EQ(list[0]->path.toText(), "root/cimv2:A.Id=7");
  EXPECT_EQ(list[0]->find("text")->ToText(), "d");
  EXPECT_TRUE(built.instances.of("B").empty());
}

TEST(StaticInstances, AliasesMayBeUsedBeforeTheyAreDeclared) {
  const Built built(R"(
    instance of L { From = $One; To = "A.Id=2"; };
    instance of A as $One { Id = 1; };)");
  ASSERT_EQ(built.schema.faults(), "");
  const auto& link = built.instances.of("l").at(0);
  EXPECT_EQ(link->find("From")->ToReference().GetPath(), "root/cimv2:A.Id=1");
  EXPECT_EQ(link->find("To")->ToReference().GetPath(), "A.Id=2");
}

TEST(StaticInstances, InstancesMayReferToEachOtherInCircles) {
  const Built built(R"(
    instance of A as $One { Id = 1; Next = $Two; };
    instance of A as $Two { Id = 2; Next = $One; };)");
  ASSERT_EQ(built.schema.faults(), "");
  EXPECT_EQ(built.instances.of("A").at(0)->find("Next")->ToReference().GetPath(),
            "root/cimv2:A.Id=2");
}

TEST(StaticInstances, ALadderOfAliasesIsNotClimbedOnEveryWay) {
  std::string text =
      "class T { [Key] uint16 Id; [EmbeddedInstance(\"T\")] string L;"
      " [EmbeddedInstance(\"T\")] string R; };\n"
      "instance of T as $E0 { Id = 0; };\n";
  for (int i = 1; i < 30; ++i) {
    const std::string below = "$E" + std::to_string(i - 1);
    text += "instance of T as $E" + std::to_string(i) + " { Id = " + std::to_string(i) +
            "; L = " + below + "; R = " + below + "; };\n";
  }
  const Built built(text);
  EXPECT_EQ(built.schema.faults(), "");
  EXPECT_EQ(built.instances.of("T").size(), 30u);
}

TEST(StaticInstances, EmbeddedInstancesMayBeTextLiteralOrAlias) {
  for (const char* inner : {"\"instance of A { Id = 9; };\"", "instance of A { Id = 9; }", "$X"}) {
    const Built built("instance of A as $X { Id = 9; };\ninstance of A { Id = 1; Inner = " +
                      std::string(inner) + "; };");
    ASSERT_EQ(built.schema.faults(), "") << inner;
    const auto& outer = built.instances.of("A").at(1);
    EXPECT_EQ(outer->find("Inner")->ToInstance()->GetProperty("Id", {})->ToString(), "9") << inner;
  }
}

TEST(StaticInstances, EachEmbeddedTextIsAnInstanceOfItsOwn) {
  const Built built(R"(
    instance of A { Id = 1; Inner = "instance of A { Id = 7; };"; };
    instance of A { Id = 2; Inner = "instance of A { Id = 8; };"; };)");
  const auto& list = built.instances.of("A");
  EXPECT_EQ(list.at(0)->find("Inner")->ToInstance()->GetProperty("Id", {})->ToString(), "7");
  EXPECT_EQ(list.at(1)->find("Inner")->ToInstance()->GetProperty("Id", {})->ToString(), "8");
}

TEST(StaticInstances, FaultsAreReportedAndTheOthersStay) {
  const struct {
    const char* text;
    const char* wanted;
  } rows[] = {
      {"instance of Z { };", "a:5:13: instance of the unknown class Z\n"},
      {"instance of A { Horns = 1; };", "a:5:17: class A has no property Horns\n"},
      {"instance of A { Id = 70000; };", "a:5:22: expected a value of type uint16\n"},
      {"instance of L { From = $No; };", "a:5:24: the alias $No is not declared\n"},
      {"instance of L { From = 1; };", "a:5:24: expected a path or an alias\n"},
      {"instance of A { Inner = 1; };", "a:5:25: expected an instance or an alias\n"},
      {"instance of A { Inner = \"nonsense\"; };",
       "a:5:25: invalid parameter: embedded instance, 1:1: expected \"instance\", found "
       "\"nonsense\"\n"},
      {"instance of A as $X { Inner = $X; };",
       "a:5:13: instances are embedded in each other too deeply\n"},
      {"instance of L as $X { From = $X; };",
       "a:5:13: too many instances refer to each other by their keys\n"},
  };
  for (const auto& row : rows) {
    const Built built(row.text + std::string("\ninstance of A { Id = 1; };"));
    EXPECT_EQ(built.schema.faults(), row.wanted) << row.text;
    EXPECT_EQ(built.instances.of("A").size(), 1u) << row.text;
  }
}

TEST(StaticInstances, ValuesInQuotesTakeTheDeclaredType) {
  const Built built(
      "class V { [Key] uint8 K; boolean B; boolean C; sint16 S; real32 R; };\n"
      "instance of V { K = \"31\"; B = \"true\"; C = \"FALSE\"; S = \"-7\"; R = \"1.5\"; };");
  ASSERT_EQ(built.schema.faults(), "");
  const auto& made = built.instances.of("V").at(0);
  EXPECT_EQ(made->find("K")->ToString(10), "31");
  EXPECT_TRUE(made->find("B")->ToBoolean());
  EXPECT_FALSE(made->find("C")->ToBoolean());
  EXPECT_EQ(made->find("S")->ToString(10), "-7");
  EXPECT_EQ(made->find("R")->ToString(10), "1.5");
}

TEST(StaticInstances, EachIsInTheNamespaceOfItsPragma) {
  const Built built(
      "#pragma namespace(\"root/acme\")\n"
      "instance of A as $One { Id = 1; Inner = \"instance of A { Id = 3; };\"; };\n"
      "#pragma namespace(\"root/other\")\ninstance of A { Id = 2; Next = $One; };");
  ASSERT_EQ(built.schema.faults(), "");
  const auto& list = built.instances.of("A");
  EXPECT_EQ(list.at(0)->path.toText(), "root/acme:A.Id=1");
  EXPECT_EQ(list.at(1)->path.toText(), "root/other:A.Id=2");
  EXPECT_EQ(list.at(1)->find("Next")->ToReference().GetPath(), "root/acme:A.Id=1");
  EXPECT_TRUE(isIn(list.at(0), "Root/Acme"));
  EXPECT_TRUE(isIn(list.at(0), ""));
  EXPECT_FALSE(isIn(list.at(0), "root/other"));
}

/// Instances of two files, with the classes in the first.
std::string faultsOf(const std::string& one, const std::string& other, std::uint32_t scope) {
  Schema schema(std::vector<std::string>{kClasses + one, other});
  for (CompilationUnit& unit : schema.units) unit.aliasScope = scope;
  std::vector<substitute::Problem> notes;
  buildStaticInstances(schema.units, schema.classes, {}, schema.problems, notes);
  return schema.faults();
}

TEST(StaticInstances, AliasesAreSharedByAFileAndWhatItIncludes) {
  const std::string declares = "instance of A as $One { Id = 1; };";
  const std::string uses = "instance of A { Id = 2; Next = $One; };";
  EXPECT_EQ(faultsOf(declares, uses, 1), "");
  EXPECT_EQ(faultsOf(uses, declares, 1), "");
  EXPECT_EQ(faultsOf(declares, uses, 0), "b:1:32: the alias $One is not declared\n");
}

TEST(StaticInstances, AnAliasOfTwoInstancesStaysWithTheFirst) {
  EXPECT_EQ(faultsOf("instance of A as $One { Id = 1; };", "instance of A as $ONE { Id = 2; };", 1),
            "b:1:13: the alias $ONE is that of the instance at a:5 already, which keeps it\n");
}

// Catches an instance that two packages ship and that is then enumerated twice.
TEST(StaticInstances, OneThatIsDeclaredTwiceIsThereOnce) {
  const std::string one = "instance of A { Id = 1; Text = \"t\"; };";
  EXPECT_EQ(Built(one + "instance of a { id = 1; Text = \"t\"; };").instances.of("A").size(), 1u);
  EXPECT_EQ(faultsOf(one, one, 0), "");
  EXPECT_EQ(Built("instance of A { }; instance of A { };").instances.of("A").size(), 2u);
}

TEST(StaticInstances, OneThatContradictsAnEarlierOneIsReportedAndLeftOut) {
  const Built built("instance of A { Id = 1; };\ninstance of A { Id = 1; Text = \"t\"; };");
  EXPECT_EQ(built.instances.of("A").size(), 1u);
  EXPECT_EQ(built.schema.faults(),
            "a:6:13: another instance has the path root/cimv2:A.Id=1 already, which stays\n");
}

// Catches one that is compared with none, since its key is spelt differently, and left out
// silently.
TEST(StaticInstances, OneWithAnotherSpellingOfItsPathIsComparedToo) {
  const std::string classes = "class N { [Key] A REF End; string Text; };\n";
  const std::string plain = "instance of N { End = \"A.Id=1\"; Text = \"t\"; };\n";
  const std::string whole = "instance of N { End = \"root/cimv2:A.Id=1\"; Text = ";
  const Built same(classes + plain + whole + "\"t\"; };");
  EXPECT_EQ(same.schema.faults(), "");
  EXPECT_EQ(same.instances.of("N").size(), 1u);
  const Built other(classes + plain + whole + "\"u\"; };");
  EXPECT_EQ(other.instances.of("N").size(), 1u);
  EXPECT_EQ(other.schema.faults(),
            "a:7:13: another instance has the path root/cimv2:N.End=\"root/cimv2:A.Id=1\" already, "
            "which stays\n");
}

TEST(StaticInstances, AFaultBehindAnAliasIsToldInItsOwnFile) {
  EXPECT_EQ(faultsOf("instance of A as $One { Id = 70000; };",
                     "instance of A { Id = 2; Next = $One; };", 1),
            "a:5:30: expected a value of type uint16\n"
            "b:1:32: the instance $One in a is faulty: expected a value of type uint16\n");
}

TEST(StaticInstances, RegistrationsAreNoInstances) {
  const Built built("instance of PG_Provider { Name = \"x\"; };");
  EXPECT_EQ(built.schema.faults(), "");
}

TEST(StaticInstances, ThoseOfAnotherServersRegistrationArePassedOverWithOneLine) {
  const Built built(
      "class PG_Mine { [Key] string Name; };\ninstance of PG_Gone { Name = \"x\"; };\n"
      "instance of PG_Mine { Name = \"m\"; };\ninstance of pg_gone { Other = $nowhere; };\n"
      "instance of PG_Else { };\n");
  EXPECT_EQ(built.schema.faults(), "");
  EXPECT_EQ(built.instances.of("PG_Mine").size(), 1u);
  EXPECT_EQ(linesOf(built.notes),
            "a:6:13: note: 2 instances of PG_Gone are passed over: the class is undeclared, and of "
            "another server's own registration\n"
            "a:9:13: note: an instance of PG_Else is passed over: the class is undeclared, and of "
            "another server's own registration\n");
}

TEST(StaticInstances, AnOpenClassTakesWhatItsInstancesSay) {
  const Built built(
      "class O : Gone { uint8 Known; };\n"
      "instance of O { Known = 5; Name = \"n\"; Size = 7; Flags = {true, false}; Next = $One;\n"
      "                Inner = instance of A { Id = 2; }; None = NULL; Empty = {}; };\n"
      "instance of A as $One { Id = 1; };");
  ASSERT_EQ(built.schema.faults(), "");
  const InstanceDataPtr instance = built.instances.of("O").at(0);
  EXPECT_EQ(instance->find("Known")->GetType(), NZELVOR20::ECIMType::eUint8);
  EXPECT_EQ(instance->find("name")->GetText(), "n");
  EXPECT_EQ(instance->find("Size")->ToUint64(), 7u);
  EXPECT_EQ(instance->find("Flags")->ToString(10), "{true,false}");
  EXPECT_EQ(instance->find("Next")->ToReference().GetPath(), "root/cimv2:A.Id=1");
  EXPECT_EQ(instance->find("Inner")->GetType(), NZELVOR20::ECIMType::eInstance);
  EXPECT_TRUE(instance->find("None")->IsNull());
  EXPECT_TRUE(instance->find("Empty")->IsArray());
}

TEST(PathSet, PathsAreEqualWhateverTheirSpelling) {
  PathSet paths;
  EXPECT_TRUE(paths.insert({"root/x", "A", {{"P", TCIMValue("1")}, {"Q", TCIMValue("2")}}}));
  EXPECT_FALSE(paths.insert({"ROOT/X", "a", {{"q", TCIMValue("2")}, {"p", TCIMValue("1")}}}));
  EXPECT_TRUE(paths.insert({"root/x", "A", {{"P", TCIMValue("1")}, {"Q", TCIMValue("3")}}}));
  EXPECT_TRUE(paths.insert({"root/x", "A", {{"P", TCIMValue("1.q=1:2")}}}));
  EXPECT_TRUE(paths.insert({"root/x", "N", {{"Id", TCIMValue::Uint16(7)}}}));
  EXPECT_FALSE(paths.insert({"root/x", "N", {{"Id", TCIMValue::Uint64(7)}}}));
}

TEST(PathSet, ReferencesAreEqualWhateverTheSpellingOfTheirPaths) {
  const auto link = [](const char* end) {
    return ObjectPath{"root/x", "L", {{"End", TCIMValue(referenceTo(ObjectPath::parse(end), {}))}}};
  };
  PathSet paths;
  EXPECT_TRUE(paths.insert(link("root/x:A.P=1,Q=2")));
  EXPECT_FALSE(paths.insert(link("Root/X:a.q=2,p=1")));
  EXPECT_FALSE(paths.insert(link("A.Q=2,P=1")));
  EXPECT_TRUE(paths.insert(link("root/y:A.P=1,Q=2")));
}

}  // namespace
}  // namespace cmpinsp
