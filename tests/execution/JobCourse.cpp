#include "tests/execution/JobCourse.h"

#include "tests/execution/JobWorld.h"

namespace support {

namespace {

/// Builds the course of one job.
class JobBuilder {
 public:
  JobBuilder(Course& course, const RunPlan& plan, const Recover& outside)
      : m_course(course), m_plan(plan), m_outside(outside) {}

  void build() {
    add("job",
        joined(
            {{trace("DiagsRunner::HandleConcrete"), "ref " + std::string(kJobPath) + ".GetClass()"},
             jobFetch()}),
        m_outside);
    firstReading();
    m_plan.isSlow ? slowPolling() : polling();
    if (m_plan.isAssociated) {
      association();
    }
    results();
  }

 private:
  void add(const std::string& name, const Events& events, const Recover& recover) {
    m_course.push_back({name, events, recover});
  }

  Events jobFetch() const {
    std::string options = "nspID=\"" + m_plan.family + "\"";
    if (m_plan.family == "pegasus") {
      options = "nsp=\"root/PG\", " + options;
    }
    return {"class CIM_ConcreteJob.GetNamespace({})",
            std::string("ns cmpi.GetInstance(") + kJobPath + ", {" + options + "})"};
  }

  /// The job's percentage is 0 and its state an ordinary one: what can't be read does no harm.
  void firstReading() {
    const auto guarded = [](const std::string& next) {
      return emptyGoesOnAt(next, [](const FaultPoint& point) {
        return Recovery{
            {error(isVor(point) ? "DiagsRunner::HandleConcrete, catch vor exception, get JobState"
                                : "DiagsRunner::HandleConcrete, catch exception, get JobState")},
            "identifier"};
      });
    };
    add("first percentage", valueRead("job2/1", "PercentComplete"), guarded("first state"));
    add("first state", valueRead("job2/1", "JobState"), guarded("identifier"));
    add("identifier", valueRead("job2/1", "InstanceID"),
        m_plan.isAssociated ? emptyGoesOnAt("first line", m_outside) : m_outside);
    add("first line", {shownFirst(0), flushed(), "class CIM_ConcreteJob.GetName()"}, m_outside);
    add("state in hand", valueRead("job2/1", "JobState"), emptyGoesOnAt("second fetch", m_outside));
    add("second fetch", jobFetch(), m_outside);
  }

  static Events shown100() { return {shownLater(100), flushed()}; }

  /// The second fetch finds the job completed.
  void polling() {
    const Events percentage = valueRead("job2/2", "PercentComplete");
    add("second state", valueRead("job2/2", "JobState"), emptyGoesOnAt("no state", m_outside));
    add("second percentage", percentage, emptyGoesOnAt("no percentage", m_outside));
    add("log", {polled(7, 100)}, {});
    add("wait", joined({{waited()}, shown100()}), {});
    // Detours end the polling themselves, and go on behind it.
    m_course.push_back(
        detour("no state", joined({percentage, {polled(0, 100), waited()}, shown100()})));
    m_course.push_back(detour("no percentage",
                              joined({{polled(7, 0), waited()}, valueRead("job2/2", "JobState")})));
  }

  /// The second fetch finds nothing new; time is given, in which the job is completed.
  void slowPolling() {
    const Events percentage = valueRead("job2/2", "PercentComplete");
    add("second state", valueRead("job2/2", "JobState"), emptyGoesOnAt("no state", m_outside));
    add("second percentage", percentage, emptyGoesOnAt("log", m_outside));
    add("log", {polled(4, 0), waited(), waited()}, {});
    add("third fetch", jobFetch(), m_outside);
    add("third percentage", valueRead("job2/3", "PercentComplete"),
        emptyGoesOnAt("no percentage", m_outside));
    add("third state", valueRead("job2/3", "JobState"), emptyGoesOnAt("rise", m_outside));
    add("rise", shown100(), {});
    // Without a state no time is given, and the next pass finds the job completed.
    m_course.push_back(detour("no state", joined({percentage,
                                                  {polled(0, 0), waited()},
                                                  valueRead("job2/2", "JobState"),
                                                  jobFetch(),
                                                  valueRead("job2/3", "JobState"),
                                                  valueRead("job2/3", "PercentComplete"),
                                                  {polled(7, 100), waited()},
                                                  shown100()})));
    // Completed, but the percentage does not say so: the next pass ends.
    m_course.push_back(detour("no percentage", joined({valueRead("job2/3", "JobState"),
                                                       valueRead("job2/3", "JobState")})));
  }

  void association() {
    const std::string name = "CIM_RecordAppliesToElement";
    const std::string options = "{nspID=\"" + m_plan.family + "\"}";
    add("association class", {"ns root.GetClass(\"" + name + "\", " + options + ")"},
        emptyGoesOnAt("no association", m_outside));
    add("associations",
        joined({{"class " + name + ".EnumerateInstances(deep=true, " + options + ")"},
                valueRead("applies1", "Antecedent"),
                valueRead("applies1", "Dependent"),
                {trace(std::string("DiagsRunner::HandleConcrete Antecedent = ") + kRecordPath),
                 trace(std::string("DiagsRunner::HandleConcrete Dependent = ") + kElementPath),
                 trace("matchDeviceID: \"disk1\"")}}),
        m_outside);
    m_course.push_back(detour(
        "no association",
        {trace("DiagsRunner::HandleConcrete concreteJobID not found for Fusion-io diags.")}));
  }

  void results() {
    ImmediateRun run;
    run.testID = identifierOf(m_plan);
    run.options = "{nspID=\"" + m_plan.family + "\"}";
    run.isVendor = m_plan.isVendor;
    run.isFamily = m_plan.isFamily;
    run.loweredName = m_plan.isFamily ? "zel:ssd:diag service" : "brcm test";
    run.newData = "former";
    addImmediateResults(m_course, run);
  }

  Course& m_course;
  const RunPlan& m_plan;
  const Recover& m_outside;
};

}  // namespace

std::string identifierOf(const RunPlan& plan) { return plan.testName + ",disk1,Disk 1"; }

std::vector<JobReading> readingsOf(const RunPlan& plan) {
  return plan.isSlow ? std::vector<JobReading>{{4, 0}, {4, 0}, {7, 100}}
                     : std::vector<JobReading>{{4, 0}, {7, 100}};
}

void addJob(Course& course, const RunPlan& plan, const Recover& outside) {
  JobBuilder(course, plan, outside).build();
}

}  // namespace support
