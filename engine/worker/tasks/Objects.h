#pragma once

#include <boost/shared_ptr.hpp>
#include <set>
#include <string>
#include <vector>

#include "framework/ICIMInstance.h"
#include "framework/ICIMNamespace.h"

/// What a run leaves in the object model: the jobs and records that were not there before it.
namespace engine::tasks {

inline const char* const kJobClass = "CIM_ConcreteJob";
inline const char* const kRecordClass = "CIM_DiagnosticCompletionRecord";

using Instances = std::vector<boost::shared_ptr<NZELVOR20::ICIMInstance>>;

/// Those of the class and of the classes below it; none where a provider fails or there is no such
/// class.
Instances instancesOf(NZELVOR20::ICIMNamespace& objects, const char* className);

std::set<std::string> pathsOf(const Instances& instances);

/// Those whose path is not among `former`.
Instances newInstancesOf(NZELVOR20::ICIMNamespace& objects, const char* className,
                         const std::set<std::string>& former);

/// The text of a property, value names as such; empty where it is null or not there.
std::string textOf(NZELVOR20::ICIMInstance& instance, const char* name);

/// Whether the job has come to an end, by its JobState.
bool isOver(NZELVOR20::ICIMInstance& job);

}  // namespace engine::tasks
