#pragma once

#include "providers/disk/services/DiskDiagnostic.h"

namespace providers::disk {

/// Looks whether the partitions of a disk begin where its physical blocks do. It reads nothing of
/// the disk.
class AlignmentDiagnostic : public DiskDiagnostic {
 public:
  explicit AlignmentDiagnostic(FindDisks findDisks);

 protected:
  Outcome runOn(const Disk& disk, const RunSettings& settings, RunControl& control) override;
};

}  // namespace providers::disk
