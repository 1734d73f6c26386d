#pragma once

#include <functional>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/common/runs/DiagnosticFamily.h"
#include "providers/common/runs/JobRegistry.h"

namespace providers {

/// The classes of a family, whose names all start with the class of its devices.
struct ClassNames {
  explicit ClassNames(const std::string& family);

  std::string system = "DIAGS_ComputerSystem";
  std::string device, test, available, settings, capabilities, job, completionRecord, serviceRecord,
      recordAppliesToElement, owningJobElement, affectedJobElement, elementCapabilities,
      elementSettingData, hostedService, systemDevice;
};

/// What a client of the CIM model sees of a family of diagnostics: its instances, class by class.
/// Safe to use from any thread.
class DiagnosticModel {
 public:
  /// The family and the registry outlive the model. `systemName` is the computer's name.
  DiagnosticModel(const DiagnosticFamily& family, JobRegistry& registry, std::string systemName);

  const ClassNames& names() const noexcept { return m_names; }

  /// Every class that has instances here.
  std::vector<std::string> classNames() const;
  /// The association classes among them.
  std::vector<std::string> associationNames() const;

  /// The instances of exactly this class; none for a class that is not one of these.
  std::vector<Instance> instances(const std::string& className) const;
  /// The instance with this path, or an empty handle.
  InstancePtr find(const ObjectPath& path) const;

  Instance test(const Service& service) const;
  Instance settings(const Service& service) const;
  /// Whether the services of the family, or some of them, have settings of exactly this class.
  bool isSettingsClass(const std::string& className) const;
  Instance capabilities(const Service& service) const;
  Instance device(const Device& device) const;
  Instance job(const Job& job) const;
  ObjectPath jobPath(const std::string& id) const;

 private:
  using ServiceMaker = std::function<Instance(const Service&)>;
  using Maker = std::vector<Instance> (DiagnosticModel::*)() const;
  struct Table {
    std::string className;
    Maker make;
    bool association;
  };

  std::vector<Instance> systems() const;
  std::vector<Instance> devices() const;
  std::vector<Instance> tests() const;
  std::vector<Instance> settings() const;
  const std::string& settingsClass(const Service& service) const;
  std::vector<Instance> settingsOf(const std::string& className) const;
  std::vector<Instance> capabilities() const;
  std::vector<Instance> jobs() const;
  std::vector<Instance> completionRecords() const;
  std::vector<Instance> serviceRecords() const;
  std::vector<Instance> available() const;
  std::vector<Instance> recordAppliesToElement() const;
  std::vector<Instance> owningJobElement() const;
  std::vector<Instance> affectedJobElement() const;
  std::vector<Instance> elementCapabilities() const;
  std::vector<Instance> elementSettingData() const;
  std::vector<Instance> hostedService() const;
  std::vector<Instance> systemDevice() const;

  InstancePtr findDevice(const ObjectPath& path) const;
  InstancePtr findTest(const ObjectPath& path) const;
  std::vector<Instance> ofEach(const ServiceMaker& make) const;
  std::vector<Instance> recordsOfKind(bool completion) const;
  Instance record(const Record& record) const;
  ObjectPath devicePath(const std::string& deviceId) const;
  ObjectPath testPath(const std::string& serviceName) const;
  ObjectPath settingsPath(const Service& service) const;
  ObjectPath capabilitiesPath(const Service& service) const;
  void addSystemKeys(Properties& properties, const std::string& className) const;
  void addAvailable(const Service& service, std::vector<Instance>& result) const;
  bool anyRunning(const std::function<bool(const JobRequest&)>& which) const;

  const DiagnosticFamily& m_family;
  JobRegistry& m_registry;
  const std::string m_systemName;
  const ClassNames m_names;
  const std::vector<Table> m_tables;
};

}  // namespace providers
