#include <gtest/gtest.h>

#include "substitute/cmpi.nsp/cache/ByteReader.h"
#include "substitute/cmpi.nsp/cache/ByteWriter.h"
#include "substitute/cmpi.nsp/cache/CodedSyntax.h"
#include "substitute/cmpi.nsp/cache/SchemaImage.h"
#include "tests/substitute/cmpi.nsp/cache/EveryFeature.h"
#include "tests/substitute/cmpi.nsp/repository/Schema.h"

namespace cmpinsp {
namespace {

SchemaSources someSources() {
  SchemaSources sources;
  sources.listing = {"/a/one.mof", "/a/two.mof"};
  sources.stamps = {{"/a/one.mof", true, 1, 2, 3}, {"/b/three.mof", false, 0, 0, 0}};
  return sources;
}

std::string imageOf(const char* mof) {
  const Schema schema(mof);
  QualifierTable qualifiers;
  qualifiers.declare({"Weight", NZELVOR20::ECIMType::eReal64, true,
                      NZELVOR20::TCIMValue::Null(NZELVOR20::ECIMType::eReal64, true), false, true,
                      true});
  return encodeSchema(someSources(), {{"/a/one.mof", 3, 4, "wrong"}}, {{"/a/two.mof", 5, 6, "odd"}},
                      qualifiers, schema.units, schema.classes);
}

std::string instanceBytes(const std::vector<CompilationUnit>& units) {
  ByteWriter writer;
  writeInstances(writer, units);
  return writer.bytes();
}

TEST(SchemaImage, GivesBackWhatWasWritten) {
  const std::string bytes = imageOf(everyFeature());
  ASSERT_EQ(stateOf(bytes), ImageState::eWhole);
  const SchemaImage image = decodeSchema(bytes);
  EXPECT_EQ(image.sources, someSources());
  EXPECT_EQ(linesOf(image.problems), "/a/one.mof:3:4: wrong\n");
  EXPECT_EQ(linesOf(image.notes), "/a/two.mof:5:6: odd\n");
  EXPECT_EQ(image.classes.size(), 5u);
  EXPECT_EQ(instanceBytes(image.units), instanceBytes(Schema(everyFeature()).units));
}

TEST(SchemaImage, GivesBackWhereInstancesAreAndWhoseAliasesTheyShare) {
  Schema schema("#pragma namespace(\"root/acme\")\ninstance of A { };");
  schema.units.at(0).aliasScope = 7;
  schema.units.at(0).askedFor = "/a/one.mof";
  const std::string bytes = instanceBytes(schema.units);
  ByteReader reader(bytes);
  const std::vector<CompilationUnit> units = readInstances(reader);
  EXPECT_EQ(units.at(0).aliasScope, 7u);
  EXPECT_EQ(units.at(0).askedFor, "/a/one.mof");
  EXPECT_EQ(units.at(0).instances.at(0).nameSpace, "root/acme");
}

TEST(SchemaImage, GivesQualifierDeclarationsBack) {
  const std::string bytes = imageOf("class A { };");
  QualifierTable table;
  for (const auto& declaration : decodeSchema(bytes).qualifiers) table.declare(declaration);
  const NZELVOR20::TCIMQualifierDecl* const weight = table.find("weight");
  ASSERT_NE(weight, nullptr);
  EXPECT_EQ(weight->type, NZELVOR20::ECIMType::eReal64);
  EXPECT_TRUE(weight->isArray);
  EXPECT_TRUE(weight->defaultValue.IsNull());
  EXPECT_FALSE(weight->overridable);
  EXPECT_TRUE(weight->toSubclass);
  EXPECT_TRUE(weight->translatable);
  EXPECT_TRUE(table.find("In")->defaultValue.ToBoolean());
}

TEST(SchemaImage, OneCutAnywhereIsDamaged) {
  const std::string bytes = imageOf("class A { };");
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    EXPECT_EQ(stateOf(std::string_view(bytes).substr(0, length)), ImageState::eDamaged) << length;
  }
  EXPECT_EQ(stateOf(bytes + '\0'), ImageState::eDamaged);
}

TEST(SchemaImage, AChangedByteNeverGoesUnnoticed) {
  const std::string bytes = imageOf("class A { };");
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    for (const int bits : {1, 0x80, 0xFF}) {
      std::string changed = bytes;
      changed[at] = static_cast<char>(changed[at] ^ bits);
      EXPECT_NE(stateOf(changed), ImageState::eWhole) << at;
    }
  }
}

TEST(SchemaImage, AnotherFormatOrBuildIsNoDamage) {
  constexpr std::size_t kVersion = 16;
  constexpr std::size_t kBuild = 24;
  for (const std::size_t at : {kVersion, kBuild}) {
    std::string bytes = imageOf("class A { };");
    ++bytes[at];
    EXPECT_EQ(stateOf(bytes), ImageState::eOtherVersion) << at;
  }
}

TEST(SchemaImage, AHeadWithMoreThanBelongsToItIsRefused) {
  constexpr std::size_t kHeadLengthAt = 20;
  std::string bytes = imageOf("class A { };");
  ByteReader head(std::string_view(bytes).substr(kHeadLengthAt));
  const std::uint32_t length = head.u32();
  bytes.insert(kImageStart + length, 1, '\0');
  ByteWriter longer;
  longer.u32(length + 1);
  bytes.replace(kHeadLengthAt, longer.bytes().size(), longer.bytes());
  sealImage(bytes);
  ASSERT_EQ(stateOf(bytes), ImageState::eWhole);
  EXPECT_THROW(decodeSchema(bytes), CacheDamage);
}

TEST(SchemaImage, AScalarOfNoOrSeveralValuesIsRefused) {
  for (const std::size_t count : {std::size_t{0}, std::size_t{1}, std::size_t{2}}) {
    CompilationUnit unit;
    unit.instances.resize(1);
    unit.instances[0].assignments.resize(1);
    unit.instances[0].assignments[0].value.elements.resize(count);
    const std::string bytes = instanceBytes({unit});
    ByteReader reader(bytes);
    if (count == 1) {
      EXPECT_NO_THROW(readInstances(reader));
    } else {
      EXPECT_THROW(readInstances(reader), CacheDamage) << count;
    }
  }
}

/// With a checksum that fits, whatever lies behind it is read to its end or refused.
TEST(SchemaImage, ChangedBytesAreReadOrRefused) {
  const std::string bytes =
      imageOf("class A { [Key] string N; }; instance of A as $B { N = \"x\"; }; class C : A { };");
  std::size_t refused = 0;
  for (std::size_t at = 16; at < bytes.size(); ++at) {
    for (const int bits : {1, 4, 0x80, 0xFF}) {
      std::string changed = bytes;
      changed[at] = static_cast<char>(changed[at] ^ bits);
      sealImage(changed);
      ASSERT_EQ(stateOf(changed), ImageState::eWhole);
      try {
        EXPECT_LE(decodeSchema(changed).classes.size(), bytes.size());
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
