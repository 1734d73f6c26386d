#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>

#include "providers/processor/engine/AnswerBook.h"
#include "providers/processor/engine/Barrier.h"
#include "providers/processor/engine/ProcessorEngine.h"

namespace providers {

/// One run of the engine: what its threads share. Time falls into epochs, each with answers of its
/// own.
class Calculation {
 public:
  Calculation(const ProcessorSurroundings& surroundings, const ProcessorPlan& plan,
              RunControl& control);

  /// Fills the report, but for the findings.
  void execute(ProcessorReport& report);

  const std::vector<Suspicion>& suspicions() const { return m_suspicions; }

 private:
  /// What a thread has by itself.
  struct Worker {
    unsigned cpu = 0;
    std::size_t share = 0;
    std::uint64_t blocks = 0;
    double busy = 0;
    double present = 0;
    bool wasMoved = false;  ///< its CPU could not be used to the end
    Words operands;
    Words results;
  };

  void work(Worker& worker);
  void stayAway();
  void end();
  void workEpochs(Worker& worker);
  void answer(const Worker& worker);
  void calculate(Worker& worker);
  void turn(Worker& worker, std::size_t operation);
  void check(Worker& worker, std::size_t operation, const AnswerBook::Block& block);
  void beginNext();
  void suspect(const Suspicion& suspicion);
  void watch();
  void note(const Worker& worker, bool wasBound, ProcessorReport& report) const;
  double elapsed() const { return m_surroundings.clock() - m_begin; }

  const ProcessorSurroundings& m_surroundings;
  const ProcessorPlan& m_plan;
  RunControl& m_control;
  const double m_begin;
  AnswerBook m_answers;
  Barrier m_barrier;
  std::mutex m_mutex;
  std::condition_variable m_done;
  std::size_t m_working;
  std::vector<Suspicion> m_suspicions;
  std::uint64_t m_errors = 0;
  std::atomic<std::size_t> m_sharers{0};  ///< who make the answers
  bool m_isAnswering = false;             ///< written between two phases alone, as the next three
  bool m_goesOn = true;
  std::uint64_t m_epoch = 0;
  double m_epochEnd = 0;
  std::atomic<bool> m_over{false};
  std::atomic<bool> m_stopped{false};
};

}  // namespace providers
