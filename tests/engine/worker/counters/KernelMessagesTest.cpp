#include <gtest/gtest.h>

#include "engine/worker/counters/KernelMessages.h"

namespace engine::counters {
namespace {

using Lines = std::vector<std::string>;

/// "part|text" of each finding.
Lines told(const Lines& messages) {
  Lines all;
  for (const Finding& one : findingsIn(messages)) {
    EXPECT_TRUE(one.isSure);
    EXPECT_EQ(one.diagnosis.verdict, Verdict::kWarning);
    all.push_back(one.diagnosis.part + "|" + one.diagnosis.text);
  }
  return all;
}

std::string check(const std::string& status) {
  return "mce: [Hardware Error]: CPU 3: Machine Check: 0 Bank 5: " + status;
}

struct StatusRow {
  const char* status;
  const char* text;
};

TEST(KernelMessages, AMachineChecksStatusIsPutInWords) {
  const StatusRow rows[] = {
      {"9c00004000010091", "corrected error of the memory or its controller"},
      {"bc00000000000135", "uncorrected error of a cache"},
      {"be00000000000135", "uncorrected error of a cache, processor context corrupt"},
      {"9000000000001110", "corrected error of a cache"},
      {"9000000000000e0b", "corrected error of the bus or an interconnect"},
      {"9000000000000014", "corrected error of an address translation buffer"},
      {"9000000000000005", "corrected error of the processor"},
  };
  for (const StatusRow& row : rows) {
    EXPECT_EQ(told({check(row.status)}),
              Lines{std::string("CPU 3|") + row.text +
                    ": machine check on CPU 3, bank 5, status 0x" + row.status + ", no address"});
  }
}

TEST(KernelMessages, WhatADecoderPrintsIsUnderstoodToo) {
  EXPECT_EQ(told({"[Hardware Error]: Corrected error, no action required.",
                  "[Hardware Error]: CPU:2 (17:31:0) MC17_STATUS[Over|CE|MiscV|AddrV|-|-|SyndV]: "
                  "0xdc2040000000011b",
                  "[Hardware Error]: Error Addr: 0x000000003abc5000",
                  "[Hardware Error]: Unified Memory Controller Ext. Error Code: 0"}),
            Lines{"CPU 2|corrected error of a cache: machine check on CPU 2, bank 17, status "
                  "0xdc2040000000011b, address 0x3abc5000"});
}

TEST(KernelMessages, TheSameMachineCheckIsToldOnce) {
  const std::string address = "mce: [Hardware Error]: TSC 0 ADDR 1000 MISC 86 ";
  EXPECT_EQ(told({check("9000000000000005"), address, "usb 1-1: new device",
                  check("9000000000000005"), address}),
            Lines{"CPU 3|corrected error of the processor: machine check on CPU 3, bank 5, status "
                  "0x9000000000000005, address 0x1000 (2 times)"});
}

TEST(KernelMessages, AnAddressBelongsToTheMachineCheckBeforeIt) {
  EXPECT_EQ(
      told({check("9000000000000005"), "eth0: link is up",
            "mce: [Hardware Error]: TSC 0 ADDR 1000 "}),
      (Lines{"CPU 3|corrected error of the processor: machine check on CPU 3, bank 5, status "
             "0x9000000000000005, no address",
             "|the kernel tells of a hardware error\nmce: [Hardware Error]: TSC 0 ADDR 1000 "}));
}

TEST(KernelMessages, OtherHardwareErrorsAreToldAsTheyAre) {
  EXPECT_EQ(told({"{1}[Hardware Error]: event severity: corrected",
                  "{1}[Hardware Error]: section_type: memory error",
                  "Memory failure: 0x3abc5: recovery action for dirty LRU page: Recovered"}),
            Lines{"|the kernel tells of a hardware error\n"
                  "{1}[Hardware Error]: event severity: corrected\n"
                  "{1}[Hardware Error]: section_type: memory error\n"
                  "Memory failure: 0x3abc5: recovery action for dirty LRU page: Recovered"});
}

TEST(KernelMessages, ADisksErrorsAreCountedFromTheFirstOn) {
  EXPECT_EQ(told({"critical medium error, dev nvme0n1, sector 2048 op 0x0:(READ) flags 0x0",
                  "critical medium error, dev nvme0n1, sector 2056 op 0x0:(READ) flags 0x0",
                  "blk_update_request: I/O error, dev sda, sector 7",
                  "I/O error, dev sda, sector 9 op 0x1:(WRITE) flags 0x800"}),
            (Lines{"nvme0n1|critical medium error (2 times), the first at sector 2048",
                   "sda|I/O error (2 times), the first at sector 7"}));
}

TEST(KernelMessages, WhatIsNoErrorOfTheMachineIsSilent) {
  const char* const rows[] = {
      "",
      "mce: CPU0: Core temperature is above threshold, cpu clock is throttled",
      "mce: Machine Check: of no kind",
      "critical target error, dev sdb, sector 0 op 0x3:(DISCARD) flags 0x800",
      "I/O error, dev loop0, sector 0 op 0x0:(READ)",
      "I/O error, dev sr0, sector 0",
      "I/O error, dev fd0, sector 0",
      "Buffer I/O error on dev sda, logical block 0",
      " error, dev ",
  };
  for (const char* const row : rows) EXPECT_EQ(told({row}), Lines()) << row;
}

TEST(KernelMessages, AMachineCheckThatCannotBeReadIsStillAHardwareError) {
  for (const char* const text :
       {"[Hardware Error]: CPU x: Machine Check: 0 Bank 8: 9c00004000010091",
        "[Hardware Error]: CPU 0: Machine Check: 0 Bank 8: status",
        "[Hardware Error]: CPU 0: Machine Check: 0 Bank : 9c", "[Hardware Error]: Machine Check",
        "[Hardware Error]: CPU 0: Machine Check: 0 Bank 8: 19c00004000010091",
        "[Hardware Error]: MC_STATUS["}) {
    EXPECT_EQ(told({text}), Lines{std::string("|the kernel tells of a hardware error\n") + text});
  }
}

TEST(KernelMessages, AFloodIsToldToAnEnd) {
  Lines messages;
  for (int i = 0; i < 1000; ++i) {
    messages.push_back("mce: [Hardware Error]: CPU " + std::to_string(i) +
                       ": Machine Check: 0 Bank 5: 9000000000000005");
    messages.push_back("I/O error, dev sd" + std::to_string(i) + ", sector 1");
    messages.emplace_back("Memory failure: 0x1: recovery action");
  }
  EXPECT_EQ(told(messages).size(), 33U);
}

}  // namespace
}  // namespace engine::counters
