#include "providers/memory/engine/Sequence.h"

#include <algorithm>

namespace providers::memory {

namespace {

constexpr std::uint64_t kZeros = 0;
constexpr std::uint64_t kOnes = ~kZeros;

Sweep writing(const Pattern& pattern) {
  Sweep sweep;
  sweep.next = pattern;
  return sweep;
}

Sweep replacing(const Pattern& expected, const Pattern& next, Direction direction) {
  return {Sweep::Action::CheckAndWrite, direction, expected, next, 0};
}

Sweep checking(const Pattern& pattern, Direction direction) {
  return {Sweep::Action::Check, direction, pattern, {}, 0};
}

/// One pattern in the place of the one before, upward; at last it is checked.
std::vector<Sweep> chain(const std::vector<Pattern>& patterns) {
  std::vector<Sweep> sweeps{writing(patterns.front())};
  for (std::size_t i = 1; i < patterns.size(); ++i)
    sweeps.push_back(replacing(patterns[i - 1], patterns[i], Direction::Up));
  sweeps.push_back(checking(patterns.back(), Direction::Up));
  return sweeps;
}

/// Inverted and back, both of it upward and then downward: whichever way one cell turns another one
/// over, there is a sweep that reads that one before the first has turned it back.
std::vector<Sweep> inversions(const Pattern& pattern) {
  const Pattern inverse = pattern.inverse();
  return {writing(pattern),
          replacing(pattern, inverse, Direction::Up),
          replacing(inverse, pattern, Direction::Up),
          replacing(pattern, inverse, Direction::Down),
          replacing(inverse, pattern, Direction::Down),
          checking(pattern, Direction::Down)};
}

/// A data line that is stuck or tied to another shows where one bit of each word differs from all
/// others; the inverse between them lets each cell hold both values.
std::vector<Sweep> dataBus() {
  constexpr unsigned kWalk = 16;
  constexpr unsigned kBits = 64;
  std::vector<Pattern> patterns;
  for (unsigned shift = 0; shift < kBits; shift += kWalk) {
    patterns.push_back(walkingPattern(shift));
    patterns.push_back(patterns.back().inverse());
  }
  return chain(patterns);
}

/// Of two addresses that lead to one cell, one holds ones and the other zeros at the turn of a bit
/// in which they differ.
std::vector<Sweep> addressBus(std::size_t count) {
  std::vector<Pattern> patterns;
  const std::size_t last = count > 0 ? count - 1 : 0;
  for (unsigned bit = 0; bit == 0 || last >> bit; ++bit) patterns.push_back(addressBitPattern(bit));
  // The first and the last word would hold one value all the time.
  patterns.push_back(patterns.back().inverse());
  return chain(patterns);
}

std::vector<Sweep> bitFade(double restSeconds) {
  std::vector<Sweep> sweeps = chain({constantPattern(kOnes), constantPattern(kZeros)});
  for (std::size_t i = 1; i < sweeps.size(); ++i) sweeps[i].restSeconds = restSeconds;
  return sweeps;
}

}  // namespace

std::vector<Sweep> makeSequence(TestType type, const SequenceNeeds& needs) {
  switch (type) {
    case TestType::DataBusWalkingOnes:
      return dataBus();
    case TestType::AddressBusWalkingOnes:
      return addressBus(needs.count);
    case TestType::PowerOfTwoAddressing:
      return inversions(powerOfTwoPattern());
    case TestType::SelfAddressing:
      return inversions(ownAddressPattern(needs.words));
    case TestType::IncrementAndDecrement:
      return inversions(countingPattern());
    case TestType::MovingInversionsZeros:
      return inversions(constantPattern(kZeros));
    case TestType::MovingInversionsOnes:
      return inversions(constantPattern(kOnes));
    case TestType::MovingInversionsRandom:
      return inversions(randomPattern(needs.seed));
    case TestType::BitFade:
      break;
  }
  return bitFade(needs.restSeconds);
}

}  // namespace providers::memory
