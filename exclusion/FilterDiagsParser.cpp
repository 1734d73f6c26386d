#include "exclusion/FilterDiagsParser.h"

#include "runner/Text.h"

namespace diagsrunner {

FilterDiagsParser::FilterDiagsParser() = default;

FilterDiagsParser::~FilterDiagsParser() = default;

ExclusionMatrix FilterDiagsParser::GetExclusionMatrix() const { return m_matrix; }

void FilterDiagsParser::StartElement(const std::string& name,
                                     const std::map<std::string, std::string>& attributes) {
  m_currentElement = lowerCasedAscii(name);
  if (m_currentElement == "biosid") {
    readName(attributes, m_biosID);
  } else if (m_currentElement == "diagnostictest") {
    readName(attributes, m_testName);
  } else {
    Error("Unrecognized identifier");
  }
}

void FilterDiagsParser::readName(const std::map<std::string, std::string>& attributes,
                                 std::string& name) {
  for (const auto& [attribute, value] : attributes) {
    if (attribute == "name") {
      name = value;
      return;
    }
    Error("Unrecognized Attribute.");
  }
}

void FilterDiagsParser::EndElement(const std::string& name) {
  m_currentElement = lowerCasedAscii(name);
  if (m_currentElement == "biosid") {
    m_matrix.emplace(m_biosID, m_collectedNames);
    m_biosID.clear();
    m_collectedNames.clear();
    return;
  }
  if (m_currentElement == "diagnostictest") {
    m_collectedNames.push_back(m_testName);
    m_testName.clear();
  } else {
    Error("Unrecognized identifier");
  }
  m_currentElement.clear();
}

void FilterDiagsParser::Error(const std::string&) {}

void FilterDiagsParser::ProcessingInstruction(const std::string&, const std::string&) {}

void FilterDiagsParser::CharacterData(const std::string&) {}

void FilterDiagsParser::Comment(const std::string&) {}

}  // namespace diagsrunner
