#include "engine/worker/tasks/Objects.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "framework/ICIMClass.h"
#include "framework/ICIMProperty.h"
#include "framework/TAddToVectorCallback.h"
#include "framework/TVORException.h"

namespace engine::tasks {
namespace {

using NZELVOR20::ICIMInstance;

/// JobState: Completed, Terminated, Killed, Exception.
constexpr std::uint64_t kFirstEndState = 7;
constexpr std::uint64_t kLastEndState = 10;

std::string pathOf(ICIMInstance& instance) { return instance.GetObjectPath({}).GetPath(); }

}  // namespace

Instances instancesOf(NZELVOR20::ICIMNamespace& objects, const char* className) {
  Instances found;
  try {
    if (const auto theClass = objects.GetClass(className, {})) {
      theClass->EnumerateInstances(NZELVOR20::TAddToVectorCallback<ICIMInstance>(found), true, {});
    }
  } catch (const NZELVOR20::TVORException&) {
    return found;
  }
  return found;
}

std::set<std::string> pathsOf(const Instances& instances) {
  std::set<std::string> paths;
  for (const auto& instance : instances) paths.insert(pathOf(*instance));
  return paths;
}

Instances newInstancesOf(NZELVOR20::ICIMNamespace& objects, const char* className,
                         const std::set<std::string>& former) {
  Instances found = instancesOf(objects, className);
  const auto isFormer = [&](const auto& one) { return former.count(pathOf(*one)) != 0; };
  found.erase(std::remove_if(found.begin(), found.end(), isFormer), found.end());
  return found;
}

std::string textOf(ICIMInstance& instance, const char* name) {
  const auto property = instance.GetProperty(name, {});
  return property && !property->GetValue({}).IsNull() ? property->ToString() : std::string();
}

bool isOver(ICIMInstance& job) {
  const auto state = job.GetProperty("JobState", {});
  if (!state || state->GetValue({}).IsNull()) return false;
  const std::string text = state->GetValue({}).ToString(10);
  const std::uint64_t number = std::strtoull(text.c_str(), nullptr, 10);
  return number >= kFirstEndState && number <= kLastEndState;
}

}  // namespace engine::tasks
