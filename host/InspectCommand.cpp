#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <string>
#include <vector>

#include "framework/ICIMClass.h"
#include "framework/ICIMInstance.h"
#include "framework/ICIMNamespace.h"
#include "framework/ICIMProperty.h"
#include "framework/TVORException.h"
#include "host/Commands.h"
#include "host/Messages.h"
#include "host/Output.h"
#include "text/CloseMatches.h"

namespace host {
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

void printInstance(ICIMInstance& instance) {
  printLine("TRunnerCollectClassInstances(" + instance.GetObjectPath({}).GetPath() + ")");
  instance.EnumerateProperties(
      [](const boost::shared_ptr<ICIMProperty>& property) {
        const TCIMValue value = property->GetValue({});
        if (!value.IsNull()) printField(property->GetName(), textOf(*property, value));
        return true;
      },
      {});
  printLine(std::string());
}

std::size_t printInstances(ICIMClass& shown) {
  std::size_t count = 0;
  shown.EnumerateInstances(
      [&](const boost::shared_ptr<ICIMInstance>& instance) {
        ++count;
        printInstance(*instance);
        return true;
      },
      true, {});
  return count;
}

void reportUnknownClass(ICIMNamespace& objects, const std::string& name) {
  reportError("Class Not Found: \"" + name + "\"" + text::suggestions(name, classNames(objects)));
}

/// A class that nobody enumerates looks like one without instances.
bool reportRefusals(const substitute::Framework& framework) {
  const std::vector<std::string> refusals = framework.takeRefusals();
  for (const std::string& refusal : refusals) reportError(refusal);
  return !refusals.empty();
}

}  // namespace

ExitStatus inspectClass(Session& session, const Options& options) {
  ICIMNamespace& objects = *session.framework().objectManager();
  const ClassHandle shown = findClass(objects, options.className);
  if (!shown) {
    reportUnknownClass(objects, options.className);
    return ExitStatus::kNothingToRun;
  }
  const std::size_t count = printInstances(*shown);
  const bool wasRefused = reportRefusals(session.framework());
  if (count > 0) return ExitStatus::kPassed;
  if (!wasRefused) reportError("class " + shown->GetName() + " has no instances");
  return ExitStatus::kNothingToRun;
}

}  // namespace host
