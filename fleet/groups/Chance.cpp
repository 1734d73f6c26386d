#include "fleet/groups/Chance.h"

#include <algorithm>
#include <cmath>

namespace fleet {
namespace {

double logFactorial(double number) {
  // Stirling's series; std::lgamma writes a global variable.
  double shift = 0;
  double x = number + 1;
  for (; x < 10; x += 1) shift += std::log(x);
  constexpr double kHalfLogTwoPi = 0.91893853320467274178;
  const double square = x * x;
  return (x - 0.5) * std::log(x) - x + kHalfLogTwoPi + 1 / (12 * x) - 1 / (360 * x * square) +
         1 / (1260 * x * square * square) - shift;
}

double logChoose(double all, double some) {
  return logFactorial(all) - logFactorial(some) - logFactorial(all - some);
}

}  // namespace

double chanceOf(const Share& group, const Share& rest) {
  const std::uint32_t failing = group.failing + rest.failing;
  const double all = static_cast<double>(group.all) + rest.all;
  const double whole = logChoose(all, failing);
  double chance = 0;
  for (std::uint32_t i = group.failing; i <= std::min(group.all, failing); ++i) {
    if (failing - i > rest.all) continue;
    const double term =
        std::exp(logChoose(group.all, i) + logChoose(rest.all, failing - i) - whole);
    chance += term;
    if (term < chance * 1e-12) break;
  }
  return std::min(chance, 1.0);
}

bool standsOut(const Share& group, const Share& rest, std::uint64_t looks) {
  constexpr std::uint32_t kLeast = 3;
  constexpr double kTimes = 2;
  constexpr double kSignificant = 0.01;
  if (group.failing < kLeast || rest.all == 0) return false;
  const double rate = static_cast<double>(group.failing) / group.all;
  const double restRate = static_cast<double>(rest.failing) / rest.all;
  if (rate < kTimes * restRate) return false;
  return chanceOf(group, rest) * static_cast<double>(looks) < kSignificant;
}

}  // namespace fleet
