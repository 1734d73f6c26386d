#include "engine/worker/model/TestFacts.h"

#include <map>
#include <unordered_map>
#include <utility>

#include "engine/worker/model/CimText.h"
#include "engine/worker/model/TestSettings.h"
#include "framework/ICIMClass.h"
#include "framework/TVORException.h"

namespace engine::worker {
namespace {

using NZELVOR20::TCIMValue;

/// What is the same on every device.
struct ServiceFacts {
  std::string name;
  std::string className;
  bool isMemoryTest = false;
  Characteristics characteristics;
  std::vector<SettingDeclaration> settings;
};

Characteristics characteristicsOf(const InstancePtr& service) {
  Characteristics found;
  const TCIMValue values = valueOf(service, "Characteristics");
  if (values.IsNull() || !values.IsArray() || !isUnsigned(values.GetType())) return found;
  for (const TCIMValue& value : values.GetElements()) {
    if (value.IsNull()) continue;
    const std::uint64_t number = value.ToUint64();
    if (number == 2) found.isExclusive = true;
    if (number == 3) found.isInteractive = true;
    if (number == 4) found.isDestructive = true;
    if (number == 5) found.isRisky = true;
  }
  return found;
}

/// EstimatedDurationOfService is the unit, EstimatedDurationQualifier how many of them.
double estimateOf(const InstancePtr& association) {
  const auto number = static_cast<double>(numberOf(association, "EstimatedDurationQualifier", 0));
  switch (numberOf(association, "EstimatedDurationOfService", 0)) {
    case 2:
      return number / 1000;
    case 3:
      return number;
    case 4:
      return number * 60;
    case 5:
      return number * 3600;
    case 6:
      return number * 86400;
    default:
      return 0;
  }
}

/// Walks from each link of a service and an element to what is known of them.
class Facts {
 public:
  Facts(const Objects& objects, std::vector<OfferedTest>& tests) : m_objects(objects) {
    for (OfferedTest& test : tests) m_wanted.emplace(test.identifier, &test);
  }

  void add(const InstancePtr& link) {
    const InstancePtr service = endOf(m_objects, link, "ServiceProvided");
    const InstancePtr element = endOf(m_objects, link, "UserOfService");
    const std::string name = textOf(service, "Name");
    const std::string device = textOf(element, "DeviceID");
    const std::string elementName = textOf(element, "ElementName");
    const auto wanted = m_wanted.find(name + "," + device + "," + elementName);
    if (wanted == m_wanted.end()) return;
    OfferedTest& test = *wanted->second;
    const ServiceFacts& facts = factsOf(service);
    test.service = name;
    test.device = device;
    test.element = elementName;
    test.serviceClass = facts.className;
    test.isMemoryTest = facts.isMemoryTest;
    test.estimate = estimateOf(link);
    test.characteristics = facts.characteristics;
    test.settings = facts.settings;
  }

 private:
  const ServiceFacts& factsOf(const InstancePtr& service) {
    const std::string path = service->GetObjectPath({}).GetPath();
    const auto known = m_services.find(path);
    if (known != m_services.end()) return known->second;
    ServiceFacts facts;
    const auto theClass = service->GetClass({});
    facts.className = theClass ? theClass->GetName() : std::string();
    facts.isMemoryTest = isBelow(theClass, "CIM_MemoryDiagnosticTest");
    facts.characteristics = characteristicsOf(service);
    if (const InstancePtr settings = defaultSettingsOf(m_objects, service))
      facts.settings = declarationsOf(settings);
    return m_services.emplace(path, std::move(facts)).first->second;
  }

  const Objects& m_objects;
  std::unordered_map<std::string, OfferedTest*> m_wanted;
  std::map<std::string, ServiceFacts> m_services;
};

}  // namespace

std::vector<std::string> addFacts(const Objects& objects, std::vector<OfferedTest>& tests) {
  std::vector<std::string> problems;
  Facts facts(objects, tests);
  try {
    forEach(objects, "CIM_AvailableDiagnosticService", [&](const InstancePtr& link) {
      try {
        facts.add(link);
      } catch (const std::exception& error) {
        problems.emplace_back(error.what());
      }
    });
  } catch (const NZELVOR20::TVORException& error) {
    problems.emplace_back(error.what());
  }
  return problems;
}

}  // namespace engine::worker
