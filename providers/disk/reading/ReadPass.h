#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/disk/reading/Extents.h"
#include "providers/disk/reading/Latencies.h"
#include "providers/disk/reading/SectorSearch.h"

namespace providers::disk {

struct ReadPlan {
  std::uint32_t logicalBlock = 512;
  double seconds = 0;        ///< after which no read is begun any more; 0 for no such limit
  double slowSeconds = 0.5;  ///< what is slower than this, alone and every time, is slow
  double stuckSeconds =
      150;  ///< a read that is not back by then never will be; the system gives up before
  bool haltOnError = false;  ///< the first hard fault ends the pass
  SectorSearch::Limits search;
};

/// A read that took long, and how long the fastest of more tries alone took.
struct SlowRead {
  Extent extent;
  double firstSeconds = 0;
  double againSeconds = 0;
};

struct ReadReport {
  std::uint64_t askedBytes = 0;
  std::uint64_t readBytes = 0;   ///< that came at once
  std::uint64_t triedBytes = 0;  ///< good or not
  std::uint64_t gotBytes = 0;    ///< of these: what came, at once or when it was tried again
  std::uint64_t reads = 0;
  double seconds = 0;  ///< of the reads that were planned, without those that look for sectors
  std::vector<ReadFault> faults;  ///< the first ones, in the order in which they were found
  std::uint64_t furtherFaults = 0;
  std::uint64_t hardBlocks = 0;
  std::uint64_t softBlocks = 0;
  std::uint64_t unsettledBlocks = 0;
  Latencies latencies;
  std::optional<SlowRead> slowest;
  std::vector<SlowRead> slow;   ///< again and again
  std::optional<Extent> gone;   ///< where the drive went away
  std::optional<Extent> stuck;  ///< what never came back
  std::string problem;          ///< why it could not go on; the drive is not to blame
  bool stopped = false;         ///< on request
  bool timeUp = false;
};

/// Reads what is planned with as many reads in flight as the source has slots. One use.
class ReadPass {
 public:
  using Clock = std::function<double()>;

  /// `clock` tells seconds from any beginning. All outlive the pass.
  ReadPass(BlockSource& source, Extents& extents, const ReadPlan& plan, const Clock& clock,
           RunControl& control);

  ReadReport run();

 private:
  struct Flight {
    Extent extent;
    double begin = 0;
    bool open = false;
  };
  struct Suspect {
    Extent extent;
    ReadError error = ReadError::None;
  };

  void readAll();
  bool goesOn();
  void fill();
  void collect();
  void lookForStuck(double now);
  void land(const ReadAnswer& answer, double now);
  void noteTime(const Extent& extent, double seconds);
  void lookInto();
  void lookInto(Suspect suspect);
  bool answersNoMore();
  std::uint64_t lostBytes(const std::vector<ReadFault>& faults) const;
  void leaveSuspects();
  void keep(const ReadFault& fault);
  void count(const ReadFault& fault);
  void readSlowAgain();
  bool mayGoOn();
  bool waitsNoLonger() const;

  BlockSource& m_source;
  Extents& m_extents;
  const ReadPlan m_plan;
  const Clock& m_clock;
  RunControl& m_control;
  const SingleRead m_single;
  SectorSearch m_search;
  ReadReport m_report;
  std::vector<Flight> m_flights;
  std::vector<unsigned> m_free;
  std::deque<Suspect> m_suspects;
  std::vector<ReadAnswer> m_ended;
  std::vector<SlowRead> m_candidates;  ///< the slowest ones
  std::optional<Extent> m_firstGood;   ///< what could be read first
  std::optional<Extent> m_good;        ///< and last
  double m_begin = 0;
  double m_searchSeconds = 0;
  double m_stopSeen = 0;
  bool m_over = false;
};

}  // namespace providers::disk
