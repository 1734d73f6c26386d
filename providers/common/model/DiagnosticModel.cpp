#include "providers/common/model/DiagnosticModel.h"

#include <algorithm>

namespace providers {

namespace {

using Uint16s = std::vector<std::uint16_t>;

constexpr std::uint16_t kOperationalOk = 2;
constexpr std::uint16_t kOperationalError = 6;
constexpr std::uint16_t kOperationalStopped = 10;
constexpr std::uint16_t kOperationalDormant = 15;
constexpr std::uint16_t kOperationalCompleted = 17;
constexpr std::uint16_t kHealthOk = 5;
constexpr std::uint16_t kEnabled = 2;
constexpr std::uint16_t kInTest = 7;
constexpr std::uint16_t kUtc = 2;

Value pointInTime(std::int64_t microseconds) {
  if (microseconds == 0) return {};
  return DateTime{microseconds, false};
}
Value interval(std::int64_t microseconds) { return DateTime{microseconds, true}; }

Uint16s operationalStatus(const Job& job) {
  switch (job.state) {
    case JobState::New:
      return {kOperationalDormant};
    case JobState::Completed:
      return {kOperationalCompleted, job.errorText.empty() ? kOperationalOk : kOperationalError};
    case JobState::Terminated:
    case JobState::Killed:
      return {kOperationalStopped};
    case JobState::Exception:
      return {kOperationalCompleted, kOperationalError};
    default:
      return {kOperationalOk};
  }
}

std::uint16_t severity(const Record& record) {
  constexpr std::uint16_t kInformation = 2, kDegraded = 3, kMajor = 5;
  if (record.type == RecordType::DeviceErrors) return kMajor;
  if (record.type == RecordType::ServiceErrors || record.type == RecordType::Warnings)
    return kDegraded;
  switch (record.outcome.state) {
    case CompletionState::Failed:
      return kMajor;
    case CompletionState::Ok:
      return kInformation;
    default:
      return kDegraded;
  }
}

void addErrors(Properties& properties, const std::vector<ErrorTally>& errors) {
  if (errors.empty()) return;
  std::vector<std::string> codes;
  std::vector<std::uint32_t> counts;
  for (const ErrorTally& error : errors) {
    codes.push_back(error.code);
    counts.push_back(error.count);
  }
  properties.set("ErrorCode", codes);
  properties.set("ErrorCount", counts);
}

/// What a technician needs; nothing of what is not known.
void addRepair(Properties& properties, const Outcome& outcome) {
  const auto add = [&properties](const char* name, const std::string& text) {
    if (!text.empty()) properties.set(name, text);
  };
  add("CorrectiveAction", outcome.correctiveAction);
  add("FaultyPart", outcome.part.name);
  add("FaultyPartLocation", outcome.part.location);
  add("FaultyPartSerialNumber", outcome.part.serialNumber);
}

}  // namespace

ClassNames::ClassNames(const std::string& family)
    : device(family),
      test(family + "Test"),
      available(test + "ForElement"),
      settings(test + "Settings"),
      capabilities(test + "Capabilities"),
      job(test + "Job"),
      completionRecord(family + "DiagnosticCompletionRecord"),
      serviceRecord(test + "Record"),
      recordAppliesToElement(test + "RecordAppliesToElement"),
      owningJobElement(test + "OwningJobElement"),
      affectedJobElement(test + "AffectedJobElement"),
      elementCapabilities(test + "ElementCapabilities"),
      elementSettingData(test + "ElementSettingData"),
      hostedService(test + "HostedService"),
      systemDevice(family + "SystemDevice") {}

DiagnosticModel::DiagnosticModel(const DiagnosticFamily& family, JobRegistry& registry,
                                 std::string systemName)
    : m_family(family),
      m_registry(registry),
      m_systemName(std::move(systemName)),
      m_names(family.name()),
      m_tables{
          {m_names.system, &DiagnosticModel::systems, false},
          {m_names.device, &DiagnosticModel::devices, false},
          {m_names.test, &DiagnosticModel::tests, false},
          {m_names.settings, &DiagnosticModel::settings, false},
          {m_names.capabilities, &DiagnosticModel::capabilities, false},
          {m_names.job, &DiagnosticModel::jobs, false},
          {m_names.completionRecord, &DiagnosticModel::completionRecords, false},
          {m_names.serviceRecord, &DiagnosticModel::serviceRecords, false},
          {m_names.available, &DiagnosticModel::available, true},
          {m_names.recordAppliesToElement, &DiagnosticModel::recordAppliesToElement, true},
          {m_names.owningJobElement, &DiagnosticModel::owningJobElement, true},
          {m_names.affectedJobElement, &DiagnosticModel::affectedJobElement, true},
          {m_names.elementCapabilities, &DiagnosticModel::elementCapabilities, true},
          {m_names.elementSettingData, &DiagnosticModel::elementSettingData, true},
          {m_names.hostedService, &DiagnosticModel::hostedService, true},
          {m_names.systemDevice, &DiagnosticModel::systemDevice, true},
      } {}

std::vector<std::string> DiagnosticModel::classNames() const {
  std::vector<std::string> names;
  for (const Table& table : m_tables) names.push_back(table.className);
  for (const Service& service : m_family.services()) {
    const std::string& name = settingsClass(service);
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
  }
  return names;
}

std::vector<std::string> DiagnosticModel::associationNames() const {
  std::vector<std::string> names;
  for (const Table& table : m_tables)
    if (table.association) names.push_back(table.className);
  return names;
}

std::vector<Instance> DiagnosticModel::instances(const std::string& className) const {
  for (const Table& table : m_tables)
    if (sameName(table.className, className)) return (this->*table.make)();
  return settingsOf(className);
}

/// Asks no more services for their devices than it has to: each may have to look at the machine.
InstancePtr DiagnosticModel::findDevice(const ObjectPath& path) const {
  for (const Service& service : m_family.services())
    for (const Device& device : service.diagnostic().devices())
      if (devicePath(device.id) == path)
        return std::make_shared<const Instance>(this->device(device));
  return {};
}

/// Makes no more instances than one: a listing asks for each of them.
InstancePtr DiagnosticModel::findTest(const ObjectPath& path) const {
  for (const Service& service : m_family.services())
    if (testPath(service.description().name) == path)
      return std::make_shared<const Instance>(test(service));
  return {};
}

InstancePtr DiagnosticModel::find(const ObjectPath& path) const {
  if (sameName(path.className, m_names.device)) return findDevice(path);
  if (sameName(path.className, m_names.test)) return findTest(path);
  for (Instance& instance : instances(path.className))
    if (instance.path() == path) return std::make_shared<const Instance>(std::move(instance));
  return {};
}

void DiagnosticModel::addSystemKeys(Properties& properties, const std::string& className) const {
  properties.setKey("SystemCreationClassName", m_names.system);
  properties.setKey("SystemName", m_systemName);
  properties.setKey("CreationClassName", className);
}

std::vector<Instance> DiagnosticModel::systems() const {
  Instance system{m_names.system, {}};
  system.properties.setKey("CreationClassName", m_names.system);
  system.properties.setKey("Name", m_systemName);
  system.properties.set("ElementName", m_systemName);
  system.properties.set("NameFormat", std::string("Other"));
  system.properties.set("OperationalStatus", Uint16s{kOperationalOk});
  system.properties.set("EnabledState", kEnabled);
  return {system};
}

bool DiagnosticModel::anyRunning(const std::function<bool(const JobRequest&)>& which) const {
  const std::vector<Job> all = m_registry.jobs();
  return std::any_of(all.begin(), all.end(), [&which](const Job& job) {
    return !isFinal(job.state) && which(job.request);
  });
}

Instance DiagnosticModel::device(const Device& device) const {
  Instance instance{m_names.device, {}};
  Properties& properties = instance.properties;
  addSystemKeys(properties, m_names.device);
  properties.setKey("DeviceID", device.id);
  properties.set("ElementName", device.name);
  properties.set("OperationalStatus", Uint16s{kOperationalOk});
  properties.set("HealthState", kHealthOk);
  const bool inTest =
      anyRunning([&device](const JobRequest& run) { return run.deviceId == device.id; });
  properties.set("EnabledState", inTest ? kInTest : kEnabled);
  properties.merge(device.properties);
  return instance;
}

ObjectPath DiagnosticModel::devicePath(const std::string& deviceId) const {
  Instance instance{m_names.device, {}};
  addSystemKeys(instance.properties, m_names.device);
  instance.properties.setKey("DeviceID", deviceId);
  return instance.path();
}

std::vector<Instance> DiagnosticModel::ofEach(const ServiceMaker& make) const {
  std::vector<Instance> result;
  for (const Service& service : m_family.services()) result.push_back(make(service));
  return result;
}

std::vector<Instance> DiagnosticModel::devices() const {
  std::vector<Instance> result;
  for (const Device& device : m_family.devices()) result.push_back(this->device(device));
  return result;
}

ObjectPath DiagnosticModel::testPath(const std::string& serviceName) const {
  ObjectPath path{m_names.test, {}};
  addSystemKeys(path.keys, m_names.test);
  path.keys.setKey("Name", serviceName);
  return path;
}

Instance DiagnosticModel::test(const Service& service) const {
  const DiagnosticDescription& description = service.description();
  Instance instance{m_names.test, {}};
  Properties& properties = instance.properties;
  addSystemKeys(properties, m_names.test);
  properties.setKey("Name", description.name);
  properties.set("ElementName", description.elementName);
  properties.set("Caption", description.elementName);
  properties.set("Description", description.text);
  properties.set("Started", anyRunning([&description](const JobRequest& run) {
                   return run.serviceName == description.name;
                 }));
  properties.set("EnabledState", kEnabled);
  properties.set("OperationalStatus", Uint16s{kOperationalOk});
  properties.merge(description.testProperties);
  return instance;
}

const std::string& DiagnosticModel::settingsClass(const Service& service) const {
  const std::string& own = service.description().settingsClass;
  return own.empty() ? m_names.settings : own;
}

bool DiagnosticModel::isSettingsClass(const std::string& className) const {
  const auto& services = m_family.services();
  return std::any_of(services.begin(), services.end(), [&](const Service& service) {
    return sameName(settingsClass(service), className);
  });
}

ObjectPath DiagnosticModel::settingsPath(const Service& service) const {
  ObjectPath path{settingsClass(service), {}};
  path.keys.setKey("InstanceID",
                   "DIAGS:" + m_names.settings + ":" + service.description().name + ":default");
  return path;
}

Instance DiagnosticModel::settings(const Service& service) const {
  Instance instance{settingsClass(service), settingsPath(service).keys};
  instance.properties.set("ElementName", "Defaults of the " + service.description().elementName);
  instance.properties.merge(service.defaults().get());
  return instance;
}

ObjectPath DiagnosticModel::capabilitiesPath(const Service& service) const {
  ObjectPath path{m_names.capabilities, {}};
  path.keys.setKey("InstanceID",
                   "DIAGS:" + m_names.capabilities + ":" + service.description().name);
  return path;
}

Instance DiagnosticModel::capabilities(const Service& service) const {
  const DiagnosticDescription& description = service.description();
  Instance instance{m_names.capabilities, capabilitiesPath(service).keys};
  instance.properties.set("ElementName", "Capabilities of the " + description.elementName);
  instance.properties.merge(description.capabilities);
  return instance;
}

std::vector<Instance> DiagnosticModel::tests() const {
  return ofEach([this](const Service& service) { return test(service); });
}

std::vector<Instance> DiagnosticModel::settings() const { return settingsOf(m_names.settings); }

std::vector<Instance> DiagnosticModel::settingsOf(const std::string& className) const {
  std::vector<Instance> result;
  for (const Service& service : m_family.services())
    if (sameName(settingsClass(service), className)) result.push_back(settings(service));
  return result;
}

std::vector<Instance> DiagnosticModel::capabilities() const {
  return ofEach([this](const Service& service) { return capabilities(service); });
}

Instance DiagnosticModel::job(const Job& job) const {
  Instance instance{m_names.job, {}};
  Properties& properties = instance.properties;
  properties.setKey("InstanceID", job.id);
  properties.set("Name", job.request.name);
  properties.set("ElementName", job.request.name);
  properties.set("JobState", static_cast<std::uint16_t>(job.state));
  properties.set("PercentComplete", job.percent);
  properties.set("JobStatus", job.statusText);
  properties.set("OperationalStatus", operationalStatus(job));
  properties.set("TimeSubmitted", pointInTime(job.submitted));
  properties.set("StartTime", pointInTime(job.started));
  properties.set("TimeOfLastStateChange", pointInTime(job.changed));
  properties.set("ElapsedTime", interval(job.elapsed(m_registry.now())));
  properties.set("TimeBeforeRemoval", interval(job.request.keepJob));
  properties.set("DeleteOnCompletion", job.request.deleteOnCompletion);
  properties.set("LocalOrUtcTime", kUtc);
  properties.set("JobRunTimes", std::uint32_t{1});
  if (isFinal(job.state))
    properties.set("ErrorCode", static_cast<std::uint16_t>(job.errorText.empty() ? 0 : 1));
  if (!job.errorText.empty()) properties.set("ErrorDescription", job.errorText);
  return instance;
}

ObjectPath DiagnosticModel::jobPath(const std::string& id) const {
  ObjectPath path{m_names.job, {}};
  path.keys.setKey("InstanceID", id);
  return path;
}

std::vector<Instance> DiagnosticModel::jobs() const {
  std::vector<Instance> result;
  for (const Job& job : m_registry.jobs()) result.push_back(this->job(job));
  return result;
}

Instance DiagnosticModel::record(const Record& record) const {
  const Outcome& outcome = record.outcome;
  Instance instance{record.completion ? m_names.completionRecord : m_names.serviceRecord, {}};
  Properties& properties = instance.properties;
  properties.setKey("InstanceID", record.id);
  properties.set("ElementName", record.serviceName + " on " + record.elementName);
  properties.set("ServiceName", record.serviceName);
  properties.set("ManagedElementName", record.elementName);
  properties.set("CreationTimeStamp", pointInTime(record.created));
  if (record.expires) properties.set("ExpirationDate", pointInTime(*record.expires));
  properties.set("RecordType", static_cast<std::uint16_t>(record.type));
  properties.set("RecordFormat", record.format);
  properties.set("RecordData", outcome.text);
  properties.set("PerceivedSeverity", severity(record));
  addErrors(properties, outcome.errors);
  addRepair(properties, outcome);
  if (record.completion) {
    if (!outcome.summary.empty()) properties.set("Caption", outcome.summary);
    properties.set("CompletionState", static_cast<std::uint16_t>(outcome.state));
    properties.set("LoopsPassed", outcome.loopsPassed);
    properties.set("LoopsFailed", outcome.loopsFailed);
  }
  return instance;
}

std::vector<Instance> DiagnosticModel::recordsOfKind(bool completion) const {
  std::vector<Instance> result;
  for (const Record& record : m_registry.records())
    if (record.completion == completion) result.push_back(this->record(record));
  return result;
}

std::vector<Instance> DiagnosticModel::completionRecords() const { return recordsOfKind(true); }
std::vector<Instance> DiagnosticModel::serviceRecords() const { return recordsOfKind(false); }

}  // namespace providers
