#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeOS.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/Journal.h"
#include "tests/support/LiveObject.h"
#include "tests/support/Script.h"
#include "tests/support/ScriptedClass.h"
#include "tests/support/ScriptedInstance.h"
#include "tests/support/ScriptedLogger.h"
#include "tests/support/ScriptedNamespace.h"
#include "tests/support/ScriptedProperty.h"
#include "tests/support/Text.h"

namespace support {

inline constexpr char kAvailableService[] = "CIM_AvailableDiagnosticService";
inline constexpr char kCompletionRecord[] = "CIM_DiagnosticCompletionRecord";
inline constexpr char kRecordApplies[] = "CIM_RecordAppliesToElement";

/// A diagnostic that a world offers.
struct ScriptedTest {
  std::string id;  ///< the test identifier
  InstancePtr service;
  InstancePtr element;
  InstancePtr association;
};

/// What a job says when it is fetched; nothing where the property is null.
struct JobReading {
  std::optional<std::uint16_t> state;
  std::optional<std::uint16_t> percent;
};

/// The world around the runner, empty at first: five namespaces, a clock, files, a log, standard
/// output. One at a time. Building and destroying it resets everything scripted.
///
/// The namespaces: the runner works in `root`; the classes that it finds there are served by `cmpi`
/// (the one `TCMPINamespace`), whose upcall namespace is `upcall`; the classes found there are
/// served by `plugin`; `host` is the namespace that the host hands to the operations. All know the
/// same instances.
class World {
 public:
  World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  virtual ~World();

  Journal& journal = Journal::current();
  Script& script = Script::current();
  FakePlatform& platform = FakePlatform::current();
  FakeOS& os = FakeOS::current();
  ScriptedLogger& logger = ScriptedLogger::current();

  NamespacePtr root;
  NamespacePtr cmpi;
  NamespacePtr upcall;
  NamespacePtr plugin;
  NamespacePtr host;
  /// The handle of `host`, as the operations want it.
  boost::shared_ptr<NZELVOR20::ICIMNamespace> hostHandle;

  /// The class `name`; made, and made known everywhere, the first time it is asked for.
  ClassPtr theClass(const std::string& name);
  /// The same class as the upcall namespace knows it: journal label `upcall:NAME`.
  ClassPtr upcallClass(const std::string& name);

  /// A new instance, enumerated by its class and found by its path,
  /// `root/cimv2:className.keyName="keyValue"`.
  InstancePtr addInstance(const std::string& label, const std::string& className,
                          const std::string& keyName, const std::string& keyValue);
  /// The same, of a kind on which no method can be invoked.
  InstancePtr addPlainInstance(const std::string& label, const std::string& className,
                               const std::string& keyName, const std::string& keyValue);

  /// A service, an element and the association between them, labelled `service1`, `element1`,
  /// `association1` for the first test and so on. Both methods of the service start the job of
  /// `finishJob`; before that is told, they leave no output parameters.
  ScriptedTest addTest(const std::string& name, const std::string& deviceID,
                       const std::string& elementName,
                       const std::string& serviceClass = "CIM_DiagnosticTest",
                       const std::string& elementClass = "CIM_LogicalDevice");

  /// A reference to the job of `test`: "RunDiagnostic" hands it out as "Job". Each `GetInstance`
  /// finds the next reading; the last one stays. Labels: `job1/1`, `job1/2` ... for the first test.
  /// The job's "InstanceID" is `jobID`.
  NZELVOR20::TCIMReference finishJob(const ScriptedTest& test, const std::string& jobID,
                                     const std::vector<JobReading>& readings,
                                     const std::string& jobClass = "CIM_ConcreteJob");

  /// A completion record, labelled `record1` and so on, which the `appearsAt`-th enumeration of the
  /// class is the first to hand out. Its "CompletionState" is rendered as `state`.
  InstancePtr addRecord(const std::string& serviceName, const std::string& instanceID,
                        const std::string& state, const std::string& recordData = "",
                        int appearsAt = 1);
  /// An instance of `CIM_RecordAppliesToElement`, labelled `applies1` and so on, from texts or
  /// from two instances.
  InstancePtr addApplies(const NZELVOR20::TCIMValue& antecedent,
                         const NZELVOR20::TCIMValue& dependent);
  InstancePtr addApplies(const InstancePtr& record, const InstancePtr& element);

  /// The data file `name` ("excludetests.xml") with this content.
  void setDataFile(const std::string& name, const std::string& content);

 private:
  ClassPtr makeClass(const std::string& name);
  void enlist(const InstancePtr& instance);
  InstancePtr makeJob(const std::string& label, const Path& path, const JobReading& reading);

  CapturedOutput m_output;
  std::map<std::string, ClassPtr> m_classes;
  std::map<std::string, ClassPtr> m_upcallClasses;
  int m_tests = 0;
  int m_records = 0;
  int m_applies = 0;
};

/// A realistic machine: a memory and a processor test that run through, with their records.
class Machine : public World {
 public:
  Machine();

  ScriptedTest memory;
  ScriptedTest processor;
  InstancePtr memoryRecord;
  InstancePtr processorRecord;
};

}  // namespace support
