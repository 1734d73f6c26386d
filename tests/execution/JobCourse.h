#pragma once

#include <string>
#include <vector>

#include "tests/results/ResultCourse.h"
#include "tests/support/World.h"

namespace support {

/// One run of one test; the parts in which runs differ.
struct RunPlan {
  std::string testName = "Disk Test";
  std::string family = "cmpi";
  bool isIndexed = false;     ///< its position is known, so that it is not searched for
  bool isByUpcall = false;    ///< the direct lookup does not find the instances that may be retried
  bool isFallback = false;    ///< the first method starts no job
  bool isSlow = false;        ///< the job is given time; for a name with "BRCM"
  bool isAssociated = false;  ///< the record is found through its association
  bool isVendor = false;      ///< the record is explained
  bool isFamily = false;      ///< by the entries of the diag service family
};

inline constexpr char kJobPath[] = "root/cimv2:CIM_ConcreteJob.InstanceID=\"job-1\"";
/// The ends of the association between the record and the element, `disk1`.
inline constexpr char kRecordPath[] = "CIM_DiagnosticCompletionRecord.InstanceID=\"rec-1\"";
inline constexpr char kElementPath[] = "CIM_LogicalDevice.DeviceID=\"disk1\"";

inline bool isVor(const FaultPoint& point) { return point.fault == Fault::vorException; }

/// The identifier of the plan's test, and what its job says.
std::string identifierOf(const RunPlan& plan);
std::vector<JobReading> readingsOf(const RunPlan& plan);

/// Adds the course of `HandleConcrete`; `outside` deals with what leaves it.
void addJob(Course& course, const RunPlan& plan, const Recover& outside);

}  // namespace support
