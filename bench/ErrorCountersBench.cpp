#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "engine/worker/counters/ErrorCounters.h"

/// What a test takes longer because errors are counted before and after it: on this machine, and on
/// a made-up one that is large.
namespace {

namespace fs = std::filesystem;
using engine::counters::ErrorCounters;

class LargeMachine {
 public:
  LargeMachine() {
    std::string pattern = (fs::temp_directory_path() / "largeXXXXXX").string();
    m_root = mkdtemp(pattern.data());
    for (int i = 0; i < 64; ++i) addModule(i);
    for (int i = 0; i < 300; ++i) addDevice(i);
    for (int i = 0; i < 48; ++i) addDisk(i);
    for (int i = 0; i < 8; ++i) addPort(i);
    addInterrupts(256, 400);
  }
  ~LargeMachine() { fs::remove_all(m_root); }
  std::string root() const { return m_root.string(); }

 private:
  void write(const std::string& name, const std::string& content) const {
    fs::create_directories((m_root / name).parent_path());
    std::ofstream(m_root / name) << content << '\n';
  }
  void addModule(int number) const {
    const std::string module = "sys/devices/system/edac/mc/mc" + std::to_string(number / 8) +
                               "/dimm" + std::to_string(number % 8);
    write(module + "/dimm_ce_count", "0");
    write(module + "/dimm_ue_count", "0");
  }
  void addDevice(int number) const {
    const std::string device = "sys/bus/pci/devices/0000:" + std::to_string(number) + ":00.0/";
    std::string rows;
    for (int i = 0; i < 16; ++i) rows += "KindOfError" + std::to_string(i) + " 0\n";
    for (const char* const kind : {"correctable", "nonfatal", "fatal"}) {
      write(device + "aer_dev_" + kind, rows);
    }
  }
  void addDisk(int number) const {
    const std::string disk = "sys/block/sd" + std::to_string(number) + "/device/";
    write(disk + "ioerr_cnt", "0x0");
    write(disk + "iotmo_cnt", "0x0");
  }
  void addPort(int number) const {
    const std::string port = "sys/class/net/eth" + std::to_string(number);
    write(port + "/device/uevent", "");
    for (const char* const name : {"rx_errors", "rx_crc_errors", "tx_errors"}) {
      write(port + "/statistics/" + name, "0");
    }
  }
  void addInterrupts(int processors, int rows) const {
    std::string table;
    for (int i = 0; i < processors; ++i) table += "       CPU" + std::to_string(i);
    std::string row;
    for (int i = 0; i < processors; ++i) row += "          0";
    for (int i = 0; i < rows; ++i) table += "\n" + std::to_string(i) + ":" + row + " edge";
    write("proc/interrupts", table + "\nMCE:" + row + " Machine check exceptions");
  }

  fs::path m_root;
};

void measure(const char* what, const std::string& root) {
  constexpr int kRounds = 101;
  std::vector<double> milliseconds;
  for (int i = 0; i < kRounds; ++i) {
    const auto start = std::chrono::steady_clock::now();
    const ErrorCounters counters(root);
    if (!counters.findings().empty()) std::printf("errors rose meanwhile\n");
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    milliseconds.push_back(time.count());
  }
  std::sort(milliseconds.begin(), milliseconds.end());
  std::printf("%s: median %.2f ms, least %.2f ms\n", what, milliseconds[kRounds / 2],
              milliseconds.front());
}

}  // namespace

int main() {
  measure("this machine", "");
  const LargeMachine machine;
  measure("300 PCI Express devices, 64 modules, 48 disks, 8 ports, 256 processors", machine.root());
}
