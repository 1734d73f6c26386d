#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "diagsrunner/VendorMessageRecord.h"
#include "framework/TXmlParser.h"
#include "runner/Text.h"

namespace diagsrunner {

/// Reads the vendor messages file into a table. Content that it does not know is reported to
/// `Error`, which drops it, and the rest of the file is read on.
class ResultParser : public NZELVOR20::TXmlParser {
 public:
  ResultParser();
  ~ResultParser() override;

  /// A copy of the table.
  VendorMessages GetVendorMessages() const&;
  /// The table itself, from a parser that is done with.
  VendorMessages GetVendorMessages() &&;

 protected:
  void StartElement(const std::string& name,
                    const std::map<std::string, std::string>& attributes) override;
  void EndElement(const std::string& name) override;
  void ProcessingInstruction(const std::string& target, const std::string& data) override;
  void CharacterData(const std::string& text) override;
  void Comment(const std::string& text) override;
  void Error(const std::string& message) override;

 private:
  using Attributes = std::map<std::string, std::string>;

  std::string_view enter(const std::string& name);
  void startTest(const Attributes& attributes);
  void startResult(const Attributes& attributes);
  void startAction(const Attributes& attributes);
  void endResult();
  void keep(VendorMessageRecord record);
  void endAction();
  void endMessage();
  void endErrorCode();
  bool isActionOfThisBuild() const;

  const CharacterRules m_characters;
  std::string m_currentElement;
  std::string m_characterData;
  std::string m_testName;
  std::string m_errorCode;
  std::string m_state;
  std::vector<std::string> m_messages;
  std::vector<std::pair<std::string, std::string>> m_actions;
  std::string m_actionPriority;
  std::string m_actionText;
  VendorMessages m_vendorMessages;
  VendorMessages::iterator m_last;  ///< the record kept last; none in an empty table
  const bool m_isOEMBuild;
};

}  // namespace diagsrunner
