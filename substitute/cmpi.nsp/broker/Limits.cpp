#include "substitute/cmpi.nsp/broker/Limits.h"

#include <atomic>

namespace cmpinsp {
namespace {

std::atomic<std::size_t> limitOfAnswers{10'000'000};

}  // namespace

std::size_t answerLimit() noexcept { return limitOfAnswers.load(std::memory_order_relaxed); }

void setAnswerLimit(std::size_t limit) noexcept {
  limitOfAnswers.store(limit, std::memory_order_relaxed);
}

}  // namespace cmpinsp
