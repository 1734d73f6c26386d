#include <gtest/gtest.h>

#include "framework/TOSSpecific.h"
#include "substitute/vorcore/system/Configuration.h"
#include "tests/substitute/vorcore/Expectations.h"
#include "tests/substitute/vorcore/ScratchFolder.h"

namespace NZELVOR20 {
namespace {

class TOSSpecificTest : public testing::Test {
 protected:
  ~TOSSpecificTest() override { vorcore::configure(vorcore::Configuration()); }

  static std::string rootFor(const std::string& configured) {
    vorcore::Configuration configuration;
    configuration.root = configured;
    vorcore::configure(configuration);
    return TOSSpecific::GetVORRootPath();
  }

  vorcore::ScratchFolder m_folder;
};

TEST_F(TOSSpecificTest, TheRootHasNoSeparatorAtItsEnd) {
  EXPECT_EQ(rootFor("/opt/diags"), "/opt/diags");
  EXPECT_EQ(rootFor("/opt/diags//"), "/opt/diags");
}

TEST_F(TOSSpecificTest, TheRootIsTheProgramsFolderUnlessConfigured) {
  const std::string root = TOSSpecific::GetVORRootPath();
  EXPECT_TRUE(std::filesystem::is_directory(std::filesystem::u8path(root))) << root;
}

TEST_F(TOSSpecificTest, TheSizeOfAFileIsItsBytes) {
  m_folder.write("empty", "");
  m_folder.write("three", "a\r\n");
  EXPECT_EQ(TOSSpecific::GetFileSize(m_folder.path() + "/empty"), 0U);
  EXPECT_EQ(TOSSpecific::GetFileSize(m_folder.path() + "/three"), 3U);
}

TEST_F(TOSSpecificTest, TheDataFolderIsFoundInItsBackslashForm) {
  m_folder.write("kfr/data/list.xml", "12345");
  EXPECT_EQ(TOSSpecific::GetFileSize(m_folder.path() + "\\kfr\\data\\list.xml"), 5U);
}

TEST_F(TOSSpecificTest, MissingFilesAndFoldersAreNotFoundByTheirName) {
  for (const std::string& path :
       {m_folder.path(), m_folder.path() + "/none", m_folder.path() + "\\kfr\\data\\none.xml"}) {
    EXPECT_EQ(vorcore::failureOf([&] { TOSSpecific::GetFileSize(path); }),
              "not found: file " + path);
  }
}

TEST_F(TOSSpecificTest, TheFirmwaresIdentifierCanBeOverridden) {
  vorcore::Configuration configuration;
  configuration.biosId = "KO";
  const std::string own = TOSSpecific::GetBiosID();
  vorcore::configure(configuration);
  EXPECT_EQ(TOSSpecific::GetBiosID(), own);
  configuration.overrideBiosId = true;
  vorcore::configure(configuration);
  EXPECT_EQ(TOSSpecific::GetBiosID(), "KO");
}

TEST_F(TOSSpecificTest, TheBuildIsForAPartnerWhenConfiguredSo) {
  EXPECT_FALSE(TOSSpecific::isOEMBuild());
  vorcore::Configuration configuration;
  configuration.oemBuild = true;
  vorcore::configure(configuration);
  EXPECT_TRUE(TOSSpecific::isOEMBuild());
}

}  // namespace
}  // namespace NZELVOR20
