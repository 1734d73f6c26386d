#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace fleet {

/// What a line of a stream is about, as far as a fleet's answer needs it.
enum class LineKind : std::uint8_t {
  kOther,
  kVersion,
  kRunStart,
  kRunEnd,
  kRunError,
  kStepStart,
  kStepEnd,
  kMeasurement,
  kSeriesStart,
  kSeriesElement,
  kDiagnosis,
  kStepError,
  kExtension
};

/// The members of a line that count, flat: what one kind of line does not have is empty. Its texts
/// keep their room from line to line, so that reading a line takes no memory.
struct Line {
  LineKind kind = LineKind::kOther;
  std::int64_t major = -1;  ///< of the version
  std::string timestamp;
  std::string step;  ///< testStepId
  std::string name;  ///< of a step, measurement or extension
  std::string unit;
  std::string hardware;   ///< hardwareInfoId
  std::string component;  ///< subcomponent's name
  std::string series;     ///< measurementSeriesId
  std::string word;       ///< status, type or symptom
  std::string second;     ///< result or verdict
  std::string message;
  std::string service;  ///< of the extension "test"
  std::string device;   ///< likewise
  std::string outcome;  ///< of the extension "end"
  double value = 0;
  bool hasValue = false;  ///< a number was measured

  void clear();
};

/// Reads one line into `line`; where it is no JSON, the answer is false and `position` is the byte
/// at which it turned out. Nothing of what it does not look for is kept.
bool readLine(std::string_view text, Line& line, std::size_t& position);

}  // namespace fleet
