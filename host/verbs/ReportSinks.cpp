#include "host/verbs/ReportSinks.h"

#include <exception>
#include <iostream>
#include <optional>
#include <type_traits>
#include <utility>

#include "host/Messages.h"
#include "host/verbs/Destination.h"
#include "host/verbs/FileNames.h"
#include "host/verbs/ReplacedFile.h"
#include "host/verbs/ReportFile.h"
#include "reports/events/EventsWriter.h"
#include "reports/html/HtmlReport.h"
#include "reports/junit/JUnitWriter.h"
#include "reports/metrics/MetricsWriter.h"
#include "reports/ocp/OcpWriter.h"
#include "reports/recover/OpenEnds.h"
#include "reports/redact/Redactor.h"

namespace host {

void Fan::take(const engine::Event& event) {
  for (std::size_t i = 0; i < m_sinks.size();) {
    try {
      m_sinks[i]->take(event);
      ++i;
    } catch (const std::exception& failure) {
      m_failures.emplace_back(failure.what());
      m_sinks.erase(m_sinks.begin() + static_cast<std::ptrdiff_t>(i));
    }
  }
}

namespace {

/// A report and where it goes: what was there before goes when the first event comes.
class Target : public engine::EventSink {
 public:
  /// Without a file, standard output.
  explicit Target(std::unique_ptr<Destination> file) : m_file(std::move(file)) {}

  template <class Writer>
  void make(const std::string& name) {
    std::ostream& out = m_file ? m_file->stream() : std::cout;
    auto writer = std::make_unique<Writer>(out, m_file ? name : "standard output");
    if constexpr (std::is_same_v<Writer, reports::HtmlReport>) m_page = writer.get();
    m_writer = std::move(writer);
  }

  void take(const engine::Event& event) override {
    begin();
    m_writer->take(event);
    const bool isEnd = event.test == 0 && std::holds_alternative<engine::Ended>(event.body);
    if (isEnd && m_file) m_file->settle();
  }

  /// A page says by itself that the run has no end; others get the end that it would have.
  void finish(const std::vector<engine::Event>& closing) {
    if (m_page != nullptr) {
      begin();
      return m_page->finish();
    }
    for (const engine::Event& event : closing) take(event);
  }

  const Destination* file() const { return m_file.get(); }

 private:
  void begin() {
    if (m_file) m_file->begin();
  }

  std::unique_ptr<Destination> m_file;
  std::unique_ptr<engine::EventSink> m_writer;
  reports::HtmlReport* m_page = nullptr;
};

}  // namespace

struct ReportSinks::State {
  template <class Writer>
  void add(const std::string& given);
  std::unique_ptr<Destination> open(const std::string& name, bool isReplaced);

  std::vector<std::unique_ptr<Target>> targets;
  bool usesStandardOutput = false;
  Fan fan;
  std::optional<reports::Redactor> redactor;
  reports::OpenEnds ends;
};

/// None for standard output.
std::unique_ptr<Destination> ReportSinks::State::open(const std::string& name, bool isReplaced) {
  if (name == "-") {
    if (usesStandardOutput) throw UsageError("only one format can go to standard output");
    usesStandardOutput = true;
    return nullptr;
  }
  std::unique_ptr<Destination> file;
  if (isReplaced) {
    file = std::make_unique<ReplacedFile>(name);
  } else {
    file = std::make_unique<ReportFile>(name);
  }
  for (const auto& other : targets) {
    if (other->file() != nullptr && file->isSameAs(*other->file())) {
      throw UsageError(name + " cannot hold two formats");
    }
  }
  return file;
}

template <class Writer>
void ReportSinks::State::add(const std::string& given) {
  if (given.empty()) return;
  const std::string name = fileNameFrom(given);
  constexpr bool kIsReplaced = std::is_same_v<Writer, reports::MetricsWriter>;
  targets.push_back(std::make_unique<Target>(open(name, kIsReplaced)));
  targets.back()->make<Writer>(name);
  fan.add(*targets.back());
}

ReportSinks::ReportSinks(const ReportFiles& files, bool redacts)
    : m_state(std::make_unique<State>()) {
  m_state->add<reports::EventsWriter>(files.events);
  m_state->add<reports::OcpWriter>(files.jsonLines);
  m_state->add<reports::JUnitWriter>(files.junit);
  m_state->add<reports::HtmlReport>(files.html);
  // Behind those that make their files: it makes none that could be found to be one of theirs.
  m_state->add<reports::MetricsWriter>(files.metrics);
  if (redacts) m_state->redactor.emplace(m_state->fan);
}

ReportSinks::~ReportSinks() = default;

void ReportSinks::take(const engine::Event& event) {
  m_state->ends.take(event);
  if (m_state->redactor) {
    m_state->redactor->take(event);
  } else {
    m_state->fan.take(event);
  }
}

std::vector<std::string> ReportSinks::finish() {
  std::vector<std::string> failures = m_state->fan.failures();
  const std::vector<engine::Event> closing = m_state->ends.closing();
  for (const auto& target : m_state->targets) {
    try {
      target->finish(closing);
    } catch (const std::exception& failure) {
      failures.emplace_back(failure.what());
    }
  }
  return failures;
}

bool ReportSinks::takesStandardOutput() const { return m_state->usesStandardOutput; }

}  // namespace host
