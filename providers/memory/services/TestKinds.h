#pragma once

#include <string>
#include <vector>

#include "providers/memory/engine/Sequence.h"

namespace providers::memory {

/// What a user gets to know of a kind of test.
struct TestKind {
  TestType type;
  const char* name;      ///< the DMTF's
  std::uint16_t number;  ///< of the values of CIM_MemoryDiagnosticTest.MemoryTestType
  const char* text;
};

const std::vector<TestKind>& testKinds();

}  // namespace providers::memory
