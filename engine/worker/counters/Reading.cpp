#include "engine/worker/counters/Reading.h"

#include <utility>

namespace engine::counters {
namespace {

constexpr std::size_t kLongest = 4096;

const char* const kPciFiles[] = {"aer_dev_correctable", "aer_dev_nonfatal", "aer_dev_fatal"};
const char* const kDiskFiles[] = {"ioerr_cnt", "iotmo_cnt"};
/// Those that tell of the port and its wire; what gets lost because nobody fetches it is no error
/// of theirs.
const char* const kPortFiles[] = {"rx_errors",         "rx_crc_errors",      "rx_frame_errors",
                                  "rx_length_errors",  "tx_errors",          "tx_carrier_errors",
                                  "tx_aborted_errors", "tx_heartbeat_errors"};

/// A drive for media that come and go ends commands with an error where there is none in it.
bool isOptical(const std::string& disk) { return begins(disk, "sr"); }

}  // namespace

bool take(const SystemFolder& folder, const std::string& file, Place place, const std::string& part,
          Reading& reading) {
  std::string content = folder.bytes(file, kLongest);
  if (content.empty()) return false;
  reading.insert_or_assign({place, part, file}, std::move(content));
  return true;
}

/// A device has all three of them, or none.
void readPci(const SystemFolder& root, Reading& reading) {
  const SystemFolder all = root / "sys/bus/pci/devices";
  for (const std::string& name : all.names()) {
    const SystemFolder device = all / name;
    for (const char* const file : kPciFiles) {
      if (!take(device, file, Place::kPci, name, reading)) break;
    }
  }
}

void readDisks(const SystemFolder& root, Reading& reading) {
  const SystemFolder all = root / "sys/block";
  for (const std::string& name : all.names()) {
    if (isOptical(name)) continue;
    const SystemFolder device = all / name / "device";
    for (const char* const file : kDiskFiles) {
      if (!take(device, file, Place::kDisk, name, reading)) break;
    }
  }
}

/// Ports that are devices, and not made of others.
void readPorts(const SystemFolder& root, Reading& reading) {
  const SystemFolder all = root / "sys/class/net";
  for (const std::string& name : all.names()) {
    const SystemFolder port = all / name;
    if (!port.has("device")) continue;
    for (const char* const file : kPortFiles) {
      take(port / "statistics", file, Place::kPort, name, reading);
    }
  }
}

Reading readAll(const SystemFolder& root) {
  Reading reading;
  readMemory(root, reading);
  readMachineChecks(root, reading);
  readPci(root, reading);
  readDisks(root, reading);
  readPorts(root, reading);
  return reading;
}

}  // namespace engine::counters
