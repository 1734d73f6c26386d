#include "results/ResultParser.h"

#include <iterator>

#include "framework/TOSSpecific.h"

namespace diagsrunner {

namespace {

/// The elements in a list of just their number; `list` keeps its memory for the next ones.
template <typename T>
std::vector<T> takeAll(std::vector<T>& list) {
  std::vector<T> taken(std::make_move_iterator(list.begin()), std::make_move_iterator(list.end()));
  list.clear();
  return taken;
}

}  // namespace

ResultParser::ResultParser() : m_isOEMBuild(NZELVOR20::TOSSpecific::isOEMBuild()) {}

ResultParser::~ResultParser() = default;

VendorMessages ResultParser::GetVendorMessages() const& { return m_vendorMessages; }

VendorMessages ResultParser::GetVendorMessages() && { return std::move(m_vendorMessages); }

void ResultParser::StartElement(const std::string& name, const Attributes& attributes) {
  const std::string_view element = enter(name);
  if (element == "diaganalysis") {
    if (attributes.count("version") == 0) {
      Error("No Version Specified for DIAGANALYSIS identifier");
    }
  } else if (element == "diagnostictest") {
    startTest(attributes);
  } else if (element == "result") {
    startResult(attributes);
  } else if (element == "action" || element == "oemaction") {
    startAction(attributes);
  } else if (element != "errorcode" && element != "msg") {
    Error("Unrecognized identifier");
  }
}

std::string_view ResultParser::enter(const std::string& name) {
  m_currentElement = lowerCasedAscii(name);
  return m_currentElement;
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
      m_state = lowerCasedAscii(value);
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
    m_actionPriority = lowerCasedAscii(priority->second);
  }
}

bool ResultParser::isActionOfThisBuild() const {
  return (std::string_view(m_currentElement) == "oemaction") == m_isOEMBuild;
}

void ResultParser::CharacterData(const std::string& text) {
  m_characterData += m_characters.trimmed(text);
}

void ResultParser::EndElement(const std::string& name) {
  const std::string_view element = enter(name);
  if (element == "diaganalysis") {
    return;
  }
  if (element == "diagnostictest") {
    m_testName.clear();
    return;
  }
  if (element == "result") {
    endResult();
  } else if (element == "action" || element == "oemaction") {
    endAction();
  } else if (element == "msg") {
    endMessage();
  } else if (element == "errorcode") {
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
  record.state = m_state;
  record.messages = takeAll(m_messages);
  record.actions = takeAll(m_actions);
  keep(std::move(record));
  m_state.clear();
  m_errorCode.clear();
}

/// Records of one test mostly stand together: the place behind the last one is tried first.
void ResultParser::keep(VendorMessageRecord record) {
  const bool followsLast = !m_vendorMessages.empty() && m_last->first == m_testName;
  const auto place = followsLast ? std::next(m_last) : m_vendorMessages.upper_bound(m_testName);
  m_last = m_vendorMessages.emplace_hint(place, m_testName, std::move(record));
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
