#include "providers/disk/reading/ReadPass.h"

#include <algorithm>

namespace providers::disk {

namespace {

constexpr std::size_t kKeptFaults = 64;
// Where the whole machine stands still now and then, many reads are slow that tell nothing of the
// disk.
constexpr std::size_t kKeptSlow = 256;
constexpr std::size_t kNamedSlow = 8;
constexpr double kLook = 0.25;   // how often a request to stop is looked for while nothing comes
constexpr double kPatience = 5;  // with reads that do not come back, once the run is to stop

std::uint64_t endOf(const ReadFault& fault) { return fault.firstBlock + fault.blocks; }

bool contains(const ReadFault& outer, const ReadFault& inner) {
  return outer.firstBlock <= inner.firstBlock && endOf(inner) <= endOf(outer);
}

bool touch(const ReadFault& left, const ReadFault& right) {
  return endOf(left) == right.firstBlock || endOf(right) == left.firstBlock;
}

}  // namespace

ReadPass::ReadPass(BlockSource& source, Extents& extents, const ReadPlan& plan, const Clock& clock,
                   RunControl& control)
    : m_source(source),
      m_extents(extents),
      m_plan(plan),
      m_clock(clock),
      m_control(control),
      m_single(source, clock, plan.stuckSeconds, [this] { return !mayGoOn() && waitsNoLonger(); }),
      m_search(m_single, plan.logicalBlock, plan.search, [this] { return mayGoOn(); }),
      m_flights(source.slots()) {
  for (unsigned slot = source.slots(); slot > 0; --slot) m_free.push_back(slot - 1);
}

ReadReport ReadPass::run() {
  m_begin = m_clock();
  m_report.askedBytes = m_extents.bytes();
  try {
    readAll();
    m_report.seconds = m_clock() - m_begin - m_searchSeconds;
    if (!m_over) readSlowAgain();
  } catch (const StuckRead& stuck) {
    m_report.stuck = stuck.extent;
  } catch (const LeftRead&) {
    // It is one of the suspects, or was read only to learn more of the drive.
  } catch (const NoFurtherReads& reason) {
    m_report.problem = reason.what();
  }
  if (m_report.seconds == 0) m_report.seconds = m_clock() - m_begin - m_searchSeconds;
  leaveSuspects();
  // What had been begun by then has been read.
  m_report.timeUp = m_report.timeUp && m_report.triedBytes < m_report.askedBytes;
  return std::move(m_report);
}

void ReadPass::readAll() {
  for (;;) {
    const bool further = goesOn();
    if (further && m_suspects.empty()) fill();
    if (waitsNoLonger()) return;
    if (m_free.size() < m_flights.size()) {
      collect();
    } else if (!m_suspects.empty()) {
      lookInto();
    } else {
      return;
    }
  }
}

/// Whether further reads may be begun; sees to the signs that they may not.
bool ReadPass::goesOn() {
  if (m_report.timeUp || !mayGoOn()) return false;
  m_report.timeUp = m_plan.seconds > 0 && m_clock() - m_begin - m_searchSeconds >= m_plan.seconds;
  return !m_report.timeUp;
}

bool ReadPass::mayGoOn() {
  if (!m_over && m_control.stopRequested()) {
    m_report.stopped = true;
    m_stopSeen = m_clock();
    m_over = true;
  }
  return !m_over;
}

/// Whether reads that do not come back are left alone, as the run is to end.
bool ReadPass::waitsNoLonger() const {
  return m_report.stopped && m_clock() - m_stopSeen > kPatience;
}

void ReadPass::fill() {
  const double now = m_clock();
  while (!m_free.empty()) {
    const auto extent = m_extents.next();
    if (!extent) return;
    const unsigned slot = m_free.back();
    m_free.pop_back();
    m_flights[slot] = {*extent, now, true};
    m_source.start(slot, *extent);
  }
}

void ReadPass::collect() {
  m_ended.clear();
  m_source.collect(m_ended, kLook);
  const double now = m_clock();
  if (m_ended.empty()) lookForStuck(now);
  for (const ReadAnswer& answer : m_ended) land(answer, now);
  if (m_report.askedBytes > 0)
    m_control.progress(static_cast<double>(m_report.triedBytes) /
                       static_cast<double>(m_report.askedBytes));
}

void ReadPass::lookForStuck(double now) {
  for (const Flight& flight : m_flights)
    if (flight.open && now - flight.begin >= m_plan.stuckSeconds) throw StuckRead{flight.extent};
}

void ReadPass::land(const ReadAnswer& answer, double now) {
  Flight& flight = m_flights[answer.slot];
  flight.open = false;
  m_free.push_back(answer.slot);
  ++m_report.reads;
  m_report.readBytes += answer.bytes;
  m_report.triedBytes += flight.extent.bytes;
  if (answer.error == ReadError::None && answer.bytes == flight.extent.bytes) {
    noteTime(flight.extent, now - flight.begin);
    m_good = flight.extent;
    if (!m_firstGood) m_firstGood = m_good;
    m_report.gotBytes += answer.bytes;
    return;
  }
  // What came is good; the rest of whole blocks is looked into.
  const std::uint32_t came = answer.bytes - answer.bytes % m_plan.logicalBlock;
  m_report.gotBytes += came;
  const Extent rest{flight.extent.offset + came, flight.extent.bytes - came};
  m_suspects.push_back({rest, answer.error == ReadError::None ? ReadError::Short : answer.error});
}

void ReadPass::noteTime(const Extent& extent, double seconds) {
  m_report.latencies.add(seconds);
  if (!m_report.slowest || seconds > m_report.slowest->firstSeconds)
    m_report.slowest = SlowRead{extent, seconds, seconds};
  if (seconds < m_plan.slowSeconds) return;
  m_candidates.push_back({extent, seconds, seconds});
  if (m_candidates.size() <= kKeptSlow) return;
  m_candidates.erase(std::min_element(m_candidates.begin(), m_candidates.end(),
                                      [](const SlowRead& left, const SlowRead& right) {
                                        return left.firstSeconds < right.firstSeconds;
                                      }));
}

/// Looks into what has failed, with nothing else in flight. What waits no longer is left for last.
void ReadPass::lookInto() {
  if (m_over) return leaveSuspects();
  const double begin = m_clock();
  try {
    lookInto(m_suspects.front());
  } catch (...) {
    for (const ReadFault& fault : m_search.found()) keep(fault);
    m_searchSeconds += m_clock() - begin;
    throw;
  }
  m_suspects.pop_front();
  m_searchSeconds += m_clock() - begin;
}

void ReadPass::lookInto(Suspect suspect) {
  if (!isOfDrive(suspect.error)) {
    suspect.error = m_single.read(suspect.extent).error;
    if (suspect.error == ReadError::None) {
      m_report.gotBytes += suspect.extent.bytes;
      return;
    }
    if (!isOfDrive(suspect.error)) m_report.problem = errorText(suspect.error);
  }
  m_over = !m_report.problem.empty();
  if (m_over) return;
  bool gone = suspect.error == ReadError::Gone || answersNoMore();
  if (!gone) {
    const std::vector<ReadFault> faults = m_search.search(suspect.extent, suspect.error);
    for (const ReadFault& fault : faults) keep(fault);
    gone = m_search.gone();
    if (!gone) m_report.gotBytes += suspect.extent.bytes - lostBytes(faults);
  }
  if (gone) m_report.gone = suspect.extent;
  if (gone || (m_plan.haltOnError && m_report.hardBlocks > 0)) m_over = true;
}

/// Of what was looked into, what did not come when it was read again.
std::uint64_t ReadPass::lostBytes(const std::vector<ReadFault>& faults) const {
  std::uint64_t blocks = 0;
  for (const ReadFault& fault : faults)
    if (fault.hard || !fault.settled) blocks += fault.blocks;
  return blocks * m_plan.logicalBlock;
}

/// What failed and was not looked into before the end. Of a drive that is gone all fails, of one
/// that cannot be read any more nothing is known.
void ReadPass::leaveSuspects() {
  const bool meansNothing = m_report.gone || !m_report.problem.empty();
  if (!meansNothing)
    for (const Suspect& suspect : m_suspects)
      keep(m_search.unsettled(suspect.extent, suspect.error));
  m_suspects.clear();
}

/// A drive that went away fails everywhere: tells it from one with bad blocks by what could be
/// read. What was read last may belong to a part that the drive has no more; the beginning is still
/// there then.
bool ReadPass::answersNoMore() {
  constexpr int kTries = 3;
  if (!m_good) return false;
  for (int i = 0; i < kTries; ++i)
    if (m_single.read(*m_good).error == ReadError::None) return false;
  if (*m_firstGood == *m_good || m_single.read(*m_firstGood).error != ReadError::None) return true;
  m_good = m_firstGood;  // what was read last tells nothing of the drive any more
  return false;
}

/// What random reads find twice counts once, and neighbours with the same fault are one.
void ReadPass::keep(const ReadFault& fault) {
  for (ReadFault& known : m_report.faults) {
    if (known.hard != fault.hard || known.located != fault.located ||
        known.settled != fault.settled)
      continue;
    if (contains(known, fault)) return;
    if (known.error != fault.error || !touch(known, fault)) continue;
    known.firstBlock = std::min(known.firstBlock, fault.firstBlock);
    known.blocks += fault.blocks;
    count(fault);
    return;
  }
  count(fault);
  if (m_report.faults.size() < kKeptFaults)
    m_report.faults.push_back(fault);
  else
    ++m_report.furtherFaults;
}

void ReadPass::count(const ReadFault& fault) {
  std::uint64_t& blocks = !fault.settled ? m_report.unsettledBlocks
                          : fault.hard   ? m_report.hardBlocks
                                         : m_report.softBlocks;
  blocks += fault.blocks;
}

/// A read that was slow among others says nothing of the disk; what is slow alone does. What is
/// well costs one quick read; of a disk that is slow all over, some places are enough.
void ReadPass::readSlowAgain() {
  constexpr int kTries = 3;
  for (SlowRead slow : m_candidates) {
    if (m_report.slow.size() == kNamedSlow) return;
    for (int i = 0; i < kTries && slow.againSeconds >= m_plan.slowSeconds && mayGoOn(); ++i) {
      const SingleRead::Result again = m_single.read(slow.extent);
      slow.againSeconds = std::min(slow.againSeconds, again.seconds);
      if (again.error == ReadError::None) continue;
      m_report.gotBytes -= slow.extent.bytes;  // it came once; whether it still does is seen now
      m_suspects.push_back({slow.extent, again.error});
      lookInto();
      break;
    }
    if (slow.againSeconds >= m_plan.slowSeconds && mayGoOn()) m_report.slow.push_back(slow);
  }
}

}  // namespace providers::disk
