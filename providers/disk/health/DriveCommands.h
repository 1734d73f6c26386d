#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "providers/disk/finding/Disk.h"

namespace providers::disk {

using Bytes = std::vector<std::uint8_t>;

/// An administrative command of NVMe, with data from the drive or without any.
struct NvmeCommand {
  std::uint8_t opcode = 0;
  std::uint32_t space = 0;  ///< the namespace
  std::uint32_t word10 = 0;
  std::uint32_t bytes = 0;  ///< to be received
};

struct NvmeAnswer {
  std::string problem;       ///< why the command did not reach the drive; empty where it did
  std::uint16_t status = 0;  ///< type and code, 0 for success
  Bytes data;                ///< as many as were asked for
  bool good() const { return problem.empty() && status == 0; }
};

/// A command of SCSI, with data from the drive or without any.
struct ScsiCommand {
  Bytes block;
  std::uint32_t bytes = 0;  ///< to be received at most
};

struct ScsiAnswer {
  std::string problem;      ///< why the command did not reach the drive; empty where it did
  std::uint8_t status = 0;  ///< 0 for good, 2 for check condition
  Bytes sense;
  Bytes data;  ///< what came
  bool good() const { return problem.empty() && status == 0; }
};

/// A drive that is asked. For one thread.
class DriveCommands {
 public:
  virtual ~DriveCommands() = default;
  virtual NvmeAnswer nvme(const NvmeCommand& command) = 0;
  virtual ScsiAnswer scsi(const ScsiCommand& command) = 0;
  /// Whether the system itself knows that the drive will fail; nothing where it does not ask.
  virtual std::optional<bool> systemPredictsFailure() { return std::nullopt; }
};

/// A drive, or why it cannot be asked.
struct OpenedDrive {
  std::unique_ptr<DriveCommands> commands;
  std::string problem;
};

using OpenDrive = std::function<OpenedDrive(const Disk&)>;

OpenedDrive openDrive(const Disk& disk);

/// Whether this system hands any command on to drives, or only questions of its own.
bool systemHandsCommandsOn();

}  // namespace providers::disk
