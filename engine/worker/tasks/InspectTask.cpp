#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <string>
#include <vector>

#include "engine/worker/tasks/Tasks.h"
#include "engine/worker/wire/Wire.h"
#include "framework/ICIMClass.h"
#include "framework/ICIMInstance.h"
#include "framework/ICIMNamespace.h"
#include "framework/ICIMProperty.h"
#include "framework/TVORException.h"
#include "text/CloseMatches.h"

namespace engine::tasks {
namespace {

using NZELVOR20::ICIMClass;
using NZELVOR20::ICIMInstance;
using NZELVOR20::ICIMNamespace;
using NZELVOR20::ICIMProperty;
using NZELVOR20::TCIMValue;
using ClassHandle = boost::shared_ptr<ICIMClass>;

/// Empty where there is no such class.
ClassHandle findClass(ICIMNamespace& objects, const std::string& name) {
  try {
    return objects.GetClass(name, {});
  } catch (const NZELVOR20::TVORException& error) {
    const NZELVOR20::EVORStatusCode code = error.GetStatus().GetStatusCode();
    if (code == NZELVOR20::eVORInvalidClass || code == NZELVOR20::eVORNotFound) return {};
    throw;
  }
}

std::vector<std::string> classNames(ICIMNamespace& objects) {
  std::vector<std::string> names;
  const auto add = [&](const ClassHandle& one) {
    names.push_back(one->GetName());
    return true;
  };
  objects.EnumerateRootClasses(
      [&](const ClassHandle& root) {
        add(root);
        root->EnumerateSubclasses(add, true, {});
        return true;
      },
      {});
  return names;
}

std::string withoutBraces(const std::string& text) {
  const bool hasBraces = text.size() >= 2 && text.front() == '{' && text.back() == '}';
  return hasBraces ? text.substr(1, text.size() - 2) : text;
}

/// The value, with the names behind it that its class gives it: "2 (OK)", "{2,5} (OK,Failed)".
std::string textOf(ICIMProperty& property, const TCIMValue& value) {
  const std::string plain = value.ToString(10);
  const std::string named = property.ToString();
  if (named == plain) return plain;
  return plain + " (" + (value.IsArray() ? withoutBraces(named) : named) + ")";
}

void sendInstance(ICIMInstance& instance) {
  wire::send(
      AnswerLine{"", "TRunnerCollectClassInstances(" + instance.GetObjectPath({}).GetPath() + ")"});
  instance.EnumerateProperties(
      [](const boost::shared_ptr<ICIMProperty>& property) {
        const TCIMValue value = property->GetValue({});
        if (!value.IsNull()) wire::send(AnswerLine{property->GetName(), textOf(*property, value)});
        return true;
      },
      {});
  wire::send(AnswerLine{});
}

std::size_t sendInstances(ICIMClass& shown) {
  std::size_t count = 0;
  shown.EnumerateInstances(
      [&](const boost::shared_ptr<ICIMInstance>& instance) {
        ++count;
        sendInstance(*instance);
        return true;
      },
      true, {});
  return count;
}

/// A class that nobody enumerates looks like one without instances.
bool tellRefusals(const substitute::Framework& framework) {
  const std::vector<std::string> refusals = framework.takeRefusals();
  for (const std::string& refusal : refusals) wire::send(Finding{Weight::kWarning, refusal});
  return !refusals.empty();
}

}  // namespace

Done inspect(Session& session, const Request& request) {
  const std::string& name = request.className;
  const ClassHandle shown = findClass(session.objects(), name);
  if (!shown) {
    return {DoneStatus::kNothing, "Class Not Found: \"" + name + "\"" +
                                      text::suggestions(name, classNames(session.objects()))};
  }
  const std::size_t count = sendInstances(*shown);
  const bool wasRefused = tellRefusals(session.framework());
  if (count > 0) return {};
  const std::string text = wasRefused ? "" : "class " + shown->GetName() + " has no instances";
  return {DoneStatus::kNothing, text};
}

}  // namespace engine::tasks
