#pragma once

#include <memory>
#include <string>

#include "providers/memory/size/MemorySize.h"

namespace providers::memory {

/// The right to take a large part of the memory. It ends with the object, and with the process,
/// however that ends.
class MemoryTurn {
 public:
  virtual ~MemoryTurn() = default;
};

/// What the turns of this process are called, among those who share the memory with it: all of the
/// machine, or where a control group leaves less of it, that group. `root` is as for
/// `readMemorySize`.
std::string turnName(const MemorySize& size, const std::string& root);

/// A turn of that name; null while another process has it that runs as the same user, or on Linux
/// as root. Others are not asked: anybody could keep everybody from testing memory then. For the
/// same reason, where somebody else has taken the name away, or the system has no such thing, each
/// gets a turn that keeps nobody out.
std::unique_ptr<MemoryTurn> takeTurn(const std::string& name);

}  // namespace providers::memory
