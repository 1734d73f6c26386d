#pragma once

#include <cstddef>
#include <vector>

#include "providers/memory/engine/Kernels.h"
#include "providers/memory/engine/Pattern.h"

namespace providers::memory {

/// The kinds of test that write patterns.
enum class TestType {
  DataBusWalkingOnes,
  AddressBusWalkingOnes,
  PowerOfTwoAddressing,
  SelfAddressing,
  IncrementAndDecrement,
  MovingInversionsZeros,
  MovingInversionsOnes,
  MovingInversionsRandom,
  BitFade
};

constexpr TestType kAllTestTypes[] = {TestType::DataBusWalkingOnes,
                                      TestType::AddressBusWalkingOnes,
                                      TestType::PowerOfTwoAddressing,
                                      TestType::SelfAddressing,
                                      TestType::IncrementAndDecrement,
                                      TestType::MovingInversionsZeros,
                                      TestType::MovingInversionsOnes,
                                      TestType::MovingInversionsRandom,
                                      TestType::BitFade};

/// Once over all the memory.
struct Sweep {
  enum class Action { Write, Check, CheckAndWrite };

  Action action = Action::Write;
  Direction direction = Direction::Up;
  Pattern expected;        ///< where something is checked
  Pattern next;            ///< where something is written
  double restSeconds = 0;  ///< before the sweep, the content is left alone for so long
};

/// What the sweeps of a test depend on.
struct SequenceNeeds {
  const std::uint64_t* words = nullptr;
  std::size_t count = 0;  ///< of words
  std::uint64_t seed = 0;
  double restSeconds = 0;  ///< of Bit Fade, for each of its two values
};

/// The sweeps of a test: the first one writes, the last one checks, and all that is written is
/// checked by the sweep after it.
std::vector<Sweep> makeSequence(TestType type, const SequenceNeeds& needs);

}  // namespace providers::memory
