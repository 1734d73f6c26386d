#include "history/store/Keeping.h"

namespace history {
namespace {

/// In eighths of the room: what a run may have taken for such an event to be kept.
struct Eighths {
  std::uint64_t operator()(const engine::RunStarted&) const { return 8; }
  std::uint64_t operator()(const engine::TestStarted&) const { return 7; }
  std::uint64_t operator()(const engine::StepStarted&) const { return 4; }
  std::uint64_t operator()(const engine::Progress&) const { return 4; }
  std::uint64_t operator()(const engine::OutputLine&) const { return 4; }
  std::uint64_t operator()(const engine::LogLine&) const { return 4; }
  std::uint64_t operator()(const engine::Message&) const { return 5; }
  std::uint64_t operator()(const engine::Measurement&) const { return 5; }
  std::uint64_t operator()(const engine::Diagnosis&) const { return 6; }
  std::uint64_t operator()(const engine::Error&) const { return 6; }
  std::uint64_t operator()(const engine::Ended&) const { return 8; }
};

}  // namespace

bool isKept(const engine::Body& body, std::uint64_t test, std::uint64_t kept, std::uint64_t most) {
  const bool isRunsOwn = std::holds_alternative<engine::RunStarted>(body) ||
                         (std::holds_alternative<engine::Ended>(body) && test == 0);
  return isRunsOwn || kept < most / 8 * std::visit(Eighths(), body);
}

}  // namespace history
