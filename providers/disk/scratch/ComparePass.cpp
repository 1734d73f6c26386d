#include "providers/disk/scratch/ComparePass.h"

#include <algorithm>

namespace providers::disk {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 20;
constexpr std::uint64_t kGenerations = 2;
constexpr std::size_t kKeptFaults = 64;

template <class Work>
bool timed(const ComparePass::Clock& clock, double& seconds, Work work) {
  const double begin = clock();
  const bool whole = work();
  seconds += clock() - begin;
  return whole;
}

}  // namespace

ComparePass::ComparePass(ScratchFile& file, const ComparePlan& plan, const Clock& clock,
                         RunControl& control)
    : m_file(file),
      m_plan(plan),
      m_clock(clock),
      m_control(control),
      m_memory(kChunk + 2 * plan.unit) {
  const auto begin = reinterpret_cast<std::uintptr_t>(m_memory.data());
  m_chunk = m_memory.data() + (plan.unit - begin % plan.unit) % plan.unit;
  m_again = m_chunk + kChunk;
}

CompareReport ComparePass::run() {
  m_report.askedBytes = m_plan.askedBytes;
  for (std::uint64_t generation = 1; generation <= kGenerations; ++generation) {
    m_report.comparedBytes = 0;
    const bool whole =
        timed(m_clock, m_report.writeSeconds, [&] { return writeAll(generation); }) &&
        timed(m_clock, m_report.readSeconds, [&] { return compareAll(generation); });
    if (!whole) break;
    ++m_report.generations;
  }
  return std::move(m_report);
}

bool ComparePass::writeAll(std::uint64_t generation) {
  for (std::uint64_t place = 0; place < m_file.bytes() && m_report.problem.text.empty();
       place += kChunk) {
    if (!goesOn()) return false;
    const auto bytes =
        static_cast<std::size_t>(std::min<std::uint64_t>(kChunk, m_file.bytes() - place));
    for (std::size_t i = 0; i < bytes; i += kScratchBlock)
      fillBlock(m_chunk + i, {place + i, m_plan.seed, generation});
    m_report.problem = m_file.write(place, m_chunk, bytes);
    if (m_report.problem.text.empty()) m_report.writtenBytes += bytes;
    advance(bytes);
  }
  if (m_report.problem.text.empty()) m_report.problem = m_file.flush();
  return m_report.problem.text.empty();
}

bool ComparePass::compareAll(std::uint64_t generation) {
  for (std::uint64_t place = 0; place < m_file.bytes(); place += kChunk) {
    if (!goesOn()) return false;
    const auto bytes =
        static_cast<std::size_t>(std::min<std::uint64_t>(kChunk, m_file.bytes() - place));
    compareChunk(place, bytes, generation);
    if (!m_report.problem.text.empty() || m_report.givenUp) return false;
    m_report.comparedBytes += bytes;
    advance(bytes);
  }
  return true;
}

void ComparePass::compareChunk(std::uint64_t offset, std::size_t bytes, std::uint64_t generation) {
  const ScratchProblem problem = m_file.read(offset, m_chunk, bytes);
  if (isTrouble(problem)) return;
  const bool failed = !problem.text.empty();
  if (!failed) m_report.readBytes += bytes;
  for (std::size_t i = 0; i < bytes && !m_report.givenUp; i += kScratchBlock) {
    const BlockName name{offset + i, m_plan.seed, generation};
    // A dying drive takes minutes for each.
    if (failed && !goesOn()) return;
    // Which of them cannot be read shows when each is read alone.
    CompareFault fault{name.offset, {}, problem.text, true};
    if (!failed) fault.verdict = judgeBlock(m_chunk + i, name);
    if (failed || fault.verdict.state != BlockState::Right) lookAgain(name, std::move(fault));
    if (!m_report.problem.text.empty()) return;
  }
}

/// Reads the block once more, alone or with what the disk reads with it. In a chunk whose read
/// failed, those that come back are no fault, but for the first one where all of them do.
void ComparePass::lookAgain(const BlockName& name, CompareFault fault) {
  const double begin = m_clock();
  const std::uint64_t within = name.offset % m_plan.unit;
  const ScratchProblem problem = m_file.read(name.offset - within, m_again, m_plan.unit);
  if (isTrouble(problem)) return;
  BlockVerdict verdict;
  if (problem.text.empty()) verdict = judgeBlock(m_again + within, name);
  const bool right = problem.text.empty() && verdict.state == BlockState::Right;
  if (right && !fault.error.empty() && name.offset % kChunk != 0) return;
  fault.hard = !right;
  if (!right) {
    fault.error = problem.text;
    fault.verdict = verdict;
  }
  if (!problem.text.empty()) m_againSeconds += m_clock() - begin;
  m_report.givenUp = m_againSeconds >= m_plan.againSeconds;
  note(std::move(fault));
}

void ComparePass::note(CompareFault fault) {
  ++(fault.hard ? m_report.hardBlocks : m_report.softBlocks);
  if (m_report.faults.size() < kKeptFaults) m_report.faults.push_back(std::move(fault));
}

/// Whether the read failed for a reason that is not the drive's: it is why the pass cannot go on.
bool ComparePass::isTrouble(const ScratchProblem& problem) {
  if (problem.text.empty() || problem.ofDrive) return false;
  m_report.problem = problem;
  return true;
}

bool ComparePass::goesOn() {
  m_report.stopped = m_report.stopped || m_control.stopRequested();
  return !m_report.stopped && !(m_plan.haltOnError && m_report.hardBlocks > 0);
}

void ComparePass::advance(std::size_t bytes) {
  m_done += bytes;
  m_control.progress(static_cast<double>(m_done) /
                     static_cast<double>(2 * kGenerations * m_file.bytes()));
}

}  // namespace providers::disk
