#pragma once

#include <string>
#include <vector>

#include "results/ResultParser.h"
#include "tests/support/World.h"

namespace support {

/// The parser with its notifications open to tests; keeps what is reported to it, which the parser
/// itself drops.
class OpenResultParser : public diagsrunner::ResultParser {
 public:
  using diagsrunner::ResultParser::CharacterData;
  using diagsrunner::ResultParser::EndElement;
  using diagsrunner::ResultParser::StartElement;

  std::vector<std::string> reports;

 protected:
  void Error(const std::string& message) override {
    reports.push_back(message);
    ResultParser::Error(message);
  }
};

/// The table as text, one record to a line: `key/test [state] error: line|line; 1=action|2=action`.
inline std::string describe(const VendorMessages& table) {
  std::string text;
  for (const auto& [key, record] : table) {
    text += key + "/" + record.testName + " [" + record.state + "] " + record.errorCode + ": ";
    for (const std::string& line : record.messages) {
      text += line + "|";
    }
    text += ";";
    for (const auto& [priority, action] : record.actions) {
      text += " " + priority + "=" + action + "|";
    }
    text += "\n";
  }
  return text;
}

/// What a file becomes.
struct Parsed {
  std::string table;
  std::vector<std::string> reports;
};

inline Parsed parseVendorFile(std::string file, bool isOEM = false) {
  World world;
  world.os.isOEM = isOEM;
  OpenResultParser parser;
  parser.Parse(file.data());
  return {describe(parser.GetVendorMessages()), parser.reports};
}

}  // namespace support
