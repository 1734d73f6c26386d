#pragma once

#include <cstdint>
#include <string>

#include "text/JsonText.h"

namespace reports {

/// One line of an OCP stream under construction: its number and time are written at once, then
/// comes what is between `of...` and `finish`.
class OcpLine {
 public:
  OcpLine(std::uint64_t sequence, const std::string& timestamp);

  /// What it holds: a member of an artifact of the run, or of the step with that identifier.
  text::JsonText& ofRun(const char* artifact);
  text::JsonText& ofStep(const std::string& step, const char* artifact);

  /// The line without its end.
  std::string finish();

  /// The first line of each stream.
  static std::string schemaVersion(const std::string& timestamp);

 private:
  text::JsonText m_json;
};

}  // namespace reports
