#pragma once

#include <string>

#include "tests/support/WithRunner.h"

namespace support {

/// A runner that has listed one test and has finished a run of it, the job "job-1". There is no
/// record of it yet.
class FinishedRun : public WithRunner<> {
 public:
  explicit FinishedRun(const std::string& name = "Disk Test") : FinishedRun(name, "disk0") {}
  FinishedRun(const std::string& name, const std::string& deviceID)
      : testName(name), id(name + "," + deviceID + ",Disk") {
    setListed(id);
    setFinished(id, "job-1");
  }

  /// Adds a record of the run.
  InstancePtr addOwnRecord(const std::string& state, const std::string& data = "",
                           int appearsAt = 1) {
    return addRecord(testName, "record for job-1", state, data, appearsAt);
  }

  std::string simple() { return runner().SimpleResults(id, hostHandle); }
  std::string immediate() { return runner().ImmediateResults(id, hostHandle); }
  std::string extended() { return runner().ExtendedResults(id, hostHandle); }

  const std::string testName;
  const std::string id;
};

}  // namespace support
