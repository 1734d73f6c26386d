#include "reports/html/RunPicture.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "reports/html/Intake.h"

namespace reports::html {
namespace {

/// Adds to a list of a test that may not grow for ever.
template <class Item>
void keep(TestPicture& test, std::vector<Item>& list, Item item, const HtmlLimits& limits) {
  if (list.size() == limits.items) {
    ++test.leftOut;
    return;
  }
  test.bytes += bytesOf(item);
  list.push_back(std::move(item));
}

std::size_t bytesIn(const TestPicture& test) {
  return test.bytes + test.output.bytes() + test.log.bytes();
}

std::uint64_t sum(const RunPicture::Counts& counts) {
  return std::accumulate(counts.begin(), counts.end(), std::uint64_t{0});
}

}  // namespace

RunPicture::RunPicture(const HtmlLimits& limits)
    : m_limits(limits), m_whole(limits), m_timeline(limits.rows) {}

std::uint64_t RunPicture::endedInAll() const { return sum(m_ended); }

std::uint64_t RunPicture::leftOutInAll() const { return sum(m_leftOut); }

void RunPicture::take(const engine::Event& event) {
  if (!m_hasBegun) m_from = event.time;
  m_hasBegun = true;
  m_last = event.time;
  if (const auto* const run = std::get_if<engine::RunStarted>(&event.body)) {
    m_start = shortened(*run, m_limits);
  } else if (const auto* const test = std::get_if<engine::TestStarted>(&event.body)) {
    begin(event, *test);
  } else if (event.test == 0) {
    takeForTest(m_whole, event);
  } else if (const auto place = m_tests.find(event.test); place != m_tests.end()) {
    takeForTest(place->second, event);
  } else if (const auto* const end = std::get_if<engine::Ended>(&event.body)) {
    ++m_ended[static_cast<std::size_t>(end->outcome)];
    ++m_leftOut[static_cast<std::size_t>(end->outcome)];
  } else {
    ++m_whole.leftOut;
  }
}

void RunPicture::close() {
  for (const auto& [number, test] : m_tests) {
    if (!test.end) m_timeline.add(test.test, {test.from, m_last, engine::Outcome::kBroken});
  }
}

void RunPicture::begin(const engine::Event& event, const engine::TestStarted& test) {
  ++m_started;
  // A stream whose tests never end must not fill the memory either.
  if (m_tests.size() >= 2 * m_limits.tests) return;
  TestPicture picture(m_limits);
  picture.number = event.test;
  picture.test = shortened(test, m_limits);
  picture.from = picture.last = event.time;
  picture.bytes = bytesOf(picture.test);
  m_tests.emplace(event.test, std::move(picture));
}

void RunPicture::takeForTest(TestPicture& test, const engine::Event& event) {
  test.last = event.time;
  if (const auto* const step = std::get_if<engine::StepStarted>(&event.body)) {
    keep(test, test.steps, Step{shortened(step->name, m_limits.textBytes), event.time}, m_limits);
  } else if (const auto* const progress = std::get_if<engine::Progress>(&event.body)) {
    test.percent = progress->percent;
  } else if (const auto* const output = std::get_if<engine::OutputLine>(&event.body)) {
    test.output.add({event.time, static_cast<int>(output->stream),
                     shortened(output->text, m_limits.lineBytes)});
  } else if (const auto* const log = std::get_if<engine::LogLine>(&event.body)) {
    test.log.add({event.time, log->level, shortened(log->text, m_limits.lineBytes)});
  } else if (const auto* const message = std::get_if<engine::Message>(&event.body)) {
    keep(test, test.messages, shortened(*message, m_limits), m_limits);
  } else if (const auto* const finding = std::get_if<engine::Diagnosis>(&event.body)) {
    keep(test, test.findings, shortened(*finding, m_limits), m_limits);
  } else if (const auto* const error = std::get_if<engine::Error>(&event.body)) {
    keep(test, test.errors, shortened(*error, m_limits), m_limits);
  } else if (const auto* const measurement = std::get_if<engine::Measurement>(&event.body)) {
    takeMeasurement(test, shortened(*measurement, m_limits));
  } else if (const auto* const end = std::get_if<engine::Ended>(&event.body)) {
    settle(test, event, *end);
  }
}

void RunPicture::takeMeasurement(TestPicture& test, engine::Measurement measurement) {
  const auto isSame = [&](const Series& series) { return series.isOf(measurement); };
  const auto series = std::find_if(test.measurements.begin(), test.measurements.end(), isSame);
  if (series != test.measurements.end()) {
    series->add(measurement);
  } else {
    keep(test, test.measurements, Series(measurement), m_limits);
  }
  if (test.number != 0) follow(test, measurement);
}

void RunPicture::follow(const TestPicture& test, const engine::Measurement& measurement) {
  const auto isSame = [&](const Trend& trend) {
    return trend.test.name == test.test.name && trend.series.isOf(measurement);
  };
  const auto trend = std::find_if(m_trends.begin(), m_trends.end(), isSame);
  if (trend == m_trends.end()) {
    if (m_trends.size() == m_limits.rows) return;
    m_trends.push_back({test.test, test.number, 1, Series(measurement)});
    return;
  }
  if (trend->lastTest != test.number) ++trend->tests;
  trend->lastTest = test.number;
  trend->series.add(measurement);
}

void RunPicture::settle(TestPicture& test, const engine::Event& event, const engine::Ended& end) {
  if (test.number == 0) {
    m_end = shortened(end, m_limits);
    return;
  }
  if (test.end) return;
  test.end = shortened(end, m_limits);
  test.bytes += bytesOf(*test.end);
  for (const Series& series : test.measurements) {
    test.bytes += series.places().size() * sizeof(Series::Place);
  }
  ++m_ended[static_cast<std::size_t>(end.outcome)];
  m_timeline.add(test.test, {test.from, event.time, end.outcome});
  m_settledBytes += bytesIn(test);
  const bool isPass = end.outcome == engine::Outcome::kPassed;
  (isPass ? m_settledPasses : m_settledOthers).push_back(test.number);
  makeRoom();
}

void RunPicture::makeRoom() {
  while (m_settledPasses.size() + m_settledOthers.size() > m_limits.tests ||
         m_settledBytes > m_limits.bytes) {
    if (!m_settledPasses.empty()) {
      leaveOut(m_settledPasses.back());
      m_settledPasses.pop_back();
    } else if (m_settledOthers.size() > 1) {
      leaveOut(m_settledOthers.back());
      m_settledOthers.pop_back();
    } else {
      return;
    }
  }
}

void RunPicture::leaveOut(std::uint64_t number) {
  const auto place = m_tests.find(number);
  if (place == m_tests.end()) return;
  m_settledBytes -= bytesIn(place->second);
  ++m_leftOut[static_cast<std::size_t>(place->second.end->outcome)];
  m_tests.erase(place);
}

}  // namespace reports::html
