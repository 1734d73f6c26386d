#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/disk/scratch/ScratchBlock.h"
#include "providers/disk/scratch/ScratchFile.h"

namespace providers::disk {

/// A block of the file that was not what had been written.
struct CompareFault {
  std::uint64_t offset = 0;  ///< in the file
  BlockVerdict verdict;      ///< where something came
  std::string error;         ///< where nothing did
  bool hard = true;          ///< it was the same when read again
};

struct CompareReport {
  std::uint64_t askedBytes = 0;
  std::uint64_t comparedBytes = 0;  ///< in the last one that was begun of two generations
  unsigned generations = 0;         ///< that were written and compared to the end
  double writeSeconds = 0;
  double readSeconds = 0;
  std::uint64_t writtenBytes = 0;
  std::uint64_t readBytes = 0;
  std::vector<CompareFault> faults;  ///< the first ones
  std::uint64_t hardBlocks = 0;
  std::uint64_t softBlocks = 0;
  ScratchProblem problem;  ///< why it could not go on
  bool givenUp = false;    ///< as it took too long to read again what failed
  bool stopped = false;
};

struct ComparePlan {
  std::uint64_t askedBytes = 0;
  std::uint64_t seed = 0;
  bool haltOnError = false;
  std::size_t unit = kScratchBlock;  ///< the least that can be read, a power of two
  double againSeconds = 60;          ///< for all blocks that fail when they are read again
};

/// Writes the file, reads it and compares, twice: with other content the second time, so that a
/// write that never came to the disk shows.
class ComparePass {
 public:
  using Clock = std::function<double()>;

  ComparePass(ScratchFile& file, const ComparePlan& plan, const Clock& clock, RunControl& control);

  CompareReport run();

 private:
  bool writeAll(std::uint64_t generation);
  bool compareAll(std::uint64_t generation);
  void compareChunk(std::uint64_t offset, std::size_t bytes, std::uint64_t generation);
  void lookAgain(const BlockName& name, CompareFault fault);
  void note(CompareFault fault);
  bool isTrouble(const ScratchProblem& problem);
  bool goesOn();
  void advance(std::size_t bytes);

  ScratchFile& m_file;
  const ComparePlan m_plan;
  const Clock& m_clock;
  RunControl& m_control;
  CompareReport m_report;
  std::vector<std::uint8_t> m_memory;
  std::uint8_t* m_chunk;  ///< aligned
  std::uint8_t* m_again;
  std::uint64_t m_done = 0;
  double m_againSeconds = 0;
};

}  // namespace providers::disk
