#include <gtest/gtest.h>

#include "substitute/cmpi.nsp/repository/SchemaReader.h"
#include "substitute/vorcore/values/ClassDeclaration.h"
#include "tests/substitute/cmpi.nsp/Problems.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"

/// A published schema, put into a folder of its own beside the subset that is shipped.
namespace cmpinsp {
namespace {

const char* const kShippedQualifiers = R"(
  Qualifier Weight : uint8 = 1, Scope(any);
  Qualifier Key : boolean = false, Scope(property), Flavor(DisableOverride, ToSubclass);)";

const char* const kShippedClasses = R"(
  [Abstract, Version("2.45.0")] class CIM_Element { string Caption; string Added; };
  [Version("2.45.0")] class CIM_Record : CIM_Element {
    [Key] string InstanceID;
    [ValueMap{"0", "1", "7"}, Values{"Unknown", "Other", "Stopped"}] uint16 State;
    [ValueMap{"2"}, Values{"Two"}] uint16 Kind;
    [ValueMap{"0"}, Values{"Done"}] uint32 Run([ValueMap{"5"}, Values{"Five"}] uint16 How);
    uint32 Stop();
    uint8 Faulty = 300;
    [ValueMap{"3"}, Values{"Three"}] uint16 Retyped;
  };
  class CIM_OnlyHere : CIM_Record { [Key(false), Override("InstanceID")] string InstanceID; };
  class CIM_Below : CIM_OnlyHere { [Key(false), Override("InstanceID")] string InstanceID; };)";

/// As published ones are laid out: a main file, its qualifiers, and a file for each class.
void writePublished(const TemporaryFolder& folder, const std::string& below) {
  folder.write(below + "/cim_schema_2.30.mof", R"(
    #pragma locale ("en_US")
    #pragma include ("qualifiers.mof")
    #pragma include ("Core/CIM_Record.mof")
    #pragma include ("Core\CIM_Element.mof")
    #pragma include ("Device/CIM_Far.mof"))");
  folder.write(below + "/qualifiers.mof", R"(
    Qualifier Weight : uint8 = 2, Scope(any), Flavor(DisableOverride);
    Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride);)");
  folder.write(below + "/qualifiers_optional.mof",
               "Qualifier Large : boolean = false, Scope(class, property);");
  folder.write(below + "/Core/CIM_Element.mof", R"(
    [Abstract, Version("2.30.0"), Description("Longer " "words.")]
    class CIM_Element { [MaxLen(64)] string Caption; [Weight] string Label; };)");
  folder.write(below + "/Core/CIM_Record.mof", R"(
    [Version("2.30.0"), Experimental] class CIM_Record : CIM_Element {
      [Key, Override("InstanceID")] string InstanceID;
      [ValueMap{"0", "1", ".."}, Values{"Unknown", "Else", "DMTF Reserved"}] uint16 State;
      uint16 Kind; uint64 New; string Retyped;
      [ValueMap{"1"}, Values{"Failed"}] uint32 Run(uint16 How);
    };)");
  folder.write(below + "/Device/CIM_Far.mof", "class CIM_Far : CIM_Record { };");
}

struct Read {
  explicit Read(const TemporaryFolder& folder) : reader(problems) {
    const std::string schema = (folder.path() / "schema").u8string();
    reader.setSchemaFolder(schema);
    reader.readFolder(schema, true);
    reader.readFolder((folder.path() / "providers").u8string(), false);
    missing = reader.build(qualifiers, classes);
  }

  const vorcore::PropertyDeclaration& property(const char* className, const char* name) const {
    const vorcore::ClassDeclarationPtr declaration = classes.find(className);
    return declaration->properties.at(declaration->findProperty(name));
  }
  std::string rendered(const char* name, unsigned value) const {
    return vorcore::renderValue(NZELVOR20::TCIMValue::Unsigned(NZELVOR20::ECIMType::eUint16, value),
                                property("CIM_OnlyHere", name).qualifiers);
  }
  std::string rendered(const std::vector<vorcore::Qualifier>& names, unsigned value) const {
    return vorcore::renderValue(NZELVOR20::TCIMValue::Unsigned(NZELVOR20::ECIMType::eUint16, value),
                                names);
  }

  std::vector<substitute::Problem> problems;
  SchemaReader reader;
  QualifierTable qualifiers;
  ClassTable classes;
  std::vector<MissingClass> missing;
};

/// The folder's name may come before those of the shipped files, or after them.
class OwnFolderTest : public testing::TestWithParam<const char*> {
 protected:
  OwnFolderTest() {
    folder.write("schema/10_qualifiers.mof", kShippedQualifiers);
    folder.write("schema/20_core.mof", kShippedClasses);
    writePublished(folder, "schema/" + std::string(GetParam()));
  }
  TemporaryFolder folder;
};

INSTANTIATE_TEST_SUITE_P(Names, OwnFolderTest,
                         testing::Values("00_first", "15_between", "cim_schema_2.30", "a/b/c"),
                         [](const auto& tested) {
                           return "Folder" + std::to_string(tested.index);
                         });

TEST_P(OwnFolderTest, ItsClassesTakeThePlaceOfTheShippedOnesWithoutFaults) {
  const Read read(folder);
  EXPECT_EQ(linesOf(read.problems), "");
  EXPECT_EQ(read.classes.size(), 5u);
  EXPECT_EQ(read.property("CIM_Far", "New").type, NZELVOR20::ECIMType::eUint64);
  EXPECT_NE(read.classes.find("CIM_OnlyHere")->findProperty("Label"),
            vorcore::ClassDeclaration::kNoProperty);
  const auto* version =
      vorcore::findQualifier(read.classes.find("CIM_Record")->qualifiers, "Version");
  ASSERT_NE(version, nullptr);
  EXPECT_EQ(version->GetText(), "2.30.0");
}

TEST_P(OwnFolderTest, NamesOfValuesThatTheShippedOnesHaveStay) {
  const Read read(folder);
  EXPECT_EQ(read.rendered("State", 0), "Unknown");
  EXPECT_EQ(read.rendered("State", 1), "Else");
  EXPECT_EQ(read.rendered("State", 7), "Stopped");
  EXPECT_EQ(read.rendered("State", 9), "DMTF Reserved");
  EXPECT_EQ(read.rendered("Kind", 2), "Two");
  const vorcore::MethodDeclaration* run = read.classes.find("CIM_Far")->findMethod("Run");
  EXPECT_EQ(read.rendered(run->qualifiers, 1), "Failed");
  EXPECT_EQ(read.rendered(run->qualifiers, 0), "Done");
  EXPECT_EQ(read.rendered(run->parameters.at(0).qualifiers, 5), "Five");
}

TEST_P(OwnFolderTest, APropertyOfAnotherTypeTakesNoNames) {
  const Read read(folder);
  const auto& property = read.property("CIM_Far", "Retyped");
  EXPECT_EQ(property.type, NZELVOR20::ECIMType::eString);
  EXPECT_EQ(vorcore::findQualifier(property.qualifiers, "Values"), nullptr);
}

TEST_P(OwnFolderTest, APackageBelowAShippedClassMayStillNotChangeWhatIsFixed) {
  folder.write("providers/acme.mof",
               "class ACME_Own : CIM_Below { [Key(false), Override(\"InstanceID\")] string "
               "InstanceID; };");
  const Read read(folder);
  ASSERT_EQ(read.problems.size(), 1u) << linesOf(read.problems);
  EXPECT_NE(read.problems[0].message.find("class ACME_Own"), std::string::npos);
}

TEST_P(OwnFolderTest, WhatTheShippedOnesHaveBeyondItStays) {
  const Read read(folder);
  EXPECT_NE(read.classes.find("CIM_Far")->findProperty("Added"),
            vorcore::ClassDeclaration::kNoProperty);
  EXPECT_NE(read.classes.find("CIM_Far")->findMethod("Stop"), nullptr);
  EXPECT_EQ(read.property("CIM_Far", "Added").originClass, "CIM_Element");
}

TEST_P(OwnFolderTest, ItsQualifiersCount) {
  const Read read(folder);
  EXPECT_FALSE(read.qualifiers.find("Weight")->overridable);
  EXPECT_EQ(read.qualifiers.find("Weight")->defaultValue.ToString(10), "2");
  EXPECT_NE(read.qualifiers.find("Large"), nullptr);
}

TEST_P(OwnFolderTest, APackageWithAnotherDefinitionIsToldAsBefore) {
  folder.write("providers/acme.mof", "class CIM_Far : CIM_Record { uint8 Mine; };");
  const Read read(folder);
  ASSERT_EQ(read.problems.size(), 1u);
  EXPECT_NE(read.problems[0].message.find("differs from its definition at"), std::string::npos);
  EXPECT_EQ(read.classes.find("CIM_Far")->findProperty("Mine"),
            vorcore::ClassDeclaration::kNoProperty);
}

TEST(OwnFolder, TwoDefinitionsInTheSchemaFolderItselfAreToldAllTheSame) {
  const TemporaryFolder folder;
  folder.write("schema/a.mof", "class A { };");
  folder.write("schema/b.mof", "class A { uint8 p; };");
  folder.write("schema/own/a.mof", "class A { uint8 q; };");
  EXPECT_EQ(Read(folder).problems.size(), 1u);
  folder.write("schema/00_first/a.mof", "class A { uint8 q ; };");
  EXPECT_EQ(Read(folder).problems.size(), 1u);
}

TEST(OwnFolder, AnOwnClassMayStillNotChangeWhatIsFixed) {
  const TemporaryFolder folder;
  folder.write("schema/own/a.mof", "class A { [Key] uint8 p; };");
  folder.write("providers/b.mof", "class B : A { [Key(false), Override(\"p\")] uint8 p; };");
  const Read read(folder);
  EXPECT_EQ(read.problems.size(), 1u) << linesOf(read.problems);
}

}  // namespace
}  // namespace cmpinsp
