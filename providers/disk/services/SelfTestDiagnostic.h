#pragma once

#include <functional>

#include "providers/disk/health/SelfTest.h"
#include "providers/disk/services/DiskDiagnostic.h"

namespace providers::disk {

/// What the self-tests need of their surroundings; a test has its own.
struct SelfTestSurroundings {
  FindDisks findDisks;
  OpenDrive openDrive;
  std::function<double()> clock;
  std::function<void(double)> sleep;  ///< for so many seconds
};

/// Has a drive test itself, waits for the end, and ends it in the drive when asked to stop.
class SelfTestDiagnostic : public DiskDiagnostic {
 public:
  SelfTestDiagnostic(SelfTestSurroundings surroundings, SelfTestKind kind);

 protected:
  bool suits(const Disk& disk) const override;
  Outcome runOn(const Disk& disk, const RunSettings& settings, RunControl& control) override;

 private:
  const SelfTestSurroundings m_surroundings;
  const SelfTestKind m_kind;
};

}  // namespace providers::disk
