#pragma once

#include <string>

#include "tests/providers/pcie/FakeFabric.h"

namespace providers::pcie {

/// Makes the device a storage controller with that disk.
inline void addDisk(FakeFabric& fabric, const std::string& name) {
  const std::string folder = std::string("devices/pci0000:00/") + FakeFabric::kPort + "/" +
                             FakeFabric::kDevice + "/nvme/nvme0/" + name;
  fabric.file(FakeFabric::kDevice, "class", "0x010802");
  fabric.add(folder + "/dev", "259:0\n").add(folder + "/size", "4096\n");
  fabric.link("block/" + name, "../" + folder);
}

}  // namespace providers::pcie
