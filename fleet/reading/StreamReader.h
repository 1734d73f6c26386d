#pragma once

#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "fleet/reading/Line.h"
#include "fleet/reading/Series.h"
#include "fleet/reading/Step.h"
#include "fleet/reading/StreamResult.h"

namespace fleet {

/// What a thread keeps from stream to stream, so that the next one is read quicker.
struct Scratch {
  Line line;
  Sums sums;
  KnownSeries series;
  std::string key;
};

/// Reads the streams of OCP Test & Validation output, version 2, of any program, one after the
/// other: a line at a time, in memory that does not grow with their length. Of what the format
/// leaves open it needs nothing; what this system's own streams say beyond it is used.
class StreamReader {
 public:
  StreamReader(Tables& tables, Scratch& scratch, const Limits& limits = {})
      : m_tables(tables), m_scratch(scratch), m_limits(limits) {}

  /// `file` is the name for complaints. Throws `std::runtime_error` where it cannot be read.
  StreamResult read(std::istream& in, const std::string& file);

 private:
  void begin(const std::string& file);
  bool takeTooLong();
  bool takeLine(std::string_view text, bool isWhole);
  bool takeFirst();
  bool take(std::string_view text);
  bool beginRun(std::string_view text);
  void endRun();
  void takeStep();
  void beginStep();
  bool giveNumber(const std::string& name, std::uint32_t& number);
  void beginSeries(Step& step);
  void endStep(Step& step, std::string_view status);
  void extend(Step& step);
  void takeNames(Step& step);
  void takeMeasurement(Step& step);
  void takeSeriesElement(Step& step);
  void takeDiagnosis(Step& step);
  void addFinding(Step& step, Verdict verdict, const std::string& text);
  void describePart(Finding& finding, const Step& step) const;
  const Part* partOf(const Step& step) const;
  std::optional<std::uint32_t> seriesOf(const Step& step);
  void add(std::uint32_t series, double value);
  void close(Step& step, Verdict verdict);
  void finish();
  void complain(const std::string& text);
  void leaveOut(const std::string& text);
  void tellFull(const char* what);

  Tables& m_tables;
  Scratch& m_scratch;
  const Limits m_limits;
  StreamResult m_result;
  std::uint64_t m_number = 0;  ///< of the line
  bool m_hasVersion = false;
  bool m_hasRun = false;
  bool m_isFull = false;
  std::unordered_map<std::string, Step> m_steps;
  std::size_t m_openSeries = 0;             ///< of all open steps
  std::unordered_set<std::size_t> m_named;  ///< tests and devices, by the hashes of their names
  std::unordered_map<std::string, std::size_t> m_parts;    ///< by identifier, name and place
  std::unordered_map<std::uint64_t, std::size_t> m_ended;  ///< by test and device: the outcome
  std::size_t m_failures = 0;                              ///< findings, as the next
  std::size_t m_others = 0;
};

}  // namespace fleet
