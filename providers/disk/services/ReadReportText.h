#pragma once

#include <cstdint>
#include <string>

#include "providers/disk/services/ReadDiagnostic.h"

namespace providers::disk {

/// What a pass worked with.
struct ReadCircumstances {
  const Disk& disk;
  ReadOrder order = ReadOrder::Sequential;
  unsigned inFlight = 1;
  std::string means;
  std::uint64_t regionBytes = 0;
  std::uint64_t seed = 0;
};

/// What a pass found, as a record has it.
Outcome readOutcome(const ReadReport& report, const ReadCircumstances& circumstances);

}  // namespace providers::disk
