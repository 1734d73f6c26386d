#pragma once

#include "providers/disk/health/Health.h"
#include "providers/disk/services/DiskDiagnostic.h"

namespace providers::disk {

enum class HealthQuestion { Status, GrownDefects };

/// Asks a drive how it is, or what it has lost.
class HealthDiagnostic : public DiskDiagnostic {
 public:
  HealthDiagnostic(FindDisks findDisks, OpenDrive openDrive, HealthQuestion question);

 protected:
  bool suits(const Disk& disk) const override;
  Outcome runOn(const Disk& disk, const RunSettings& settings, RunControl& control) override;

 private:
  const OpenDrive m_openDrive;
  const HealthQuestion m_question;
};

/// Whether drives on that bus have something to tell.
bool hasHealth(const Disk& disk);

}  // namespace providers::disk
