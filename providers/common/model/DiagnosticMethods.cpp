#include <algorithm>
#include <array>
#include <stdexcept>

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

/// Why a run is not made, in the words of the log and as the number that the caller gets.
class Refusal : public std::runtime_error {
 public:
  Refusal(std::uint32_t returnValue, const std::string& reason)
      : std::runtime_error(reason), m_returnValue(returnValue) {}
  std::uint32_t returnValue() const noexcept { return m_returnValue; }

 private:
  std::uint32_t m_returnValue;
};

/// A run ends in good order when it can, whatever time somebody has for it; killed it is at once.
StateChange requestState(JobRegistry& registry, const Job& job, const Properties& in) {
  constexpr std::uint64_t kTerminate = 4;
  const auto state = asNumber(in.get("RequestedState"));
  const Value& timeout = in.get("TimeoutPeriod");
  const auto* length = std::get_if<DateTime>(&timeout);
  const bool isLength = isNull(timeout) || (length && length->interval);
  if (!state || !isLength) return StateChange::InvalidParameter;
  if (*state == kTerminate && length && length->microseconds != 0) return StateChange::NoTimeouts;
  return registry.requestState(job.id, *state);
}

/// Without an element there is no doubt as long as there is only one.
Device onlyDevice(std::vector<Device> devices) {
  if (devices.empty()) throw Refusal(kInvalidParameter, "there is nothing here that it can test");
  if (devices.size() == 1) return std::move(devices.front());
  throw Refusal(kInvalidParameter, "no element is named, and it is for " +
                                       std::to_string(devices.size()) + " of them");
}

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
  if (sameName(path.className, names.test)) {
    const Service* service = m_family.find(asText(path.keys.get("Name")).value_or(std::string()));
    if (service) return invokeOnTest(*service, method, in, services);
  }
  throw ProviderError(kErrorMethodNotFound, path.className + " has no method " + method);
}

MethodResult DiagnosticProvider::invokeOnTest(const Service& service, const std::string& method,
                                              const Properties& in, CallServices& services) {
  constexpr std::uint32_t kNotSupported = 1;
  static const std::array<const char*, 2> kRun{"RunDiagnostic", "RunDiagnosticService"};
  static const std::array<const char*, 2> kNotAvailable{"StartService", "StopService"};
  if (isOneOf(method, kRun)) return run(service, in, services);
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
    return answer(static_cast<std::uint32_t>(requestState(m_registry, job, in)));
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

Device DiagnosticProvider::chooseDevice(const Service& service, const Properties& in) const {
  std::vector<Device> devices = service.diagnostic().devices();
  const Value& element = in.get("ManagedElement");
  if (isNull(element)) return onlyDevice(std::move(devices));
  if (const auto* path = std::get_if<PathPtr>(&element)) {
    for (const Device& device : devices)
      if (m_model.device(device).path() == **path) return device;
  }
  throw Refusal(kInvalidParameter, "it is not for that element");
}

DiagnosticProvider::RunOrder DiagnosticProvider::readOrder(const Service& service,
                                                           const Properties& in) const {
  const DiagnosticDescription& description = service.description();
  RunOrder order;
  order.diagnostic = &service.diagnostic();
  order.device = chooseDevice(service, in);
  order.request.name = description.elementName + " on " + order.device.name;
  order.request.serviceName = description.name;
  order.request.deviceId = order.device.id;
  order.request.elementName = order.device.name;
  order.request.exclusive = description.exclusive;
  try {
    const Properties given =
        service.defaults().with(eitherOf(in, "DiagnosticSettings", "DiagSetting"));
    order.settings = readRunSettings(given);
    readRetention(given, eitherOf(in, "JobSettings", "JobSetting"), order.request);
  } catch (const BadSetting& error) {
    throw Refusal(kInvalidParameter, error.what());
  }
  const std::string reason = order.diagnostic->refuse(order.settings);
  if (!reason.empty()) throw Refusal(kInvalidParameter, reason);
  return order;
}

/// The number says little, and whoever asked may not look at it: the reason goes to the log.
MethodResult DiagnosticProvider::run(const Service& service, const Properties& in,
                                     CallServices& services) {
  try {
    const std::string id = start(readOrder(service, in), services);
    MethodResult result;
    result.out.set("Job", std::make_shared<const ObjectPath>(m_model.jobPath(id)));
    return result;
  } catch (const Refusal& refusal) {
    services.remark(service.description().name + " is refused: " + refusal.what());
    return answer(refusal.returnValue());
  }
}

std::string DiagnosticProvider::start(const RunOrder& order, CallServices& services) {
  std::string rival;
  const auto id = m_registry.open(order.request, &rival);
  if (!id) throw Refusal(kBusy, rival + " is under way");
  m_registry.launch(*id);
  if (launch(*id, order, services)) return *id;
  m_registry.discard(*id);
  throw Refusal(kFailed, "there is no thread for it");
}

/// Trouble in starting a thread is no thread.
bool DiagnosticProvider::launch(const std::string& jobId, const RunOrder& order,
                                CallServices& services) noexcept {
  try {
    return services.launch([this, jobId, order] { work(jobId, order); });
  } catch (...) {
    return false;
  }
}

void DiagnosticProvider::work(const std::string& jobId, const RunOrder& order) {
  try {
    m_registry.start(jobId);
    JobControl control(m_registry, jobId);
    const auto clock = [this] { return m_registry.now(); };
    m_registry.finish(jobId,
                      runLoops(*order.diagnostic, order.device, order.settings, control, clock));
  } catch (const std::exception& error) {
    m_registry.fail(jobId, error.what());
  } catch (...) {
    m_registry.fail(jobId, "an exception of no standard type");
  }
}

}  // namespace providers
