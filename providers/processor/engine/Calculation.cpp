#include "providers/processor/engine/Calculation.h"

#include <algorithm>
#include <chrono>

#include "providers/common/SplitMix.h"

// An epoch has two phases: all make their shares of its answers, and then all calculate.

namespace providers {

namespace {

constexpr double kEpochSeconds = 1;
constexpr double kTurnSeconds = 0.0002;  // that an operation gets before the next has its turn
constexpr std::size_t kKeptSuspicions = 32;
constexpr auto kLookInterval = std::chrono::milliseconds(50);

}  // namespace

Calculation::Calculation(const ProcessorSurroundings& surroundings, const ProcessorPlan& plan,
                         RunControl& control)
    : m_surroundings(surroundings),
      m_plan(plan),
      m_control(control),
      m_begin(surroundings.clock()),
      m_answers(plan.operations),
      m_barrier(plan.cpus.size(), [this] { beginNext(); }),
      m_working(plan.cpus.size()) {}

void Calculation::execute(ProcessorReport& report) {
  std::vector<Worker> workers(m_plan.cpus.size());
  JoinedThreads threads(m_surroundings.start);
  for (std::size_t i = 0; i < workers.size(); ++i) {
    workers[i].cpu = m_plan.cpus[i];
    if (threads.add([this, &worker = workers[i]] { work(worker); })) continue;
    ++report.unstarted;
    stayAway();
  }
  watch();
  threads.join();
  for (const Worker& worker : workers)
    note(worker, !worker.wasMoved && (worker.present > 0 || worker.blocks > 0), report);
  report.operations = m_plan.operations.size();
  report.errors = m_errors;
  report.stopped = m_stopped;
  report.seconds = elapsed();
}

void Calculation::note(const Worker& worker, bool wasBound, ProcessorReport& report) const {
  if (!wasBound) {
    report.unusable.push_back(worker.cpu);
    return;
  }
  const bool isFirst = report.tested.empty();
  report.tested.push_back(worker.cpu);
  report.mostBlocks = std::max(report.mostBlocks, worker.blocks);
  report.fewestBlocks = isFirst ? worker.blocks : std::min(report.fewestBlocks, worker.blocks);
  // A mean would hide one idle thread among hundreds.
  const double busy = worker.present > 0 ? worker.busy / worker.present : 0;
  report.busy = isFirst ? busy : std::min(report.busy, busy);
}

/// Shows the progress until all threads are done, and once where they were sooner.
void Calculation::watch() {
  std::unique_lock<std::mutex> lock(m_mutex);
  do {
    m_done.wait_for(lock, kLookInterval, [this] { return m_working == 0; });
    lock.unlock();
    const double target = m_plan.targetSeconds;
    m_control.progress(target > 0 ? std::min(1.0, elapsed() / target) : 1);
    if (m_control.stopRequested()) {
      m_stopped = true;
      m_over = true;
    }
    lock.lock();
  } while (m_working > 0);
}

void Calculation::work(Worker& worker) {
  if (m_surroundings.bind(worker.cpu)) {
    const double begin = m_surroundings.clock();
    const double busy = m_surroundings.threadSeconds();
    workEpochs(worker);
    worker.busy = m_surroundings.threadSeconds() - busy;
    worker.present = m_surroundings.clock() - begin;
    // Where a CPU goes away, the system has its threads run on others and tells nobody.
    worker.wasMoved = !m_surroundings.bind(worker.cpu);
    end();
  } else {
    stayAway();
  }
}

/// For a thread that does not take part.
void Calculation::stayAway() {
  m_barrier.leave();
  end();
}

void Calculation::end() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  --m_working;
  m_done.notify_one();
}

void Calculation::workEpochs(Worker& worker) {
  worker.share = m_sharers++;
  m_barrier.wait();
  while (m_goesOn) {
    answer(worker);
    m_barrier.wait();
    calculate(worker);
    m_barrier.wait();
  }
}

/// What comes between two phases, with all threads waiting.
void Calculation::beginNext() {
  if (m_isAnswering) {
    m_isAnswering = false;
    m_epochEnd = std::min(elapsed() + kEpochSeconds, m_plan.targetSeconds);
    return;
  }
  m_goesOn = m_epoch == 0 || (!m_over && elapsed() < m_plan.targetSeconds);
  if (!m_goesOn) return;
  m_answers.beginEpoch(splitMix(m_plan.seed, m_epoch++), m_sharers);
  m_isAnswering = true;
}

void Calculation::answer(const Worker& worker) {
  for (const AnswerBook::Surprise& surprise :
       m_answers.answerShare(worker.share, worker.cpu, *m_surroundings.executor)) {
    Suspicion suspicion;
    suspicion.cpu = suspicion.answeredBy = worker.cpu;
    suspicion.operation = m_plan.operations[surprise.operation];
    suspicion.seed = surprise.seed;
    suspicion.mismatch = {0, 0, surprise.known, surprise.found};
    suspicion.isAnswer = true;
    suspect(suspicion);
  }
}

void Calculation::calculate(Worker& worker) {
  const std::size_t operations = m_plan.operations.size();
  do {
    // Each begins with another one, so that different units are at work at the same time.
    for (std::size_t i = 0; i < operations; ++i) {
      if (m_over) return;
      turn(worker, (i + worker.share) % operations);
    }
  } while (elapsed() < m_epochEnd);
}

void Calculation::turn(Worker& worker, std::size_t operation) {
  const double end = m_surroundings.clock() + kTurnSeconds;
  do {
    for (const AnswerBook::Block& block : m_answers.blocks(operation))
      check(worker, operation, block);
  } while (!m_over && m_surroundings.clock() < end);
}

void Calculation::check(Worker& worker, std::size_t number, const AnswerBook::Block& block) {
  const Operation& operation = m_plan.operations[number];
  drawOperands(operation, block.seed, worker.operands);
  computeBlock(*m_surroundings.executor, operation, worker.operands, worker.results);
  ++worker.blocks;
  const auto mismatch = firstMismatch(operation, block.answer, worker.results);
  if (mismatch) suspect({worker.cpu, block.answeredBy, operation, block.seed, *mismatch});
}

void Calculation::suspect(const Suspicion& suspicion) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  ++m_errors;
  if (m_plan.haltOnError) m_over = true;
  for (Suspicion& known : m_suspicions)
    if (known.cpu == suspicion.cpu && known.operation.name == suspicion.operation.name) {
      ++known.count;
      return;
    }
  if (m_suspicions.size() < kKeptSuspicions) m_suspicions.push_back(suspicion);
}

}  // namespace providers
