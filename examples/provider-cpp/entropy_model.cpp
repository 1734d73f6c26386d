#include "entropy_model.h"

namespace {

const char* const kNamespace = "root/cimv2";
const char* const kSystemClass = "CIM_ComputerSystem";
const char* const kElementName = "Entropy Source";
const char* const kTestName = "ACME: Entropy Source Test";  // no comma and no bar

// A number is passed by the address of a variable of its own width, a text as it is.
void set(CMPIInstance* instance, const char* name, const std::string& text) {
  CMSetProperty(instance, name, text.c_str(), CMPI_chars);
}
void set(CMPIInstance* instance, const char* name, CMPIUint16 number) {
  CMSetProperty(instance, name, &number, CMPI_uint16);
}

void setArray(const CMPIBroker* broker, CMPIInstance* instance, const char* name,
              CMPIUint16 number) {
  CMPIArray* array = CMNewArray(broker, 1, CMPI_uint16, nullptr);
  CMSetArrayElementAt(array, 0, &number, CMPI_uint16);
  CMSetProperty(instance, name, &array, CMPI_uint16A);
}

}  // namespace

CMPIObjectPath* EntropyModel::pathOf(const std::string& className, const char* key,
                                     const std::string& value) const {
  CMPIObjectPath* const path = CMNewObjectPath(m_broker, kNamespace, className.c_str(), nullptr);
  CMAddKey(path, key, value.c_str(), CMPI_chars);
  return path;
}

CMPIObjectPath* EntropyModel::pathOnSystem(const std::string& className, const char* key,
                                           const std::string& value) const {
  CMPIObjectPath* const path = pathOf(className, key, value);
  CMAddKey(path, "SystemCreationClassName", kSystemClass, CMPI_chars);
  CMAddKey(path, "SystemName", "localhost", CMPI_chars);
  CMAddKey(path, "CreationClassName", className.c_str(), CMPI_chars);
  return path;
}

CMPIObjectPath* EntropyModel::sourcePath() const {
  return pathOnSystem("ACME_EntropySource", "DeviceID", "entropy0");
}
CMPIObjectPath* EntropyModel::testPath() const {
  return pathOnSystem(kTestClass, "Name", kTestName);
}
CMPIObjectPath* EntropyModel::jobPath(const std::string& id) const {
  return pathOf(kJobClass, "InstanceID", id);
}
CMPIObjectPath* EntropyModel::jobPath(const RunState& run) const { return jobPath(run.id); }

// Record 0 of a run has the results, record 1 the verdict.
CMPIObjectPath* EntropyModel::recordPath(const RunState& run, int number) const {
  return pathOf(number == 0 ? "ACME_EntropyTestRecord" : "ACME_EntropyTestCompletionRecord",
                "InstanceID", run.id + ":" + std::to_string(number));
}

CMPIInstance* EntropyModel::instanceAt(const CMPIObjectPath* path) const {
  CMPIInstance* const instance = CMNewInstance(m_broker, path, nullptr);
  if (instance == nullptr) throw CmpiError(CMPI_RC_ERR_FAILED, "the MOF file is not installed");
  for (CMPICount i = 0; i < CMGetKeyCount(path, nullptr); ++i) {
    CMPIString* name = nullptr;
    const CMPIData key = CMGetKeyAt(path, i, &name, nullptr);
    CMSetProperty(instance, CMGetCharPtr(name), &key.value, key.type);
  }
  return instance;
}

CMPIInstance* EntropyModel::association(const std::string& className, const char* role1,
                                        CMPIObjectPath* end1, const char* role2,
                                        CMPIObjectPath* end2) const {
  CMPIObjectPath* const path = CMNewObjectPath(m_broker, kNamespace, className.c_str(), nullptr);
  CMAddKey(path, role1, &end1, CMPI_ref);
  CMAddKey(path, role2, &end2, CMPI_ref);
  return instanceAt(path);
}

CMPIInstance* EntropyModel::source() const {
  CMPIInstance* const source = instanceAt(sourcePath());
  set(source, "ElementName", kElementName);
  setArray(m_broker, source, "OperationalStatus", 2);
  return source;
}

CMPIInstance* EntropyModel::test() const {
  CMPIInstance* const test = instanceAt(testPath());
  set(test, "ElementName", kElementName);
  set(test, "Description", "Reads random bits and counts ones and runs of equal bits.");
  setArray(m_broker, test, "TestTypes", 2);
  return test;
}

CMPIInstance* EntropyModel::available() const {
  CMPIInstance* const link = association("ACME_EntropyTestForElement", "ServiceProvided",
                                         testPath(), "UserOfService", sourcePath());
  const CMPIUint32 seconds = 2;
  set(link, "EstimatedDurationOfService", CMPIUint16{3});  // the unit: seconds
  CMSetProperty(link, "EstimatedDurationQualifier", &seconds, CMPI_uint32);
  return link;
}

CMPIInstance* EntropyModel::job(const RunState& run) const {
  CMPIInstance* const job = instanceAt(jobPath(run));
  set(job, "Name", kTestName);
  set(job, "JobState", static_cast<CMPIUint16>(run.jobState));
  set(job, "PercentComplete", run.percent);
  setArray(m_broker, job, "OperationalStatus", run.ended ? 17 : 2);
  return job;
}

CMPIInstance* EntropyModel::record(const RunState& run, int number) const {
  CMPIInstance* const record = instanceAt(recordPath(run, number));
  set(record, "ServiceName", kTestName);            // the test's Name, unchanged
  set(record, "ManagedElementName", kElementName);  // the source's ElementName, unchanged
  set(record, "RecordType", CMPIUint16{2});
  set(record, "RecordFormat", number == 0 ? kResultFormat : "");  // empty: for people to read
  set(record, "RecordData", number == 0 ? run.results : run.summary);
  CMPIDateTime* created = CMNewDateTimeFromBinary(m_broker, run.endedAt, CMPI_false, nullptr);
  CMSetProperty(record, "CreationTimeStamp", &created, CMPI_dateTime);
  if (number != 0) set(record, "CompletionState", static_cast<CMPIUint16>(run.verdict));
  return record;
}

const std::vector<std::string>& EntropyModel::associationClasses() {
  static const std::vector<std::string> names{
      "ACME_EntropyTestForElement", "ACME_EntropyTestOwningJobElement",
      "ACME_EntropyTestAffectedJobElement", "ACME_EntropyTestRecordAppliesToElement"};
  return names;
}

std::vector<CMPIInstance*> EntropyModel::instances(const std::string& className) const {
  const auto is = [&](const char* name) { return sameName(className, name); };
  if (is("ACME_EntropySource")) return {source()};
  if (is(kTestClass)) return {test()};
  if (is("ACME_EntropyTestForElement")) return {available()};

  std::vector<CMPIInstance*> found;
  for (const RunState& run : m_runs) {
    if (is(kJobClass)) {
      found.push_back(job(run));
    } else if (is("ACME_EntropyTestOwningJobElement")) {
      found.push_back(
          association(className, "OwningElement", testPath(), "OwnedElement", jobPath(run)));
    } else if (is("ACME_EntropyTestAffectedJobElement")) {
      found.push_back(association(className, "AffectedElement", sourcePath(), "AffectingElement",
                                  jobPath(run)));
    } else if (is("ACME_EntropyTestRecord")) {
      if (run.ended) found.push_back(record(run, 0));
    } else if (is("ACME_EntropyTestCompletionRecord")) {
      if (run.ended) found.push_back(record(run, 1));
    } else if (is("ACME_EntropyTestRecordAppliesToElement")) {
      for (int number = 0; run.ended && number < 2; ++number)
        found.push_back(association(className, "Antecedent", recordPath(run, number), "Dependent",
                                    sourcePath()));
    }
  }
  return found;
}

CMPIInstance* EntropyModel::instance(const CMPIObjectPath* path) const {
  for (CMPIInstance* instance : instances(textOf(CMGetClassName(path, nullptr))))
    if (samePath(CMGetObjectPath(instance, nullptr), path)) return instance;
  throw CmpiError(CMPI_RC_ERR_NOT_FOUND, "there is no such instance");
}
