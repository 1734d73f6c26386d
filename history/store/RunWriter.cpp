#include "history/store/RunWriter.h"

#include <cmath>

#include "engine/events/EventLine.h"
#include "engine/events/EventNames.h"
#include "history/HistoryError.h"
#include "history/store/Keeping.h"
#include "history/store/RunId.h"
#include "history/store/RunRows.h"

namespace history {
namespace {

using engine::Event;

constexpr std::size_t kBytesAtOnce = 256 * 1024;
constexpr std::size_t kRowsAtOnce = 1000;
constexpr std::chrono::seconds kLongestWait(1);
/// A longer line could not be read again.
constexpr std::size_t kLongestLine = Database::kLongest / 2;
/// Texts in columns serve to find and to list; as they came, they are in the events.
constexpr std::size_t kLongestText = 4096;

std::string shortened(const std::string& text) {
  if (text.size() <= kLongestText) return text;
  std::size_t end = kLongestText;
  // Not in the middle of a character.
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xc0U) == 0x80U) --end;
  return text.substr(0, end);
}

std::string joined(const std::vector<std::string>& words) {
  std::string line;
  for (const std::string& word : words) line += (line.empty() ? "" : " ") + word;
  return shortened(line);
}

std::optional<double> finite(const std::optional<double>& number) {
  return number && std::isfinite(*number) ? number : std::nullopt;
}

std::optional<double> numberIn(const engine::MeasuredValue& value) {
  const double* const number = std::get_if<double>(&value);
  return number != nullptr ? finite(*number) : std::nullopt;
}

struct Text {
  std::string operator()(double number) const { return std::to_string(number); }
  std::string operator()(bool flag) const { return flag ? "true" : "false"; }
  std::string operator()(const std::string& text) const { return shortened(text); }
};

bool isRow(const engine::Body& body) {
  return std::holds_alternative<engine::TestStarted>(body) ||
         std::holds_alternative<engine::Measurement>(body) ||
         std::holds_alternative<engine::Ended>(body);
}

}  // namespace

RunWriter::RunWriter(Store& store, const Event& first)
    : m_store(store),
      m_written(first.time),
      m_insertChunk(store.database, "INSERT INTO chunks(run, lines) VALUES(?, ?)"),
      m_insertTest(store.database,
                   "INSERT OR REPLACE INTO tests VALUES(?, ?, ?, ?, ?, ?, NULL, NULL, '')"),
      m_endTest(store.database,
                "UPDATE tests SET seconds = ?, outcome = ?, remark = ? WHERE run = ? AND test = ?"),
      m_insertMeasurement(
          store.database,
          "INSERT OR REPLACE INTO measurements VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
      m_updateRun(store.database,
                  "UPDATE runs SET ended = ?, outcome = ?, passed = ?, warned = ?, failed = ?, "
                  "unfinished = ?, skipped = ?, bytes = ?, left_out = ? WHERE number = ?") {
  removeOldest(m_store, m_store.mostBytes);
  begin(first);
}

RunWriter::~RunWriter() {
  try {
    if (!m_isBroken && !m_lines.empty()) write();
  } catch (const std::exception&) {  // the run is cut off here, which the history shows
  }
  m_store.locks.release(m_number);
}

void RunWriter::begin(const Event& first) {
  Transaction transaction(m_store.database);
  while (!insertRow(first)) {
  }
  m_number = m_store.database.lastRow();
  // Before anybody sees the run and takes it for one that was cut off.
  m_store.locks.take(m_number);
  transaction.commit();
}

/// False where another run has that identifier.
bool RunWriter::insertRow(const Event& first) {
  const auto* const run = std::get_if<engine::RunStarted>(&first.body);
  const std::string host = run != nullptr ? shortened(run->host) : std::string();
  const std::string version = run != nullptr ? shortened(run->version) : std::string();
  const std::string command = run != nullptr ? joined(run->commandLine) : std::string();
  m_id = runId(first.time, someDigits());
  Statement insert(
      m_store.database,
      "INSERT OR IGNORE INTO runs VALUES(NULL, ?, ?, NULL, NULL, ?, ?, ?, 0, 0, 0, 0, 0, "
      "0, 0)");
  insert.bind(1, std::string_view(m_id)).bind(2, microsecondsOf(first.time));
  insert.bind(3, std::string_view(host)).bind(4, std::string_view(version));
  insert.bind(5, std::string_view(command)).run();
  return m_store.database.changes() == 1;
}

void RunWriter::add(const Event& event) {
  if (m_hasEnded) throw HistoryError("run " + m_id + " has ended; nothing more of it is kept");
  if (m_isBroken) throw HistoryError("run " + m_id + " is not kept any more");
  m_isBroken = true;  // unless all of this succeeds
  if (m_lines.empty()) m_written = event.time;
  count(event);
  keep(event);
  if (mustWrite(event)) write();
  m_isBroken = false;
}

void RunWriter::keep(const Event& event) {
  if (isKept(event.body, event.test, m_bytes, m_store.mostBytes)) {
    append(event);
  } else {
    leaveOut(event);
  }
}

/// The first one that is left out makes place for a message that says so.
void RunWriter::leaveOut(const Event& event) {
  if (m_leftOut++ != 0) return;
  Event message = event;
  message.source = engine::Source::kEngine;
  message.test = 0;
  message.body =
      engine::Message{engine::Severity::kWarning,
                      "The run has grown long: from here on, the history does not keep all "
                      "of its events.",
                      {}};
  append(message);
}

void RunWriter::append(const Event& event) {
  const std::string line = engine::lineOf(event);
  if (isRow(event.body)) m_rows.push_back(event);
  if (line.size() > kLongestLine) {
    leaveOut(event);
    return;
  }
  m_lines += line;
  m_lines += '\n';
  m_bytes += line.size() + 1;
}

void RunWriter::count(const Event& event) {
  const auto* const end = std::get_if<engine::Ended>(&event.body);
  if (end == nullptr) return;
  if (event.test == 0) {
    m_hasEnded = true;
    return;
  }
  switch (end->outcome) {
    case engine::Outcome::kPassed:
      ++m_tests.passed;
      break;
    case engine::Outcome::kWarned:
      ++m_tests.warned;
      break;
    case engine::Outcome::kFailed:
      ++m_tests.failed;
      break;
    case engine::Outcome::kSkipped:
      ++m_tests.skipped;
      break;
    case engine::Outcome::kAborted:
    case engine::Outcome::kIncomplete:
    case engine::Outcome::kBroken:
      ++m_tests.unfinished;
      break;
  }
}

bool RunWriter::mustWrite(const Event& event) const {
  // Of a machine that goes down in the middle of a test, this is what it was.
  const bool isBeginning = std::holds_alternative<engine::RunStarted>(event.body) ||
                           std::holds_alternative<engine::TestStarted>(event.body);
  return isBeginning || std::holds_alternative<engine::Ended>(event.body) ||
         m_lines.size() >= kBytesAtOnce || m_rows.size() >= kRowsAtOnce ||
         event.time - m_written >= kLongestWait;
}

void RunWriter::write() {
  Transaction transaction(m_store.database);
  if (!m_lines.empty()) {
    m_insertChunk.bind(1, m_number).bindBytes(2, m_lines).run();
  }
  for (const Event& event : m_rows) writeRow(event);
  if (!m_hasEnded) writeTotals();
  transaction.commit();
  m_lines.clear();
  m_rows.clear();
  if (m_hasEnded) m_store.locks.release(m_number);
  makeRoom();
}

void RunWriter::writeRow(const Event& event) {
  if (const auto* const test = std::get_if<engine::TestStarted>(&event.body)) {
    writeTest(event, *test);
  } else if (const auto* const measurement = std::get_if<engine::Measurement>(&event.body)) {
    writeMeasurement(event, *measurement);
  } else if (const auto* const end = std::get_if<engine::Ended>(&event.body)) {
    writeEnd(event, *end);
  }
}

void RunWriter::writeTest(const Event& event, const engine::TestStarted& test) {
  const std::string name = shortened(test.name);
  const std::string service = shortened(test.service);
  m_insertTest.bind(1, m_number).bind(2, event.test);
  m_insertTest.bind(3, std::string_view(name)).bind(4, std::string_view(service));
  m_insertTest.bind(5, test.repetition).bind(6, microsecondsOf(event.time)).run();
}

void RunWriter::writeEnd(const Event& event, const engine::Ended& end) {
  if (event.test == 0) {
    m_updateRun.bind(1, microsecondsOf(event.time));
    m_updateRun.bind(2, std::string_view(engine::nameOf(end.outcome)));
    writeTotals();
    return;
  }
  const std::string remark = shortened(end.remark);
  m_endTest.bind(1, finite(end.seconds));
  m_endTest.bind(2, std::string_view(engine::nameOf(end.outcome)));
  m_endTest.bind(3, std::string_view(remark));
  m_endTest.bind(4, m_number).bind(5, event.test).run();
}

void RunWriter::writeMeasurement(const Event& event, const engine::Measurement& measurement) {
  const std::string name = shortened(measurement.name);
  const std::string part = shortened(measurement.part);
  const std::string unit = shortened(measurement.unit);
  const std::string text = std::visit(Text(), measurement.value);
  Statement& insert = m_insertMeasurement;
  insert.bind(1, m_number).bind(2, event.test).bind(3, event.sequence);
  insert.bind(4, std::string_view(name)).bind(5, std::string_view(part));
  insert.bind(6, std::string_view(unit)).bind(7, numberIn(measurement.value));
  insert.bind(8, std::string_view(text)).bind(9, finite(measurement.minimum));
  insert.bind(10, finite(measurement.maximum)).run();
}

void RunWriter::writeTotals() {
  m_updateRun.bind(3, m_tests.passed).bind(4, m_tests.warned).bind(5, m_tests.failed);
  m_updateRun.bind(6, m_tests.unfinished).bind(7, m_tests.skipped);
  m_updateRun.bind(8, m_bytes).bind(9, m_leftOut).bind(10, m_number).run();
  if (m_store.database.changes() == 0) {
    throw HistoryError("run " + m_id + " was removed while it went on");
  }
}

/// At the end of the run, and now and then before.
void RunWriter::makeRoom() {
  if (!m_hasEnded && m_bytes - m_bytesWithRoom < m_store.mostBytes / 16) return;
  m_bytesWithRoom = m_bytes;
  removeOldest(m_store, m_store.mostBytes);
}

}  // namespace history
