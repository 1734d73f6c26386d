#include "providers/processor/blame/Blame.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "providers/processor/blame/Votes.h"
#include "providers/processor/operations/KnownAnswers.h"

namespace providers {

namespace {

constexpr unsigned kTries = 10;
const char* const kNoThread = "the system started no more threads";

/// Of the right results; none where nobody has got them.
using Digest = std::optional<std::uint64_t>;

unsigned countOthers(const std::vector<std::uint64_t>& digests, Digest right) {
  return static_cast<unsigned>(std::count_if(
      digests.begin(), digests.end(), [right](std::uint64_t digest) { return digest != right; }));
}

/// Answers that were got by other means count twice: the unit is what is in doubt.
const Words* chooseTruth(const Suspicion& suspicion, const Votes& votes) {
  if (suspicion.seed == kKnownSeed)
    if (const auto known = knownDigest(suspicion.operation)) return votes.find(*known);
  return votes.winner();
}

}  // namespace

/// What one thread made of it.
struct Blame::Trial {
  CpuPlace place;
  bool wasStarted = false;
  bool ran = false;
  Words answer;  ///< these two until they have been voted with
  Words firstResult;
  std::uint64_t answerDigest = 0;
  std::vector<std::uint64_t> digests;  ///< of each try
};

/// What all of them made of it.
struct Blame::Trials {
  std::vector<Trial> list;
  Votes votes;
  std::size_t leftOut = 0;
  std::string whyLeftOut;
};

Blame::Blame(BlameSurroundings surroundings, std::vector<CpuPlace> places)
    : m_surroundings(std::move(surroundings)), m_places(std::move(places)) {}

Blame::Trial Blame::tryOn(const CpuPlace& place, const Suspicion& suspicion) const {
  const Executor& executor = *m_surroundings.executor;
  Trial trial;
  trial.place = place;
  JoinedThreads thread(m_surroundings.start);
  trial.wasStarted = thread.add([&] {
    if (!m_surroundings.bind(place.cpu)) return;
    Words operands, results;
    drawOperands(suspicion.operation, suspicion.seed, operands);
    answerBlock(executor, suspicion.operation, operands, trial.answer);
    trial.answerDigest = digestOf(trial.answer);
    for (unsigned i = 0; i < kTries; ++i) {
      drawOperands(suspicion.operation, suspicion.seed, operands);
      computeBlock(executor, suspicion.operation, operands, results);
      trial.digests.push_back(digestOf(results));
      if (i == 0) trial.firstResult = results;
    }
    trial.ran = true;
  });
  thread.join();
  return trial;
}

/// With all the others busy; nothing where that could not be had.
std::optional<unsigned> Blame::tryUnderLoad(const CpuPlace& place, const Suspicion& suspicion,
                                            std::optional<std::uint64_t> right) const {
  if (!m_surroundings.whyNotOn().empty()) return std::nullopt;
  std::atomic<bool> over{false};
  JoinedThreads load(m_surroundings.start);
  const struct End {
    std::atomic<bool>& over;
    ~End() { over = true; }
  } end{over};
  for (const CpuPlace& other : m_places) {
    if (other.cpu == place.cpu) continue;
    const bool isStarted = load.add([this, &over, &other, &suspicion] {
      if (!m_surroundings.bind(other.cpu)) return;
      Words operands, results;
      drawOperands(suspicion.operation, suspicion.seed, operands);
      while (!over) computeBlock(*m_surroundings.executor, suspicion.operation, operands, results);
    });
    if (!isStarted) return std::nullopt;
  }
  const Trial trial = tryOn(place, suspicion);
  if (!trial.ran) return std::nullopt;
  return countOthers(trial.digests, right);
}

CpuPlace Blame::placeOf(unsigned cpu) const {
  const auto place = std::find_if(m_places.begin(), m_places.end(),
                                  [cpu](const CpuPlace& one) { return one.cpu == cpu; });
  return place == m_places.end() ? CpuPlace{cpu, cpu, 0} : *place;
}

Verdict Blame::untried(const Suspicion& suspicion, const std::string& why) const {
  Verdict verdict;
  verdict.place = placeOf(suspicion.cpu);
  verdict.mismatch = suspicion.mismatch;
  verdict.wasTried = false;
  verdict.whyLeftOut = why;
  return verdict;
}

/// The two that disagree, the threads of the same core, and then by turns another one of the same
/// package and of others: where time is short, that tells most.
std::vector<CpuPlace> Blame::inOrder(const Suspicion& suspicion) const {
  const CpuPlace suspect = placeOf(suspicion.cpu);
  std::vector<CpuPlace> order, near, far;
  for (const unsigned cpu : {suspicion.cpu, suspicion.answeredBy})
    for (const CpuPlace& place : m_places)
      if (place.cpu == cpu && (order.empty() || order.front().cpu != cpu)) order.push_back(place);
  for (const CpuPlace& place : m_places) {
    if (place.cpu == suspicion.cpu || place.cpu == suspicion.answeredBy) continue;
    const bool isNear = place.package == suspect.package;
    if (isNear && place.core == suspect.core)
      order.push_back(place);
    else
      (isNear ? near : far).push_back(place);
  }
  for (std::size_t i = 0; i < std::max(near.size(), far.size()); ++i) {
    if (i < near.size()) order.push_back(near[i]);
    if (i < far.size()) order.push_back(far[i]);
  }
  return order;
}

Blame::Trials Blame::tryOnAll(const Suspicion& suspicion) const {
  Trials trials;
  for (const CpuPlace& place : inOrder(suspicion)) {
    const bool disagrees = place.cpu == suspicion.cpu || place.cpu == suspicion.answeredBy;
    if (trials.whyLeftOut.empty() && !disagrees) trials.whyLeftOut = m_surroundings.whyNotOn();
    if (trials.whyLeftOut.empty()) {
      Trial trial = tryOn(place, suspicion);
      if (!trial.wasStarted) trials.whyLeftOut = kNoThread;
      if (trial.ran) {
        if (mayBeRight(suspicion.operation, trial.answer))
          trials.votes.add(trial.answer, suspicion.operation.answer ? 2 : 1);
        if (mayBeRight(suspicion.operation, trial.firstResult))
          trials.votes.add(trial.firstResult, 1);
        // On a machine of hundreds of processors, all of them together would be gibibytes.
        trial.answer = trial.firstResult = Words();
        trials.list.push_back(std::move(trial));
      }
    }
    if (!trials.whyLeftOut.empty()) ++trials.leftOut;
  }
  return trials;
}

Verdict Blame::judge(const Suspicion& suspicion) const {
  const std::string whyNot = m_surroundings.whyNotOn();
  if (!whyNot.empty()) return untried(suspicion, whyNot);
  const Trials trials = tryOnAll(suspicion);
  if (trials.list.empty() && trials.leftOut > 0) return untried(suspicion, trials.whyLeftOut);
  return decide(suspicion, trials);
}

Verdict Blame::decide(const Suspicion& suspicion, const Trials& trials) const {
  Verdict verdict;
  verdict.place = placeOf(suspicion.cpu);
  verdict.mismatch = suspicion.mismatch;
  verdict.leftOut = trials.leftOut;
  verdict.whyLeftOut = trials.whyLeftOut;
  const Words* const truth = chooseTruth(suspicion, trials.votes);
  const bool isNobodyRight = trials.votes.areNone() && !trials.list.empty();
  if (!truth && !isNobodyRight) return verdict;

  const Digest right = truth ? Digest(digestOf(*truth)) : std::nullopt;
  const std::size_t place =
      suspicion.mismatch.item * suspicion.operation.resultWords + suspicion.mismatch.word;
  const bool answerWasWrong =
      truth && !suspicion.isAnswer && (*truth)[place] == suspicion.mismatch.found;
  if (answerWasWrong) {
    verdict.place = placeOf(suspicion.answeredBy);
    std::swap(verdict.mismatch.expected, verdict.mismatch.found);
  }
  std::vector<Tried> others;
  for (const Trial& trial : trials.list) {
    const unsigned wrong =
        countOthers(trial.digests, right) + (Digest(trial.answerDigest) != right ? 1 : 0);
    if (trial.place.cpu == verdict.place.cpu) {
      verdict.tries = kTries;
      verdict.wrongAlone = std::min(wrong, kTries);
      continue;
    }
    others.push_back({trial.place, wrong > 0});
    (wrong > 0 ? verdict.wrongToo : verdict.right).push_back(trial.place.cpu);
  }
  std::sort(verdict.wrongToo.begin(), verdict.wrongToo.end());
  std::sort(verdict.right.begin(), verdict.right.end());
  verdict.extent = extentOf(verdict.place, others);
  if (verdict.wrongAlone == 0)
    verdict.wrongUnderLoad = tryUnderLoad(verdict.place, suspicion, right);
  verdict.comesBack = verdict.wrongAlone > 0 || verdict.wrongUnderLoad.value_or(0) > 0 ||
                      (!answerWasWrong && suspicion.count > 1);
  return verdict;
}

}  // namespace providers
