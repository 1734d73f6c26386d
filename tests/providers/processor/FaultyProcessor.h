#pragma once

#include <atomic>
#include <functional>
#include <set>

#include "providers/processor/operations/Operation.h"
#include "providers/processor/topology/CpuTopology.h"

namespace providers {

/// A machine of two packages with two cores of two threads each, some of which calculate wrong. A
/// thread that is bound to a CPU by `bind` is that CPU. A flipped bit is one of a block's operands,
/// results, or of what is on its way: of the operands of the second half, while the first half is
/// done.
class FaultyProcessor : public Executor {
 public:
  enum class Where { Operand, Result, OnTheWay };

  static std::vector<CpuPlace> places() {
    std::vector<CpuPlace> all;
    for (unsigned cpu = 0; cpu < 8; ++cpu) all.push_back({cpu, cpu / 2 % 2, cpu / 4});
    return all;
  }

  static std::function<bool(unsigned)> binder() {
    return [](unsigned cpu) {
      current() = cpu;
      return cpu < 8;
    };
  }
  static unsigned& current() {
    thread_local unsigned cpu = 1000;
    return cpu;
  }

  void compute(const Operation& operation, const Words& operands, Words& results) const override {
    if (!isWrong(operation)) return Executor::compute(operation, operands, results);
    Words changed = operands;
    if (where != Where::Result) changed[where == Where::Operand ? 0 : changed.size() / 2] ^= bit;
    Executor::compute(operation, changed, results);
    if (where == Where::Result) results.back() ^= bit;
  }

  std::set<unsigned> cpus;  ///< that calculate wrong
  std::string only;         ///< which they get wrong; empty: all
  Where where = Where::Result;
  std::uint64_t bit = 1 << 4;
  int firstCall = 0;  ///< of those calls that could go wrong
  int lastCall = 1 << 30;

 private:
  bool isWrong(const Operation& candidate) const {
    if (cpus.count(current()) == 0) return false;
    if (!only.empty() && only != candidate.name) return false;
    const int call = m_calls++;
    return call >= firstCall && call <= lastCall;
  }

  mutable std::atomic<int> m_calls{0};
};

}  // namespace providers
