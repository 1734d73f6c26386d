#include "results/ResultParser.h"

#include "framework/TOSSpecific.h"
#include "runner/Text.h"

namespace diagsrunner {

ResultParser::ResultParser() : m_isOEMBuild(NZELVOR20::TOSSpecific::isOEMBuild()) {}

ResultParser::~ResultParser() = default;

VendorMessages ResultParser::GetVendorMessages() const& { return m_vendorMessages; }

VendorMessages ResultParser::GetVendorMessages() && { return std::move(m_vendorMessages); }

void ResultParser::StartElement(const std::string& name, const Attributes& attributes) {
  m_currentElement = name;
  toLowerCase(m_currentElement);
  if (m_currentElement == "diaganalysis") {
    if (attributes.count("version") == 0) {
      Error("No Version Specified for DIAGANALYSIS identifier");
    }
  } else if (m_currentElement == "diagnostictest") {
    startTest(attributes);
  } else if (m_currentElement == "result") {
    startResult(attributes);
  } else if (m_currentElement == "action" || m_currentElement == "oemaction") {
    startAction(attributes);
  } else if (m_currentElement != "errorcode" && m_currentElement != "msg") {
    Error("Unrecognized identifier");
  }
}

void ResultParser::startTest(const Attributes& attributes) {
  for (const auto& [name, value] : attributes) {
    if (name == "name") {
      m_testName = lowerCased(value);
    } else {
      Error("Unrecognized Attribute.");
    }
  }
  if (m_testName.empty()) {
    Error("No Name Specified for Object identifier");
  }
}

void ResultParser::startResult(const Attributes& attributes) {
  for (const auto& [name, value] : attributes) {
    if (name == "state") {
      m_state = lowerCased(value);
    } else {
      Error("Unrecognized Attribute.");
    }
  }
}

void ResultParser::startAction(const Attributes& attributes) {
  if (!isActionOfThisBuild()) {
    return;
  }
  const auto priority = attributes.find("priority");
  if (priority != attributes.end()) {
    m_actionPriority = lowerCased(priority->second);
  }
}

bool ResultParser::isActionOfThisBuild() const {
  return (m_currentElement == "oemaction") == m_isOEMBuild;
}

void ResultParser::CharacterData(const std::string& text) { m_characterData += trimmed(text); }

void ResultParser::EndElement(const std::string& name) {
  m_currentElement = name;
  toLowerCase(m_currentElement);
  if (m_currentElement == "diaganalysis") {
    return;
  }
  if (m_currentElement == "diagnostictest") {
    m_testName.clear();
    return;
  }
  if (m_currentElement == "result") {
    endResult();
  } else if (m_currentElement == "action" || m_currentElement == "oemaction") {
    endAction();
  } else if (m_currentElement == "msg") {
    endMessage();
  } else if (m_currentElement == "errorcode") {
    endErrorCode();
  } else {
    Error("Unrecognized identifier");
  }
  m_currentElement.clear();
}

void ResultParser::endResult() {
  VendorMessageRecord record;
  record.testName = m_testName;
  record.errorCode = std::move(m_errorCode);
  record.state = std::move(m_state);
  record.messages = std::move(m_messages);
  record.actions = std::move(m_actions);
  m_vendorMessages.emplace(m_testName, std::move(record));
  m_messages.clear();
  m_actions.clear();
  m_state.clear();
  m_errorCode.clear();
}

void ResultParser::endAction() {
  if (isActionOfThisBuild()) {
    m_actionText = std::move(m_characterData);
    m_actions.emplace_back(std::move(m_actionPriority), std::move(m_actionText));
    m_actionPriority.clear();
    m_actionText.clear();
  }
  m_characterData.clear();
}

void ResultParser::endMessage() {
  if (!m_testName.empty()) {
    m_messages.push_back(std::move(m_characterData));
    m_characterData.clear();
  }
}

void ResultParser::endErrorCode() {
  if (!m_testName.empty()) {
    m_errorCode = std::move(m_characterData);
    m_characterData.clear();
  }
}

void ResultParser::ProcessingInstruction(const std::string&, const std::string&) {}

void ResultParser::Comment(const std::string&) {}

void ResultParser::Error(const std::string&) {}

}  // namespace diagsrunner
