#include "fleet/reading/StreamReader.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "engine/events/Timestamp.h"
#include "reports/common/Excerpt.h"
#include "reports/common/LineReader.h"
#include "reports/ocp/OcpReader.h"

namespace fleet {
namespace {

constexpr std::size_t kLongestKept = std::size_t{1} << 20U;  ///< the room of a line that is kept
constexpr std::size_t kNamesOfATest = 3;   ///< its own, its service's and its device's
constexpr std::size_t kMostFailures = 32;  ///< of a stream, that are told
constexpr std::size_t kMostOthers = 16;

bool isBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r") == std::string_view::npos;
}

/// Others write more digits of a second than a time here has.
std::optional<engine::Time> timeOf(const std::string& text) {
  constexpr std::size_t kUpToMicroseconds = 26;
  if (text.size() <= kUpToMicroseconds + 1) return engine::timeFrom(text);
  const std::size_t rest = text.find_first_not_of("0123456789", kUpToMicroseconds);
  if (rest == std::string::npos) return std::nullopt;
  return engine::timeFrom(text.substr(0, kUpToMicroseconds) + text.substr(rest));
}

std::string_view withoutMark(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  const bool has = text.substr(0, kByteOrderMark.size()) == kByteOrderMark;
  return has ? text.substr(kByteOrderMark.size()) : text;
}

/// Adds a name to a series' key.
void append(std::string& key, const std::string& name) {
  if (name.size() > kLongestText) {
    key += shortened(name);
  } else {
    key += name;
  }
  key += '\0';
}

}  // namespace

void StreamReader::complain(const std::string& text) {
  m_result.complaints.push_back({m_result.file, m_number, text, false});
}

void StreamReader::leaveOut(const std::string& text) {
  m_result.isLeftOut = true;
  m_result.complaints.push_back({m_result.file, m_number, text, true});
}

void StreamReader::tellFull(const char* what) {
  if (!std::exchange(m_isFull, true)) {
    complain(std::string("has more ") + what + " than a machine can; the rest is passed over");
  }
}

void StreamReader::begin(const std::string& file) {
  m_result = {};
  m_result.file = file;
  m_number = 0;
  m_hasVersion = m_hasRun = m_isFull = false;
  m_steps.clear();
  m_openSeries = 0;
  m_named.clear();
  m_parts.clear();
  m_ended.clear();
  m_failures = m_others = 0;
  m_scratch.series.beginStream(m_limits);
}

StreamResult StreamReader::read(std::istream& in, const std::string& file) {
  begin(file);
  reports::LineReader lines(in, file);
  lines.stopAtTooLong();
  bool goesOn = true;
  while (goesOn && lines.next()) {
    m_number = lines.number();
    goesOn = lines.isTooLong() ? takeTooLong() : takeLine(lines.line(), lines.isWhole());
    // The texts of one huge line must not stay for all those behind it.
    if (lines.line().size() > kLongestKept) m_scratch.line = Line();
  }
  finish();
  return std::move(m_result);
}

bool StreamReader::takeTooLong() {
  if (m_hasVersion) {
    complain("the line is longer than 64 MiB; what follows is passed over");
  } else {
    leaveOut("is no OCP stream: the line is longer than 64 MiB");
  }
  return false;
}

/// Whether the stream goes on.
bool StreamReader::takeLine(std::string_view text, bool isWhole) {
  if (m_number == 1) text = withoutMark(text);
  if (isBlank(text)) return true;
  std::size_t position = 0;
  if (readLine(text, m_scratch.line, position)) {
    return m_hasVersion ? take(text) : takeFirst();
  }
  if (!m_hasVersion) {
    leaveOut("is no OCP stream: the line is no JSON at byte " + std::to_string(position));
  } else if (isWhole) {
    complain("is no JSON at byte " + std::to_string(position) + "; what follows is passed over");
  }
  return false;
}

bool StreamReader::takeFirst() {
  constexpr std::int64_t kMajor = 2;
  const Line& line = m_scratch.line;
  if (line.kind != LineKind::kVersion || line.major < 0) {
    leaveOut("is no OCP stream: it does not begin with a version of the format");
  } else if (line.major != kMajor) {
    leaveOut("is a stream of version " + std::to_string(line.major) + " of the format; " +
             std::to_string(kMajor) + " can be read");
  }
  m_hasVersion = !m_result.isLeftOut;
  return m_hasVersion;
}

bool StreamReader::take(std::string_view text) {
  const Line& line = m_scratch.line;
  switch (line.kind) {
    case LineKind::kRunStart:
      return beginRun(text);
    case LineKind::kVersion:
      complain("another stream begins in the file; it is passed over");
      return false;
    case LineKind::kRunEnd:
      if (m_hasRun) endRun();
      return true;
    case LineKind::kRunError:
      if (!line.word.empty()) m_result.run = std::max(m_result.run, Verdict::kUnfinished);
      return true;
    case LineKind::kOther:
      return true;
    default:
      if (m_hasRun && !m_result.hasEnded) takeStep();
      return true;
  }
}

bool StreamReader::beginRun(std::string_view text) {
  if (std::exchange(m_hasRun, true)) {
    complain("another run begins in the stream; it is passed over");
    return false;
  }
  Identity& machine = m_result.machine;
  machine = identityFrom(reports::readOcpLine(text).value);
  m_result.began = timeOf(m_scratch.line.timestamp);
  if (!machine.isAllParts) tellFull("parts");
  const std::vector<Part>& parts = machine.parts;
  for (std::size_t i = 0; i < parts.size(); ++i) m_parts.emplace("#" + parts[i].id, i);
  for (std::size_t i = 0; i < parts.size(); ++i) {
    m_parts.emplace(parts[i].place, i);
    m_parts.emplace(parts[i].name, i);
  }
  return true;
}

void StreamReader::endRun() {
  const Line& line = m_scratch.line;
  m_result.hasEnded = true;
  if (line.second == "FAIL") m_result.run = Verdict::kFailed;
  if (line.word == "ERROR") m_result.run = std::max(m_result.run, Verdict::kUnfinished);
}

/// What a stream has beyond measure takes no room among the names of all.
bool StreamReader::giveNumber(const std::string& name, std::uint32_t& number) {
  const std::size_t hash = std::hash<std::string>()(name);
  if (m_named.size() >= kNamesOfATest * m_limits.tests && m_named.count(hash) == 0) {
    tellFull("tests");
    return false;
  }
  m_named.insert(hash);
  number = m_tables.names.numberOf(name);
  return true;
}

void StreamReader::beginStep() {
  const Line& line = m_scratch.line;
  if (m_steps.size() >= m_limits.tests) return tellFull("tests");
  Step step;
  step.testName = shortened(withoutRepetition(line.name));
  if (step.testName.empty()) step.testName = shortened("step " + line.step);
  if (!giveNumber(step.testName, step.test)) return;
  Step& place = m_steps[line.step];
  m_openSeries -= place.series.size();
  place = std::move(step);
}

void StreamReader::beginSeries(Step& step) {
  const Line& line = m_scratch.line;
  const std::optional<std::uint32_t> series = seriesOf(step);
  if (!series) return;
  const auto known = step.series.find(line.series);
  if (known != step.series.end()) {
    known->second = *series;
  } else if (m_openSeries >= m_limits.tests) {
    tellFull("measurements");
  } else {
    step.series.emplace(line.series, *series);
    ++m_openSeries;
  }
}

void StreamReader::takeStep() {
  Line& line = m_scratch.line;
  for (std::string Line::*id : {&Line::step, &Line::series}) {
    if ((line.*id).size() > kLongestText) line.*id = shortened(line.*id);
  }
  if (line.kind == LineKind::kStepStart) return beginStep();
  const auto found = m_steps.find(line.step);
  if (found == m_steps.end()) return;
  Step& step = found->second;
  switch (line.kind) {
    case LineKind::kMeasurement:
      return takeMeasurement(step);
    case LineKind::kSeriesStart:
      return beginSeries(step);
    case LineKind::kSeriesElement:
      return takeSeriesElement(step);
    case LineKind::kDiagnosis:
      return takeDiagnosis(step);
    case LineKind::kStepError:
      step.hasError = true;
      step.error = shortened(line.message.empty() ? line.word : line.message);
      return;
    case LineKind::kExtension:
      return extend(step);
    case LineKind::kStepEnd:
      endStep(step, line.word);
      m_openSeries -= step.series.size();
      m_steps.erase(found);
      return;
    default:
      return;
  }
}

void StreamReader::extend(Step& step) {
  const Line& line = m_scratch.line;
  if (line.name == "end") {
    step.told = outcomeNamed(line.outcome);
  } else if (line.name == "test" && !line.service.empty()) {
    takeNames(step);
  }
}

void StreamReader::takeNames(Step& step) {
  const std::string service = shortened(m_scratch.line.service);
  const std::string device = shortened(m_scratch.line.device);
  std::uint32_t number = 0;
  if (!giveNumber(service, number) || !giveNumber(device, step.device)) return;
  step.testName = service;
  step.test = number;
  step.deviceName = device;
}

void StreamReader::endStep(Step& step, std::string_view status) {
  close(step, verdictOf(step, status));
}

/// Of several runs of a test on a device, the worst counts.
void StreamReader::close(Step& step, Verdict verdict) {
  const bool isTold = step.hasFinding || verdict < Verdict::kWarned;
  if (!isTold) {
    m_scratch.line.hardware.clear();
    m_scratch.line.component.clear();
    addFinding(step, verdict, step.error);
  }
  if (m_ended.size() >= m_limits.tests) return tellFull("tests");
  const auto [place, isNew] =
      m_ended.emplace(ownerOf(step.test, step.device), m_result.outcomes.size());
  if (isNew) {
    m_result.outcomes.push_back({step.test, step.device, verdict});
  } else {
    Outcome& outcome = m_result.outcomes[place->second];
    outcome.verdict = std::max(outcome.verdict, verdict);
  }
}

void StreamReader::takeMeasurement(Step& step) {
  const Line& line = m_scratch.line;
  if (!line.hasValue) return;
  if (const std::optional<std::uint32_t> series = seriesOf(step)) add(*series, line.value);
}

void StreamReader::takeSeriesElement(Step& step) {
  const Line& line = m_scratch.line;
  const auto series = step.series.find(line.series);
  if (line.hasValue && series != step.series.end()) add(series->second, line.value);
}

void StreamReader::add(std::uint32_t series, double value) {
  ++m_result.measurements;
  if (!m_scratch.sums.add(series, value, m_limits.measurements)) tellFull("measurements");
}

/// What the line is about; a test of which nothing is told is about its device.
const Part* StreamReader::partOf(const Step& step) const {
  const Line& line = m_scratch.line;
  std::string& name = m_scratch.key;
  name = line.component.empty() ? step.deviceName : line.component;
  if (!line.hardware.empty()) name.assign(1, '#').append(line.hardware);
  if (name.empty()) return nullptr;
  const auto found = m_parts.find(name);
  return found == m_parts.end() ? nullptr : &m_result.machine.parts[found->second];
}

/// None where the stream has had too many.
std::optional<std::uint32_t> StreamReader::seriesOf(const Step& step) {
  const Line& line = m_scratch.line;
  const Part* const part = partOf(step);
  const std::string& place =
      part == nullptr ? line.component : (part->place.empty() ? part->name : part->place);
  const std::string& model = part == nullptr       ? m_result.machine.model
                             : part->model.empty() ? part->name
                                                   : part->model;
  std::string& key = m_scratch.key;
  const std::uint64_t pair = ownerOf(step.test, step.device);
  key.assign(reinterpret_cast<const char*>(&pair), sizeof(pair));
  append(key, line.name);
  append(key, line.unit);
  append(key, place);
  append(key, model);
  if (const std::optional<std::uint32_t> known = m_scratch.series.find(key)) return known;
  if (!m_scratch.series.hasRoomFor(key, m_limits)) {
    tellFull("measurements");
    return std::nullopt;
  }
  Names& names = m_tables.names;
  const std::uint32_t series =
      m_tables.seriesOf({step.test, step.device, names.numberOf(shortened(line.name)),
                         names.numberOf(shortened(line.unit)), names.numberOf(shortened(place)),
                         names.numberOf(shortened(model))});
  m_scratch.series.add(key, series);
  return series;
}

void StreamReader::takeDiagnosis(Step& step) {
  const Line& line = m_scratch.line;
  const Verdict verdict = fleet::takeDiagnosis(step, line);
  if (verdict < Verdict::kWarned) return;
  addFinding(step, verdict, line.message.empty() ? line.second : line.message);
}

void StreamReader::describePart(Finding& finding, const Step& step) const {
  const Part* const part = partOf(step);
  if (part != nullptr) {
    finding.part = part->name;
    finding.partKind = part->kind;
    finding.partModel = part->model.empty() ? part->name : part->model;
    finding.partSerial = part->serial;
    finding.partPlace = part->place;
  } else {
    const Line& line = m_scratch.line;
    finding.part = shortened(line.component.empty() ? step.deviceName : line.component);
  }
}

void StreamReader::addFinding(Step& step, Verdict verdict, const std::string& text) {
  std::size_t& count = verdict == Verdict::kFailed ? m_failures : m_others;
  const std::size_t most = verdict == Verdict::kFailed ? kMostFailures : kMostOthers;
  step.hasFinding = true;
  if (count == most) return;
  ++count;
  StreamFinding& found = m_result.findings.emplace_back();
  found.device = step.device;
  found.finding.test = step.test;
  found.finding.verdict = verdict;
  constexpr std::string_view kMark = "\nRecommended: ";
  const std::size_t mark = text.find(kMark);
  found.finding.text = shortened(std::string_view(text).substr(0, mark));
  if (mark != std::string::npos) {
    found.finding.action = shortened(std::string_view(text).substr(mark + kMark.size()));
  }
  describePart(found.finding, step);
}

/// The end of the stream: tests that are open have no verdict.
void StreamReader::finish() {
  m_result.values = m_scratch.sums.take();
  if (m_result.isLeftOut) return;
  if (m_number == 0) return leaveOut("is empty");
  if (!m_hasVersion) return leaveOut("is no OCP stream: it has blank lines alone");
  if (!m_hasRun) return leaveOut("has no start of a run, which names the machine");
  for (auto& [id, step] : m_steps) {
    if (m_result.lastOpen.empty() || step.testName < m_result.lastOpen) {
      m_result.lastOpen = step.testName;
    }
    step.error = "the stream ends before the test does";
    close(step, step.hasFailure ? Verdict::kFailed : Verdict::kUnfinished);
  }
  if (!m_result.hasEnded) {
    complain("the stream ends before the run does" +
             (m_result.lastOpen.empty() ? std::string()
                                        : ", in " + reports::excerpt(m_result.lastOpen)));
  }
}

}  // namespace fleet
