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
  constexpr std::uint16_t kUnknown = 0, kSeconds = 3;
  const std::uint32_t estimate = estimateSeconds(m_diagnostic, readRunSettings(m_defaults.get()));
  std::vector<Instance> result;
  for (const Device& device : m_diagnostic.devices()) {
    Instance instance = tie(m_names.available, "ServiceProvided", test().path(), "UserOfService",
                            devicePath(device.id));
    instance.properties.set("EstimatedDurationOfService", estimate ? kSeconds : kUnknown);
    if (estimate) instance.properties.set("EstimatedDurationQualifier", estimate);
    instance.properties.set("IsExclusiveForME", true);
    result.push_back(std::move(instance));
  }
  return result;
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
    result.push_back(tie(m_names.owningJobElement, "OwningElement", test().path(), "OwnedElement",
                         jobPath(job.id)));
  }
  return result;
}

std::vector<Instance> DiagnosticModel::affectedJobElement() const {
  constexpr std::uint16_t kPerformanceImpact = 3;
  std::vector<Instance> result;
  for (const Job& job : m_registry.jobs()) {
    Instance instance = tie(m_names.affectedJobElement, "AffectedElement",
                            devicePath(job.request.deviceId), "AffectingElement", jobPath(job.id));
    instance.properties.set("ElementEffects", std::vector<std::uint16_t>{kPerformanceImpact});
    result.push_back(std::move(instance));
  }
  return result;
}

std::vector<Instance> DiagnosticModel::elementCapabilities() const {
  return {tie(m_names.elementCapabilities, "ManagedElement", test().path(), "Capabilities",
              capabilities().front().path())};
}

std::vector<Instance> DiagnosticModel::elementSettingData() const {
  constexpr std::uint16_t kIsDefault = 1;
  Instance instance = tie(m_names.elementSettingData, "ManagedElement", test().path(),
                          "SettingData", settings().front().path());
  instance.properties.set("IsDefault", kIsDefault);
  return {instance};
}

std::vector<Instance> DiagnosticModel::hostedService() const {
  return {tie(m_names.hostedService, "Antecedent", systems().front().path(), "Dependent",
              test().path())};
}

std::vector<Instance> DiagnosticModel::systemDevice() const {
  std::vector<Instance> result;
  for (const Device& device : m_diagnostic.devices()) {
    result.push_back(tie(m_names.systemDevice, "GroupComponent", systems().front().path(),
                         "PartComponent", devicePath(device.id)));
  }
  return result;
}

}  // namespace providers
