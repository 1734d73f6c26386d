#pragma once

#include <string>
#include <vector>

#include "execution/JobMonitor.h"
#include "runner/InstanceLookup.h"
#include "tests/results/Events.h"
#include "tests/support/World.h"

namespace support {

/// A job that says what a test wants it to say, and a monitor that follows it.
class JobWorld : public World {
 public:
  explicit JobWorld(const std::vector<JobReading>& readings,
                    const std::string& testName = "Disk Test",
                    const std::string& jobClass = "CIM_ConcreteJob")
      : test(addTest(testName, "disk0", "Disk")),
        job(finishJob(test, "job-1", readings, jobClass)) {}

  diagsrunner::JobMonitor monitor() const {
    return {job, test.id, diagsrunner::familyOptions(NZELVOR20::TCIMValue("cmpi"))};
  }
  void follow() const { monitor().follow(); }
  /// What is said and waited for, without the object model.
  std::string course() { return journal.select({Kind::output, Kind::log, Kind::sleep}); }

  const ScriptedTest test;
  const NZELVOR20::TCIMReference job;
};

inline std::string shownFirst(int percentage) {
  return out("\nPercent Complete: " + std::to_string(percentage) + "%\n");
}

inline std::string shownLater(int percentage) {
  return out("\nPercent Complete : " + std::to_string(percentage) + "%\n");
}

inline std::string polled(int state, int percentage,
                          const std::string& className = "CIM_ConcreteJob") {
  return trace("JobState = " + std::to_string(state) + "\tpercentComplete = " +
               std::to_string(percentage) + "\tClassName = " + className + "\n");
}

inline std::string waited() { return sleptFor(5000); }

}  // namespace support
