#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <filesystem>

#include "framework/ICIMClass.h"
#include "framework/ICIMInstance.h"
#include "framework/TCIMReference.h"
#include "framework/TOSSpecific.h"
#include "framework/TRootObject.h"
#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/Bootstrap.h"
#include "substitute/cmpi.nsp/broker/Limits.h"
#include "substitute/cmpi.nsp/registration/RegistrationTable.h"
#include "tests/substitute/cmpi.nsp/Problems.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"

namespace cmpinsp {
namespace {

struct BootstrapTest : testing::Test {
  substitute::Installation installation() const {
    substitute::Installation made;
    made.root = folder.text();
    return made;
  }
  /// Text with the installation's folder left out, and "/" everywhere.
  std::string plain(std::string text) const {
    const std::string prefix = folder.path().generic_u8string() + "/";
    for (char& c : text) c = c == '\\' ? '/' : c;
    for (std::size_t at = text.find(prefix); at != std::string::npos; at = text.find(prefix)) {
      text.erase(at, prefix.size());
    }
    return text;
  }

  TemporaryFolder folder;
};

TEST_F(BootstrapTest, AnEmptyInstallationComesUp) {
  const substitute::Framework framework(installation());
  EXPECT_TRUE(framework.problems().empty());
  EXPECT_TRUE(framework.providers(true).empty());
  EXPECT_TRUE(framework.checkDataFiles().empty());
  EXPECT_TRUE(framework.objectManager());
  EXPECT_NE(framework.makeReportNamespace(), framework.makeReportNamespace());
}

TEST_F(BootstrapTest, AFolderThatIsNotThereIsRefused) {
  substitute::Installation nowhere;
  nowhere.root = folder.text() + "/nowhere";
  EXPECT_THROW(substitute::Framework{nowhere}, NZELVOR20::TVORException);
  nowhere.root.clear();
  EXPECT_THROW(substitute::Framework{nowhere}, NZELVOR20::TVORException);
}

#if defined(__MINGW32__)

TEST_F(BootstrapTest, AFolderByItsPathOnTheNetworkIsRefusedWithTheWayOut) {
  const std::string share = "localhost\\" + folder.text().substr(0, 1) + "$";
  for (const std::string& machine : {"\\\\" + share, "//" + share, std::string("\\\\?\\C:")}) {
    substitute::Installation there;
    there.root = machine + folder.text().substr(2);
    try {
      const substitute::Framework framework(there);
      ADD_FAILURE() << there.root;
    } catch (const NZELVOR20::TVORException& error) {
      EXPECT_NE(std::string(error.what()).find(there.root + " in this form"), std::string::npos)
          << error.what();
    }
  }
}

// Catches a root that is examined before it is made absolute alone.
TEST_F(BootstrapTest, AFolderBelowACurrentOneOnTheNetworkIsRefusedToo) {
  const std::filesystem::path before = std::filesystem::current_path();
  const std::string share = "\\\\localhost\\" + folder.text().substr(0, 1) + "$";
  std::error_code error;
  std::filesystem::current_path(std::filesystem::u8path(share + folder.text().substr(2)), error);
  if (error) GTEST_SKIP() << "this machine does not share its drive";
  substitute::Installation here;
  here.root = ".";
  EXPECT_THROW(substitute::Framework{here}, NZELVOR20::TVORException);
  std::filesystem::current_path(before);
}

#elif !defined(_WIN32)

TEST_F(BootstrapTest, AFolderMayBeginWithTwoSlashes) {
  substitute::Installation there;
  there.root = "/" + folder.text();
  EXPECT_NO_THROW(substitute::Framework{there});
}

#endif

TEST_F(BootstrapTest, TheCoreIsConfigured) {
  substitute::Installation made = installation();
  made.root += "/";
  made.biosId = "abc";
  made.overrideBiosId = true;
  made.oemBuild = true;
  const substitute::Framework framework(made);
  EXPECT_EQ(NZELVOR20::TOSSpecific::GetVORRootPath(), folder.text());
  EXPECT_EQ(NZELVOR20::TOSSpecific::GetBiosID(), "abc");
  EXPECT_TRUE(NZELVOR20::TOSSpecific::isOEMBuild());
}

/// Keeps the lines that it gets.
class KeptLines : public NZELVOR20::ILogger {
 public:
  void Log(int level, const std::string& text) override {
    lines += std::to_string(level) + " " + text + "\n";
  }

  std::string lines;
};

TEST_F(BootstrapTest, ALoggerOfTheHostGetsTheCoreLogBesideAFile) {
  folder.write("schema/a.mof", "class A { uint9 p; };");
  const auto logger = boost::make_shared<KeptLines>();
  substitute::Installation made = installation();
  made.schemaCache = false;
  made.logger = logger;
  made.logFile = folder.text() + "/core.log";
  made.logLevel = 0;
  const substitute::Framework framework(made);
  EXPECT_EQ(plain(logger->lines).find("0 Installation: schema/a.mof:1:11: "), 0U) << logger->lines;
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "core.log"));
  NZELVOR20::TRootObject::GetCoreLogger()->Log(3, "a trace");
  EXPECT_NE(logger->lines.find("3 a trace\n"), std::string::npos);
}

TEST_F(BootstrapTest, WithoutALoggerAndAFileThereIsNoCoreLog) {
  const substitute::Framework framework(installation());
  EXPECT_EQ(NZELVOR20::TRootObject::GetCoreLogger(), nullptr);
}

TEST_F(BootstrapTest, TheLimitOfAnswersIsThatOfTheInstallation) {
  substitute::Installation made = installation();
  made.answerLimit = 5;
  { const substitute::Framework framework(made); }
  EXPECT_EQ(answerLimit(), 5U);
  { const substitute::Framework framework(installation()); }
  EXPECT_EQ(answerLimit(), 10'000'000U);
}

TEST_F(BootstrapTest, ClassesComeFromTheSchemaAndFromThePackages) {
  folder.write("schema/deep/a.mof", "class A { };");
  folder.write("providers/b.mof", "class B : A { };");
  const substitute::Framework framework(installation());
  EXPECT_EQ(linesOf(framework.problems()), "");
  const auto subclass = framework.objectManager()->GetClass("b", {});
  EXPECT_EQ(subclass->GetSuperclass({})->GetName(), "A");
}

TEST_F(BootstrapTest, FaultsAreCollectedAndTheRestWorks) {
  folder.write("schema/a.mof", "class A { uint9 p; };\nclass B { };");
  folder.write("providers/x.registration", "B root/cimv2 P a:evil instance\nnonsense\n");
  const substitute::Framework framework(installation());
  EXPECT_EQ(plain(linesOf(framework.problems())),
            "schema/a.mof:1:11: expected a type or a class before \"REF\", found \"uint9\"\n"
            "providers/x.registration:2:1: expected a class, a namespace, a provider, a library "
            "and types, found 1 words\n"
            "providers/x.registration:1:1: invalid parameter: library \"a:evil\" is no name of a "
            "file in the providers' folder\n");
  EXPECT_TRUE(framework.objectManager()->GetClass("B", {}));
}

// Catches an installation of which nothing can be read and nothing is said.
TEST_F(BootstrapTest, AFolderThatCannotBeListedIsTold) {
  folder.write("providers", "a file in the place of a folder");
  const substitute::Framework framework(installation());
  const std::string faults = plain(linesOf(framework.problems()));
  for (const char* wanted : {"providers: the MOF files in it cannot be found: ",
                             "providers: the registration files in it cannot be found: "}) {
    EXPECT_NE(faults.find(wanted), std::string::npos) << faults;
  }
}

TEST_F(BootstrapTest, ARegisteredClassThatNobodyDeclaresIsToldUnlessItIsAnIndication) {
  folder.write("schema/a.mof", "class A { };");
  folder.write("providers/x.registration",
               "a root/cimv2 P x instance\n  B root/cimv2 P x instance\n"
               "CIM_InstModification root/cimv2 P x indication\n");
  const substitute::Framework framework(installation());
  EXPECT_EQ(plain(linesOf(framework.problems())),
            "providers/x.registration:2:3: no class B is declared, which provider P is to serve\n");
}

TEST_F(BootstrapTest, AClassBelowAnUndeclaredOneIsNotedAndNoFault) {
  folder.write("schema/a.mof", "class A { };\nclass B : Gone { };\nclass C : B { };");
  folder.write("providers/x.registration", "C root/cimv2 P x instance\n");
  for (int start = 0; start < 2; ++start) {
    substitute::Installation cached = installation();
    cached.cacheFolder = (folder.path() / "cache").u8string();
    const substitute::Framework framework(cached);
    EXPECT_EQ(linesOf(framework.problems()), "");
    EXPECT_EQ(plain(linesOf(framework.notes())),
              "schema/a.mof:2:7: note: superclass Gone of class B and 1 more is not declared, so "
              "that what a provider sets is taken as it comes; the DMTF's schema, which may have "
              "it, can be put into a folder of its own in schema\n");
    const auto open = framework.objectManager()->GetClass("B", {});
    EXPECT_FALSE(open->GetSuperclass({}));
    EXPECT_EQ(framework.objectManager()->GetClass("C", {})->GetSuperclass({})->GetName(), "B");
    EXPECT_NO_THROW(open->AllocateInstance({})->SetProperty("Any", NZELVOR20::TCIMValue("x"), {}));
  }
}

TEST_F(BootstrapTest, TheInstallerMayPlaceStaticInstances) {
  folder.write("providers/a.mof", "class A { [Key] string K; };\ninstance of A { K = \"k\"; };");
  folder.write("providers/x.registration",
               "a.mof root/acme instances\ngone.mof root/b instances\n");
  const substitute::Framework framework(installation());
  EXPECT_EQ(plain(linesOf(framework.problems())),
            "providers/x.registration:2:1: there is no file gone.mof with instances\n");
  std::string paths;
  framework.objectManager()->GetClass("A", {})->EnumerateInstanceNames(
      [&](const NZELVOR20::TCIMReference& path) {
        paths += path.GetPath();
        return true;
      },
      true, {});
  EXPECT_EQ(paths, "root/acme:A.K=\"k\"");
}

TEST_F(BootstrapTest, InstancesOfAnotherServersRegistrationAreNoted) {
  folder.write("providers/a.mof", "instance of PG_Thing { };");
  const substitute::Framework framework(installation());
  EXPECT_EQ(linesOf(framework.problems()), "");
  EXPECT_EQ(framework.notes().size(), 1u);
}

TEST_F(BootstrapTest, AProviderNoneOfWhoseClassesIsDeclaredIsNotUsable) {
  const std::filesystem::path zoo =
      std::filesystem::u8path(ZOO_FOLDER) / libraryFileName("diagsZoo");
  folder.write("schema/a.mof", "class A { };\nclass O : Gone { };");
  std::filesystem::create_directories(folder.path() / "providers");
  std::filesystem::copy_file(zoo, folder.path() / "providers" / zoo.filename());
  const struct {
    const char* lines;
    substitute::ProviderState state;
  } rows[] = {
      {"B root/cimv2 Zoo_Dogs diagsZoo instance\n", substitute::ProviderState::kIncomplete},
      {"B root/cimv2 Zoo_Dogs diagsZoo instance\na root/cimv2 Zoo_Dogs diagsZoo instance\n",
       substitute::ProviderState::kUsable},
      {"O root/cimv2 Zoo_Dogs diagsZoo instance\n", substitute::ProviderState::kUsable},
  };
  for (const auto& row : rows) {
    folder.write("providers/x.registration", row.lines);
    const substitute::Framework framework(installation());
    const substitute::ProviderInfo provider = framework.providers(true).at(0);
    EXPECT_EQ(provider.state, row.state) << row.lines << provider.reason;
    EXPECT_EQ(provider.reason.empty(), row.state == substitute::ProviderState::kUsable);
  }
}

TEST_F(BootstrapTest, RegisteredProvidersAreListedWithTheirState) {
  folder.write("providers/x.registration",
               "A root/cimv2 P gone instance method\nB root/cimv2 P gone association\n");
  folder.write("providers/y.mof",
               "instance of PG_ProviderModule { Name = \"M\"; Location = \"bad:path\"; };"
               "instance of PG_Provider { ProviderModuleName = \"M\"; Name = \"Q\"; };"
               "instance of PG_ProviderCapabilities { ProviderModuleName = \"M\";"
               " ProviderName = \"Q\"; CapabilityID = \"1\"; ClassName = \"C\";"
               " Namespaces = {\"root/cimv2\"}; ProviderType = {2}; };");
  const substitute::Framework framework(installation());
  const std::vector<substitute::ProviderInfo> providers = framework.providers(true);
  ASSERT_EQ(providers.size(), 2u);
  EXPECT_EQ(providers[0].name, "P");
  ASSERT_EQ(providers[0].classes.size(), 2U);
  EXPECT_EQ(providers[0].classes[1].name, "B");
  EXPECT_EQ(providers[0].classes[1].namespaces, std::vector<std::string>{"root/cimv2"});
  ASSERT_EQ(providers[0].interfaces.size(), 3U);
  EXPECT_EQ(providers[0].interfaces[2].name, "method");
  EXPECT_EQ(providers[0].interfaces[2].edition, "");
  EXPECT_EQ(providers[0].state, substitute::ProviderState::kMissing);
  EXPECT_NE(providers[0].reason.find("gone"), std::string::npos) << providers[0].reason;
  EXPECT_EQ(providers[1].state, substitute::ProviderState::kMissing);
  EXPECT_NE(providers[1].reason.find("bad:path"), std::string::npos) << providers[1].reason;
}

TEST_F(BootstrapTest, ALibraryIsLoadedOnRequestAlone) {
  folder.write("providers/x.registration", "A root/cimv2 P text instance\n");
  folder.write(std::string("providers/") + libraryFileName("text"), "this is no library");
  const substitute::Framework framework(installation());
  EXPECT_EQ(framework.providers(false).at(0).state, substitute::ProviderState::kNotLoaded);
  EXPECT_EQ(framework.providers(true).at(0).state, substitute::ProviderState::kBroken);
}

TEST_F(BootstrapTest, DataFilesAreCheckedInTheirPlace) {
  folder.write("kfr/data/excludetests.xml", "<vor version='1'><tset/></vor>");
  const substitute::Framework framework(installation());
  EXPECT_EQ(plain(linesOf(framework.checkDataFiles())),
            "kfr/data/excludetests.xml:1: unknown element <tset>\n");
}

TEST(Problem, ItsTextHasOnlyWhatIsKnown) {
  EXPECT_EQ((substitute::Problem{"f", 1, 2, "m"}.toText()), "f:1:2: m");
  EXPECT_EQ((substitute::Problem{"f", 1, 0, "m"}.toText()), "f:1: m");
  EXPECT_EQ((substitute::Problem{"f", 0, 0, "m"}.toText()), "f: m");
  EXPECT_EQ((substitute::Problem{"", 0, 0, "m"}.toText()), "m");
}

}  // namespace
}  // namespace cmpinsp
