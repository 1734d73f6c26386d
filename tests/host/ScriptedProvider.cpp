// A CMPI provider whose tests end at once and in a way that is written down here, so that the
// command's answers are the same on every machine.

#include <cstddef>
#include <cstring>
#include <mutex>
#include <string>
#include <vector>

#include "cmpi/cmpidt.h"
#include "cmpi/cmpift.h"
#include "cmpi/cmpimacs.h"

namespace {

const CMPIBroker* broker = nullptr;
const char* const kNamespace = "root/cimv2";

enum class Conduct {
  kAnswer,      // every call leaves a job and a record
  kRefuse,      // no call leaves a job
  kThrow,       // every call fails
  kAnswerOnce,  // the first call is answered, every later one fails
};

struct Script {
  const char* service;
  const char* device;
  CMPIUint16 completionState;
  Conduct conduct;
};

constexpr Script kScripts[] = {
    {"Scripted Pass", "fan0", 2, Conduct::kAnswer},
    {"Scripted Warning", "fan0", 3, Conduct::kAnswer},
    {"Scripted Incomplete", "fan0", 4, Conduct::kAnswer},
    {"Scripted Fail", "fan0", 5, Conduct::kAnswer},
    {"Scripted Abort", "fan0", 6, Conduct::kAnswer},
    {"Scripted Twin", "fan0", 2, Conduct::kAnswer},
    {"Scripted Twin", "fan1", 2, Conduct::kAnswer},
    {"Scripted Refusal", "fan0", 2, Conduct::kRefuse},
    {"Scripted Throw", "fan0", 2, Conduct::kThrow},
    {"Scripted Once", "fan0", 2, Conduct::kAnswerOnce},
};

struct Device {
  const char* id;
  const char* elementName;
};

constexpr Device kDevices[] = {{"fan0", "Front Fan"}, {"fan1", "Rear Fan"}};

const char* elementNameOf(const char* deviceId) {
  for (const Device& device : kDevices) {
    if (std::strcmp(device.id, deviceId) == 0) return device.elementName;
  }
  return "";
}

std::mutex runsMutex;
std::vector<Script> runs;  // the job and the record of each have its position for an identifier

std::vector<Script> runsSoFar() {
  const std::lock_guard<std::mutex> lock(runsMutex);
  return runs;
}

std::size_t addRun(const Script& script) {
  const std::lock_guard<std::mutex> lock(runsMutex);
  runs.push_back(script);
  return runs.size() - 1;
}

std::string jobIdOf(std::size_t run) { return "TEST:job-" + std::to_string(1000 + run); }

CMPIObjectPath* pathOf(const char* className, const char* key, const std::string& value) {
  CMPIObjectPath* const path = CMNewObjectPath(broker, kNamespace, className, nullptr);
  CMAddKey(path, key, value.c_str(), CMPI_chars);
  return path;
}

CMPIInstance* instanceAt(CMPIObjectPath* path, const char* key, const std::string& value) {
  CMPIInstance* const instance = CMNewInstance(broker, path, nullptr);
  CMSetProperty(instance, key, value.c_str(), CMPI_chars);
  return instance;
}

void setNumber(CMPIInstance* instance, const char* name, CMPIUint16 number) {
  CMSetProperty(instance, name, &number, CMPI_uint16);
}

CMPIInstance* makeDevice(const Device& device) {
  CMPIInstance* const instance =
      instanceAt(pathOf("TEST_Device", "DeviceID", device.id), "DeviceID", device.id);
  CMSetProperty(instance, "ElementName", device.elementName, CMPI_chars);
  return instance;
}

CMPIInstance* makeService(const Script& script) {
  CMPIInstance* const instance =
      instanceAt(pathOf("TEST_Service", "Name", script.service), "Name", script.service);
  CMSetProperty(instance, "CreationClassName", "TEST_Service", CMPI_chars);
  return instance;
}

CMPIInstance* makeAvailability(const Script& script) {
  CMPIObjectPath* service = pathOf("TEST_Service", "Name", script.service);
  CMPIObjectPath* element = pathOf("TEST_Device", "DeviceID", script.device);
  CMPIObjectPath* const path =
      CMNewObjectPath(broker, kNamespace, "CIM_AvailableDiagnosticService", nullptr);
  CMAddKey(path, "ServiceProvided", &service, CMPI_ref);
  CMAddKey(path, "UserOfService", &element, CMPI_ref);
  CMPIInstance* const instance = CMNewInstance(broker, path, nullptr);
  CMSetProperty(instance, "ServiceProvided", &service, CMPI_ref);
  CMSetProperty(instance, "UserOfService", &element, CMPI_ref);
  return instance;
}

CMPIInstance* makeJob(std::size_t run) {
  const std::string id = jobIdOf(run);
  CMPIInstance* const instance = instanceAt(pathOf("TEST_Job", "InstanceID", id), "InstanceID", id);
  setNumber(instance, "JobState", 7);
  setNumber(instance, "PercentComplete", 100);
  return instance;
}

CMPIInstance* makeRecord(std::size_t run, const Script& script) {
  const std::string id = jobIdOf(run) + ":0";
  const std::string data = std::string(script.service) + " ran on " + script.device + "\nRun " +
                           std::to_string(run) + " of this process";
  CMPIInstance* const instance =
      instanceAt(pathOf("CIM_DiagnosticCompletionRecord", "InstanceID", id), "InstanceID", id);
  CMSetProperty(instance, "ServiceName", script.service, CMPI_chars);
  CMSetProperty(instance, "ManagedElementName", elementNameOf(script.device), CMPI_chars);
  CMSetProperty(instance, "RecordData", data.c_str(), CMPI_chars);
  constexpr CMPIUint16 kIncomplete = 4;
  if (script.completionState == kIncomplete)
    CMSetProperty(instance, "Caption", "Half of it was tested", CMPI_chars);
  setNumber(instance, "CompletionState", script.completionState);
  return instance;
}

std::vector<CMPIInstance*> instancesOf(const std::string& className) {
  std::vector<CMPIInstance*> instances;
  if (className == "TEST_Device") {
    for (const Device& device : kDevices) instances.push_back(makeDevice(device));
  } else if (className == "TEST_Service") {
    for (const Script& script : kScripts) instances.push_back(makeService(script));
  } else if (className == "CIM_AvailableDiagnosticService") {
    for (const Script& script : kScripts) instances.push_back(makeAvailability(script));
  }
  const std::vector<Script> done = runsSoFar();
  for (std::size_t run = 0; run < done.size(); ++run) {
    if (className == "TEST_Job") instances.push_back(makeJob(run));
    if (className == "CIM_DiagnosticCompletionRecord") {
      instances.push_back(makeRecord(run, done[run]));
    }
  }
  return instances;
}

std::string classNameOf(const CMPIObjectPath* path) {
  return CMGetCharPtr(CMGetClassName(path, nullptr));
}

/// The text of a path's only key.
std::string keyOf(const CMPIObjectPath* path) {
  const CMPIData key = CMGetKeyAt(path, 0, nullptr, nullptr);
  return key.type == CMPI_string ? CMGetCharPtr(key.value.string) : std::string();
}

CMPIStatus good() { return CMPIStatus{CMPI_RC_OK, nullptr}; }
CMPIStatus bad(CMPIrc code) { return CMPIStatus{code, nullptr}; }

CMPIStatus answerWith(const CMPIResult* result, CMPIArgs* out, std::size_t run) {
  CMPIObjectPath* job = pathOf("TEST_Job", "InstanceID", jobIdOf(run));
  CMAddArg(out, "Job", &job, CMPI_ref);
  const CMPIUint32 started = 0;
  CMReturnData(result, &started, CMPI_uint32);
  CMReturnDone(result);
  return good();
}

CMPIStatus refuse(const CMPIResult* result) {
  const CMPIUint32 notSupported = 1;
  CMReturnData(result, &notSupported, CMPI_uint32);
  CMReturnDone(result);
  return good();
}

CMPIStatus fail(const char* why) {
  CMPIStatus status = {CMPI_RC_ERR_FAILED, CMNewString(broker, why, nullptr)};
  return status;
}

bool hasRun(const Script& script) {
  for (const Script& run : runsSoFar()) {
    if (std::strcmp(run.service, script.service) == 0) return true;
  }
  return false;
}

/// The script that a call means; the first one of its service where it names no element.
const Script* scriptOf(const CMPIObjectPath* service, const CMPIArgs* in) {
  const CMPIData element = CMGetArg(in, "ManagedElement", nullptr);
  const bool named = element.type == CMPI_ref && !CMIsNullValue(element);
  const std::string device = named ? keyOf(element.value.ref) : std::string();
  for (const Script& script : kScripts) {
    if (keyOf(service) != script.service) continue;
    if (!named || device == script.device) return &script;
  }
  return nullptr;
}

CMPIStatus scriptedCleanup(CMPIInstanceMI*, const CMPIContext*, CMPIBoolean) { return good(); }
CMPIStatus scriptedMethodCleanup(CMPIMethodMI*, const CMPIContext*, CMPIBoolean) { return good(); }

CMPIStatus scriptedEnumInstanceNames(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result,
                                     const CMPIObjectPath* classPath) {
  for (CMPIInstance* const instance : instancesOf(classNameOf(classPath))) {
    CMReturnObjectPath(result, CMGetObjectPath(instance, nullptr));
  }
  CMReturnDone(result);
  return good();
}

CMPIStatus scriptedEnumInstances(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result,
                                 const CMPIObjectPath* classPath, const char**) {
  if (classNameOf(classPath) == "TEST_Mute") return bad(CMPI_RC_ERR_NOT_SUPPORTED);
  for (CMPIInstance* const instance : instancesOf(classNameOf(classPath))) {
    CMReturnInstance(result, instance);
  }
  CMReturnDone(result);
  return good();
}

CMPIStatus scriptedGetInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result,
                               const CMPIObjectPath* path, const char**) {
  for (CMPIInstance* const instance : instancesOf(classNameOf(path))) {
    if (keyOf(CMGetObjectPath(instance, nullptr)) != keyOf(path)) continue;
    CMReturnInstance(result, instance);
    CMReturnDone(result);
    return good();
  }
  return bad(CMPI_RC_ERR_NOT_FOUND);
}

CMPIStatus scriptedCreateInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                  const CMPIObjectPath*, const CMPIInstance*) {
  return bad(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIStatus scriptedModifyInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                  const CMPIObjectPath*, const CMPIInstance*, const char**) {
  return bad(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIStatus scriptedDeleteInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                  const CMPIObjectPath*) {
  return bad(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIStatus scriptedExecQuery(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                             const CMPIObjectPath*, const char*, const char*) {
  return bad(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIStatus scriptedInvokeMethod(CMPIMethodMI*, const CMPIContext*, const CMPIResult* result,
                                const CMPIObjectPath* target, const char*, const CMPIArgs* in,
                                CMPIArgs* out) {
  const Script* const script = scriptOf(target, in);
  if (script == nullptr) return bad(CMPI_RC_ERR_INVALID_PARAMETER);
  if (script->conduct == Conduct::kRefuse) return refuse(result);
  if (script->conduct == Conduct::kThrow) return fail("the fan is out of reach");
  if (script->conduct == Conduct::kAnswerOnce && hasRun(*script)) {
    return fail("the fan runs once only");
  }
  return answerWith(result, out, addRun(*script));
}

}  // namespace

CMInstanceMIStub(scripted, ScriptedProvider, broker, CMNoHook)
    CMMethodMIStub(scripted, ScriptedProvider, broker, CMNoHook)
