#pragma once

#include <optional>

#include "providers/disk/health/DriveCommands.h"

namespace providers::disk {

/// What a drive says beside its answer, in either format.
struct Sense {
  std::uint8_t key = 0;
  std::uint8_t code = 0;        ///< "additional sense code"
  std::uint8_t qualifier = 0;   ///< of that code
  std::optional<double> share;  ///< of what is under way, from 0 to 1
};

Sense readSense(const Bytes& bytes);

/// Why the command brought nothing: a sentence without its end; empty where it did.
std::string whyNot(const ScsiAnswer& answer, const std::string& what);

}  // namespace providers::disk
