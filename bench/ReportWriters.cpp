#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <vector>

#include "bench/ProcessFigures.h"
#include "history/Recorder.h"
#include "host/display/Display.h"
#include "reports/events/EventsWriter.h"
#include "reports/html/HtmlReport.h"
#include "reports/junit/JUnitWriter.h"
#include "reports/metrics/MetricsWriter.h"
#include "reports/ocp/OcpWriter.h"
#include "reports/redact/Redactor.h"

namespace {

using engine::EventSink;

constexpr std::uint64_t kEventsATest = 10'000;
constexpr double kGoal = 100'000;
constexpr double kMegabyte = 1e6;

/// Gives each event to all.
class All : public EventSink {
 public:
  void take(const engine::Event& event) override {
    for (const auto& sink : sinks) sink->take(event);
  }
  std::vector<std::unique_ptr<EventSink>> sinks;
};

engine::RunStarted machine() {
  engine::RunStarted run{"1.0", {"diags", "run"}, {}, "bench-7", "F1", {}, 0};
  for (int i = 0; i < 16; ++i) {
    const std::string number = std::to_string(i);
    run.parts.push_back({"memory", "DIMM " + number, "P0", "Maker", "M-16", "", "CAFE01" + number});
  }
  return run;
}

/// A test says this again and again.
std::vector<engine::Body> chatter() {
  return {
      engine::Progress{40},
      engine::OutputLine{engine::Stream::kOutput, "probing block 1234 of 5678 of DIMM 3", false},
      engine::LogLine{2, "method RunDiagnosticService returned 0"},
      engine::Measurement{"bandwidth", 11.25, "GiB/s", 5.0, 40.0, "DIMM 3"},
      engine::Message{engine::Severity::kInfo, "Pattern 5 of 8: 0 errors", {}}};
}

void run(EventSink& sink, std::uint64_t events) {
  std::uint64_t sequence = 0;
  const auto send = [&](std::uint64_t test, const engine::Body& body) {
    sink.take({sequence++, {}, engine::Source::kWorker, test, body});
  };
  const std::vector<engine::Body> said = chatter();
  send(0, machine());
  std::uint64_t test = 0;
  while (sequence < events) {
    send(++test, engine::TestStarted{"S,d,e", "S", "d", "e", test, 0});
    for (std::uint64_t i = 2; i < kEventsATest; ++i) send(test, said[i % said.size()]);
    send(test, engine::Ended{engine::Outcome::kPassed, "Pass", 1, "", "", ""});
  }
  send(0, engine::Ended{engine::Outcome::kPassed, "Pass", 1, "", "", ""});
}

using Folder = std::filesystem::path;
using Make = std::function<std::unique_ptr<EventSink>(std::ostream&, const Folder&)>;

template <typename Writer>
std::unique_ptr<EventSink> make(std::ostream& out, const Folder&) {
  return std::make_unique<Writer>(out, "file");
}

/// In plain lines, of everything.
std::unique_ptr<EventSink> makeDisplay(std::ostream& out, const Folder&) {
  host::DisplayStyle style;
  style.detail = host::Detail::kVerbose;
  return std::make_unique<host::Display>(out, out, style);
}

/// A history with this one run.
class Kept : public EventSink {
 public:
  explicit Kept(const Folder& folder)
      : m_history(history::History::open(folder / "history")), m_recorder(m_history) {}
  void take(const engine::Event& event) override { m_recorder.take(event); }

 private:
  history::History m_history;
  history::Recorder m_recorder;
};

std::unique_ptr<EventSink> makeKept(std::ostream&, const Folder& folder) {
  return std::make_unique<Kept>(folder);
}

struct Figures {
  double rate;   ///< events a second of processor time
  double grown;  ///< the memory between a tenth of the events and all of them, in bytes
};

/// With a file for each writer, and a redactor in front of them if so.
Figures measure(const std::vector<Make>& makers, std::uint64_t events, bool isRedacted) {
  const Folder folder = std::filesystem::temp_directory_path() / "diags-report-writers";
  std::filesystem::create_directories(folder);
  const auto runAll = [&](std::uint64_t count) {
    std::vector<std::ofstream> files(makers.size());
    All all;
    for (std::size_t i = 0; i < makers.size(); ++i) {
      files[i].open(folder / std::to_string(i), std::ios::binary);
      all.sinks.push_back(makers[i](files[i], folder));
    }
    reports::Redactor redactor(all);
    run(isRedacted ? static_cast<EventSink&>(redactor) : all, count);
  };
  runAll(events / 10);
  const double memory = bench::peakMemory();
  const double begin = bench::threadSeconds();
  runAll(events);
  const double rate = static_cast<double>(events) / (bench::threadSeconds() - begin);
  std::filesystem::remove_all(folder);
  return {rate, bench::peakMemory() - memory};
}

}  // namespace

/// report_writers [EVENTS]: how many events a second the writers take, one by one and all at once,
/// and how much more memory all of the events need than a tenth of them.
int main(int count, char** arguments) {
  const std::uint64_t events = count > 1 ? std::strtoull(arguments[1], nullptr, 10) : 1'000'000;
  const Make eventLines = make<reports::EventsWriter>;
  const Make ocp = make<reports::OcpWriter>;
  const Make junit = make<reports::JUnitWriter>;
  const Make html = make<reports::HtmlReport>;
  const Make metrics = make<reports::MetricsWriter>;
  const std::vector<Make> all{eventLines, ocp, junit, html, metrics, makeDisplay, makeKept};
  struct Row {
    const char* name;
    std::vector<Make> makers;
    bool isRedacted;
  };
  const Row rows[] = {{"events", {eventLines}, false}, {"OCP", {ocp}, false},
                      {"JUnit", {junit}, false},       {"HTML", {html}, false},
                      {"metrics", {metrics}, false},   {"display", {makeDisplay}, false},
                      {"history", {makeKept}, false},  {"all", all, false},
                      {"all, redacted", all, true}};
  bool met = true;
  for (const Row& row : rows) {
    const Figures figures = measure(row.makers, events, row.isRedacted);
    const bool isMet = figures.rate >= kGoal;
    met = met && isMet;
    std::printf("%-14s %9.0f events/s  (goal: at least %.0f)%s  %+.1f MB\n", row.name, figures.rate,
                kGoal, isMet ? "" : "  MISSED", figures.grown / kMegabyte);
  }
  return met ? 0 : 1;
}
