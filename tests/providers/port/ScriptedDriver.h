#pragma once

#include <linux/ethtool.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "providers/port/ethtool/EthtoolDoor.h"

namespace providers::port {

/// What a port's driver answers.
struct DriverScript {
  std::vector<std::string> testNames;
  std::uint32_t toldTests = 0;  ///< how many it says that it has; 0: those that have names
  std::vector<std::uint64_t> testValues;
  bool testsFailed = false;
  int testProblem = 0;
  std::vector<std::uint32_t> testFlags;  ///< with which it was asked to test
  std::function<void()> duringTest = [] {};

  std::vector<std::uint32_t> supported;  ///< words of bits; none: link settings are refused
  std::vector<std::uint32_t> offered;
  std::vector<std::uint32_t> partner;
};

class ScriptedDriver : public EthtoolDoor {
 public:
  explicit ScriptedDriver(DriverScript& script) : m_script(script) {}

  int ask(const std::string&, void* request) override {
    std::uint32_t command = 0;
    std::memcpy(&command, request, sizeof command);
    switch (command) {
      case ETHTOOL_GSSET_INFO:
        return tellCount(*static_cast<ethtool_sset_info*>(request));
      case ETHTOOL_GSTRINGS:
        return tellNames(*static_cast<ethtool_gstrings*>(request));
      case ETHTOOL_TEST:
        return test(*static_cast<ethtool_test*>(request));
      case ETHTOOL_GLINKSETTINGS:
        return tellLink(*static_cast<ethtool_link_settings*>(request));
      default:
        return EOPNOTSUPP;
    }
  }

 private:
  template <class Request>
  static char* behind(Request& request) {
    return reinterpret_cast<char*>(&request) + sizeof(Request);
  }
  int tellCount(ethtool_sset_info& info) const {
    const auto count = m_script.toldTests != 0
                           ? m_script.toldTests
                           : static_cast<std::uint32_t>(m_script.testNames.size());
    if (count == 0) info.sset_mask = 0;
    if (count > 0) std::memcpy(behind(info), &count, sizeof count);
    return 0;
  }
  int tellNames(ethtool_gstrings& strings) const {
    // As the system does: however many were asked for.
    strings.len = static_cast<std::uint32_t>(m_script.testNames.size());
    for (std::size_t i = 0; i < strings.len; ++i)
      std::memcpy(behind(strings) + i * ETH_GSTRING_LEN, m_script.testNames[i].data(),
                  std::min<std::size_t>(m_script.testNames[i].size(), ETH_GSTRING_LEN));
    return 0;
  }
  int test(ethtool_test& test) const {
    m_script.testFlags.push_back(test.flags);
    m_script.duringTest();
    if (m_script.testProblem != 0) return m_script.testProblem;
    if (m_script.testsFailed) test.flags |= ETH_TEST_FL_FAILED;
    test.len = static_cast<std::uint32_t>(m_script.testValues.size());
    std::memcpy(behind(test), m_script.testValues.data(), test.len * sizeof(std::uint64_t));
    return 0;
  }
  int tellLink(ethtool_link_settings& settings) const {
    const auto words = static_cast<signed char>(m_script.supported.size());
    if (words == 0) return EOPNOTSUPP;
    if (settings.link_mode_masks_nwords != words) {
      settings.link_mode_masks_nwords = static_cast<signed char>(-words);
      return 0;
    }
    std::size_t place = 0;
    for (const auto* map : {&m_script.supported, &m_script.offered, &m_script.partner})
      for (const std::uint32_t word : *map)
        std::memcpy(behind(settings) + place++ * sizeof word, &word, sizeof word);
    return 0;
  }

  DriverScript& m_script;
};

}  // namespace providers::port
