#include "providers/common/runs/LoopRunner.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <numeric>
#include <thread>
#include <tuple>

namespace providers {

namespace {

constexpr double kMicrosecondsPerSecond = 1e6;
constexpr std::size_t kMostNotes = 1000;  // of all passes: each of them becomes a record

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
void addErrors(std::vector<ErrorTally>& sum, const ErrorTally& tally) {
  const auto known = std::find_if(sum.begin(), sum.end(), [&tally](const ErrorTally& other) {
    return other.code == tally.code;
  });
  if (known == sum.end()) {
    sum.push_back(tally);
  } else {
    constexpr auto kMost = std::numeric_limits<std::uint32_t>::max();
    known->count += std::min(tally.count, kMost - known->count);
  }
}

bool sayTheSame(const Note& one, const Note& other) {
  const auto words = [](const Note& note) {
    return std::tie(note.type, note.text, note.correctiveAction, note.part.name, note.part.location,
                    note.part.serialNumber);
  };
  return words(one) == words(other);
}

/// A fault that every pass finds again is told once: a night has hundreds of thousands of passes of
/// a short test. The latest ones are looked at first, as a pass mostly says what the last one did.
/// False where there is no room for it.
bool addNote(Outcome& sum, const Note& note) {
  const auto known = std::find_if(sum.notes.rbegin(), sum.notes.rend(),
                                  [&note](const Note& other) { return sayTheSame(other, note); });
  if (known != sum.notes.rend()) {
    for (const ErrorTally& tally : note.errors) addErrors(known->errors, tally);
    return true;
  }
  if (sum.notes.size() == kMostNotes) return false;
  sum.notes.push_back(note);
  return true;
}

/// The worst verdict stands, with the text of the first pass that had it. A pass that was stopped
/// has less to say than those that came to their ends before it. How many notes found no room.
std::uint64_t addPass(Outcome& sum, const Outcome& pass) {
  const auto weight = [](CompletionState state) {
    return state == CompletionState::Failed ? 2 : state == CompletionState::Warning ? 1 : 0;
  };
  const bool first = sum.loopsPassed + sum.loopsFailed == 0;
  const bool passed = pass.state == CompletionState::Ok || pass.state == CompletionState::Warning;
  const bool ended = pass.state == CompletionState::Stopped ||
                     pass.state == CompletionState::Incomplete ||
                     pass.state == CompletionState::Aborted;
  const bool isRest = !first && pass.state == CompletionState::Stopped;
  if (isRest && weight(sum.state) < 2) {
    sum.state = pass.state;
    sum.text += "The next pass was stopped before its end\n";
  } else if (first || weight(pass.state) > weight(sum.state) || (ended && weight(sum.state) < 2)) {
    sum.state = pass.state;
    sum.text = pass.text;
    sum.summary = pass.summary;
    sum.correctiveAction = pass.correctiveAction;
    sum.part = pass.part;
  }
  foldMeasured(sum.measured, pass.measured);
  for (const ErrorTally& tally : pass.errors) addErrors(sum.errors, tally);
  if (!ended) ++(passed ? sum.loopsPassed : sum.loopsFailed);
  std::uint64_t leftOut = 0;
  for (const Note& note : pass.notes) leftOut += addNote(sum, note) ? 0 : 1;
  return leftOut;
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

/// Until the next pass of a diagnostic that only looks; one after the other without a pause would
/// see the same again a hundred thousand times a second. Somebody who counts the passes wants
/// these. False when the time is over or the run is to end.
bool awaitPass(const DiagnosticDescription& diagnostic, const LoopControl& loop,
               const PassControl& control, double lastBegin, const Sleep& sleep) {
  constexpr double kLook = 0.05;
  if (diagnostic.secondsBetweenPasses <= 0 || loop.count) return true;
  double rest = lastBegin + diagnostic.secondsBetweenPasses - control.seconds();
  if (loop.seconds) rest = std::min(rest, loop.seconds - control.seconds());
  // A clock that was set back does not make it longer.
  for (rest = std::min(rest, diagnostic.secondsBetweenPasses); rest > 0; rest -= kLook) {
    if (control.stopRequested()) return false;
    sleep(std::min(rest, kLook));
  }
  return !loop.seconds || control.seconds() < loop.seconds;
}

}  // namespace

void sleepFor(double seconds) {
  std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

Outcome runLoops(Diagnostic& diagnostic, const Device& device, const RunSettings& settings,
                 RunControl& control, const Clock& clock, const Sleep& sleep) {
  PassControl passControl(control, settings.loop, clock);
  Outcome sum;
  Outcome pass;
  double begin = 0;
  std::uint64_t leftOut = 0;
  do {
    if (diagnostic.description().secondsBetweenPasses > 0) begin = passControl.seconds();
    pass = diagnostic.run(device, settings, passControl);
    leftOut += addPass(sum, pass);
    passControl.passEnded();
  } while (!isOver(settings, sum, pass, passControl) &&
           awaitPass(diagnostic.description(), settings.loop, passControl, begin, sleep));
  const bool stopped = repeats(settings.loop) && control.stopRequested();
  if (stopped && sum.state != CompletionState::Failed) sum.state = CompletionState::Stopped;
  if (repeats(settings.loop)) {
    sum.text += "Loops: " + std::to_string(sum.loopsPassed) + " passed, " +
                std::to_string(sum.loopsFailed) + " failed\n";
    sum.measured.push_back({"LoopsPassed", static_cast<double>(sum.loopsPassed)});
    sum.measured.push_back(
        {"LoopsFailed", static_cast<double>(sum.loopsFailed), {}, true, Fold::Sum, {}, 0});
  }
  if (leftOut > 0)
    sum.text += "Not noted one by one: " + std::to_string(leftOut) + " further findings\n";
  return sum;
}

}  // namespace providers
