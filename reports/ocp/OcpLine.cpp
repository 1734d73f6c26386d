#include "reports/ocp/OcpLine.h"

namespace reports {

OcpLine::OcpLine(std::uint64_t sequence, const std::string& timestamp) {
  m_json.object().add("sequenceNumber", sequence).add("timestamp", timestamp);
}

text::JsonText& OcpLine::ofRun(const char* artifact) {
  return m_json.object("testRunArtifact").object(artifact);
}

text::JsonText& OcpLine::ofStep(const std::string& step, const char* artifact) {
  return m_json.object("testStepArtifact").add("testStepId", step).object(artifact);
}

std::string OcpLine::finish() { return m_json.endObject().endObject().endObject().text(); }

std::string OcpLine::schemaVersion(const std::string& timestamp) {
  constexpr std::uint64_t kMajor = 2;
  constexpr std::uint64_t kMinor = 0;
  text::JsonText json;
  json.object().add("sequenceNumber", std::uint64_t{0}).add("timestamp", timestamp);
  json.object("schemaVersion").add("major", kMajor).add("minor", kMinor).endObject();
  return json.endObject().text();
}

}  // namespace reports
