#include "results/VendorMessages.h"

#include <algorithm>
#include <array>

#include "results/Verdict.h"
#include "runner/CoreLog.h"
#include "runner/Properties.h"
#include "runner/Text.h"

namespace diagsrunner {

namespace {

constexpr std::array<const char*, 7> kVendorKeys{"BRCM",   "Brocade", "DiskDefault", "IANet",
                                                 "Nvidia", "NVIDIA",  "ELX"};

/// Every test of the diag service family shares the entries of this name.
constexpr const char* kFamilyKey = "fusion-io:diag service";

/// The last message line replaces the ones before it; the actions follow one to a line.
std::string messageText(const VendorMessageRecord& record) {
  std::string text;
  if (!record.messages.empty()) {
    text = record.messages.back() + "\n";
  }
  for (const auto& [priority, action] : record.actions) {
    text += priority + ". " + action + "\n";
  }
  return text;
}

std::string familyOutcome(const std::string& outcome) {
  if (contains(outcome, "ok") || contains(outcome, "warning")) {
    return "ok";
  }
  return contains(outcome, "aborted") ? "aborted" : "failed";
}

std::string explanationOf(const std::string& key, const std::string& outcome,
                          const VendorMessages& messages) {
  std::string explanation;
  const auto [first, last] = messages.equal_range(key);
  std::for_each(first, last, [&](const VendorMessages::value_type& entry) {
    if (entry.second.state == outcome) {
      explanation += entry.second.errorCode + " : " + messageText(entry.second);
    }
  });
  return explanation;
}

}  // namespace

bool isVendorTest(const std::string& testID) {
  const auto isIn = [&](const char* key) { return contains(testID, key); };
  return std::any_of(kVendorKeys.begin(), kVendorKeys.end(), isIn) ||
         (isIn("diag service") && (isIn("Fusion-io") || isIn("FIO") || isIn("ZEL")));
}

void addVendorMessages(const boost::shared_ptr<NZELVOR20::ICIMInstance>& record,
                       const std::string& testName, const VendorMessages& messages) {
  std::string outcome = lowerCasedAscii(renderedProperty(record, "CompletionState"));
  std::string key = lowerCased(testName);
  logTrace("testName :", key);
  if (isDiagServiceFamily(key)) {
    key = kFamilyKey;
    logTrace("update test name for :", key);
    logTrace("testStatus :", outcome);
    outcome = familyOutcome(outcome);
  }
  const std::string explanation = explanationOf(key, outcome, messages);
  record->SetProperty(
      "RecordData", NZELVOR20::TCIMValue(explanation + renderedProperty(record, "RecordData")), {});
}

}  // namespace diagsrunner
