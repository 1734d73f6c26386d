#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "engine/events/EventSink.h"
#include "host/options/Options.h"

namespace host {

/// The results of a run of one test, each level with its name in front: on standard output, and why
/// there are none on standard error.
class ResultsDisplay : public engine::EventSink {
 public:
  explicit ResultsDisplay(std::vector<Level> levels) : m_levels(std::move(levels)) {}
  void take(const engine::Event& event) override;

 private:
  std::vector<Level> m_levels;
  std::map<std::uint64_t, std::string> m_names;
  std::map<std::uint64_t, std::string> m_errors;
};

}  // namespace host
