#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "exclusion/ExcludeParser.h"
#include "exclusion/FilterDiagsParser.h"
#include "providers/disk/services/AlignmentDiagnostic.h"
#include "providers/disk/services/CompareDiagnostic.h"
#include "providers/disk/services/HealthDiagnostic.h"
#include "providers/disk/services/ReadDiagnostic.h"
#include "providers/disk/services/SelfTestDiagnostic.h"
#include "providers/memory/services/PatternDiagnostic.h"
#include "providers/memory/services/StatusDiagnostic.h"
#include "providers/processor/services/ExchangeDiagnostic.h"
#include "providers/processor/services/StatusDiagnostic.h"
#include "results/ResultParser.h"

namespace data {
namespace {

std::string content(const std::string& name) {
  std::ifstream file(std::string(DIAGS_SOURCE_DIR) + "/data/kfr/data/" + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Parses the file and keeps what is wrong with it.
template <class Parser>
class Checking : public Parser {
 public:
  explicit Checking(const std::string& name) {
    std::string text = content(name);
    EXPECT_FALSE(text.empty()) << name;
    this->Parse(text.data());
  }
  const std::vector<std::string>& errors() const { return m_errors; }

 protected:
  void Error(const std::string& message) override { m_errors.push_back(message); }

 private:
  std::vector<std::string> m_errors;
};

std::vector<std::string> serviceNames() {
  const providers::ProcessorMachine machine;
  std::vector<std::string> names{
      providers::memory::StatusDiagnostic({}).description().name,
      providers::ExchangeDiagnostic(machine, providers::MessageTap()).description().name,
      providers::StatusDiagnostic(machine, nullptr).description().name};
  for (const providers::CalculationService& service : providers::calculationServices())
    names.push_back(providers::CalculationDiagnostic(service, machine).description().name);
  for (const providers::memory::TestKind& kind : providers::memory::testKinds())
    names.push_back(providers::memory::PatternDiagnostic(kind, {}).description().name);
  return names;
}

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return text;
}

TEST(VendorMessages, HaveNothingThatTheParserObjectsTo) {
  EXPECT_EQ(Checking<diagsrunner::ResultParser>("vendor_diagnostic_msgs.xml").errors(),
            std::vector<std::string>());
}

TEST(VendorMessages, ExplainEveryOutcomeOfTheBuiltInTests) {
  const VendorMessages messages =
      Checking<diagsrunner::ResultParser>("vendor_diagnostic_msgs.xml").GetVendorMessages();
  for (const std::string& name : serviceNames()) {
    std::set<std::string> states;
    const auto range = messages.equal_range(lower(name));
    for (auto entry = range.first; entry != range.second; ++entry) {
      const VendorMessageRecord& record = entry->second;
      states.insert(record.state);
      EXPECT_FALSE(record.errorCode.empty()) << name << " " << record.state;
      EXPECT_EQ(record.messages.size(), 1U) << name << " " << record.state;
      EXPECT_FALSE(record.actions.empty()) << name << " " << record.state;
    }
    EXPECT_EQ(states, (std::set<std::string>{"ok", "warning", "incomplete", "failed", "aborted",
                                             "stopped"}))
        << name;
  }
}

std::set<std::string> statesOf(const std::string& name) {
  std::set<std::string> states;
  const VendorMessages messages =
      Checking<diagsrunner::ResultParser>("vendor_diagnostic_msgs.xml").GetVendorMessages();
  const auto range = messages.equal_range(name);
  for (auto entry = range.first; entry != range.second; ++entry) {
    states.insert(entry->second.state);
    EXPECT_EQ(entry->second.messages.size(), 1U) << name << " " << entry->second.state;
    EXPECT_FALSE(entry->second.actions.empty()) << name << " " << entry->second.state;
  }
  return states;
}

TEST(VendorMessages, ExplainEveryOutcomeOfTheDiskTests) {
  using namespace providers::disk;
  const std::set<std::string> all{"ok", "warning", "incomplete", "failed", "aborted", "stopped"};
  const auto without = [&all](const std::string& state) {
    std::set<std::string> others = all;
    others.erase(state);
    return others;
  };
  const auto expect = [](const providers::Diagnostic& test, const std::set<std::string>& states) {
    EXPECT_EQ(statesOf(lower(test.description().name)), states) << test.description().name;
  };
  expect(ReadDiagnostic({}, ReadOrder::Sequential), all);
  expect(ReadDiagnostic({}, ReadOrder::Random), all);
  expect(CompareDiagnostic({}), all);
  expect(HealthDiagnostic({}, {}, HealthQuestion::Status), all);
  expect(HealthDiagnostic({}, {}, HealthQuestion::GrownDefects), all);
  expect(AlignmentDiagnostic({}), without("failed"));
  expect(SelfTestDiagnostic({}, SelfTestKind::Short), without("warning"));
  expect(SelfTestDiagnostic({}, SelfTestKind::Extended), without("warning"));
}

// These are the names and states that the runner asks for: others would never be shown.
TEST(VendorMessages, ExplainEveryOutcomeOfTheChecks) {
  EXPECT_EQ(statesOf("fusion-io:diag service"), (std::set<std::string>{"ok", "aborted", "failed"}));
  EXPECT_EQ(statesOf("zel:processor check diag service"),
            (std::set<std::string>{"ok", "warning", "incomplete", "failed", "aborted", "stopped"}));
}

TEST(VendorMessages, HaveErrorCodesOfTheirOwn) {
  std::set<std::string> codes;
  for (const auto& [name, record] :
       Checking<diagsrunner::ResultParser>("vendor_diagnostic_msgs.xml").GetVendorMessages())
    EXPECT_TRUE(codes.insert(record.errorCode).second) << record.errorCode;
}

TEST(ExclusionList, ExcludesNothingAsItIsShipped) {
  const Checking<diagsrunner::ExcludeParser> list("excludetests.xml");
  EXPECT_EQ(list.errors(), std::vector<std::string>());
  EXPECT_EQ(list.GetExcludedTests(), std::vector<std::string>());
}

TEST(ExclusionMatrix, ExcludesNothingAsItIsShipped) {
  const Checking<diagsrunner::FilterDiagsParser> matrix("excludetestmatrix.xml");
  EXPECT_TRUE(matrix.GetExclusionMatrix().empty());
}

TEST(ExclusionMatrix, IsWellFormed) {
  // The root element is the one identifier that a matrix parser does not know.
  const Checking<diagsrunner::FilterDiagsParser> matrix("excludetestmatrix.xml");
  EXPECT_EQ(matrix.errors(),
            (std::vector<std::string>{"Unrecognized identifier", "Unrecognized identifier"}));
}

TEST(ServiceNames, KeepOutOfTheVendorFamilies) {
  for (const std::string& name : serviceNames()) {
    for (const char* family : {"Fusion-io", "FIO", "ZEL", "BRCM", "ELX", "IANet", "Brocade",
                               "Nvidia", "NVIDIA", "DiskDefault", "diag service"})
      EXPECT_EQ(name.find(family), std::string::npos) << name;
  }
}

}  // namespace
}  // namespace data
