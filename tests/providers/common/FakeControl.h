#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"

namespace providers {

/// Keeps what a run tells, and asks it to stop after so many questions. Safe to use from any
/// thread.
class FakeControl : public RunControl {
 public:
  void progress(double fraction) override {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_fractions.push_back(fraction);
  }
  void status(const std::string& text) override {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_texts.push_back(text);
  }
  bool stopRequested() const override { return m_questions++ >= m_stopAfter; }

  void stopAfter(int questions) { m_stopAfter = questions; }
  const std::vector<double>& fractions() const { return m_fractions; }
  const std::vector<std::string>& texts() const { return m_texts; }

 private:
  std::mutex m_mutex;
  std::vector<double> m_fractions;
  std::vector<std::string> m_texts;
  mutable std::atomic<int> m_questions{0};
  int m_stopAfter = 1000000000;
};

}  // namespace providers
