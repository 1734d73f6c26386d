#include <algorithm>
#include <array>

#include "providers/common/model/DiagnosticProvider.h"
#include "providers/common/runs/LoopRunner.h"
#include "providers/common/runs/Settings.h"

namespace providers {

namespace {

// The return values of RunDiagnostic and RunDiagnosticService.
constexpr std::uint32_t kSuccess = 0;
constexpr std::uint32_t kFailed = 4;
constexpr std::uint32_t kInvalidParameter = 5;
constexpr std::uint32_t kBusy = 6;

/// Passes on to the registry what a run has to tell about its job.
class JobControl : public RunControl {
 public:
  JobControl(JobRegistry& registry, std::string id) : m_registry(registry), m_id(std::move(id)) {}
  void progress(double fraction) override { m_registry.progress(m_id, fraction); }
  void status(const std::string& text) override { m_registry.status(m_id, text); }
  bool stopRequested() const override { return m_registry.stopRequested(m_id); }

 private:
  JobRegistry& m_registry;
  const std::string m_id;
};

Properties embedded(const Properties& in, const std::string& name) {
  const Value& value = in.get(name);
  if (isNull(value)) return {};
  const auto* instance = std::get_if<InstancePtr>(&value);
  if (!instance) throw BadSetting(name + " is no instance");
  return (*instance)->properties;
}

/// The two methods call the same parameters differently.
Properties eitherOf(const Properties& in, const std::string& name, const std::string& olderName) {
  Properties properties = embedded(in, olderName);
  properties.merge(embedded(in, name));
  return properties;
}

template <std::size_t n>
bool isOneOf(const std::string& name, const std::array<const char*, n>& names) {
  return std::any_of(names.begin(), names.end(),
                     [&name](const char* other) { return sameName(name, other); });
}

MethodResult answer(std::uint32_t returnValue) { return {returnValue, {}}; }

}  // namespace

MethodResult DiagnosticProvider::invoke(const ObjectPath& path, const std::string& method,
                                        const Properties& in, CallServices& services) {
  const ClassNames& names = m_model.names();
  if (sameName(path.className, names.job)) {
    const auto job = m_registry.job(asText(path.keys.get("InstanceID")).value_or(std::string()));
    if (!job) throw ProviderError(kErrorNotFound, "no such job");
    return invokeOnJob(*job, method, in);
  }
  get(path);
  if (sameName(path.className, names.test)) return invokeOnTest(method, in, services);
  throw ProviderError(kErrorMethodNotFound, path.className + " has no method " + method);
}

MethodResult DiagnosticProvider::invokeOnTest(const std::string& method, const Properties& in,
                                              CallServices& services) {
  constexpr std::uint32_t kNotSupported = 1;
  static const std::array<const char*, 2> kRun{"RunDiagnostic", "RunDiagnosticService"};
  static const std::array<const char*, 2> kNotAvailable{"StartService", "StopService"};
  if (isOneOf(method, kRun)) return run(in, services);
  if (sameName(method, "RequestStateChange")) return answer(kNotSupported);
  const bool known = isOneOf(method, kNotAvailable);
  throw ProviderError(known ? kErrorMethodNotAvailable : kErrorMethodNotFound,
                      "the test has no method " + method);
}

MethodResult DiagnosticProvider::invokeOnJob(const Job& job, const std::string& method,
                                             const Properties& in) {
  constexpr std::uint32_t kNotFound = 7;
  constexpr std::uint32_t kNotQueryPending = 6;
  static const std::array<const char*, 2> kResume{"ResumeWithAction", "ResumeWithInput"};
  if (sameName(method, "RequestStateChange")) {
    const auto state = asNumber(in.get("RequestedState"));
    if (!state) return answer(static_cast<std::uint32_t>(StateChange::InvalidParameter));
    return answer(static_cast<std::uint32_t>(m_registry.requestState(job.id, *state)));
  }
  if (sameName(method, "KillJob")) {
    const bool killed = m_registry.kill(job.id, asBoolean(in.get("DeleteOnKill")));
    return answer(killed ? kSuccess : kNotFound);
  }
  if (sameName(method, "GetError")) return errorsOf(job, false);
  if (sameName(method, "GetErrors")) return errorsOf(job, true);
  if (isOneOf(method, kResume)) return answer(kNotQueryPending);
  throw ProviderError(kErrorMethodNotFound, "a job has no method " + method);
}

MethodResult DiagnosticProvider::errorsOf(const Job& job, bool asArray) const {
  constexpr std::uint16_t kSoftwareError = 4, kMajor = 5;
  MethodResult result;
  if (job.errorText.empty()) return result;
  Instance error{"CIM_Error", {}};
  error.properties.set("ErrorType", kSoftwareError);
  error.properties.set("OwningEntity", std::string("DIAGS"));
  error.properties.set("MessageID", std::string("DIAGS1"));
  error.properties.set("Message", job.errorText);
  error.properties.set("PerceivedSeverity", kMajor);
  error.properties.set("CIMStatusCode", std::uint32_t{1});
  const auto instance = std::make_shared<const Instance>(std::move(error));
  if (asArray) {
    result.out.set("Errors", std::vector<InstancePtr>{instance});
  } else {
    result.out.set("Error", instance);
  }
  return result;
}

const Device* DiagnosticProvider::chooseDevice(const std::vector<Device>& devices,
                                               const Properties& in) const {
  const Value& element = in.get("ManagedElement");
  // Without an element there is no doubt as long as there is only one.
  if (isNull(element)) return devices.size() == 1 ? &devices.front() : nullptr;
  const auto* path = std::get_if<PathPtr>(&element);
  if (!path) return nullptr;
  for (const Device& device : devices)
    if (m_model.device(device).path() == **path) return &device;
  return nullptr;
}

JobRequest DiagnosticProvider::makeRequest(const Device& device) const {
  const DiagnosticDescription& description = m_diagnostic.description();
  JobRequest request;
  request.name = description.elementName + " on " + device.name;
  request.serviceName = description.name;
  request.deviceId = device.id;
  request.elementName = device.name;
  return request;
}

/// The number says little, and whoever asked may not look at it.
MethodResult DiagnosticProvider::refused(std::uint32_t returnValue, const std::string& reason,
                                         CallServices& services) const {
  services.remark(m_diagnostic.description().name + " is refused: " + reason);
  return answer(returnValue);
}

MethodResult DiagnosticProvider::run(const Properties& in, CallServices& services) {
  const std::vector<Device> devices = m_diagnostic.devices();
  const Device* device = chooseDevice(devices, in);
  if (!device) return refused(kInvalidParameter, "it is not for that element", services);
  JobRequest request = makeRequest(*device);
  RunSettings settings;
  try {
    const Properties given =
        m_model.defaults().with(eitherOf(in, "DiagnosticSettings", "DiagSetting"));
    settings = readRunSettings(given);
    readRetention(given, eitherOf(in, "JobSettings", "JobSetting"), request);
  } catch (const BadSetting& error) {
    return refused(kInvalidParameter, error.what(), services);
  }
  const std::string reason = m_diagnostic.refuse(settings);
  if (!reason.empty()) return refused(kInvalidParameter, reason, services);

  const auto id = m_registry.open(request);
  if (!id) return refused(kBusy, "another run is under way on " + device->name, services);
  m_registry.launch(*id);
  if (!launch(*id, *device, settings, services)) {
    m_registry.discard(*id);
    return refused(kFailed, "there is no thread for it", services);
  }
  MethodResult result;
  result.out.set("Job", std::make_shared<const ObjectPath>(m_model.jobPath(*id)));
  return result;
}

/// Trouble in starting a thread is no thread.
bool DiagnosticProvider::launch(const std::string& jobId, const Device& device,
                                const RunSettings& settings, CallServices& services) noexcept {
  try {
    return services.launch([this, jobId, device, settings] { work(jobId, device, settings); });
  } catch (...) {
    return false;
  }
}

void DiagnosticProvider::work(const std::string& jobId, const Device& device,
                              const RunSettings& settings) {
  try {
    m_registry.start(jobId);
    JobControl control(m_registry, jobId);
    const auto clock = [this] { return m_registry.now(); };
    m_registry.finish(jobId, runLoops(m_diagnostic, device, settings, control, clock));
  } catch (const std::exception& error) {
    m_registry.fail(jobId, error.what());
  } catch (...) {
    m_registry.fail(jobId, "an exception of no standard type");
  }
}

}  // namespace providers
