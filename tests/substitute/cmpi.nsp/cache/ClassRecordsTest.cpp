#include <gtest/gtest.h>

#include <limits>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/cache/ByteReader.h"
#include "substitute/cmpi.nsp/cache/ClassRecords.h"
#include "substitute/cmpi.nsp/model/PathReference.h"
#include "tests/data/ShippedClasses.h"
#include "tests/substitute/cmpi.nsp/cache/ClassText.h"
#include "tests/substitute/cmpi.nsp/cache/EveryFeature.h"
#include "tests/substitute/cmpi.nsp/repository/Schema.h"

namespace cmpinsp {
namespace {

/// The classes of a table, written and read back.
std::string textThroughRecords(const ClassRepository& classes) {
  ClassRecordWriter records;
  std::string text;
  const auto through = [&](const std::string& name) {
    const std::uint32_t place = records.write(*classes.find(name));
    text += textOf(*readClassRecord(records.bytes(), place));
  };
  for (const std::string& root : classes.rootClasses()) {
    through(root);
    for (const std::string& name : classes.subclasses(root, true)) through(name);
  }
  return text;
}

TEST(ClassRecords, GiveEveryFeatureBack) {
  const Schema schema(everyFeature());
  ASSERT_EQ(schema.faults(), "");
  EXPECT_EQ(textThroughRecords(schema.classes), textOf(schema.classes));
}

TEST(ClassRecords, GiveTheShippedClassesBack) {
  const ClassTable& classes = data::shipped().classes;
  ASSERT_GT(classes.size(), 50u);
  EXPECT_EQ(textThroughRecords(classes), textOf(classes));
}

TEST(ClassRecords, KeepTheValuesThemselves) {
  const Schema schema(everyFeature());
  const vorcore::ClassDeclarationPtr wanted = schema.classes.find("T_Root");
  ClassRecordWriter records;
  const std::uint32_t place = records.write(*wanted);
  const vorcore::ClassDeclarationPtr read = readClassRecord(records.bytes(), place);
  for (std::size_t i = 0; i < wanted->properties.size(); ++i) {
    EXPECT_EQ(read->properties[i].defaultValue, wanted->properties[i].defaultValue)
        << wanted->properties[i].name;
  }
}

TEST(ClassRecords, WhatIsInheritedIsWrittenOnce) {
  const std::string text(10000, 'd');
  const Schema schema("class A { [Description(\"" + text + "\")] string P; }; class B : A { };");
  ClassRecordWriter records;
  records.write(*schema.classes.find("A"));
  const std::size_t before = records.bytes().size();
  records.write(*schema.classes.find("B"));
  EXPECT_LT(records.bytes().size() - before, 100u);
}

TEST(ClassRecords, AnOpenClassIsReadAsOne) {
  const Schema schema("class A : Gone { }; class B { };");
  for (const char* name : {"A", "B"}) {
    ClassRecordWriter records;
    const std::uint32_t place = records.write(*schema.classes.find(name));
    EXPECT_EQ(readClassRecord(records.bytes(), place)->isOpen, *name == 'A');
  }
}

// Catches a limit on what a class is made of that a class as large as its file reaches.
TEST(ClassRecords, AClassMayBeAsLargeAsItsFile) {
  vorcore::ClassDeclaration declaration;
  declaration.name = "A";
  for (int i = 0; i < 150000; ++i) {
    vorcore::PropertyDeclaration property;
    property.name = "P" + std::to_string(i);
    property.defaultValue = NZELVOR20::TCIMValue::Null(property.type, false);
    declaration.properties.push_back(property);
  }
  ClassRecordWriter records;
  const std::uint32_t place = records.write(declaration);
  EXPECT_EQ(readClassRecord(records.bytes(), place)->properties.size(), 150000u);
}

TEST(ClassRecords, AReadClassFindsItsPropertiesByTheirName) {
  const Schema schema(everyFeature());
  ClassRecordWriter records;
  const std::uint32_t place = records.write(*schema.classes.find("T_Leaf"));
  const vorcore::ClassDeclarationPtr read = readClassRecord(records.bytes(), place);
  EXPECT_EQ(read->findProperty("MOOD"), schema.classes.find("T_Leaf")->findProperty("Mood"));
}

TEST(ClassRecords, WhatClassesHaveInCommonIsReadOnce) {
  const Schema schema("class A { [Key] string P; uint8 M(); }; class B : A { string Q; };");
  ClassRecordWriter records;
  const std::uint32_t base = records.write(*schema.classes.find("A"));
  const std::uint32_t leaf = records.write(*schema.classes.find("B"));
  ClassRecordReader reader(records.bytes());
  const auto one = reader.read(base);
  const auto other = reader.read(leaf);
  EXPECT_EQ(&one->properties[0], &other->properties[0]);
  EXPECT_EQ(&one->methods[0], &other->methods[0]);
  EXPECT_EQ(textOf(*other), textOf(*schema.classes.find("B")));
}

TEST(ClassRecords, AReferenceIsNoDeclaredValue) {
  vorcore::ClassDeclaration declaration;
  declaration.qualifiers.push_back({"Q", NZELVOR20::TCIMValue(referenceTo({"", "A", {}}, {}))});
  ClassRecordWriter records;
  EXPECT_THROW(records.write(declaration), NZELVOR20::TVORException);
}

TEST(ClassRecords, AClassThatNamesOneTextAgainAndAgainIsRefused) {
  const std::string text(100000, 'd');
  vorcore::ClassDeclaration declaration;
  declaration.name = "A";
  for (int i = 0; i < 1000; ++i) {
    declaration.qualifiers.push_back({"Q", NZELVOR20::TCIMValue(text)});
  }
  ClassRecordWriter records;
  const std::uint32_t place = records.write(declaration);
  EXPECT_LT(records.bytes().size(), 200000u);
  EXPECT_THROW(readClassRecord(records.bytes(), place), CacheDamage);
}

/// What a record with `property` alone is refused for; empty when it is read.
std::string damageOf(const vorcore::PropertyDeclaration& property) {
  vorcore::ClassDeclaration declaration;
  declaration.name = "A";
  declaration.properties.push_back(property);
  ClassRecordWriter records;
  const std::uint32_t place = records.write(declaration);
  try {
    readClassRecord(records.bytes(), place);
    return std::string();
  } catch (const CacheDamage& damage) {
    return damage.what;
  }
}

TEST(ClassRecords, APropertyWithoutATypeOrWithADefaultOfAnotherIsRefused) {
  using NZELVOR20::ECIMType;
  using NZELVOR20::TCIMValue;
  vorcore::PropertyDeclaration property;
  property.name = "P";
  property.type = ECIMType::eString;
  property.defaultValue = TCIMValue::Null(ECIMType::eString);
  EXPECT_EQ(damageOf(property), "");
  property.defaultValue = TCIMValue::Uint64(1);
  EXPECT_EQ(damageOf(property), "a default that does not fit its declaration");
  property.defaultValue = TCIMValue::Null(ECIMType::eString, true);
  EXPECT_EQ(damageOf(property), "a default that does not fit its declaration");
  property.type = ECIMType::eNone;
  EXPECT_EQ(damageOf(property), "a declaration without a type");
}

TEST(ClassRecords, TheLargestNumberOfATypeIsRead) {
  vorcore::PropertyDeclaration property;
  property.name = "P";
  property.type = NZELVOR20::ECIMType::eReal32;
  for (const float most :
       {std::numeric_limits<float>::max(), std::numeric_limits<float>::lowest()}) {
    property.defaultValue = NZELVOR20::TCIMValue::Real(property.type, double{most});
    EXPECT_EQ(damageOf(property), "") << most;
  }
}

/// Whatever a byte is changed to, and wherever a record is said to be, reading ends.
TEST(ClassRecords, ChangedBytesAreReadOrRefused) {
  const Schema schema("class A { [Key, Steps{1, 2}] string P = \"x\"; uint8 M([In] char16 C); };");
  ClassRecordWriter records;
  const std::uint32_t place = records.write(*schema.classes.find("A"));
  std::size_t refused = 0;
  for (std::size_t at = 0; at < records.bytes().size(); ++at) {
    for (int bits = 1; bits < 256; ++bits) {
      std::string bytes = records.bytes();
      bytes[at] = static_cast<char>(bytes[at] ^ bits);
      try {
        EXPECT_TRUE(readClassRecord(bytes, place));
        EXPECT_TRUE(readClassRecord(bytes, static_cast<std::uint32_t>(at)));
      } catch (const CacheDamage& damage) {
        EXPECT_FALSE(damage.what.empty());
        ++refused;
      }
    }
  }
  EXPECT_GT(refused, 0u);
}

}  // namespace
}  // namespace cmpinsp
