#pragma once

#include <functional>

#include "providers/memory/engine/MemoryEngine.h"

namespace providers::memory {

/// A memory with a fault.
struct FaultModel {
  /// A line has been written: what it held before, and what else that did.
  std::function<void(std::uint64_t* words, std::size_t line, const std::uint64_t* before)> written;
  /// The content was left alone between two sweeps, or for some seconds.
  std::function<void(std::uint64_t* words)> settled;
  std::function<void(std::uint64_t* words, double seconds)> rested;
};

/// Loops that go line by line and tell the model of each line that they have written. One model at
/// a time, on one thread.
const Kernels& faultyKernels(const FaultModel& model);

/// Rests without passing time.
class FaultyResting : public Resting {
 public:
  FaultyResting(const FaultModel& model, std::uint64_t* words) : m_model(model), m_words(words) {}
  void settle(std::uint64_t* words, std::size_t) override {
    if (m_model.settled) m_model.settled(words);
  }
  void rest(double seconds) override {
    if (m_model.rested) m_model.rested(m_words, seconds);
    m_seconds += seconds;
  }
  double seconds() const { return m_seconds; }

 private:
  const FaultModel& m_model;
  std::uint64_t* const m_words;
  double m_seconds = 0;
};

}  // namespace providers::memory
