#include "providers/disk/scratch/ComparePass.h"

#include <algorithm>

namespace providers::disk {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 20;
constexpr std::uint64_t kGenerations = 2;
constexpr std::size_t kKeptFaults = 64;

}  // namespace

ComparePass::ComparePass(ScratchFile& file, const ComparePlan& plan, const Clock& clock,
                         RunControl& control)
    : m_file(file),
      m_plan(plan),
      m_clock(clock),
      m_control(control),
      m_memory(kChunk + 2 * kScratchBlock) {
  const auto begin = reinterpret_cast<std::uintptr_t>(m_memory.data());
  m_chunk = m_memory.data() + (kScratchBlock - begin % kScratchBlock) % kScratchBlock;
  m_again = m_chunk + kChunk;
}

CompareReport ComparePass::run() {
  m_report.askedBytes = m_plan.askedBytes;
  for (std::uint64_t generation = 1; generation <= kGenerations; ++generation) {
    m_report.comparedBytes = 0;
    if (!writeAll(generation) || !compareAll(generation)) break;
    ++m_report.generations;
  }
  return std::move(m_report);
}

bool ComparePass::writeAll(std::uint64_t generation) {
  const double begin = m_clock();
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
  m_report.writeSeconds += m_clock() - begin;
  return m_report.problem.text.empty();
}

bool ComparePass::compareAll(std::uint64_t generation) {
  const double begin = m_clock();
  for (std::uint64_t place = 0; place < m_file.bytes(); place += kChunk) {
    if (!goesOn()) return false;
    const auto bytes =
        static_cast<std::size_t>(std::min<std::uint64_t>(kChunk, m_file.bytes() - place));
    compareChunk(place, bytes, generation);
    m_report.comparedBytes += bytes;
    advance(bytes);
  }
  m_report.readSeconds += m_clock() - begin;
  return true;
}

void ComparePass::compareChunk(std::uint64_t offset, std::size_t bytes, std::uint64_t generation) {
  const std::string error = m_file.read(offset, m_chunk, bytes);
  if (error.empty()) m_report.readBytes += bytes;
  for (std::size_t i = 0; i < bytes; i += kScratchBlock) {
    const BlockName name{offset + i, m_plan.seed, generation};
    // A dying drive takes minutes for each.
    if (!error.empty() && !goesOn()) return;
    if (!error.empty()) {
      // Which of them cannot be read shows when each is read alone.
      lookAgain(name, {name.offset, {}, error, true});
      continue;
    }
    const BlockVerdict verdict = judgeBlock(m_chunk + i, name);
    if (verdict.state != BlockState::Right) lookAgain(name, {name.offset, verdict, {}, true});
  }
}

/// Reads the block once more alone. In a chunk whose read failed, those that come back are no
/// fault, but for the first one where all of them do.
void ComparePass::lookAgain(const BlockName& name, CompareFault fault) {
  const std::string error = m_file.read(name.offset, m_again, kScratchBlock);
  BlockVerdict verdict;
  if (error.empty()) verdict = judgeBlock(m_again, name);
  const bool right = error.empty() && verdict.state == BlockState::Right;
  if (right && !fault.error.empty() && name.offset % kChunk != 0) return;
  fault.hard = !right;
  if (!right) {
    fault.error = error;
    fault.verdict = verdict;
  }
  ++(fault.hard ? m_report.hardBlocks : m_report.softBlocks);
  if (m_report.faults.size() < kKeptFaults) m_report.faults.push_back(std::move(fault));
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
