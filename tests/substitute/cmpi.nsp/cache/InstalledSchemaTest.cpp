#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <fstream>
#include <iterator>
#include <thread>

#include "substitute/cmpi.nsp/cache/InstalledSchema.h"
#include "substitute/cmpi.nsp/cache/SchemaImage.h"
#include "substitute/cmpi.nsp/manager/operations/StaticInstances.h"
#include "substitute/vorcore/system/Configuration.h"
#include "tests/substitute/cmpi.nsp/OthersWrite.h"
#include "tests/substitute/cmpi.nsp/Problems.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"
#include "tests/substitute/cmpi.nsp/cache/ClassText.h"
#include "tests/substitute/cmpi.nsp/cache/EveryFeature.h"

namespace cmpinsp {
namespace {

namespace fs = std::filesystem;

std::string bytesOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

struct Lines final : NZELVOR20::ILogger {
  void Log(int level, const std::string& line) override {
    text += std::to_string(level) + " " + line + "\n";
  }
  std::string text;
};

struct InstalledSchemaTest : testing::Test {
  InstalledSchemaTest() { folder.write("schema/a.mof", everyFeature()); }

  InstalledSchema read(const std::string& cacheFile) const {
    return readInstalledSchema({folder.text() + "/schema", folder.text() + "/providers"},
                               cacheFile);
  }

  /// The schema with the cache, and in `log` what became of that.
  InstalledSchema start() {
    const auto lines = boost::make_shared<Lines>();
    vorcore::Configuration configuration;
    configuration.logger = lines;
    vorcore::configure(configuration);
    InstalledSchema schema = read(cache.u8string());
    vorcore::configure(vorcore::Configuration());
    log = lines->text;
    return schema;
  }

  bool logHas(const char* text) const { return log.find(text) != std::string::npos; }
  bool isWarm() const { return !logHas("Schema cache"); }

  TemporaryFolder folder;
  fs::path cache = folder.path() / "cache" / "c";
  std::string log;
};

std::string everythingIn(const InstalledSchema& schema) {
  std::string text = textOf(*schema.classes) + linesOf(schema.problems);
  for (const auto* declaration : schema.qualifiers.all()) {
    text += declaration->name + " " + textOf(declaration->defaultValue) + "\n";
  }
  std::vector<substitute::Problem> faults;
  const StaticInstances instances =
      buildStaticInstances(schema.units, *schema.classes, {}, faults, faults);
  for (const char* name : {"T_Leaf", "T_Link"}) {
    for (const InstanceDataPtr& instance : instances.of(name)) {
      text += instance->path.toText();
      for (const NZELVOR20::TCIMValue& value : instance->values) {
        const bool isEmbedded =
            value.GetType() == NZELVOR20::ECIMType::eInstance && !value.IsNull();
        text += ", " + (isEmbedded ? "an instance" : textOf(value));
      }
      text += "\n";
    }
  }
  return text + linesOf(faults);
}

TEST_F(InstalledSchemaTest, AWarmStartGivesTheSameAnswers) {
  const std::string plain = everythingIn(read(std::string()));
  EXPECT_EQ(everythingIn(start()), plain);
  EXPECT_TRUE(logHas("is written")) << log;
  EXPECT_EQ(everythingIn(start()), plain);
  EXPECT_TRUE(isWarm()) << log;
}

TEST_F(InstalledSchemaTest, FaultsAreStillReportedOnAWarmStart) {
  folder.write("schema/b.mof",
               "class B { uint9 p; };\n#pragma include(\"gone.mof\")\n"
               "instance of T_Leaf { Name = \"n\"; Mood = \"bad\"; };");
  folder.write("providers/c.mof", "class C : Missing { };");
  const std::string cold = everythingIn(start());
  EXPECT_NE(cold.find("cannot include"), std::string::npos) << cold;
  EXPECT_NE(cold.find("b.mof:3:41: expected a value of type uint16"), std::string::npos) << cold;
  EXPECT_EQ(everythingIn(start()), cold);
  EXPECT_TRUE(isWarm()) << log;
}

TEST_F(InstalledSchemaTest, AChangedFileIsReadAnew) {
  start();
  folder.write("schema/a.mof", "class Other { };");
  EXPECT_EQ(textOf(*start().classes), "[]Other:\n");
  EXPECT_TRUE(logHas("is older than the schema")) << log;
  start();
  EXPECT_TRUE(isWarm()) << log;
}

TEST_F(InstalledSchemaTest, AChangeThatKeepsTheSizeIsReadAnew) {
  const std::string file = folder.write("schema/a.mof", "class A { };");
  fs::last_write_time(file, fs::last_write_time(file) - std::chrono::hours(1));
  start();
  folder.write("schema/a.mof", "class B { };");
  EXPECT_EQ(textOf(*start().classes), "[]B:\n");
}

TEST_F(InstalledSchemaTest, AnAddedAndARemovedFileAreNoticed) {
  start();
  const std::string added = folder.write("schema/deep/b.mof", "class B { };");
  EXPECT_TRUE(start().classes->find("B"));
  const std::string package = folder.write("providers/c.MOF", "class C { };");
  EXPECT_TRUE(start().classes->find("C"));
  fs::remove(added);
  fs::remove(package);
  const InstalledSchema schema = start();
  EXPECT_FALSE(schema.classes->find("B"));
  EXPECT_FALSE(schema.classes->find("C"));
}

TEST_F(InstalledSchemaTest, EveryFileThatWasReadIsNamed) {
  const std::string first = folder.write("schema/a.mof", "#pragma include (\"deep/more.inc\")");
  const std::string included = folder.write("schema/deep/more.inc", "class T_More {};");
  const auto native = [](const std::string& path) {
    return fs::u8path(path).make_preferred().u8string();
  };
  const std::vector<std::string> files{native(first), native(included)};
  EXPECT_EQ(start().files, files);
  EXPECT_EQ(start().files, files);
  EXPECT_TRUE(isWarm());
}

TEST_F(InstalledSchemaTest, AChangedOrMissingIncludeIsNoticed) {
  folder.write("schema/a.mof", "#pragma include(\"more/b.txt\")");
  EXPECT_EQ(start().problems.size(), 1u);
  const std::string included = folder.write("schema/more/b.txt", "class B { };");
  EXPECT_TRUE(start().classes->find("B"));
  folder.write("schema/more/b.txt", "class Changed { };");
  EXPECT_TRUE(start().classes->find("Changed"));
  fs::remove(included);
  EXPECT_EQ(start().problems.size(), 1u);
}

TEST_F(InstalledSchemaTest, ADamagedFileIsThrownAwayWithALogLineAndMadeAnew) {
  const std::string plain = everythingIn(start());
  const std::string whole = bytesOf(cache);
  for (const std::string& damaged :
       {std::string(), std::string("x"), whole.substr(0, whole.size() / 2), whole + "x",
        std::string(whole.size(), '\0')}) {
    folder.write("cache/c", damaged);
    EXPECT_EQ(everythingIn(start()), plain);
    EXPECT_TRUE(logHas("is damaged and thrown away")) << log;
    EXPECT_EQ(bytesOf(cache), whole);
  }
}

// Of a large file the checksum is taken while the rest is looked at: nothing may come of that
// before.
TEST_F(InstalledSchemaTest, ADamagedLargeFileIsThrownAwayWhereverTheDamageIs) {
  const std::size_t large = std::size_t{3} << 19U;
  folder.write("schema/b.mof", "class T_Long { string p = \"" + std::string(large, 'p') + "\"; };");
  const std::string plain = everythingIn(start());
  const std::string whole = bytesOf(cache);
  ASSERT_GT(whole.size(), large);
  EXPECT_EQ(everythingIn(start()), plain);
  EXPECT_TRUE(isWarm()) << log;
  const std::size_t inFirstPath = kImageStart + 4 + 4 + 1;
  for (const std::size_t at : {kImageStart, inFirstPath, whole.size() - 1}) {
    std::string damaged = whole;
    damaged[at] = static_cast<char>(damaged[at] ^ 0x55);
    folder.write("cache/c", damaged);
    EXPECT_EQ(everythingIn(start()), plain);
    EXPECT_TRUE(logHas("is damaged and thrown away: its length or its checksum is wrong")) << log;
    EXPECT_EQ(bytesOf(cache), whole);
  }
}

TEST_F(InstalledSchemaTest, OneOfAnotherVersionIsReplaced) {
  start();
  const std::string whole = bytesOf(cache);
  std::string other = whole;
  ++other[16];
  folder.write("cache/c", other);
  start();
  EXPECT_TRUE(logHas("is of another version")) << log;
  EXPECT_EQ(bytesOf(cache), whole);
}

/// Every class of such a file is the one that the schema has, whatever its bytes hold.
TEST_F(InstalledSchemaTest, AForgedRecordIsBuiltFromTheSchema) {
  const std::string plain = everythingIn(start());
  std::string forged = bytesOf(cache);
  const std::size_t records = forged.size() - decodeSchema(forged).records.size();
  std::fill(forged.begin() + static_cast<std::ptrdiff_t>(records), forged.end(), '\xFF');
  sealImage(forged);
  folder.write("cache/c", forged);
  EXPECT_EQ(everythingIn(read(cache.u8string())), plain);
  EXPECT_FALSE(fs::exists(cache) && bytesOf(cache) == forged);
}

TEST_F(InstalledSchemaTest, OneThatOthersCouldHaveWrittenIsNotUsedAndReplaced) {
  const std::string plain = everythingIn(start());
  letOthersWrite(cache);
  EXPECT_EQ(everythingIn(start()), plain);
  EXPECT_TRUE(logHas("0 Schema cache")) << log;
  EXPECT_TRUE(logHas("can be written by other users (")) << log;
  EXPECT_TRUE(logHas("is written")) << log;
  start();
  EXPECT_TRUE(isWarm()) << log;
}

TEST_F(InstalledSchemaTest, AFolderThatOthersCanWriteIsLeftAlone) {
  start();
  fs::remove(cache);
  letOthersWrite(cache.parent_path());
  start();
  EXPECT_TRUE(logHas("is not written")) << log;
  EXPECT_FALSE(fs::exists(cache));
}

TEST_F(InstalledSchemaTest, WhereNothingCanBeWrittenTheSchemaIsRead) {
  folder.write("cache", "a file in the place of the folder");
  EXPECT_TRUE(start().classes->find("T_Leaf"));
  EXPECT_TRUE(logHas("is not written")) << log;
}

TEST_F(InstalledSchemaTest, AFolderThatCannotBeListedIsToldAtEveryStartUntilItCan) {
  start();
  const std::string none = folder.write("providers", "a file in the place of a folder");
  for (int i = 0; i < 2; ++i) {
    EXPECT_NE(linesOf(start().problems).find("providers: the MOF files in it cannot be found"),
              std::string::npos);
  }
  fs::remove(none);
  EXPECT_EQ(linesOf(start().problems), linesOf(read(std::string()).problems));
}

TEST_F(InstalledSchemaTest, ThreadsAndStartsAtOnceGetTheSame) {
  const std::string plain = everythingIn(read(std::string()));
  std::vector<std::string> answers(8);
  std::vector<std::thread> threads;
  for (std::string& answer : answers) {
    threads.emplace_back([&] { answer = everythingIn(read(cache.u8string())); });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::string& answer : answers) EXPECT_EQ(answer, plain);
  start();
  EXPECT_TRUE(isWarm()) << log;
  std::size_t files = 0;
  for (const auto& entry : fs::directory_iterator(cache.parent_path())) {
    files += entry.exists() ? 1 : 0;
  }
  EXPECT_EQ(files, 1u);
}

TEST_F(InstalledSchemaTest, ThreadsShareTheClassesOfOneStart) {
  const std::string plain = textOf(*start().classes);
  const InstalledSchema schema = start();
  std::vector<std::string> answers(8);
  std::vector<std::thread> threads;
  for (std::string& answer : answers) {
    threads.emplace_back([&] { answer = textOf(*schema.classes); });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::string& answer : answers) EXPECT_EQ(answer, plain);
  EXPECT_EQ(schema.classes->find("T_Leaf"), schema.classes->find("t_leaf"));
}

TEST(CacheFileFor, EachInstallationHasOneOfItsOwn) {
  const std::string one = cacheFileFor("/opt/one", "/cache");
  EXPECT_NE(one, cacheFileFor("/opt/two", "/cache"));
  EXPECT_EQ(one, cacheFileFor("/opt/one", "/cache"));
  EXPECT_EQ(fs::u8path(one).parent_path(), fs::u8path("/cache"));
}

}  // namespace
}  // namespace cmpinsp
