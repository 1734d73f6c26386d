#include "integrations/slurm/Reason.h"

#include <algorithm>
#include <optional>
#include <set>
#include <sstream>

namespace slurm {
namespace {

constexpr std::string_view kLocation = "; location ";
constexpr std::string_view kSerial = "; serial number ";

/// What stands in a text between a mark and the next semicolon, or its end.
std::string behind(const std::string& text, std::string_view mark) {
  const std::size_t at = text.find(mark);
  if (at == std::string::npos) return "";
  const std::size_t from = at + mark.size();
  return text.substr(from, text.find(';', from) - from);
}

std::string upTo(const std::string& text, std::string_view mark) {
  return text.substr(0, text.find(mark));
}

/// The slot says more to who opens the machine than the kind of part does.
std::string placeOf(const Finding& finding, const Diagnosis& diagnosis) {
  const std::string location = behind(diagnosis.text, kLocation);
  if (!location.empty()) return location;
  if (!diagnosis.part.empty()) return diagnosis.part;
  return finding.device.empty() ? finding.element : finding.device;
}

bool isMemory(const Finding& finding) {
  return finding.record.find("Memory module") != std::string::npos ||
         finding.service.find("Memory") != std::string::npos;
}

/// The bits in "failing bits 3, 17" at this place of a record.
std::vector<unsigned> bitsAt(const std::string& line, std::size_t from) {
  std::vector<unsigned> bits;
  std::istringstream numbers(line.substr(from));
  unsigned bit = 0;
  while (numbers >> bit && bit < 64) {
    bits.push_back(bit);
    char comma = 0;
    if (!(numbers >> comma) || comma != ',') break;
  }
  return bits;
}

/// The bits that failed again when their page was tested alone, as a memory test's record has them.
std::set<unsigned> stuckBits(const std::string& record) {
  constexpr std::string_view kMark = "a hard fault, failing bits ";
  std::set<unsigned> bits;
  std::istringstream lines(record);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t at = line.find(kMark);
    if (at == std::string::npos) continue;
    for (const unsigned bit : bitsAt(line, at + kMark.size())) bits.insert(bit);
  }
  return bits;
}

std::string stuckText(const std::set<unsigned>& bits) {
  constexpr std::size_t kMostNamed = 4;
  if (bits.empty()) return "";
  if (bits.size() > kMostNamed) return ", " + std::to_string(bits.size()) + " stuck bits";
  std::string list;
  for (const unsigned bit : bits) list += (list.empty() ? "" : ", ") + std::to_string(bit);
  return std::string(", stuck bit") + (bits.size() == 1 ? " " : "s ") + list;
}

std::string errorsText(const Finding& finding) {
  const std::string what = isMemory(finding) ? "memory error" : "error";
  return std::to_string(finding.errors) + " " + what + (finding.errors == 1 ? "" : "s") +
         stuckText(stuckBits(finding.record));
}

std::string withoutFullStop(std::string text) {
  while (!text.empty() && (text.back() == '.' || text.back() == ' ')) text.pop_back();
  return text;
}

/// Of memory the errors say it all; of others, what to do tells most.
std::string whatOf(const Finding& finding, const Diagnosis& diagnosis) {
  const bool counted = finding.errors > 0 && diagnosis.isFailure;
  if (counted && isMemory(finding)) return errorsText(finding);
  std::string text = counted ? errorsText(finding)
                             : withoutFullStop(upTo(upTo(diagnosis.text, kLocation), kSerial));
  if (diagnosis.actions.empty()) return text;
  return text + (text.empty() ? "" : "; ") + withoutFullStop(diagnosis.actions.front());
}

/// What there is to say where a test only failed.
Diagnosis bare(const Finding& finding) {
  Diagnosis diagnosis;
  diagnosis.isFailure = finding.isFailure;
  diagnosis.text = finding.service + (finding.isFailure ? " failed" : " warns");
  if (!finding.remark.empty()) diagnosis.text += ", " + finding.remark;
  return diagnosis;
}

/// A number beyond its limit says less than what the test itself says, which has the part.
std::vector<Diagnosis> diagnosesOf(const Finding& finding) {
  for (const bool ofLimits : {false, true}) {
    std::vector<Diagnosis> told;
    for (const Diagnosis& one : finding.diagnoses)
      if (one.isFailure == finding.isFailure && one.isOfLimit == ofLimits) told.push_back(one);
    if (!told.empty()) return told;
  }
  return {bare(finding)};
}

struct Told {
  std::string place;
  std::string text;
};

/// Each part once, with what was said of it first: several tests find the same.
std::vector<Told> tell(const std::vector<Finding>& findings, bool warnings) {
  std::vector<Told> list;
  for (const bool failures : {true, false}) {
    for (const Finding& finding : findings) {
      if (finding.isFailure != failures || (!failures && !warnings)) continue;
      for (const Diagnosis& diagnosis : diagnosesOf(finding)) {
        const std::string place = placeOf(finding, diagnosis);
        const bool isKnown = std::any_of(list.begin(), list.end(),
                                         [&](const Told& one) { return one.place == place; });
        if (!isKnown) list.push_back({place, place + ": " + whatOf(finding, diagnosis)});
      }
    }
  }
  return list;
}

}  // namespace

std::string asReason(std::string_view text) {
  std::string reason;
  bool wasBlank = true;  // none in front, and no two in a row
  for (const char letter : text) {
    const auto code = static_cast<unsigned char>(letter);
    if (code == ' ' || code == '\t' || code == '\n' || code == '\r') {
      if (!wasBlank) reason += ' ';
      wasBlank = true;
      continue;
    }
    // Quotes would end the reason for who reads scontrol's answers.
    const bool isPlain = code > ' ' && code < 0x7f && code != '"' && code != '\\';
    if (!isPlain && code >= 0x80 && code < 0xc0) continue;  // the rest of a character
    reason += code == '"' ? '\'' : isPlain ? letter : '?';
    wasBlank = false;
  }
  if (reason.size() > kLongestReason) reason = reason.substr(0, kLongestReason - 3) + "...";
  while (!reason.empty() && reason.back() == ' ') reason.pop_back();
  return reason;
}

std::string reasonFrom(const std::vector<Finding>& findings, bool warnings) {
  const std::vector<Told> told = tell(findings, warnings);
  std::string reason;
  for (std::size_t i = 0; i < told.size(); ++i) {
    const std::string rest = "; and " + std::to_string(told.size() - i) + " more";
    const std::string next = (i == 0 ? "" : "; ") + asReason(told[i].text);
    if (i > 0 && reason.size() + next.size() + rest.size() > kLongestReason) return reason + rest;
    reason += next;
  }
  return asReason(reason);
}

}  // namespace slurm
