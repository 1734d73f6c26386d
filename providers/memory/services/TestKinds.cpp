#include "providers/memory/services/TestKinds.h"

namespace providers::memory {

const std::vector<TestKind>& testKinds() {
  static const std::vector<TestKind> kinds{
      {TestType::DataBusWalkingOnes, "Data Bus Walking 1s", 3,
       "Walks a single bit through the words of memory, and through their inverse, to find data "
       "lines that are stuck or tied together."},
      {TestType::AddressBusWalkingOnes, "Address Bus Walking 1s", 4,
       "Tells the words of memory apart by one address bit after the other, to find address lines "
       "that are stuck or tied together."},
      {TestType::PowerOfTwoAddressing, "Power-of-Two Addressing", 5,
       "Writes words that differ most at addresses a power of two apart, to find addresses that "
       "lead to the same cells."},
      {TestType::SelfAddressing, "Self Addressing", 6,
       "Writes its own address into each word of memory, to find addresses that lead elsewhere."},
      {TestType::IncrementAndDecrement, "Increment and Decrement", 7,
       "Writes numbers that count up and down through memory, to find faults of data and "
       "addresses."},
      {TestType::MovingInversionsZeros, "Moving Inversions 0s", 8,
       "Fills memory with zeros and inverts it word by word, up and down, to find cells that are "
       "stuck or turn others over."},
      {TestType::MovingInversionsOnes, "Moving Inversions 1s", 8,
       "Fills memory with ones and inverts it word by word, up and down, to find cells that are "
       "stuck or turn others over."},
      {TestType::MovingInversionsRandom, "Moving Inversions Random", 9,
       "Fills memory with random numbers and inverts it word by word, up and down, to find faults "
       "that depend on the data."},
      {TestType::BitFade, "Bit Fade", 10,
       "Leaves ones and then zeros alone for some time, to find cells that lose their content."}};
  return kinds;
}

}  // namespace providers::memory
