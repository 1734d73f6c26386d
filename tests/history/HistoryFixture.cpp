#include "tests/history/HistoryFixture.h"

#include <atomic>
#include <random>
#include <sstream>

#include "engine/events/EventLine.h"
#include "engine/events/Timestamp.h"

namespace history {
namespace fs = std::filesystem;

engine::Time firstTime() { return *engine::timeFrom("2026-11-22T01:30:00Z"); }

ScratchFolder::ScratchFolder() {
  static std::atomic<unsigned> count{0};
  std::ostringstream name;
  name << "diags-history-" << std::hex << std::random_device()() << "-" << count++;
  m_path = fs::temp_directory_path() / name.str();
  fs::create_directories(m_path);
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  fs::remove_all(m_path, ignored);
}

void LineSink::take(const engine::Event& event) { lines.push_back(engine::lineOf(event)); }

Tale::Tale(engine::EventSink& sink, engine::Time start) : m_sink(sink) { m_event.time = start; }

Tale& Tale::runStarts(const std::string& host) {
  engine::RunStarted run;
  run.version = "1.0";
  run.commandLine = {"diags", "run"};
  run.host = host;
  take(0, run);
  return *this;
}

Tale& Tale::testStarts(const std::string& name) {
  const std::string service = name.substr(0, name.find(','));
  take(++m_test, engine::TestStarted{name, service, "d", "e", 1, 0});
  return *this;
}

Tale& Tale::says(engine::Body body) {
  take(m_test, std::move(body));
  return *this;
}

Tale& Tale::measures(const std::string& name, engine::MeasuredValue value,
                     const std::string& unit) {
  return says(engine::Measurement{name, std::move(value), unit, 1.0, 1000.0, "DIMM 1"});
}

Tale& Tale::testEnds(engine::Outcome outcome) {
  return says(engine::Ended{outcome, "text", 2.5, "(Pass)", "remark", "record"});
}

Tale& Tale::runEnds(engine::Outcome outcome) {
  take(0, engine::Ended{outcome, "", 3, "", "", ""});
  return *this;
}

Tale& Tale::wait(std::chrono::microseconds time) {
  m_event.time += time;
  return *this;
}

void Tale::take(std::uint64_t test, engine::Body body) {
  m_event.test = test;
  m_event.body = std::move(body);
  m_sink.take(m_event);
  ++m_event.sequence;
  m_event.time += std::chrono::milliseconds(100);
}

std::string recordRun(History& history, engine::Time start, engine::Outcome outcome) {
  Recorder recorder(history);
  Tale(recorder, start)
      .runStarts()
      .testStarts()
      .measures("read", 5.0)
      .testEnds(outcome)
      .runEnds(outcome);
  return recorder.id();
}

std::vector<std::string> linesOf(const History& history, const std::string& id) {
  LineSink sink;
  history.events(id, sink);
  return sink.lines;
}

std::string HistoryFixture::complaint(const Options& options) const {
  try {
    open(options);
    return {};
  } catch (const HistoryError& error) {
    return error.what();
  }
}

}  // namespace history
