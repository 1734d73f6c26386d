#include "providers/memory/engine/MemoryEngine.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

namespace providers::memory {

namespace {

constexpr std::size_t kBlockLines = 4096;  // 256 KiB, between two looks at whether to go on

bool writes(const Sweep& sweep) { return sweep.action != Sweep::Action::Check; }
bool checks(const Sweep& sweep) { return sweep.action != Sweep::Action::Write; }

/// What is left of a block, of which `done` lines have been gone over.
LineRange restOf(LineRange block, Direction direction, std::size_t done) {
  const std::size_t first = direction == Direction::Up ? block.first + done : block.first;
  return {first, block.count - done};
}

std::size_t nextLine(LineRange rest, Direction direction) {
  return direction == Direction::Up ? rest.first : rest.first + rest.count - 1;
}

}  // namespace

void RealResting::rest(double seconds) {
  std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

std::vector<LineRange> evenRegions(std::size_t words, unsigned threads) {
  const std::size_t lines = words / kLineWords;
  std::vector<LineRange> regions;
  for (unsigned i = 0; i < threads; ++i) {
    const std::size_t begin = lines / threads * i + lines % threads * i / threads;
    const std::size_t end = lines / threads * (i + 1) + lines % threads * (i + 1) / threads;
    regions.push_back({begin, end - begin});
  }
  return regions;
}

MemoryEngine::MemoryEngine(std::uint64_t* words, std::size_t count, ThreadTeam& team,
                           Resting& resting, EngineSetup setup)
    : m_words(words),
      m_count(count - count % kLineWords),
      m_team(team),
      m_resting(resting),
      m_setup(std::move(setup)),
      m_findings(team.size()) {}

MemoryReport MemoryEngine::run(const std::vector<Sweep>& sweeps, RunControl& control) {
  m_control = &control;
  m_report.plannedSweeps = sweeps.size();
  for (const LineRange region : m_setup.regions) m_lines += region.count;
  m_report.testedBytes = m_lines * kLineBytes;
  m_steps = static_cast<double>(
      sweeps.size() +
      static_cast<std::size_t>(std::count_if(
          sweeps.begin(), sweeps.end(), [](const Sweep& one) { return one.restSeconds > 0; })));
  for (std::size_t i = 0; i < sweeps.size() && goesOn(); ++i) {
    control.status("Sweep " + std::to_string(i + 1) + " of " + std::to_string(sweeps.size()));
    if (rest(sweeps[i].restSeconds)) sweep(sweeps[i], i);
  }
  Findings all;
  for (const Findings& one : m_findings) all.add(one);
  all.tell(m_report);
  return m_report;
}

/// False when the run is to end.
bool MemoryEngine::rest(double seconds) {
  constexpr double kLongest = 0.1;
  for (double left = seconds; left > 0 && goesOn(); left -= kLongest) {
    m_resting.rest(std::min(left, kLongest));
    look();
  }
  if (seconds > 0) ++m_stepsDone;
  return goesOn();
}

void MemoryEngine::sweep(const Sweep& sweep, std::size_t number) {
  const double begin = m_setup.clock();
  m_linesDone = 0;
  m_team.run([&](unsigned thread) { sweepRegion(sweep, number, thread); }, [this] { look(); });
  m_report.seconds += m_setup.clock() - begin;
  const std::uint64_t bytes = m_linesDone * kLineBytes;
  if (writes(sweep)) m_report.bytesWritten += bytes;
  if (checks(sweep)) m_report.bytesChecked += bytes;
  m_resting.settle(m_words, m_count);
  if (bytes == m_report.testedBytes) {
    ++m_report.sweeps;
    ++m_stepsDone;
    m_linesDone = 0;
  }
  look();
}

void MemoryEngine::sweepRegion(const Sweep& sweep, std::size_t number, unsigned thread) {
  const LineRange region = m_setup.regions[thread];
  // What the caches can hold of what is written last has to be written past them.
  const std::size_t cached = m_setup.cacheBytes / m_team.size() / kLineBytes;
  for (std::size_t done = 0; done < region.count && goesOn();) {
    const std::size_t count = std::min(kBlockLines, region.count - done);
    const bool down = sweep.direction == Direction::Down;
    const std::size_t first = region.first + (down ? region.count - done - count : done);
    sweepBlock(sweep, number, thread, {first, count}, region.count - done - count < cached);
    done += count;
    m_linesDone += count;
  }
  m_setup.kernels->drain();
}

void MemoryEngine::sweepBlock(const Sweep& sweep, std::size_t number, unsigned thread,
                              LineRange block, bool streams) {
  const Kernels& kernels = *m_setup.kernels;
  if (sweep.action == Sweep::Action::Write) return kernels.write(m_words, block, sweep.next);
  const auto checkAndWrite = streams ? kernels.checkAndStream : kernels.checkAndWrite;
  for (std::size_t done = 0; done < block.count; ++done) {
    const LineRange rest = restOf(block, sweep.direction, done);
    const std::size_t passed =
        writes(sweep) ? checkAndWrite(m_words, rest, sweep.direction, sweep.expected, sweep.next)
                      : kernels.check(m_words, rest, sweep.direction, sweep.expected);
    done += passed;
    if (passed == rest.count) return;
    inspect(sweep, number, thread,
            nextLine(restOf(rest, sweep.direction, passed), sweep.direction));
  }
}

/// Looks at the words of a line that differs, and then goes on as if it had not.
void MemoryEngine::inspect(const Sweep& sweep, std::size_t number, unsigned thread,
                           std::size_t line) {
  MemoryFault fault;
  fault.sweep = number;
  fault.direction = sweep.direction;
  fault.thread = thread;
  bool found = false;
  for (std::size_t i = line * kLineWords; i < (line + 1) * kLineWords; ++i) {
    fault.offset = i * sizeof(std::uint64_t);
    fault.expected = sweep.expected.at(i);
    fault.actual = *const_cast<const volatile std::uint64_t*>(m_words + i);
    if (fault.actual == fault.expected) continue;
    m_findings[thread].add(fault);
    found = true;
  }
  if (!found) {
    fault.offset = line * kLineBytes;
    fault.expected = fault.actual = sweep.expected.at(line * kLineWords);
    m_findings[thread].add(fault);
  }
  if (writes(sweep)) m_setup.kernels->write(m_words, {line, 1}, sweep.next);
  if (m_setup.haltOnError) m_ending = true;
}

void MemoryEngine::look() {
  const auto lines = static_cast<double>(m_lines);
  const double part = lines > 0 ? static_cast<double>(m_linesDone) / lines : 0;
  m_control->progress(std::min((m_stepsDone + part) / m_steps, 1.0));
  if (!m_control->stopRequested()) return;
  m_report.stopped = true;
  m_ending = true;
}

}  // namespace providers::memory
