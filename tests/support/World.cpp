#include "tests/support/World.h"

#include <stdexcept>

namespace support {

using NZELVOR20::TCIMValue;

namespace {

bool& worldExists() {
  static bool exists = false;
  return exists;
}

void resetAll() {
  Journal::current().clear();
  Script::current().clear();
  FakePlatform::current().clear();
  FakeOS::current().clear();
  ScriptedLogger::current().clear();
}

/// The number at the end of a label such as `service12`.
std::string numberOf(const std::string& label) {
  return label.substr(label.find_first_of("0123456789"));
}

TCIMValue valueOf(const std::optional<std::uint16_t>& number) {
  return number ? TCIMValue::Uint16(*number) : TCIMValue::Null(NZELVOR20::ECIMType::eUint16);
}

}  // namespace

World::World()
    : root(ScriptedNamespace::makePlain("root")),
      cmpi(ScriptedNamespace::makeCmpi("cmpi")),
      upcall(ScriptedNamespace::makePlain("upcall")),
      plugin(ScriptedNamespace::makePlain("plugin")),
      host(ScriptedNamespace::makePlain("host")),
      hostHandle(host->handle()) {
  if (worldExists()) {
    throw std::logic_error("one world at a time");
  }
  worldExists() = true;
  resetAll();
  cmpi->setUpcall(upcall);
}

World::~World() {
  resetAll();
  worldExists() = false;
}

ClassPtr World::theClass(const std::string& name) {
  const auto found = m_classes.find(name);
  return found != m_classes.end() ? found->second : makeClass(name);
}

ClassPtr World::upcallClass(const std::string& name) {
  theClass(name);
  return m_upcallClasses.at(name);
}

ClassPtr World::makeClass(const std::string& name) {
  const ClassPtr made(new ScriptedClass(name));
  made->serveBy(cmpi);
  for (const NamespacePtr& ns : {root, cmpi, plugin, host}) {
    ns->addClass(made);
  }
  const ClassPtr twin(new ScriptedClass(name, "upcall:" + name));
  twin->serveBy(plugin);
  upcall->addClass(twin);
  m_upcallClasses[name] = twin;
  return m_classes[name] = made;
}

InstancePtr World::addInstance(const std::string& label, const std::string& className,
                               const std::string& keyName, const std::string& keyValue) {
  const InstancePtr instance =
      ScriptedInstance::makeCmpi(label, {className, keyName, keyValue, theClass(className)});
  enlist(instance);
  return instance;
}

InstancePtr World::addPlainInstance(const std::string& label, const std::string& className,
                                    const std::string& keyName, const std::string& keyValue) {
  const InstancePtr instance =
      ScriptedInstance::makePlain(label, {className, keyName, keyValue, theClass(className)});
  enlist(instance);
  return instance;
}

void World::enlist(const InstancePtr& instance) {
  const Path& path = instance->path();
  instance->set(path.keyName, TCIMValue(path.keyValue));
  theClass(path.className)->add(instance);
  for (const NamespacePtr& ns : {root, cmpi, upcall, plugin, host}) {
    ns->addInstance(instance);
  }
}

ScriptedTest World::addTest(const std::string& name, const std::string& deviceID,
                            const std::string& elementName, const std::string& serviceClass,
                            const std::string& elementClass) {
  const std::string number = std::to_string(++m_tests);
  ScriptedTest test;
  test.id = name + "," + deviceID + "," + elementName;
  test.service = addInstance("service" + number, serviceClass, "Name", name);
  test.service->set("CreationClassName", TCIMValue(serviceClass));
  test.service->set("Characteristics",
                    TCIMValue::Array(NZELVOR20::ECIMType::eUint16, {TCIMValue::Uint16(2)}));
  test.service->setMethodOutput("RunDiagnostic", {});
  test.service->setMethodOutput("RunDiagnosticService", {});
  test.element = addInstance("element" + number, elementClass, "DeviceID", deviceID);
  test.element->set("ElementName", TCIMValue(elementName));
  test.association = addInstance("association" + number, kAvailableService, "Number", number);
  test.association->set("ServiceProvided", TCIMValue(test.service->reference()));
  test.association->set("UserOfService", TCIMValue(test.element->reference()));
  return test;
}

NZELVOR20::TCIMReference World::finishJob(const ScriptedTest& test, const std::string& jobID,
                                          const std::vector<JobReading>& readings,
                                          const std::string& jobClass) {
  const Path path{jobClass, "InstanceID", jobID, theClass(jobClass)};
  const std::string label = "job" + numberOf(test.service->label());
  std::vector<InstancePtr> turns;
  for (const JobReading& reading : readings) {
    turns.push_back(makeJob(label + "/" + std::to_string(turns.size() + 1), path, reading));
  }
  for (const NamespacePtr& ns : {root, cmpi, upcall, plugin, host}) {
    ns->setInTurn(path.text(), turns);
  }
  const NZELVOR20::TCIMReference reference = turns.at(0)->reference();
  test.service->setMethodOutput("RunDiagnostic", {{"Job", TCIMValue(reference)}});
  test.service->setMethodOutput("RunDiagnosticService", {{"Job", TCIMValue(reference)}});
  return reference;
}

InstancePtr World::makeJob(const std::string& label, const Path& path, const JobReading& reading) {
  const InstancePtr job = ScriptedInstance::makeCmpi(label, path);
  job->set("InstanceID", TCIMValue(path.keyValue));
  job->set("JobState", valueOf(reading.state));
  job->set("PercentComplete", valueOf(reading.percent));
  return job;
}

InstancePtr World::addRecord(const std::string& serviceName, const std::string& instanceID,
                             const std::string& state, const std::string& recordData,
                             int appearsAt) {
  const std::string label = "record" + std::to_string(++m_records);
  const ClassPtr recordClass = theClass(kCompletionRecord);
  const InstancePtr record =
      ScriptedInstance::makeCmpi(label, {kCompletionRecord, "InstanceID", instanceID, recordClass});
  record->set("InstanceID", TCIMValue(instanceID));
  record->set("ManagedElementName", TCIMValue("element"));
  record->set("ServiceName", TCIMValue(serviceName));
  record->set("CompletionState", TCIMValue::Uint16(0), state);
  record->set("RecordData", TCIMValue(recordData));
  recordClass->add(record, appearsAt);
  return record;
}

InstancePtr World::addApplies(const TCIMValue& antecedent, const TCIMValue& dependent) {
  const std::string number = std::to_string(++m_applies);
  const InstancePtr applies = addInstance("applies" + number, kRecordApplies, "Number", number);
  applies->set("Antecedent", antecedent);
  applies->set("Dependent", dependent);
  return applies;
}

InstancePtr World::addApplies(const InstancePtr& record, const InstancePtr& element) {
  return addApplies(TCIMValue(record->reference()), TCIMValue(element->reference()));
}

void World::setDataFile(const std::string& name, const std::string& content) {
  platform.setFile(os.dataPath(name), content);
}

Machine::Machine()
    : memory(addTest("Memory Test", "mem0", "System Memory")),
      processor(addTest("Processor Test", "cpu0", "Processor 0")) {
  finishJob(memory, "job-mem", {{4, 0}, {4, 50}, {7, 100}});
  finishJob(processor, "job-cpu", {{4, 0}, {7, 100}});
  memoryRecord = addRecord("Memory Test", "record for job-mem", "OK", "4096 pages, no errors");
  processorRecord = addRecord("Processor Test", "record for job-cpu", "OK", "8 cores, no errors");
}

}  // namespace support
