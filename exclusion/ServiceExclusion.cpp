#include "exclusion/ServiceExclusion.h"

#include <algorithm>

#include "framework/TVORException.h"
#include "runner/CoreLog.h"
#include "runner/Properties.h"
#include "runner/Text.h"

namespace diagsrunner {

using NZELVOR20::TCIMValue;
using NZELVOR20::TOptionsMap;

namespace {

/// The value of "Characteristics" for a service that bundles smaller tests.
constexpr unsigned kIsPackage = 6;

/// A property's text, read when it is first asked for: an empty list reads nothing.
class LazyText {
 public:
  LazyText(const InstanceHandle& instance, const char* name, const TOptionsMap& options)
      : m_instance(instance), m_name(name), m_options(options) {}

  const std::string& get() {
    if (!m_isRead) {
      m_text = propertyText(m_instance, m_name, m_options);
      m_isRead = true;
    }
    return m_text;
  }

 private:
  const InstanceHandle& m_instance;
  const char* const m_name;
  const TOptionsMap& m_options;
  std::string m_text;
  bool m_isRead = false;
};

/// The search runs in the entry, for the service's name: a service whose name is longer than the
/// entry is not meant by it. An empty name is found in every entry.
void searchExcludedTests(const InstanceHandle& service,
                         const std::vector<std::string>& excludedTests, const TOptionsMap& options,
                         bool& excluded) {
  LazyText name(service, "Name", options);
  LazyText className(service, "CreationClassName", options);
  for (const std::string& entry : excludedTests) {
    if (contains(entry, name.get())) {
      excluded = true;
    }
    if (!className.get().empty() && contains(entry, className.get())) {
      excluded = true;
    }
  }
}

bool isPackage(const InstanceHandle& service, const TOptionsMap& options) {
  const TCIMValue characteristics = valueOrNull(service, "Characteristics", options);
  if (characteristics.IsNull()) {
    return false;
  }
  const std::vector<TCIMValue> values = characteristics.ToArray();
  return std::any_of(values.begin(), values.end(),
                     [](const TCIMValue& value) { return value.ToUint16() == kIsPackage; });
}

}  // namespace

bool isServiceExcluded(const InstanceHandle& service, const std::vector<std::string>& excludedTests,
                       const TOptionsMap& options) {
  bool excluded = false;
  try {
    searchExcludedTests(service, excludedTests, options, excluded);
    if (isPackage(service, options)) {
      excluded = true;
    }
  } catch (const NZELVOR20::TVORException&) {
    logError("DiagsRunner::GetCIMData, get vor exception when retType == EENUMTEST ");
  } catch (...) {
    logError("DiagsRunner::GetCIMData, get exception when retType == EENUMTEST");
  }
  return excluded;
}

}  // namespace diagsrunner
