#include "results/RecordWait.h"

#include <algorithm>

#include "platform/Platform.h"
#include "runner/Properties.h"
#include "runner/Text.h"

namespace diagsrunner {

namespace {

constexpr int kAttempts = 10;
constexpr unsigned int kPauseMilliseconds = 5000;

bool isRecordOf(const InstanceHandle& record, const std::string& testName) {
  const NZELVOR20::TCIMValue service = valueOrNull(record, "ServiceName");
  return !service.IsNull() && contains(identifierText(service), testName);
}

bool hasRecordOf(const Records& records, const std::string& testName) {
  return std::any_of(records.begin(), records.end(),
                     [&](const InstanceHandle& record) { return isRecordOf(record, testName); });
}

}  // namespace

Records waitForRecords(const boost::shared_ptr<NZELVOR20::ICIMClass>& recordClass,
                       const std::string& testName) {
  Records records = enumerateRecords(recordClass, {});
  for (int left = kAttempts; left > 0 && !hasRecordOf(records, testName); --left) {
    records.clear();
    records = enumerateRecords(recordClass, {});
    platform::sleepMilliseconds(kPauseMilliseconds);
  }
  return records;
}

}  // namespace diagsrunner
