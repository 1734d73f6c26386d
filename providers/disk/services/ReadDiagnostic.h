#pragma once

#include <functional>
#include <memory>

#include "providers/disk/reading/ReadPass.h"
#include "providers/disk/services/DiskDiagnostic.h"

namespace providers::disk {

/// What the reading tests need of their surroundings; a test has its own.
struct ReadSurroundings {
  FindDisks findDisks;
  OpenSource open;
  ReadPass::Clock clock;
  std::function<std::uint64_t()> seed;  ///< for runs whose settings have none
};

enum class ReadOrder { Sequential, Random };

/// Reads a share of a disk past all caches: upward in large blocks, or small ones all over it.
class ReadDiagnostic : public DiskDiagnostic {
 public:
  ReadDiagnostic(ReadSurroundings surroundings, ReadOrder order);

  double passSeconds(const RunSettings& settings) const override;

 protected:
  Outcome runOn(const Disk& disk, const RunSettings& settings, RunControl& control) override;

 private:
  double secondsFor(std::uint64_t bytes) const;

  const ReadSurroundings m_surroundings;
  const ReadOrder m_order;
};

}  // namespace providers::disk
