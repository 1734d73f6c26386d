#pragma once

#include <map>
#include <string>
#include <vector>

#include "framework/TXmlParser.h"

namespace diagsrunner {

/// Reads the list of tests that are never offered. What it does not know is logged, and the rest of
/// the file is read on.
class ExcludeParser : public NZELVOR20::TXmlParser {
 public:
  ExcludeParser();
  ~ExcludeParser() override;

  /// A copy of the names, in document order and as written; an element without a name counts as an
  /// empty one.
  std::vector<std::string> GetExcludedTests() const;

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

  void startRoot(const Attributes& attributes);
  void startTest(const Attributes& attributes);

  std::vector<std::string> m_excludedTests;
  std::string m_currentElement;
  std::string m_testName;
};

}  // namespace diagsrunner
