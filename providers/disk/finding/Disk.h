#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace providers::disk {

/// What a drive is asked in.
enum class Bus { Other, Nvme, Ata, Scsi, Usb, Virtual, Card };

struct Partition {
  std::string name;
  std::uint64_t start = 0;  ///< in bytes from the beginning of the disk
  std::uint64_t bytes = 0;
};

/// A disk, as far as it is known without opening it. Texts are printable; unknown ones are empty.
struct Disk {
  std::string name;    ///< the system's: "sda"
  std::string node;    ///< what to open: "/dev/sda"
  std::string number;  ///< the device's, "major:minor"; empty where devices have none
  std::string model;
  std::string serial;
  std::string serialFile;  ///< where `serial` is empty: reading it asks the drive
  std::string firmware;
  Bus bus = Bus::Other;
  std::uint64_t bytes = 0;
  std::uint32_t logicalBlock = 512;
  std::uint32_t physicalBlock = 512;
  std::uint64_t alignmentOffset =
      0;  ///< of the first physical block that begins on the disk, in bytes
  bool rotational = false;
  bool readOnly = false;
  std::string pciAddress;   ///< "0000:01:00.0"
  std::string scsiAddress;  ///< "host:channel:target:unit"
  std::string slot;         ///< as the enclosure or the board calls it
  std::vector<Partition> partitions;
  std::vector<std::string>
      devices;  ///< "major:minor" of it, its partitions, and what lies on those alone
};

/// Asks a drive for its serial number where the system does not know it by itself. That may take as
/// long as a drive that is ill takes for an answer: a run may wait for it, a listing must not.
void askSerial(Disk& disk);

using FindDisks = std::function<std::vector<Disk>()>;

/// Name, model, serial number and place, for whoever has to find the drive: "sda (ACME 4T, serial
/// number Z1, slot 3)".
std::string describe(const Disk& disk);

/// Model and capacity, for lists: "ACME 4T 4.0 TB"; without ',' and '|'.
std::string displayName(const Disk& disk);

/// "512 B", "256.0 GB": as drives are sold, in powers of ten.
std::string capacityText(std::uint64_t bytes);

}  // namespace providers::disk
