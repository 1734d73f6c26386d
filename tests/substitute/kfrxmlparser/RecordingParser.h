#pragma once

#include <string>

#include "framework/TXmlParser.h"

namespace kfrxmlparser {

/// Writes every notification down as one line of `record`: `1 +a x="1"`, `1 "text"`, `1 -a`,
/// `1 !comment`, `1 ?target data`, `1 error: message`, each with the line that `GetCurLine` gave.
class RecordingParser : public NZELVOR20::TXmlParser {
 public:
  using TXmlParser::GetAttributeNValue;
  using TXmlParser::ParseJSSP;

  std::string record;

  /// Parses a copy of `document` that is followed by nothing but its closing zero.
  void parse(const std::string& document) {
    std::string copy = document;
    Parse(copy.data());
  }

 protected:
  void StartElement(const std::string& name,
                    const std::map<std::string, std::string>& attributes) override {
    std::string text = "+" + name;
    for (const auto& attribute : attributes) {
      text += " " + attribute.first + "=\"" + attribute.second + "\"";
    }
    note(text);
  }
  void EndElement(const std::string& name) override { note("-" + name); }
  void ProcessingInstruction(const std::string& target, const std::string& data) override {
    note("?" + target + " " + data);
  }
  void CharacterData(const std::string& text) override { note("\"" + text + "\""); }
  void Comment(const std::string& text) override { note("!" + text); }
  void Error(const std::string& message) override { note("error: " + message); }

 private:
  void note(const std::string& text) { record += std::to_string(GetCurLine()) + " " + text + "\n"; }
};

}  // namespace kfrxmlparser
