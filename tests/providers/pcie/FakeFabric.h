#pragma once

#include <string>
#include <vector>

#include "tests/providers/LinkedTree.h"

namespace providers::pcie {

/// The PCI Express part of a machine's files: a device below a root's port, both as they should be.
struct FakeFabric : LinkedTree {
  static constexpr const char* kDevice = "0000:02:00.0";
  static constexpr const char* kPort = "0000:00:01.0";

  FakeFabric() {
    device("pci0000:00", kPort, "16", "16.0 GT/s PCIe");
    file(kPort, "class", "0x060400");
    device(std::string("pci0000:00/") + kPort, kDevice, "8", "8.0 GT/s PCIe");
    file(kPort, "current_link_width", "8");
    file(kPort, "current_link_speed", "8.0 GT/s PCIe");
    file(kDevice, "vendor", "0x8086");
    file(kDevice, "device", "0x1533");
    file(kDevice, "class", "0x020000");
    add(std::string("bus/pci/slots/5/address"), "0000:02:00\n");
  }
  /// A device with a link, below the folder of what it hangs on.
  void device(const std::string& above, const std::string& address, const std::string& width,
              const std::string& speed) {
    place(above, address);
    for (const char* which : {"current_link_", "max_link_"}) {
      file(address, which + std::string("width"), width);
      file(address, which + std::string("speed"), speed);
    }
    file(address, "config", std::string("\x86\x80\x33\x15", 4) + std::string(60, '\0'));
  }
  /// One without.
  void place(const std::string& above, const std::string& address) {
    add("devices/" + above + "/" + address + "/irq", "0\n");
    link("bus/pci/devices/" + address, "../../../devices/" + above + "/" + address);
  }
  void file(const std::string& address, const std::string& name, const std::string& content) {
    add("bus/pci/devices/" + address + "/" + name, content + "\n");
  }
  void errors(const std::string& address, unsigned corrected, unsigned nonfatal, unsigned fatal) {
    const auto lines = [](const char* name, unsigned count, const char* total) {
      return std::string("Undefined 0\n") + name + " " + std::to_string(count) + "\n" + total +
             " " + std::to_string(count);
    };
    file(address, "aer_dev_correctable", lines("BadTLP", corrected, "TOTAL_ERR_COR"));
    file(address, "aer_dev_nonfatal", lines("TLP", nonfatal, "TOTAL_ERR_NONFATAL"));
    file(address, "aer_dev_fatal", lines("DLP", fatal, "TOTAL_ERR_FATAL"));
  }
};

}  // namespace providers::pcie
