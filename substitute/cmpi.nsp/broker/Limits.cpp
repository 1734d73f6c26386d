#include "substitute/cmpi.nsp/broker/Limits.h"

#include <atomic>

namespace cmpinsp {
namespace {

constexpr std::size_t kUsualLimit = 10'000'000;

std::atomic<std::size_t> limitOfAnswers{kUsualLimit};

}  // namespace

std::size_t answerLimit() noexcept { return limitOfAnswers.load(std::memory_order_relaxed); }

void setAnswerLimit(std::size_t limit) noexcept {
  limitOfAnswers.store(limit == 0 ? kUsualLimit : limit, std::memory_order_relaxed);
}

}  // namespace cmpinsp
