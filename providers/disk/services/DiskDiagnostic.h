#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/common/TestFacts.h"
#include "providers/disk/finding/Disk.h"

namespace providers::disk {

/// One of the tests; its type is that of CIM_DiskDriveDiagnosticTest.DiskDriveTestType.
using DiskTest = FamilyTest;

/// A test of disk drives.
class DiskDiagnostic : public Diagnostic {
 public:
  DiskDiagnostic(FindDisks findDisks, const DiskTest& test);

  const DiagnosticDescription& description() const override { return m_description; }
  std::vector<Device> devices() const override;
  std::string refuse(const RunSettings& settings) const override;
  Outcome run(const Device& device, const RunSettings& settings, RunControl& control) override;

 protected:
  /// Whether the test is offered for the disk.
  virtual bool suits(const Disk&) const { return true; }
  virtual Outcome runOn(const Disk& disk, const RunSettings& settings, RunControl& control) = 0;
  std::vector<Disk> disks() const { return m_findDisks(); }

 private:
  const FindDisks m_findDisks;
  const DiagnosticDescription m_description;
};

/// What a run says whose disk cannot be opened, for that reason.
Outcome notOpened(const std::string& problem);

/// Adds what was found and what to do about it, in words that go on after a colon, to the text, and
/// both as a note about the drive. Without a word of either nothing is added.
void addFinding(Outcome& outcome, const Disk& disk, const std::string& lines,
                const std::string& whatToDo);

/// "4 KiB", "1.5 GiB"
std::string sizeText(std::uint64_t bytes);

}  // namespace providers::disk
