#include "tests/conformance/Conformance.h"

#include <sstream>

#include "framework/ICIMClass.h"
#include "framework/TCMPIInstance.h"
#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/Bootstrap.h"

namespace conformance {

using namespace NZELVOR20;

namespace {

/// One framework for all the tests of the process.
boost::shared_ptr<ICIMNamespace> objectManager() {
  static const substitute::Framework framework([] {
    substitute::Installation installation;
    installation.root = CONFORMANCE_INSTALLATION;
    installation.schemaCache = false;
    return installation;
  }());
  if (!framework.problems().empty()) {
    throw TVORException(
        TVORStatusCode(eVORFailed, "the installation: " + framework.problems().front().toText()));
  }
  return framework.objectManager();
}

boost::shared_ptr<ICIMInstance> itemOf(int edition) {
  boost::shared_ptr<ICIMInstance> item;
  const auto takeFirst = [&](const boost::shared_ptr<ICIMInstance>& found) {
    item = found;
    return false;
  };
  objectManager()
      ->GetClass("CONF_Item" + std::to_string(edition), {})
      ->EnumerateInstances(takeFirst, true, {});
  return item;
}

std::vector<std::string> textsIn(const TCIMValue& value) {
  std::vector<std::string> texts;
  for (const TCIMValue& element : value.GetElements()) texts.push_back(element.GetText());
  return texts;
}

}  // namespace

std::string Outcome::failuresText() const {
  std::string text;
  for (const std::string& failure : failures) text += failure + "\n";
  return text;
}

Outcome run(int edition, const std::string& group, unsigned threads) {
  TParameterMap parameters;
  parameters["Group"] = TCIMValue(group);
  if (threads != 0) parameters["Threads"] = TCIMValue::Uint32(threads);
  dynamic_cast<TCMPIInstance&>(*itemOf(edition)).InvokeMethod("Run", parameters, {});
  Outcome outcome;
  outcome.done = static_cast<unsigned>(parameters["Done"].ToUint64());
  outcome.failures = textsIn(parameters["Failures"]);
  for (const std::string& line : textsIn(parameters["Tables"])) {
    std::istringstream words(line);
    std::string name;
    Table table;
    words >> name >> table.size >> table.called;
    outcome.tables[name] = table;
  }
  return outcome;
}

const std::vector<std::string>& groups() {
  static const std::vector<std::string> names = {
      "Args",      "Arrays",    "Associations",   "Attaching",        "BadUpcalls",
      "Contexts",  "DateTimes", "Enumerations",   "Errors",           "Factories",
      "Instances", "Lifetimes", "InstanceValues", "Memory",           "Messages",
      "Mutexes",   "Queries",   "ObjectPaths",    "Qualifiers",       "PropertyLists",
      "Results",   "Strings",   "Threads",        "SingleProperties", "Upcalls"};
  return names;
}

}  // namespace conformance
