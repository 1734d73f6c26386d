#include "substitute/cmpi.nsp/installation/VendorMessageCheck.h"

#include <algorithm>
#include <array>

#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

namespace {

/// The one name under which the tests of the diag service family look their messages up.
constexpr const char* kFamilyName = "fusion-io:diag service";

constexpr std::array<const char*, 3> kFamilyStates = {"ok", "aborted", "failed"};
/// The texts of a record's "CompletionState".
constexpr std::array<const char*, 8> kStates = {"ok",      "warning", "incomplete", "failed",
                                                "aborted", "stopped", "other",      "unknown"};

bool contains(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

bool isFamilyName(const std::string& name) {
  return contains(name, ":diag service") &&
         (contains(name, "fusion-io:") || contains(name, "fio:") || contains(name, "zel:"));
}

template <typename States>
std::string listed(const States& states) {
  std::string text;
  for (const char* state : states) text += (text.empty() ? "" : ", ") + std::string(state);
  return text;
}

template <typename States>
bool isIn(const States& states, const std::string& state) {
  return std::find(states.begin(), states.end(), state) != states.end();
}

}  // namespace

void VendorMessageCheck::startElement(const std::string& element,
                                      const std::map<std::string, std::string>& attributes) {
  m_open.push_back(element);
  const auto name = attributes.find("name");
  if (element == "diagnostictest" && name != attributes.end()) {
    m_testName = vorcore::nameKey(name->second);
    checkTestName(name->second);
  }
  const auto state = attributes.find("state");
  if (element == "result" && state != attributes.end()) checkState(state->second);
}

void VendorMessageCheck::checkTestName(const std::string& written) const {
  if (contains(m_testName, ",")) {
    m_report("the name \"" + written + "\" has a comma, so that it matches no test");
  } else if (isFamilyName(m_testName) && m_testName != kFamilyName) {
    m_report("the messages of \"" + written + "\" are never looked up: tests of such names share " +
             "those of \"" + kFamilyName + "\"");
  }
}

void VendorMessageCheck::checkState(const std::string& written) const {
  const std::string state = vorcore::nameKey(written);
  if (isFamilyName(m_testName)) {
    if (isIn(kFamilyStates, state)) return;
    m_report("no test of this name ends in the state \"" + written + "\" but in " +
             listed(kFamilyStates));
  } else if (!isIn(kStates, state)) {
    m_report("unknown state \"" + written + "\"; known are " + listed(kStates));
  }
}

void VendorMessageCheck::endElement(const std::string& element) {
  m_open.pop_back();
  if (element == "diagnostictest") m_testName.clear();
}

void VendorMessageCheck::text(const std::string& text) {
  if (text.find_first_not_of(" \t\r\n\v\f") == std::string::npos || isTextTaken()) return;
  m_report("text that belongs to no message: it is joined to the next one");
}

/// The text of an element that is not known belongs to the one around it; messages and error codes
/// of a test without a name are not taken.
bool VendorMessageCheck::isTextTaken() const {
  return std::any_of(m_open.begin(), m_open.end(), [&](const std::string& element) {
    return element == "action" || element == "oemaction" ||
           ((element == "msg" || element == "errorcode") && !m_testName.empty());
  });
}

}  // namespace cmpinsp
