#include "providers/processor/blame/Blame.h"

#include <algorithm>
#include <atomic>
#include <thread>
#include <utility>

#include "providers/processor/blame/Votes.h"
#include "providers/processor/operations/KnownAnswers.h"

namespace providers {

namespace {

constexpr unsigned kTries = 10;

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
  bool ran = false;
  bool isAnswerPossible = true;
  bool isResultPossible = true;
  Words answer;
  Words firstResult;
  std::vector<std::uint64_t> digests;  ///< of each try
};

Blame::Blame(std::function<bool(unsigned)> bind, const Executor& executor,
             std::vector<CpuPlace> places)
    : m_bind(std::move(bind)), m_executor(executor), m_places(std::move(places)) {}

Blame::Trial Blame::tryOn(const CpuPlace& place, const Suspicion& suspicion) const {
  Trial trial;
  trial.place = place;
  std::thread([&] {
    if (!m_bind(place.cpu)) return;
    Words operands, results;
    drawOperands(suspicion.operation, suspicion.seed, operands);
    answerBlock(m_executor, suspicion.operation, operands, trial.answer);
    trial.isAnswerPossible = mayBeRight(suspicion.operation, trial.answer);
    for (unsigned i = 0; i < kTries; ++i) {
      drawOperands(suspicion.operation, suspicion.seed, operands);
      computeBlock(m_executor, suspicion.operation, operands, results);
      trial.digests.push_back(digestOf(results));
      if (i > 0) continue;
      trial.firstResult = results;
      trial.isResultPossible = mayBeRight(suspicion.operation, results);
    }
    trial.ran = true;
  }).join();
  return trial;
}

unsigned Blame::tryUnderLoad(const CpuPlace& place, const Suspicion& suspicion,
                             std::optional<std::uint64_t> right) const {
  std::atomic<bool> over{false};
  std::vector<std::thread> load;
  for (const CpuPlace& other : m_places) {
    if (other.cpu == place.cpu) continue;
    load.emplace_back([this, &over, &other, &suspicion] {
      if (!m_bind(other.cpu)) return;
      Words operands, results;
      drawOperands(suspicion.operation, suspicion.seed, operands);
      while (!over) computeBlock(m_executor, suspicion.operation, operands, results);
    });
  }
  const Trial trial = tryOn(place, suspicion);
  over = true;
  for (std::thread& thread : load) thread.join();
  return countOthers(trial.digests, right);
}

CpuPlace Blame::placeOf(unsigned cpu) const {
  const auto place = std::find_if(m_places.begin(), m_places.end(),
                                  [cpu](const CpuPlace& one) { return one.cpu == cpu; });
  return place == m_places.end() ? CpuPlace{cpu, cpu, 0} : *place;
}

Verdict Blame::untried(const Suspicion& suspicion) const {
  Verdict verdict;
  verdict.place = placeOf(suspicion.cpu);
  verdict.mismatch = suspicion.mismatch;
  verdict.wasTried = false;
  return verdict;
}

Verdict Blame::judge(const Suspicion& suspicion) const {
  std::vector<Trial> trials;
  Votes votes;
  for (const CpuPlace& place : m_places) {
    Trial trial = tryOn(place, suspicion);
    if (!trial.ran) continue;
    if (trial.isAnswerPossible) votes.add(trial.answer, suspicion.operation.answer ? 2 : 1);
    if (trial.isResultPossible) votes.add(trial.firstResult, 1);
    trials.push_back(std::move(trial));
  }
  Verdict verdict;
  verdict.place = placeOf(suspicion.cpu);
  verdict.mismatch = suspicion.mismatch;
  const Words* const truth = chooseTruth(suspicion, votes);
  const bool isNobodyRight = votes.areNone() && !trials.empty();
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
  for (const Trial& trial : trials) {
    const unsigned wrong =
        countOthers(trial.digests, right) + (digestOf(trial.answer) != right ? 1 : 0);
    if (trial.place.cpu == verdict.place.cpu) {
      verdict.tries = kTries;
      verdict.wrongAlone = std::min(wrong, kTries);
      continue;
    }
    others.push_back({trial.place, wrong > 0});
    (wrong > 0 ? verdict.wrongToo : verdict.right).push_back(trial.place.cpu);
  }
  verdict.extent = extentOf(verdict.place, others);
  if (verdict.wrongAlone == 0)
    verdict.wrongUnderLoad = tryUnderLoad(verdict.place, suspicion, right);
  verdict.comesBack = verdict.wrongAlone > 0 || verdict.wrongUnderLoad > 0 ||
                      (!answerWasWrong && suspicion.count > 1);
  return verdict;
}

}  // namespace providers
