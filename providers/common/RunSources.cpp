#include "providers/common/RunSources.h"

#include <chrono>
#include <random>

namespace providers {

double steadySeconds() {
  using std::chrono::duration;
  return duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::uint64_t randomSeed() { return std::random_device()(); }

}  // namespace providers
