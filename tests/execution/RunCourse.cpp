#include "tests/execution/RunCourse.h"

namespace support {

namespace {

const char kClearing[] = "registry.ClearInstances()";
const char kElementGone[] = "No matching diagnostic test or device found.\n";

/// Builds the course of one plan.
class RunBuilder {
 public:
  explicit RunBuilder(const RunPlan& plan) : m_plan(plan) {}

  Course execute() {
    add("begin", {trace("Entering DiagsRunner::Execute with testID = " + identifierOf(m_plan))},
        {});
    if (m_plan.isIndexed) {
      position("2", "no match");
    } else {
      position("1", "properties of association2");
      add("name of 1", valueRead("service1", "Name"), passOn);
      position("2", "no match");
      add("names of 2", joined({valueRead("service2", "Name"), valueRead("element2", "DeviceID")}),
          passOn);
    }
    methods();
    addJob(m_course, m_plan, m_outside);
    leave();
    return std::move(m_course);
  }

 private:
  void add(const std::string& name, const Events& events, const Recover& recover,
           const std::string& adds = {}) {
    m_course.push_back({name, events, recover, adds});
  }

  /// The two instances of the association `number`; one that is not there goes on at `next`.
  void position(const std::string& number, const std::string& next) {
    const std::string service = number == "1"
                                    ? "CIM_DiagnosticTest.Name=\"Other Test\""
                                    : "CIM_DiagnosticTest.Name=\"" + m_plan.testName + "\"";
    const std::string element =
        "CIM_LogicalDevice.DeviceID=\"disk" + std::to_string(std::stoi(number) - 1) + "\"";
    const std::string label = "association" + number;
    const bool isByUpcall = m_plan.isByUpcall && number == "2";
    const Events path = {"inst element" + number + ".GetObjectPath({})",
                         "ref root/cimv2:" + element + ".GetPath()"};
    ends(label, service, element,
         joined({direct(element), isByUpcall ? upcall(element) : Events{}, path}));
    fetchWithRetry("element " + number, element, isByUpcall, next);
    add("path of " + number, path, [](const FaultPoint& point) {
      return isVor(point) ? Recovery{{}, "element gone"} : passOn(point);
    });
    if (m_plan.isIndexed) {
      fetchWithRetry("service " + number, service, isByUpcall, next);
    } else {
      add("namespace of service " + number, {direct(service)[0]}, passOn);
      add("service " + number, {direct(service)[1]}, emptyGoesOnAt(next));
    }
  }

  static std::string classOf(const std::string& path) { return path.substr(0, path.find('.')); }

  std::string getInstance(const std::string& path) const {
    return "ns cmpi.GetInstance(root/cimv2:" + path + ", {nspID=\"" + m_plan.family + "\"})";
  }

  Events direct(const std::string& path) const {
    return {"class " + classOf(path) + ".GetNamespace({})", getInstance(path)};
  }

  static Events upcall(const std::string& path) {
    const std::string className = classOf(path);
    const std::string plugin = "{nspID=\"plugin\"}";
    return {"class " + className + ".GetName()",
            "class " + className + ".GetNamespace({})",
            "ns cmpi.GetUpcallNamespace()",
            "ns upcall.GetClass(\"" + className + "\", " + plugin + ")",
            "class upcall:" + className + ".GetNamespace({})",
            "ns plugin.GetInstance(root/cimv2:" + path + ", " + plugin + ")"};
  }

  /// A class that is not there is only missed when its instance is to be fetched; that of the
  /// service after `elementRead`.
  void ends(const std::string& label, const std::string& service, const std::string& element,
            const Events& elementRead) {
    const std::string serviceClass = "ref root/cimv2:" + service + ".GetClass()";
    add("properties of " + label,
        joined({valueRead(label, "ServiceProvided"), valueRead(label, "UserOfService")}), passOn);
    add("element class of " + label, {"ref root/cimv2:" + element + ".GetClass()"},
        emptyIsMissedAfter({serviceClass}));
    add("service class of " + label, {serviceClass}, emptyIsMissedAfter(elementRead));
  }

  static Recover emptyIsMissedAfter(const Events& events) {
    return [events](const FaultPoint& point) {
      return point.fault == Fault::emptyHandle ? Recovery{events, ""} : passOn(point);
    };
  }

  /// The direct way, and the one through the upcall namespace: a detour, unless the direct way does
  /// not find the instance anyway.
  void fetchWithRetry(const std::string& name, const std::string& path, bool isByUpcall,
                      const std::string& next) {
    const std::string retry = name + " by upcall";
    const auto retried = [retry](const FaultPoint& point) {
      return isVor(point) ? Recovery{{}, retry} : passOn(point);
    };
    add("namespace of " + name, {direct(path)[0]}, retried);
    add(name, {direct(path)[1]}, emptyGoesOnAt(retry, retried));
    m_course.push_back({retry,
                        upcall(path),
                        [next](const FaultPoint& point) {
                          const bool isInstance = point.callText.find("ns plugin.GetInstance") == 0;
                          return isInstance ? emptyGoesOnAt(next)(point) : passOn(point);
                        },
                        {},
                        !isByUpcall});
  }

  std::string invocation(const char* method) const {
    return std::string("inst service2.InvokeMethod(\"") + method +
           "\", {ManagedElement=root/cimv2:" + kElementPath + "}, {})";
  }

  void methods() {
    add("first method", {invocation("RunDiagnostic")}, passOn);
    if (m_plan.isFallback) {
      m_outside = [](const FaultPoint& point) {
        return isVor(point)
                   ? Recovery{{trace("DiagsRunner::Execute - exception from RunDiagnosticService "
                                     "detected")},
                              "registry"}
                   : passOn(point);
      };
      add("second method",
          {trace("DiagsRunner::Execute - No Concrete Job Found for RunDiagnostic, attempting "
                 "RunDiagnosticService"),
           invocation("RunDiagnosticService")},
          m_outside);
    }
  }

  void leave() {
    const std::string looking = trace("DiagsRunner::Execute looking for:" + identifierOf(m_plan));
    m_course.push_back(
        detour("no match", {looking, trace("erased test from map"), trace("returning no matching")},
               std::string(" ") + kElementGone));
    add("registry", {kClearing}, passOn);
    const char* erased = m_plan.isIndexed ? "DiagsRunner::Execute erased test from finished map"
                                          : "DiagsRunner::Execute erased test from map";
    m_course.push_back(
        detour("element gone",
               {looking, trace(erased), trace("DiagsRunner::Execute returning no matching")},
               kElementGone));
  }

  const RunPlan& m_plan;
  Recover m_outside = passOn;
  Course m_course;
};

}  // namespace

PlannedWorld::PlannedWorld(const RunPlan& plan)
    : other(addTest("Other Test", "disk0", "Disk 0")),
      test(addTest(plan.testName, "disk1", "Disk 1")),
      job(finishJob(test, "job-1", readingsOf(plan))) {
  addRecord(plan.testName, "rec-1 for job-1", "OK", "former");
  addApplies(kRecordPath, kElementPath);
  runner().EnumerateDiagTests("");
  setListed(test.id, plan.family);
  setFinished(test.id, "job-0");
  DiagsRunnerAccess::runFinished(runner()).set(true);
  DiagsRunnerAccess::diagPegasusNS(runner())[test.id] = NZELVOR20::TCIMValue("root/PG");
  if (plan.isIndexed) {
    DiagsRunnerAccess::testIndex(runner())[test.id] = 1;
  }
  if (plan.isByUpcall) {
    cmpi->removeInstance(test.element->path().text());
  }
  if (plan.isByUpcall && plan.isIndexed) {
    cmpi->removeInstance(test.service->path().text());
  }
  if (plan.isFallback) {
    test.service->setMethodOutput("RunDiagnostic", {});
  }
  journal.clear();
}

std::string PlannedWorld::handleConcrete() {
  std::string result;
  runner().HandleConcrete(job, result, test.id, hostHandle);
  return result;
}

Course handleConcreteCourse(const RunPlan& plan) {
  Course course;
  addJob(course, plan, passOn);
  return course;
}

Course executeCourse(const RunPlan& plan) { return RunBuilder(plan).execute(); }

}  // namespace support
