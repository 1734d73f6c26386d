#include "engine/worker/tasks/TestNames.h"

#include <algorithm>
#include <utility>

#include "framework/ICIMClass.h"
#include "framework/ICIMInstance.h"
#include "framework/ICIMProperty.h"
#include "framework/TVORException.h"

namespace engine::tasks {
namespace {

using NZELVOR20::ICIMInstance;
using NZELVOR20::ICIMNamespace;
using InstanceHandle = boost::shared_ptr<ICIMInstance>;

struct Part {
  const char* what;
  const std::string& text;
  const char* separators;
};

bool has(const std::string& text, const char* separators, char c) {
  return std::string(separators).find(c) != std::string::npos && text.find(c) != std::string::npos;
}

InstanceHandle endOf(ICIMNamespace& objects, ICIMInstance& association, const char* role) {
  return objects.GetInstance(association.GetProperty(role, {})->GetValue({}).ToReference(), {});
}

std::string textOf(ICIMInstance& instance, const char* property) {
  return instance.GetProperty(property, {})->ToString();
}

/// What is wrong with the names of one test; empty where nothing is.
std::string lineFor(ICIMNamespace& objects, ICIMInstance& association) {
  const InstanceHandle service = endOf(objects, association, "ServiceProvided");
  const InstanceHandle element = endOf(objects, association, "UserOfService");
  const std::string name = textOf(*service, "Name");
  const std::string device = textOf(*element, "DeviceID");
  const std::string elementName = textOf(*element, "ElementName");
  const std::string why = whyNotNamed(name, device, elementName);
  return why.empty() ? why : "test \"" + name + "," + device + "," + elementName + "\": " + why;
}

}  // namespace

std::string whyNotNamed(const std::string& serviceName, const std::string& deviceId,
                        const std::string& elementName) {
  const Part parts[] = {{"the service's Name", serviceName, ",|"},
                        {"the element's DeviceID", deviceId, ",|"},
                        {"the element's ElementName", elementName, "|"}};
  std::string why;
  for (const Part& part : parts) {
    for (const auto& [c, word] : {std::pair{',', "comma"}, std::pair{'|', "bar"}}) {
      if (!has(part.text, part.separators, c)) continue;
      why += (why.empty() ? "" : "; ") + std::string(part.what) + " has a " + word;
    }
  }
  return why.empty() ? why : why + ", at which identifiers are split: it cannot be run";
}

std::vector<std::string> unnameableTests(ICIMNamespace& objects) {
  std::vector<InstanceHandle> associations;
  const auto offered = objects.GetClass("CIM_AvailableDiagnosticService", {});
  offered->EnumerateInstances(
      [&](const InstanceHandle& one) {
        associations.push_back(one);
        return true;
      },
      true, {});
  std::vector<std::string> lines;
  for (const InstanceHandle& association : associations) {
    try {
      const std::string line = lineFor(objects, *association);
      const bool isNew = std::find(lines.begin(), lines.end(), line) == lines.end();
      if (!line.empty() && isNew) lines.push_back(line);
    } catch (const NZELVOR20::TVORException&) {
      continue;  // a test without one of its ends, or without a name, is not listed
    }
  }
  return lines;
}

}  // namespace engine::tasks
