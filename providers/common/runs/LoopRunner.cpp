#include "providers/common/runs/LoopRunner.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace providers {

namespace {

constexpr double kMicrosecondsPerSecond = 1e6;

using Clock = std::function<std::int64_t()>;

/// Spreads the progress of the passes over the whole run.
class PassControl : public RunControl {
 public:
  PassControl(RunControl& run, const LoopControl& loop, const Clock& clock)
      : m_run(run), m_loop(loop), m_clock(clock), m_begin(clock()) {}

  void progress(double fraction) override {
    const double passes = m_passes + fraction;
    double whole = 0;
    if (m_loop.count) whole = std::max(whole, passes / m_loop.count);
    if (m_loop.seconds) whole = std::max(whole, seconds() / m_loop.seconds);
    // Nobody knows when these end: come closer to the end with every pass, without reaching it.
    if (whole == 0 && (m_loop.continuous || m_loop.limitErrors)) whole = 1 - 1 / (1 + passes);
    if (whole == 0) whole = fraction;
    m_run.progress(whole);
  }
  void status(const std::string& text) override { m_run.status(text); }
  bool stopRequested() const override { return m_run.stopRequested(); }

  void passEnded() { ++m_passes; }
  double seconds() const {
    return static_cast<double>(m_clock() - m_begin) / kMicrosecondsPerSecond;
  }

 private:
  RunControl& m_run;
  const LoopControl& m_loop;
  const Clock& m_clock;
  const std::int64_t m_begin;
  std::uint32_t m_passes = 0;
};

bool repeats(const LoopControl& loop) {
  return loop.continuous || loop.count || loop.seconds || loop.limitErrors;
}

std::uint64_t countErrors(const Outcome& outcome) {
  return std::accumulate(
      outcome.errors.begin(), outcome.errors.end(), std::uint64_t{0},
      [](std::uint64_t sum, const ErrorTally& tally) { return sum + tally.count; });
}

/// Adds to what is known of the same code; a count that is full stays so.
void addErrors(Outcome& sum, const ErrorTally& tally) {
  const auto known =
      std::find_if(sum.errors.begin(), sum.errors.end(),
                   [&tally](const ErrorTally& other) { return other.code == tally.code; });
  if (known == sum.errors.end()) {
    sum.errors.push_back(tally);
  } else {
    constexpr auto kMost = std::numeric_limits<std::uint32_t>::max();
    known->count += std::min(tally.count, kMost - known->count);
  }
}

/// The worst verdict stands, with the text of the first pass that had it.
void addPass(Outcome& sum, const Outcome& pass) {
  const auto weight = [](CompletionState state) {
    return state == CompletionState::Failed ? 2 : state == CompletionState::Warning ? 1 : 0;
  };
  const bool first = sum.loopsPassed + sum.loopsFailed == 0;
  const bool passed = pass.state == CompletionState::Ok || pass.state == CompletionState::Warning;
  const bool ended = pass.state == CompletionState::Stopped ||
                     pass.state == CompletionState::Incomplete ||
                     pass.state == CompletionState::Aborted;
  if (first || weight(pass.state) > weight(sum.state) || (ended && weight(sum.state) < 2)) {
    sum.state = pass.state;
    sum.text = pass.text;
    sum.summary = pass.summary;
    sum.correctiveAction = pass.correctiveAction;
    sum.part = pass.part;
  }
  foldMeasured(sum.measured, pass.measured);
  for (const ErrorTally& tally : pass.errors) addErrors(sum, tally);
  sum.notes.insert(sum.notes.end(), pass.notes.begin(), pass.notes.end());
  if (!ended) ++(passed ? sum.loopsPassed : sum.loopsFailed);
}

bool isOver(const RunSettings& settings, const Outcome& sum, const Outcome& pass,
            const PassControl& control) {
  const LoopControl& loop = settings.loop;
  const std::uint32_t passes = sum.loopsPassed + sum.loopsFailed;
  return !repeats(loop) || control.stopRequested() || pass.state == CompletionState::Stopped ||
         pass.state == CompletionState::Incomplete || pass.state == CompletionState::Aborted ||
         (settings.haltOnError && pass.state == CompletionState::Failed) ||
         (loop.count && passes >= loop.count) ||
         (loop.seconds && control.seconds() >= loop.seconds) ||
         (loop.limitErrors && countErrors(sum) > loop.errors);
}

}  // namespace

Outcome runLoops(Diagnostic& diagnostic, const Device& device, const RunSettings& settings,
                 RunControl& control, const Clock& clock) {
  PassControl passControl(control, settings.loop, clock);
  Outcome sum;
  Outcome pass;
  do {
    pass = diagnostic.run(device, settings, passControl);
    addPass(sum, pass);
    passControl.passEnded();
  } while (!isOver(settings, sum, pass, passControl));
  const bool stopped = repeats(settings.loop) && control.stopRequested();
  if (stopped && sum.state != CompletionState::Failed) sum.state = CompletionState::Stopped;
  if (repeats(settings.loop)) {
    sum.text += "Loops: " + std::to_string(sum.loopsPassed) + " passed, " +
                std::to_string(sum.loopsFailed) + " failed\n";
    sum.measured.push_back({"LoopsPassed", static_cast<double>(sum.loopsPassed)});
    sum.measured.push_back(
        {"LoopsFailed", static_cast<double>(sum.loopsFailed), {}, true, Fold::Sum, {}, 0});
  }
  return sum;
}

}  // namespace providers
