#include <gtest/gtest.h>
#include <sys/stat.h>

#include "engine/worker/counters/ErrorCounters.h"
#include "tests/engine/worker/counters/MadeUpMachine.h"

namespace engine::counters {
namespace {

const char* const kModule = "sys/devices/system/edac/mc/mc0/dimm3";
const char* const kController = "sys/devices/system/edac/mc/mc0";
const char* const kRow = "sys/devices/system/edac/mc/mc1/csrow2";
const char* const kDevice = "sys/bus/pci/devices/0000:03:00.0";
const char* const kDisk = "sys/block/sda/device";
const char* const kPort = "sys/class/net/eth0/statistics";

/// A sound machine with one of each kind.
class ErrorCountersTest : public testing::Test {
 protected:
  ErrorCountersTest() {
    writeAll(kController, {{"ce_count", "4"}, {"ue_count", "0"}, {"ce_noinfo_count", "0"}});
    writeAll(kModule, {{"dimm_ce_count", "4"},
                       {"dimm_ue_count", "0"},
                       {"dimm_label", "DIMM_A2"},
                       {"dimm_location", "channel 1 slot 0 "}});
    writeAll(kRow, {{"ue_count", "0"}, {"ch0_ce_count", "0"}, {"ch0_dimm_label", "DIMM_B1"}});
    writeAll(kDevice, {{"aer_dev_correctable", "RxErr 1\nBadTLP 0\nTOTAL_ERR_COR 1"},
                       {"aer_dev_nonfatal", "Undefined 0\nDLP 0\nTOTAL_ERR_NONFATAL 0"},
                       {"aer_dev_fatal", "DLP 0\nTOTAL_ERR_FATAL 0"},
                       {"vendor", "0x8086"},
                       {"device", "0x10d3"}});
    m_machine.link(std::string(kDevice) + "/driver", "../../drivers/e1000e");
    writeAll(kDisk, {{"ioerr_cnt", "0x3"}, {"iotmo_cnt", "0x0"}});
    writeAll(kPort, {{"rx_errors", "2"}, {"tx_errors", "0"}, {"rx_crc_errors", "2"}});
    m_machine.write("sys/class/net/eth0/device/uevent", "");
    write("proc/interrupts", kInterrupts);
  }

  static constexpr const char* kInterrupts =
      "           CPU0       CPU2       \n"
      "  0:         26          0   IO-APIC    2-edge      timer\n"
      "THR:          0          0   Threshold APIC interrupts\n"
      "MCE:          0          1   Machine check exceptions\n"
      "MCP:         73         73   Machine check polls\n";

  void write(const std::string& name, const std::string& content) const {
    m_machine.write(name, content + "\n");
  }
  void writeAll(const std::string& folder,
                const std::vector<std::pair<std::string, std::string>>& files) const {
    for (const auto& [name, content] : files) write(folder + "/" + name, content);
  }
  void begin() { m_counters = std::make_unique<ErrorCounters>(m_machine.root()); }
  std::vector<Finding> findings() const { return m_counters->findings(); }

  /// "part|text|what to do", "?" in front of what is not sure.
  std::vector<std::string> lines() const {
    std::vector<std::string> all;
    for (const Finding& one : findings()) {
      const Diagnosis& diagnosis = one.diagnosis;
      EXPECT_EQ(diagnosis.verdict, one.isSure ? Verdict::kWarning : Verdict::kUnknown);
      std::string line = (one.isSure ? "" : "?") + diagnosis.part + "|" + diagnosis.text;
      for (const std::string& action : diagnosis.actions) line += "|" + action;
      all.push_back(line);
    }
    return all;
  }

  MadeUpMachine m_machine;
  std::unique_ptr<ErrorCounters> m_counters;
};

using Lines = std::vector<std::string>;

TEST_F(ErrorCountersTest, WhereNothingRisesNothingIsSaid) {
  m_machine.write("dev/kmsg", "");
  begin();
  EXPECT_EQ(lines(), Lines());
}

TEST_F(ErrorCountersTest, WhereNothingCanBeReadNothingIsSaid) {
  ErrorCounters counters(m_machine.path("nowhere").string());
  EXPECT_TRUE(counters.findings().empty());
}

struct RiseRow {
  std::string file;
  const char* content;
  const char* line;
};

TEST_F(ErrorCountersTest, EachRiseIsToldWithItsPlaceFromAndTo) {
  const std::string interrupts = kInterrupts;
  const RiseRow rows[] = {
      {std::string(kModule) + "/dimm_ce_count", "6",
       "DIMM_A2|memory module mc0/dimm3 (channel 1 slot 0): corrected errors rose from 4 to 6|"
       "Replace DIMM_A2 where its corrected errors go on rising."},
      {std::string(kModule) + "/dimm_ue_count", "1",
       "DIMM_A2|memory module mc0/dimm3 (channel 1 slot 0): uncorrected errors rose from 0 to 1|"
       "Replace DIMM_A2."},
      {std::string(kController) + "/ce_noinfo_count", "7",
       "memory mc0|memory controller mc0: corrected errors of an unknown module rose from 0 to 7|"
       "Replace memory mc0 where its corrected errors go on rising."},
      {std::string(kRow) + "/ch0_ce_count", "1",
       "DIMM_B1|memory module mc1/csrow2: ch0_ce_count rose from 0 to 1|"
       "Replace DIMM_B1 where its corrected errors go on rising."},
      {std::string(kDevice) + "/aer_dev_correctable", "RxErr 1\nBadTLP 2\nTOTAL_ERR_COR 3",
       "0000:03:00.0|PCI Express device 0x8086:0x10d3, driver e1000e: correctable errors BadTLP "
       "rose "
       "from 0 to 2|Reseat the card of 0000:03:00.0; replace it or its slot where errors go on."},
      {std::string(kDevice) + "/aer_dev_nonfatal", "Undefined 0\nDLP 1\nTOTAL_ERR_NONFATAL 1",
       "0000:03:00.0|PCI Express device 0x8086:0x10d3, driver e1000e: nonfatal errors DLP rose "
       "from "
       "0 to 1|Reseat the card of 0000:03:00.0; replace it or its slot where errors go on."},
      {std::string(kDevice) + "/aer_dev_fatal", "DLP 1\nTOTAL_ERR_FATAL 1",
       "0000:03:00.0|PCI Express device 0x8086:0x10d3, driver e1000e: fatal errors DLP rose from 0 "
       "to 1|Reseat the card of 0000:03:00.0; replace it or its slot where errors go on."},
      {std::string(kDisk) + "/iotmo_cnt", "0x10",
       "sda|commands that timed out rose from 0 to 16|"
       "Check the cable of sda and the drive's health."},
      {std::string(kPort) + "/rx_crc_errors", "3",
       "eth0|rx_crc_errors rose from 2 to 3|"
       "Check the cable of eth0 and what is at its other end."},
      {std::string(kPort) + "/tx_errors", "18446744073709551615",
       "eth0|tx_errors rose from 0 to 18446744073709551615|"
       "Check the cable of eth0 and what is at its other end."},
  };
  for (const RiseRow& row : rows) {
    std::string former;
    std::getline(std::ifstream(m_machine.path(row.file)), former, '\0');
    begin();
    write(row.file, row.content);
    EXPECT_EQ(lines(), Lines{row.line});
    m_machine.write(row.file, former);
  }
}

TEST_F(ErrorCountersTest, AMachineCheckNamesTheProcessorsThatCountedIt) {
  begin();
  write("proc/interrupts",
        "           CPU0       CPU2       \n"
        "THR:          0          5   Threshold APIC interrupts\n"
        "MCE:          0          2   Machine check exceptions\n"
        "MCP:         99         99   Machine check polls");
  EXPECT_EQ(lines(),
            Lines{"processors|machine check exceptions CPU2 rose from 1 to 2, interrupts of "
                  "corrected errors CPU2 rose from 0 to 5|Look into the kernel's log for "
                  "bank and address of the error."});
}

TEST_F(ErrorCountersTest, AProcessorThatIsSwitchedOffTakesNoOthersColumn) {
  begin();
  write("proc/interrupts",
        "           CPU2       \n"
        "MCE:          1   Machine check exceptions");
  EXPECT_EQ(lines(), Lines());
}

TEST_F(ErrorCountersTest, WhatModulesTellTheirControllerDoesNotTellAgain) {
  begin();
  write(std::string(kModule) + "/dimm_ce_count", "6");
  write(std::string(kController) + "/ce_count", "6");
  EXPECT_EQ(lines().size(), 1U);
}

TEST_F(ErrorCountersTest, WhatNoModuleTellsTheirControllerDoes) {
  begin();
  write(std::string(kModule) + "/dimm_ce_count", "5");
  write(std::string(kController) + "/ce_count", "9");
  EXPECT_EQ(lines().size(), 2U);
}

TEST_F(ErrorCountersTest, ThePartsOfOneDeviceAreToldTogether) {
  begin();
  write(std::string(kPort) + "/rx_errors", "5");
  write(std::string(kPort) + "/rx_crc_errors", "5");
  EXPECT_EQ(lines(), Lines{"eth0|rx_crc_errors rose from 2 to 5, rx_errors rose from 2 to 5|Check "
                           "the cable of eth0 and what is at its other end."});
}

TEST_F(ErrorCountersTest, ADrivesRefusalIsNoReasonToDoubtItWhereTheKernelsLogWouldTell) {
  m_machine.write("dev/kmsg", "");
  begin();
  write(std::string(kDisk) + "/ioerr_cnt", "0x5");
  EXPECT_EQ(lines(),
            Lines{"?sda|commands that ended with an error rose from 3 to 5|Check the cable "
                  "of sda and the drive's health."});
}

TEST_F(ErrorCountersTest, ADrivesRefusalIsAReasonToDoubtItWhereNobodyElseTells) {
  begin();
  write(std::string(kDisk) + "/ioerr_cnt", "0x5");
  EXPECT_EQ(lines().front().substr(0, 4), "sda|");
}

struct SilentRow {
  const char* why;
  std::string file;
  const char* before;
  const char* after;
};

TEST_F(ErrorCountersTest, WhatIsNoRiseIsSilent) {
  const std::string port = std::string(kPort) + "/rx_errors";
  const std::string device = std::string(kDevice) + "/aer_dev_correctable";
  const SilentRow rows[] = {
      {"began anew", port, "7", "3"},
      {"wrapped", port, "4294967295", "0"},
      {"no number before", port, "many", "3"},
      {"no number now", port, "7", "8 or so"},
      {"two numbers", port, "7", "8 9"},
      {"negative", port, "-7", "-3"},
      {"too large", port, "7", "18446744073709551616"},
      {"hexadecimal without digits", port, "0x1", "0x"},
      {"written otherwise", port, "7", "  7 "},
      {"empty now", port, "7", ""},
      {"another row", device, "RxErr 1", "BadTLP 5"},
      {"a row without a number", device, "RxErr 1", "RxErr"},
      {"the sum alone", device, "RxErr 1\nTOTAL_ERR_COR 1", "RxErr 1\nTOTAL_ERR_COR 2"},
  };
  for (const SilentRow& row : rows) {
    write(row.file, row.before);
    begin();
    write(row.file, row.after);
    EXPECT_EQ(lines(), Lines()) << row.why;
  }
}

TEST_F(ErrorCountersTest, ADeviceThatIsGoneIsSilent) {
  begin();
  std::filesystem::remove_all(m_machine.path(kDevice));
  std::filesystem::remove_all(m_machine.path("sys/class/net/eth0"));
  EXPECT_EQ(lines(), Lines());
}

TEST_F(ErrorCountersTest, ADeviceThatCameIsSilent) {
  begin();
  write("sys/class/net/eth1/statistics/rx_errors", "5");
  write("sys/class/net/eth1/device/uevent", "");
  EXPECT_EQ(lines(), Lines());
}

TEST_F(ErrorCountersTest, APortThatIsNoDeviceIsNotLookedAt) {
  write("sys/class/net/lo/statistics/rx_errors", "0");
  begin();
  write("sys/class/net/lo/statistics/rx_errors", "5");
  EXPECT_EQ(lines(), Lines());
}

TEST_F(ErrorCountersTest, ADriveWithoutAMediumIsNotLookedAt) {
  write("sys/block/sr0/device/ioerr_cnt", "0x0");
  write("sys/block/sr0/device/iotmo_cnt", "0x0");
  begin();
  write("sys/block/sr0/device/ioerr_cnt", "0x5");
  EXPECT_EQ(lines(), Lines());
}

TEST_F(ErrorCountersTest, AFileThatIsNoneIsNotWaitedFor) {
  const auto pipe = m_machine.path(std::string(kPort) + "/tx_errors");
  std::filesystem::remove(pipe);
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  std::filesystem::remove(m_machine.path(std::string(kPort) + "/rx_errors"));
  m_machine.link(std::string(kPort) + "/rx_errors", "rx_errors");
  std::filesystem::remove(m_machine.path(std::string(kDisk) + "/ioerr_cnt"));
  std::filesystem::create_directory(m_machine.path(std::string(kDisk) + "/ioerr_cnt"));
  begin();
  EXPECT_EQ(lines(), Lines());
}

TEST_F(ErrorCountersTest, AFloodOfPartsIsToldToAnEnd) {
  const auto portNamed = [](int number) { return "sys/class/net/eth" + std::to_string(number); };
  for (int i = 1; i <= 200; ++i) {
    write(portNamed(i) + "/statistics/rx_errors", "0");
    write(portNamed(i) + "/device/uevent", "");
  }
  begin();
  for (int i = 1; i <= 200; ++i) write(portNamed(i) + "/statistics/rx_errors", "1");
  EXPECT_EQ(lines().size(), 64U);
}

TEST_F(ErrorCountersTest, TheKernelsMessagesAreTold) {
  m_machine.write("dev/kmsg", "0,1,1,-;mce: [Hardware Error]: CPU 9: Machine Check: 0 Bank 9: 9\n");
  begin();
  m_machine.append("dev/kmsg",
                   "0,339,5140900,-;mce: [Hardware Error]: CPU 1: Machine Check: 0 Bank 8: "
                   "9c00004000010091\n SUBSYSTEM=machinecheck\n"
                   "0,340,5140901,-;mce: [Hardware Error]: TSC 0 ADDR 12345000 \n");
  EXPECT_EQ(
      lines(),
      Lines{"CPU 1|corrected error of the memory or its controller: machine check on CPU 1, "
            "bank 8, status 0x9c00004000010091, address 0x12345000|Note the bank and address. "
            "Replace what they name where it comes back."});
}

TEST_F(ErrorCountersTest, WhatAProgramWroteIntoTheKernelsLogIsNotTheKernels) {
  m_machine.write("dev/kmsg", "");
  begin();
  m_machine.append("dev/kmsg",
                   "11,1,1,-;mce: [Hardware Error]: CPU 1: Machine Check: 0 Bank 8: 9c\n"
                   " 0,1,1,-;[Hardware Error]: x\n[Hardware Error]: y\n;[Hardware Error]: z\n");
  EXPECT_EQ(lines(), Lines());
}

TEST_F(ErrorCountersTest, ATerminalThatHidesBehindTheNameOfTheLogIsNotRead) {
  std::filesystem::create_directories(m_machine.path("dev"));
  m_machine.link("dev/kmsg", "/dev/zero");
  begin();
  EXPECT_EQ(lines(), Lines());
}

}  // namespace
}  // namespace engine::counters
