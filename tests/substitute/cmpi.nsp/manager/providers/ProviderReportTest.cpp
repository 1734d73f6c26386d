// What is told of a provider that cannot be used, and that the others go on.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <ostream>

#include "framework/ICIMClass.h"
#include "framework/ICIMNamespace.h"
#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/Bootstrap.h"
#include "substitute/cmpi.nsp/manager/providers/ProviderReport.h"
#include "tests/substitute/cmpi.nsp/OthersWrite.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"

namespace cmpinsp {
namespace {

namespace fs = std::filesystem;
using substitute::ProviderInfo;
using substitute::ProviderState;

/// An installation with a library of faulty providers.
struct ProviderReportTest : testing::Test {
  ProviderReportTest() {
    fs::create_directories(folder.path() / "providers");
    fs::copy(fs::u8path(FAULTY_LIBRARY), place("faulty"));
    folder.write("schema/acme.mof", "class ACME_Fan { }; class ACME_Pump { };");
  }
  fs::path place(const std::string& library) const {
    return folder.path() / "providers" / libraryFileName(library);
  }
  /// The state of one provider, after its library was loaded.
  ProviderInfo report(const std::string& provider, const std::string& library,
                      const std::string& types = "instance") const {
    folder.write("providers/x.registration",
                 "ACME_Fan root/cimv2 " + provider + " " + library + " " + types + "\n");
    substitute::Installation installation;
    installation.root = folder.text();
    return substitute::Framework(installation).providers(true).at(0);
  }

  TemporaryFolder folder;
};

struct Row {
  const char* provider;
  const char* types;
  ProviderState state;
  const char* reason;  ///< a part of it
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.provider; }

class FaultyFactory : public ProviderReportTest, public testing::WithParamInterface<Row> {};

TEST_P(FaultyFactory, IsToldByProviderInterfaceAndReason) {
  const ProviderInfo info = report(GetParam().provider, "faulty", GetParam().types);
  EXPECT_EQ(info.state, GetParam().state);
  EXPECT_NE(info.reason.find(GetParam().reason), std::string::npos) << info.reason;
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, FaultyFactory,
    testing::Values(Row{"Failing", "instance", ProviderState::kBroken,
                        "provider Failing: making the Instance interface: "},
                    Row{"Failing", "instance", ProviderState::kBroken, "the fan is out of order"},
                    Row{"Throwing", "instance", ProviderState::kBroken,
                        "provider Throwing: making the Instance interface: "},
                    Row{"Throwing", "instance", ProviderState::kBroken, "the fan fell off"},
                    Row{"Nobody", "instance", ProviderState::kBroken, "has no factory for it"},
                    Row{"Half", "instance method", ProviderState::kIncomplete,
                        "no right to read the fan"},
                    Row{"Half", "method association", ProviderState::kIncomplete,
                        "the library has no factory for the association interface"},
                    Row{"Half", "method", ProviderState::kUsable, ""}));

TEST_F(ProviderReportTest, EachInterfaceTellsItsEdition) {
  const ProviderInfo info = report("Half", "faulty", "instance method");
  ASSERT_EQ(info.interfaces.size(), 2U);
  EXPECT_EQ(info.interfaces[0].edition, "");
  EXPECT_EQ(info.interfaces[1].edition, "2.0");
}

/// The state that is known without loading anything, once `className` was enumerated.
ProviderState stateAfterEnumerating(const substitute::Framework& framework,
                                    const std::string& className) {
  try {
    framework.objectManager()
        ->GetClass(className, {})
        ->EnumerateInstances([](const auto&) { return true; }, true, {});
  } catch (const NZELVOR20::TVORException&) {
    // The state tells.
  }
  return framework.providers(false).at(0).state;
}

TEST_F(ProviderReportTest, WithoutLoadingTheStateIsKnownOfWhatWasAskedFor) {
  folder.write("schema/fan.mof", "class ACME_Fan {}; class ACME_Pump {};");
  folder.write("providers/x.registration", "ACME_Fan root/cimv2 Failing faulty instance\n");
  substitute::Installation installation;
  installation.root = folder.text();
  const substitute::Framework framework(installation);
  EXPECT_EQ(framework.providers(false).at(0).state, ProviderState::kNotLoaded);
  EXPECT_EQ(stateAfterEnumerating(framework, "ACME_Pump"), ProviderState::kNotLoaded);
  EXPECT_EQ(stateAfterEnumerating(framework, "ACME_Fan"), ProviderState::kBroken);
}

// Catches answers that were lost to a library which could be loaded later.
TEST_F(ProviderReportTest, TheFirstFailureIsToldThoughALaterAttemptSucceeds) {
  folder.write("schema/fan.mof", "class ACME_Fan {};");
  folder.write("providers/x.registration", "ACME_Fan root/cimv2 Half late method\n");
  std::ofstream(place("late")) << "this is no library";
  substitute::Installation installation;
  installation.root = folder.text();
  const substitute::Framework framework(installation);
  EXPECT_EQ(framework.providers(true).at(0).state, ProviderState::kBroken);
  fs::remove(place("late"));
  fs::copy_file(place("faulty"), place("late"));
  EXPECT_EQ(framework.providers(true).at(0).state, ProviderState::kUsable);
  EXPECT_EQ(framework.providers(false).at(0).state, ProviderState::kBroken);
}

TEST_F(ProviderReportTest, AFaultyLibraryIsNoWantOfMemory) {
  EXPECT_FALSE(report("Failing", "faulty").lacksMemory);
  std::ofstream(place("text")) << "this is no library";
  EXPECT_FALSE(report("Failing", "text").lacksMemory);
}

TEST(EditionText, IsAsTheStandardWritesIt) {
  EXPECT_EQ(editionText(100), "1.0");
  EXPECT_EQ(editionText(210), "2.1");
  EXPECT_EQ(editionText(86), "0.86");
  EXPECT_EQ(editionText(0), "");
  EXPECT_EQ(editionText(-1), "");
}

TEST_F(ProviderReportTest, AMissingLibraryIsNamed) {
  const ProviderInfo info = report("Failing", "gone");
  EXPECT_EQ(info.state, ProviderState::kMissing);
  EXPECT_NE(info.reason.find(place("gone").u8string()), std::string::npos) << info.reason;
}

TEST_F(ProviderReportTest, AFileThatIsNoLibraryIsNamed) {
  for (const char* content : {"", "\x7F", "MZ", "this is no library"}) {
    std::ofstream(place("text"), std::ios::binary) << content;
    const ProviderInfo info = report("Failing", "text");
    EXPECT_EQ(info.state, ProviderState::kBroken);
    EXPECT_NE(info.reason.find(place("text").u8string() + ": the file is no library"),
              std::string::npos)
        << info.reason;
  }
}

/// The head of a library for Linux on the processor with this number.
std::string elfHead(char bits, char endian, char high, char low) {
  std::string head(
      "\x7F"
      "ELF",
      4);
  head += {bits, endian, 1};
  head.resize(16, '\0');
  head += endian == 1 ? std::string{3, 0, low, high} : std::string{0, 3, high, low};
  head.resize(64, '\0');
  return head;
}

/// The head of a library for Windows.
std::string peHead(char high, char low, char magic) {
  std::string head("MZ");
  head.resize(0x3C, '\0');
  head += {0x40, 0, 0, 0};
  head += std::string("PE\0\0", 4) + low + high;
  head.resize(0x40 + 24, '\0');
  return head + char(0x0B) + magic;
}

TEST_F(ProviderReportTest, ALibraryForAnotherMachineIsToldByItsKind) {
  const struct {
    std::string head;
    const char* kind;
  } rows[] = {{elfHead(2, 1, 0, char(183)), "(Linux, ARM64, 64 bits)"},
              {elfHead(1, 1, 0, 3), "(Linux, x86, 32 bits)"},
              {elfHead(2, 2, 0, 22), "(Linux, S/390, 64 bits)"},
              {elfHead(2, 1, 0x12, 0x34), "(Linux, machine 4660, 64 bits)"},
              {peHead(char(0xAA), 0x64, 2), "(Windows, ARM64, 64 bits)"},
              {peHead(1, 0x4C, 1), "(Windows, x86, 32 bits)"}};
  for (const auto& row : rows) {
    std::ofstream(place("alien"), std::ios::binary) << row.head;
    const ProviderInfo info = report("Failing", "alien");
    EXPECT_EQ(info.state, ProviderState::kBroken);
    EXPECT_NE(info.reason.find(std::string("another kind of machine ") + row.kind),
              std::string::npos)
        << info.reason;
  }
}

TEST_F(ProviderReportTest, TheOthersGoOn) {
  folder.write("providers/y.registration", "ACME_Pump root/cimv2 Half faulty method\n");
  EXPECT_EQ(report("Throwing", "faulty").state, ProviderState::kBroken);
  substitute::Installation installation;
  installation.root = folder.text();
  EXPECT_EQ(substitute::Framework(installation).providers(true).at(1).state,
            ProviderState::kUsable);
}

/// Counts the calls into providers.
struct CountedCalls final : substitute::ICallWatch {
  void entered(const char*, const char*) noexcept override { ++calls; }
  void left() noexcept override { ++ends; }
  int calls = 0;
  int ends = 0;
};

TEST_F(ProviderReportTest, OneThatIsLeftOutIsNeitherLoadedNorAsked) {
  folder.write("providers/x.registration",
               "ACME_Fan root/cimv2 Failing faulty instance\n"
               "ACME_Pump root/cimv2 Half faulty method\n");
  CountedCalls watch;
  substitute::Installation installation;
  installation.root = folder.text();
  installation.withoutProviders = {"Failing", "Nobody"};
  installation.callWatch = &watch;
  const substitute::Framework framework(installation);
  stateAfterEnumerating(framework, "ACME_Fan");
  EXPECT_EQ(watch.calls, 0);
  const std::vector<ProviderInfo> all = framework.providers(true);
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].state, ProviderState::kNotLoaded);
  EXPECT_EQ(all[0].reason, "left out");
  EXPECT_EQ(all[1].state, ProviderState::kUsable);
  EXPECT_GT(watch.calls, 0);
  EXPECT_EQ(watch.calls, watch.ends);
}

// Catches a watch that stays for the next framework, which may outlive it.
TEST_F(ProviderReportTest, ACallWatchIsToldOfItsOwnInstallationAlone) {
  CountedCalls watch;
  substitute::Installation installation;
  installation.root = folder.text();
  installation.callWatch = &watch;
  { const substitute::Framework framework(installation); }
  report("Failing", "faulty");
  EXPECT_EQ(watch.calls, 0);
}

#if !defined(_WIN32)

TEST_F(ProviderReportTest, AnUnresolvedSymbolIsNamed) {
  fs::copy(fs::u8path(UNRESOLVED_LIBRARY), place("unresolved"));
  const ProviderInfo info = report("Unresolved", "unresolved");
  EXPECT_EQ(info.state, ProviderState::kBroken);
  EXPECT_NE(info.reason.find("acme_driver_of_the_fan"), std::string::npos) << info.reason;
}

#endif

TEST_F(ProviderReportTest, ALibraryThatOthersCanWriteIsRefusedByItsPath) {
  letOthersWrite(place("faulty"));
  const ProviderInfo info = report("Half", "faulty", "method");
  EXPECT_EQ(info.state, ProviderState::kRefused);
  EXPECT_NE(info.reason.find(place("faulty").u8string() + " can be written by other users ("),
            std::string::npos)
      << info.reason;
}

}  // namespace
}  // namespace cmpinsp
