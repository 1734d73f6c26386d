#include "bench/VendorMessagesFile.h"

#include <chrono>
#include <filesystem>
#include <fstream>

namespace {

constexpr const char* kStates[] = {"ok", "warning", "failed", "aborted", "incomplete"};

std::string resultElement(std::size_t number, const char* state) {
  const std::string n = std::to_string(number);
  return std::string("    <result state='") + state +
         "'>\n"
         "      <errorcode>0x" +
         n +
         "</errorcode>\n"
         "      <msg>The diagnostic number " +
         n +
         " has ended and the controller reports the state named above.</msg>\n"
         "      <msg>The adapter answered each of the commands that were sent to it, the transfer "
         "counters were compared with those of the driver, and the differences were written to the "
         "event log of the device together with the time at which they were seen.</msg>\n"
         "      <action priority='1'>Check that the cables are seated and that the link partner is "
         "switched on, then run the diagnostic again with the same settings before any part is "
         "exchanged.</action>\n"
         "      <action priority='2'>If the state stays the same, update the firmware of the "
         "adapter to the level that the vendor recommends for this machine, and keep the report "
         "for the service technician.</action>\n"
         "    </result>\n";
}

/// Written as it is made, so that the peak of this process's memory is not that of the file.
void writeVendorMessages(std::ostream& out, std::size_t bytes) {
  out << "<diaganalysis version='1.0'>\n";
  for (std::size_t test = 0; static_cast<std::size_t>(out.tellp()) < bytes; ++test) {
    out << "  <diagnostictest name='Vendor: Adapter Diagnostic " << test << "'>\n";
    for (const char* state : kStates) {
      out << resultElement(test, state);
    }
    out << "  </diagnostictest>\n";
  }
  out << "</diaganalysis>\n";
}

}  // namespace

VendorInstallation::VendorInstallation(std::size_t bytes) {
  const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
  m_root =
      (std::filesystem::temp_directory_path() / ("diags-bench-" + std::to_string(stamp))).string();
  std::filesystem::create_directories(m_root + "/kfr/data");
  std::ofstream out(file(), std::ios::binary);
  writeVendorMessages(out, bytes);
}

VendorInstallation::~VendorInstallation() {
  std::error_code ignored;
  std::filesystem::remove_all(m_root, ignored);
}

std::string VendorInstallation::file() const {
  return m_root + "/kfr/data/vendor_diagnostic_msgs.xml";
}
