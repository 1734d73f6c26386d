#pragma once

#include <functional>

#include "providers/disk/scratch/ComparePass.h"
#include "providers/disk/services/DiskDiagnostic.h"

namespace providers::disk {

/// What the comparing test needs of its surroundings; a test has its own.
struct CompareSurroundings {
  FindDisks findDisks;
  OpenScratch open;
  ComparePass::Clock clock;
  std::function<std::uint64_t()> seed;  ///< for runs whose settings have none
};

/// Writes a scratch file on a disk, reads it and compares. It writes nothing else.
class CompareDiagnostic : public DiskDiagnostic {
 public:
  explicit CompareDiagnostic(CompareSurroundings surroundings);

  std::string refuse(const RunSettings& settings) const override;
  double passSeconds(const RunSettings& settings) const override;

 protected:
  bool suits(const Disk& disk) const override { return !disk.readOnly; }
  Outcome runOn(const Disk& disk, const RunSettings& settings, RunControl& control) override;

 private:
  const CompareSurroundings m_surroundings;
};

}  // namespace providers::disk
