#include "host/verbs/ReportSinks.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>

#include "host/Messages.h"
#include "reports/events/EventsWriter.h"
#include "reports/html/HtmlReport.h"
#include "reports/junit/JUnitWriter.h"
#include "reports/ocp/OcpWriter.h"
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

/// Two writers of one file would leave neither's report. A device takes as many as there are.
bool isSameFile(const std::filesystem::path& one, const std::filesystem::path& other) {
  std::error_code failure;
  return std::filesystem::equivalent(one, other, failure) &&
         std::filesystem::is_regular_file(one, failure);
}

}  // namespace

struct ReportSinks::State {
  std::ostream& open(const std::string& name);
  template <class Sink>
  void add(const std::string& name);

  std::vector<std::unique_ptr<std::ofstream>> files;
  std::vector<std::filesystem::path> paths;
  std::vector<std::unique_ptr<engine::EventSink>> writers;
  reports::HtmlReport* page = nullptr;
  bool usesStandardOutput = false;
  Fan fan;
  std::optional<reports::Redactor> redactor;
};

std::ostream& ReportSinks::State::open(const std::string& name) {
  if (name == "-") {
    if (usesStandardOutput) throw UsageError("only one format can go to standard output");
    usesStandardOutput = true;
    return std::cout;
  }
  const std::filesystem::path path = std::filesystem::u8path(name);
  for (const std::filesystem::path& other : paths) {
    if (isSameFile(path, other)) throw UsageError(name + " cannot hold two formats");
  }
  files.push_back(std::make_unique<std::ofstream>(path, std::ios::binary | std::ios::trunc));
  if (!*files.back()) throw UsageError(name + " cannot be written");
  paths.push_back(path);
  return *files.back();
}

template <class Sink>
void ReportSinks::State::add(const std::string& name) {
  if (name.empty()) return;
  const std::string shown = name == "-" ? "standard output" : name;
  auto writer = std::make_unique<Sink>(open(name), shown);
  if constexpr (std::is_same_v<Sink, reports::HtmlReport>) page = writer.get();
  fan.add(*writer);
  writers.push_back(std::move(writer));
}

ReportSinks::ReportSinks(const ReportFiles& files, bool redacts)
    : m_state(std::make_unique<State>()) {
  m_state->add<reports::EventsWriter>(files.events);
  m_state->add<reports::OcpWriter>(files.jsonLines);
  m_state->add<reports::JUnitWriter>(files.junit);
  m_state->add<reports::HtmlReport>(files.html);
  if (redacts) m_state->redactor.emplace(m_state->fan);
}

ReportSinks::~ReportSinks() = default;

void ReportSinks::take(const engine::Event& event) {
  if (m_state->redactor) {
    m_state->redactor->take(event);
  } else {
    m_state->fan.take(event);
  }
}

std::vector<std::string> ReportSinks::finish() {
  std::vector<std::string> failures = m_state->fan.failures();
  try {
    if (m_state->page != nullptr) m_state->page->finish();
  } catch (const std::exception& failure) {
    failures.emplace_back(failure.what());
  }
  return failures;
}

bool ReportSinks::takesStandardOutput() const { return m_state->usesStandardOutput; }

}  // namespace host
