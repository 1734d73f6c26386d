// A CMPI provider of one test, built twice: once as the provider that falls ill wherever it is told
// to, and once as one that is always sound.

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "cmpi/cmpidt.h"
#include "cmpi/cmpift.h"
#include "cmpi/cmpimacs.h"
#include "tests/engine/supervisor/Sickness.h"

namespace {

const CMPIBroker* broker = nullptr;
const char* const kNamespace = "root/cimv2";
const std::string kPrefix = DIAGS_PATIENT;
const std::string kDevice = kPrefix + "0";
const std::string kElement = "The " + kPrefix + " one";
const std::string kService = kPrefix + " Test";
constexpr CMPIUint16 kRunning = 4;
constexpr CMPIUint16 kCompleted = 7;
constexpr CMPIUint16 kTerminated = 8;
constexpr CMPIUint16 kOk = 2;
constexpr CMPIUint16 kFailed = 5;
constexpr CMPIUint16 kAborted = 6;

void strike(const char* phase) {
  if (kPrefix == "SICK") sickness::strike(phase);
}

std::atomic<unsigned> runs{0};  // only the last one has its job and its record
std::atomic<bool> isOver{false};
std::atomic<bool> isTerminated{false};

bool isAgain(const char* kind) {
  return kPrefix == "SICK" && runs == 2 && sickness::is("again", kind);
}

/// Whether its job goes on until it is told to end.
bool lingers() {
  return (kPrefix == "SICK" && sickness::is("polling", "linger")) || isAgain("linger") ||
         isAgain("lingerfail");
}

std::string jobId() { return kPrefix + ":job-" + std::to_string(runs); }

/// The library is opened.
[[maybe_unused]] const bool isOpened = (strike("opening"), true);

CMPIObjectPath* pathOf(const std::string& className, const char* key, const std::string& value) {
  CMPIObjectPath* const path =
      CMNewObjectPath(broker, kNamespace, (kPrefix + className).c_str(), nullptr);
  if (path != nullptr) CMAddKey(path, key, value.c_str(), CMPI_chars);
  return path;
}

CMPIObjectPath* devicePath() { return pathOf("_Device", "DeviceID", kDevice); }
CMPIObjectPath* servicePath() { return pathOf("_Service", "Name", kService); }
CMPIObjectPath* jobPath() { return pathOf("_Job", "InstanceID", jobId()); }

/// Null, here and where it is made use of: there may be no memory any more.
CMPIInstance* instanceAt(CMPIObjectPath* path, const char* key, const std::string& value) {
  CMPIInstance* const instance = path == nullptr ? nullptr : CMNewInstance(broker, path, nullptr);
  if (instance != nullptr) CMSetProperty(instance, key, value.c_str(), CMPI_chars);
  return instance;
}

void setText(CMPIInstance* instance, const char* name, const std::string& text) {
  if (instance != nullptr) CMSetProperty(instance, name, text.c_str(), CMPI_chars);
}

void setNumber(CMPIInstance* instance, const char* name, CMPIUint16 number) {
  if (instance != nullptr) CMSetProperty(instance, name, &number, CMPI_uint16);
}

CMPIInstance* makeDevice() {
  CMPIInstance* const device = instanceAt(devicePath(), "DeviceID", kDevice);
  setText(device, "ElementName", kElement);
  return device;
}

CMPIInstance* makeService() {
  CMPIInstance* const service = instanceAt(servicePath(), "Name", kService);
  setText(service, "CreationClassName", kPrefix + "_Service");
  return service;
}

/// Null where there is no memory for it, as somebody makes them without end.
CMPIInstance* makeAvailability() {
  CMPIObjectPath* service = servicePath();
  CMPIObjectPath* device = devicePath();
  CMPIObjectPath* const path =
      CMNewObjectPath(broker, kNamespace, (kPrefix + "_Availability").c_str(), nullptr);
  if (service == nullptr || device == nullptr || path == nullptr) return nullptr;
  CMAddKey(path, "ServiceProvided", &service, CMPI_ref);
  CMAddKey(path, "UserOfService", &device, CMPI_ref);
  CMPIInstance* const instance = CMNewInstance(broker, path, nullptr);
  if (instance == nullptr) return nullptr;
  CMSetProperty(instance, "ServiceProvided", &service, CMPI_ref);
  CMSetProperty(instance, "UserOfService", &device, CMPI_ref);
  return instance;
}

CMPIInstance* makeJob() {
  CMPIInstance* const job = instanceAt(jobPath(), "InstanceID", jobId());
  setNumber(job, "JobState", isTerminated ? kTerminated : isOver ? kCompleted : kRunning);
  setNumber(job, "PercentComplete", isTerminated || isOver ? 100 : 10);
  return job;
}

CMPIUint16 completionState() {
  if (isAgain("fail") || (isTerminated && isAgain("lingerfail"))) return kFailed;
  return isTerminated ? kAborted : kOk;
}

CMPIInstance* makeRecord() {
  const std::string id = jobId() + ":0";
  CMPIInstance* const record = instanceAt(pathOf("_Record", "InstanceID", id), "InstanceID", id);
  setText(record, "ServiceName", kService);
  setText(record, "ManagedElementName", kElement);
  setText(record, "RecordData", runs == 1 ? "It was well" : "It was once more");
  setNumber(record, "CompletionState", completionState());
  return record;
}

std::string classNameOf(const CMPIObjectPath* path) {
  return std::string(CMGetCharPtr(CMGetClassName(path, nullptr))).substr(kPrefix.size());
}

/// One that is struck on a thread of its own has its time before its job is looked at.
void awaitOwnThread() {
  for (int i = 0; i < 100 && runs > 0 && !isOver && !lingers(); ++i) {
    sickness::sleepMilliseconds(10);
  }
}

std::vector<CMPIInstance*> instancesOf(const std::string& className) {
  if (className == "_Device") return {makeDevice()};
  if (className == "_Service") return {makeService()};
  if (className == "_Availability") {
    strike("listing");
    return {makeAvailability()};
  }
  if (runs == 0) return {};
  if (className == "_Job") return {makeJob()};
  if (className != "_Record") return {};
  strike("reporting");
  return {makeRecord()};
}

CMPIStatus good() { return CMPIStatus{CMPI_RC_OK, nullptr}; }
CMPIStatus bad(CMPIrc code) { return CMPIStatus{code, nullptr}; }

CMPIStatus patientCleanup(CMPIInstanceMI*, const CMPIContext*, CMPIBoolean) {
  strike("cleaning");
  return good();
}
CMPIStatus patientMethodCleanup(CMPIMethodMI*, const CMPIContext*, CMPIBoolean) { return good(); }

CMPIStatus patientEnumInstanceNames(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result,
                                    const CMPIObjectPath* classPath) {
  for (CMPIInstance* const instance : instancesOf(classNameOf(classPath))) {
    if (instance != nullptr) CMReturnObjectPath(result, CMGetObjectPath(instance, nullptr));
  }
  CMReturnDone(result);
  return good();
}

/// Answers for as long as somebody listens.
CMPIStatus answerWithoutEnd(const CMPIResult* result) {
  CMPIInstance* one = makeAvailability();
  while (one != nullptr && CMReturnInstance(result, one).rc == CMPI_RC_OK) one = makeAvailability();
  return bad(CMPI_RC_ERR_FAILED);
}

bool isEndless(const CMPIObjectPath* classPath) {
  return kPrefix == "SICK" && sickness::is("listing", "endless") &&
         classNameOf(classPath) == "_Availability";
}

CMPIStatus patientEnumInstances(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result,
                                const CMPIObjectPath* classPath, const char**) {
  if (isEndless(classPath)) {
    strike("listing");
    return answerWithoutEnd(result);
  }
  for (CMPIInstance* const instance : instancesOf(classNameOf(classPath))) {
    if (instance != nullptr) CMReturnInstance(result, instance);
  }
  CMReturnDone(result);
  return good();
}

CMPIStatus patientGetInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result,
                              const CMPIObjectPath* path, const char**) {
  const std::string className = classNameOf(path);
  if (className == "_Job") {
    awaitOwnThread();
    strike("polling");
  }
  for (CMPIInstance* const instance : instancesOf(className)) {
    if (instance != nullptr) CMReturnInstance(result, instance);
    CMReturnDone(result);
    return good();
  }
  return bad(CMPI_RC_ERR_NOT_FOUND);
}

CMPIStatus patientCreateInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                 const CMPIObjectPath*, const CMPIInstance*) {
  return bad(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIStatus patientModifyInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                 const CMPIObjectPath*, const CMPIInstance*, const char**) {
  return bad(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIStatus patientDeleteInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                 const CMPIObjectPath*) {
  return bad(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIStatus patientExecQuery(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                            const CMPIObjectPath*, const char*, const char*) {
  return bad(CMPI_RC_ERR_NOT_SUPPORTED);
}

void runOnOwnThread() {
  strike("thread");
  if (!lingers()) isOver = true;
}

CMPIStatus patientInvokeMethod(CMPIMethodMI*, const CMPIContext*, const CMPIResult* result,
                               const CMPIObjectPath*, const char* method, const CMPIArgs*,
                               CMPIArgs* out) {
  if (std::string(method) == "RequestStateChange") {
    isTerminated = lingers();
  } else {
    strike("starting");
    ++runs;
    isOver = false;
    std::thread(runOnOwnThread).detach();
    CMPIObjectPath* job = jobPath();
    CMAddArg(out, "Job", &job, CMPI_ref);
  }
  const CMPIUint32 started = 0;
  CMReturnData(result, &started, CMPI_uint32);
  CMReturnDone(result);
  return good();
}

}  // namespace

// The stubs paste the provider's name, which is a macro here.
#define PATIENT_INSTANCE_STUB(provider) \
  CMInstanceMIStub(patient, provider, broker, strike("loading"))
#define PATIENT_METHOD_STUB(provider) CMMethodMIStub(patient, provider, broker, CMNoHook)

PATIENT_INSTANCE_STUB(DIAGS_PATIENT_PROVIDER)
PATIENT_METHOD_STUB(DIAGS_PATIENT_PROVIDER)
