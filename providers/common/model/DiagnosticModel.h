#pragma once

#include <functional>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/common/runs/DefaultSettings.h"
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

/// What a client of the CIM model sees of a diagnostic: its instances, class by class. Safe to use
/// from any thread.
class DiagnosticModel {
 public:
  /// The diagnostic and the registry outlive the model. `systemName` is the computer's name.
  DiagnosticModel(const Diagnostic& diagnostic, JobRegistry& registry, std::string systemName);

  const ClassNames& names() const noexcept { return m_names; }
  DefaultSettings& defaults() noexcept { return m_defaults; }

  /// Every class that has instances here.
  std::vector<std::string> classNames() const;
  /// The association classes among them.
  std::vector<std::string> associationNames() const;

  /// The instances of exactly this class; none for a class that is not one of these.
  std::vector<Instance> instances(const std::string& className) const;
  /// The instance with this path, or an empty handle.
  InstancePtr find(const ObjectPath& path) const;

  Instance test() const;
  Instance device(const Device& device) const;
  Instance job(const Job& job) const;
  ObjectPath jobPath(const std::string& id) const;

 private:
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

  std::vector<Instance> recordsOfKind(bool completion) const;
  Instance record(const Record& record) const;
  ObjectPath devicePath(const std::string& deviceId) const;
  void addSystemKeys(Properties& properties, const std::string& className) const;
  bool inTest(const std::string& deviceId) const;

  const Diagnostic& m_diagnostic;
  JobRegistry& m_registry;
  const std::string m_systemName;
  const ClassNames m_names;
  DefaultSettings m_defaults;
  const std::vector<Table> m_tables;
};

}  // namespace providers
