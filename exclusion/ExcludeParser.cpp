#include "exclusion/ExcludeParser.h"

#include "runner/CoreLog.h"
#include "runner/Text.h"

namespace diagsrunner {

ExcludeParser::ExcludeParser() = default;

ExcludeParser::~ExcludeParser() = default;

std::vector<std::string> ExcludeParser::GetExcludedTests() const { return m_excludedTests; }

void ExcludeParser::StartElement(const std::string& name, const Attributes& attributes) {
  m_currentElement = lowerCasedAscii(name);
  if (m_currentElement == "vor") {
    startRoot(attributes);
  } else if (m_currentElement == "test") {
    startTest(attributes);
  } else {
    Error("Unrecognized identifier");
  }
}

void ExcludeParser::startRoot(const Attributes& attributes) {
  if (attributes.count("version") != 0) {
    m_testName.clear();
  } else {
    Error("No Version Specified for VOR identifier");
  }
}

void ExcludeParser::startTest(const Attributes& attributes) {
  for (const auto& [name, value] : attributes) {
    if (name != "name") {
      Error("Unrecognized Attribute.");
    } else if (m_testName.empty()) {
      m_testName = value;
      return;
    } else {
      Error("Expecting End of Counter Before Beginning New Counter.");
    }
  }
  Error("No Name Specified for Counter identifier");
}

void ExcludeParser::EndElement(const std::string& name) {
  m_currentElement = lowerCasedAscii(name);
  if (m_currentElement == "vor") {
    return;
  }
  if (m_currentElement == "test") {
    m_excludedTests.push_back(m_testName);
    m_testName.clear();
  } else {
    Error("Unrecognized identifier");
  }
  m_currentElement.clear();
}

void ExcludeParser::Error(const std::string& message) {
  logError("TPrebootTest Parser line ", std::to_string(GetCurLine()), ":", message);
}

void ExcludeParser::ProcessingInstruction(const std::string&, const std::string&) {}

void ExcludeParser::CharacterData(const std::string&) {}

void ExcludeParser::Comment(const std::string&) {}

}  // namespace diagsrunner
