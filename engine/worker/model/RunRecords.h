#pragma once

#include <set>
#include <string>
#include <vector>

#include "engine/events/Event.h"
#include "engine/worker/model/ObjectReading.h"

namespace engine::worker {

/// What the records that a run leaves behind have for programs. Made before the run, since
/// providers may keep the records of former ones.
class RunRecords {
 public:
  struct Findings {
    std::vector<Measurement> measurements;
    std::vector<Diagnosis> diagnoses;   ///< of the records that say what to do, or about which part
    std::vector<std::string> problems;  ///< why some could not be had, in words
  };

  /// Remembers the records that there are. `objects` is the object manager's namespace.
  explicit RunRecords(Objects objects);

  /// What the records say that came since then, of the diagnostic service with that Name (of every
  /// one for an empty name): those of type Results or Statistics whose RecordFormat declares what
  /// is in their RecordData, and those of any type with a CorrectiveAction or a FaultyPart. Throws
  /// nothing that concerns records; what a provider cannot deliver becomes a problem.
  Findings collect(const std::string& service) const;

 private:
  Objects m_objects;
  std::set<std::string> m_former;
};

}  // namespace engine::worker
