#pragma once

#include <map>
#include <string>
#include <vector>

#include "framework/TXmlParser.h"

namespace diagsrunner {

/// Fragments of service paths, in file order, by firmware identifier as it is written in the file.
using ExclusionMatrix = std::map<std::string, std::vector<std::string>>;

/// Reads the exclusion matrix. Content that it does not know is reported to `Error`, which drops
/// it, and the rest of the file is read on.
class FilterDiagsParser : public NZELVOR20::TXmlParser {
 public:
  FilterDiagsParser();
  ~FilterDiagsParser() override;

  /// A copy of the matrix. Of several blocks for one identifier the first counts.
  ExclusionMatrix GetExclusionMatrix() const;

 protected:
  void StartElement(const std::string& name,
                    const std::map<std::string, std::string>& attributes) override;
  void EndElement(const std::string& name) override;
  void ProcessingInstruction(const std::string& target, const std::string& data) override;
  void CharacterData(const std::string& text) override;
  void Comment(const std::string& text) override;
  void Error(const std::string& message) override;

 private:
  /// Sets `name` from the attribute of that name, where there is one.
  void readName(const std::map<std::string, std::string>& attributes, std::string& name);

  std::string m_currentElement;
  std::string m_testName;
  std::string m_biosID;
  std::vector<std::string> m_collectedNames;
  ExclusionMatrix m_matrix;
};

}  // namespace diagsrunner
