// What a client of the CIM model sees of the entropy test: its instances, class by class.
#pragma once

#include <string>
#include <vector>

#include "cmpi_objects.h"
#include "entropy_runs.h"

inline const char* const kTestClass = "ACME_EntropyTest";
inline const char* const kJobClass = "ACME_EntropyTestJob";

/// Makes instances as objects of the call under way.
class EntropyModel {
 public:
  EntropyModel(const CMPIBroker* broker, std::vector<RunState> runs)
      : m_broker(broker), m_runs(std::move(runs)) {}

  /// The instances of exactly this class. Throws where the class is none of ours.
  std::vector<CMPIInstance*> instances(const std::string& className) const;

  /// The instance with this path. Throws where there is none.
  CMPIInstance* instance(const CMPIObjectPath* path) const;

  static const std::vector<std::string>& associationClasses();

  CMPIObjectPath* jobPath(const RunState& run) const;
  CMPIObjectPath* jobPath(const std::string& id) const;

 private:
  CMPIObjectPath* pathOf(const std::string& className, const char* key,
                         const std::string& value) const;
  CMPIObjectPath* pathOnSystem(const std::string& className, const char* key,
                               const std::string& value) const;
  CMPIObjectPath* sourcePath() const;
  CMPIObjectPath* testPath() const;
  CMPIObjectPath* recordPath(const RunState& run, int number) const;

  CMPIInstance* instanceAt(const CMPIObjectPath* path) const;
  CMPIInstance* association(const std::string& className, const char* role1, CMPIObjectPath* end1,
                            const char* role2, CMPIObjectPath* end2) const;
  CMPIInstance* source() const;
  CMPIInstance* test() const;
  CMPIInstance* available() const;
  CMPIInstance* job(const RunState& run) const;
  CMPIInstance* record(const RunState& run, int number) const;

  const CMPIBroker* const m_broker;
  const std::vector<RunState> m_runs;
};
