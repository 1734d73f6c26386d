#include "reports/verify/OcpVerifier.h"

#include <utility>

#include "engine/events/Timestamp.h"
#include "reports/common/Excerpt.h"
#include "reports/common/LineReader.h"
#include "reports/ocp/OcpReader.h"

namespace reports {
namespace {

using Json = nlohmann::json;

/// Others write more digits of a second than a time here has.
bool isUtcTime(const std::string& text) {
  constexpr std::size_t kUpToMicroseconds = 26;
  if (text.size() <= kUpToMicroseconds + 1) return engine::timeFrom(text).has_value();
  const std::size_t rest = text.find_first_not_of("0123456789", kUpToMicroseconds);
  if (rest == std::string::npos) return false;
  return engine::timeFrom(text.substr(0, kUpToMicroseconds) + text.substr(rest)).has_value();
}

}  // namespace

OcpVerifier::OcpVerifier(Tell tell)
    : m_tell(std::move(tell)),
      m_order([this](Rule rule, const std::string& text) { this->tell(rule, text); }) {}

void OcpVerifier::tell(Rule rule, const std::string& text) { m_tell({m_line, rule, text}); }

void OcpVerifier::take(std::string_view line) {
  OcpText text;
  try {
    text = readOcpLine(line);
  } catch (const NoJson& fault) {
    return pass(Rule::kJson, fault.what());
  }
  ++m_line;
  if (!text.repeated.empty()) {
    tell(Rule::kRepeated, "the member \"" + excerpt(text.repeated) + "\" stands twice");
  }
  checkOcpSchema(text.value, [this](Rule rule, const std::string& says) { tell(rule, says); });
  checkSequence(text.value);
  checkTimes(text.value);
  m_order.take(text.value);
}

void OcpVerifier::takeUnended(std::string_view line) {
  try {
    readOcpLine(line);
  } catch (const NoJson&) {
    return pass(Rule::kCut, "the line has been cut off");
  }
  take(line);
  tell(Rule::kCut, "the line has no end");
}

void OcpVerifier::pass(Rule rule, const std::string& text) {
  ++m_line;
  ++m_nextSequence;
  tell(rule, text);
}

/// Behind a gap, it counts on from there, so that one is told once.
void OcpVerifier::checkSequence(const Json& line) {
  const std::uint64_t wanted = m_nextSequence++;
  if (!line.is_object() || !line.contains("sequenceNumber")) return;
  const Json& number = line["sequenceNumber"];
  if (!number.is_number() || number.get<double>() == static_cast<double>(wanted)) return;
  tell(Rule::kSequence, "the sequence number is not " + std::to_string(wanted));
  if (number.is_number_unsigned()) m_nextSequence = number.get<std::uint64_t>() + 1;
}

bool OcpVerifier::isTimeRight(const Json& object) {
  const auto member = object.find("timestamp");
  if (member == object.end() || !member->is_string()) return false;
  const auto& time = member->get_ref<const std::string&>();
  if (isUtcTime(time)) return true;
  tell(Rule::kTime, "the timestamp \"" + excerpt(time) + "\" is no time in UTC");
  return false;
}

void OcpVerifier::checkTimes(const Json& line) {
  if (!line.is_object()) return;
  if (isTimeRight(line)) m_timestamp = line["timestamp"].get<std::string>();
  const auto artifact = line.find("testStepArtifact");
  if (artifact == line.end() || !artifact->is_object()) return;
  const auto element = artifact->find("measurementSeriesElement");
  if (element != artifact->end() && element->is_object()) isTimeRight(*element);
}

void OcpVerifier::end() {
  if (m_line == 0) m_line = 1;
  m_order.end();
}

std::uint64_t verifyOcp(std::istream& in, const std::string& file, const Tell& tell) {
  LineReader lines(in, file);
  OcpVerifier verifier(tell);
  while (lines.next()) {
    if (lines.isTooLong()) {
      verifier.pass(Rule::kLong, "the line is longer than 64 MiB");
    } else if (!lines.isWhole()) {
      verifier.takeUnended(lines.line());
    } else {
      verifier.take(lines.line());
    }
  }
  verifier.end();
  return lines.number();
}

}  // namespace reports
