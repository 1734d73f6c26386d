#include "providers/common/model/DiagnosticModel.h"
#include "providers/common/runs/Settings.h"

namespace providers {

namespace {

Instance tie(const std::string& className, const std::string& role1, const ObjectPath& end1,
             const std::string& role2, const ObjectPath& end2) {
  Instance instance{className, {}};
  instance.properties.setKey(role1, std::make_shared<const ObjectPath>(end1));
  instance.properties.setKey(role2, std::make_shared<const ObjectPath>(end2));
  return instance;
}

}  // namespace

std::vector<Instance> DiagnosticModel::available() const {
  std::vector<Instance> result;
  for (const Service& service : m_family.services()) addAvailable(service, result);
  return result;
}

void DiagnosticModel::addAvailable(const Service& service, std::vector<Instance>& result) const {
  constexpr std::uint16_t kUnknown = 0, kSeconds = 3;
  const Diagnostic& diagnostic = service.diagnostic();
  const std::uint32_t estimate =
      estimateSeconds(diagnostic, readRunSettings(service.defaults().get()));
  for (const Device& device : diagnostic.devices()) {
    Instance instance =
        tie(m_names.available, "ServiceProvided", testPath(service.description().name),
            "UserOfService", devicePath(device.id));
    instance.properties.set("EstimatedDurationOfService", estimate ? kSeconds : kUnknown);
    if (estimate) instance.properties.set("EstimatedDurationQualifier", estimate);
    instance.properties.set("IsExclusiveForME", true);
    result.push_back(std::move(instance));
  }
}

std::vector<Instance> DiagnosticModel::recordAppliesToElement() const {
  std::vector<Instance> result;
  for (const Record& record : m_registry.records()) {
    result.push_back(tie(m_names.recordAppliesToElement, "Antecedent", this->record(record).path(),
                         "Dependent", devicePath(record.deviceId)));
  }
  return result;
}

std::vector<Instance> DiagnosticModel::owningJobElement() const {
  std::vector<Instance> result;
  for (const Job& job : m_registry.jobs()) {
    result.push_back(tie(m_names.owningJobElement, "OwningElement",
                         testPath(job.request.serviceName), "OwnedElement", jobPath(job.id)));
  }
  return result;
}

std::vector<Instance> DiagnosticModel::affectedJobElement() const {
  constexpr std::uint16_t kExclusiveUse = 2, kPerformanceImpact = 3;
  std::vector<Instance> result;
  for (const Job& job : m_registry.jobs()) {
    Instance instance = tie(m_names.affectedJobElement, "AffectedElement",
                            devicePath(job.request.deviceId), "AffectingElement", jobPath(job.id));
    std::vector<std::uint16_t> effects{kPerformanceImpact};
    if (job.request.exclusive != Exclusive::Itself) effects.push_back(kExclusiveUse);
    instance.properties.set("ElementEffects", effects);
    result.push_back(std::move(instance));
  }
  return result;
}

std::vector<Instance> DiagnosticModel::elementCapabilities() const {
  return ofEach([this](const Service& service) {
    return tie(m_names.elementCapabilities, "ManagedElement", testPath(service.description().name),
               "Capabilities", capabilitiesPath(service));
  });
}

std::vector<Instance> DiagnosticModel::elementSettingData() const {
  return ofEach([this](const Service& service) {
    constexpr std::uint16_t kIsDefault = 1;
    Instance instance =
        tie(m_names.elementSettingData, "ManagedElement", testPath(service.description().name),
            "SettingData", settingsPath(service));
    instance.properties.set("IsDefault", kIsDefault);
    return instance;
  });
}

std::vector<Instance> DiagnosticModel::hostedService() const {
  const ObjectPath system = systems().front().path();
  return ofEach([this, &system](const Service& service) {
    return tie(m_names.hostedService, "Antecedent", system, "Dependent",
               testPath(service.description().name));
  });
}

std::vector<Instance> DiagnosticModel::systemDevice() const {
  std::vector<Instance> result;
  for (const Device& device : m_family.devices()) {
    result.push_back(tie(m_names.systemDevice, "GroupComponent", systems().front().path(),
                         "PartComponent", devicePath(device.id)));
  }
  return result;
}

}  // namespace providers
