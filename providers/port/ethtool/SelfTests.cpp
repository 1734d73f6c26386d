#include "providers/port/ethtool/SelfTests.h"

#include <linux/ethtool.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "providers/common/SysfsFiles.h"

namespace providers::port {

namespace {

/// The system writes as many answers as the driver has at that moment, however many were asked for:
/// there is always room for these, and who says that it has more is not asked.
constexpr std::uint32_t kMostTests = 4096;

/// Room for a request with what follows it, aligned for both.
template <class Request>
class Room {
 public:
  Room(std::uint32_t command, std::size_t behind)
      : m_words((sizeof(Request) + behind) / sizeof(std::uint64_t) + 1) {
    request().cmd = command;
  }
  Request& request() { return *reinterpret_cast<Request*>(m_words.data()); }
  void* data() { return m_words.data(); }
  const char* behind() const {
    return reinterpret_cast<const char*>(m_words.data()) + sizeof(Request);
  }

 private:
  std::vector<std::uint64_t> m_words;
};

std::vector<std::string> testNames(EthtoolDoor& door, const std::string& port,
                                   std::uint32_t count) {
  Room<ethtool_gstrings> room(ETHTOOL_GSTRINGS, std::size_t{kMostTests} * ETH_GSTRING_LEN);
  room.request().string_set = ETH_SS_TEST;
  room.request().len = count;
  std::vector<std::string> names(count);
  if (door.ask(port, room.data()) != 0) return names;
  for (std::uint32_t i = 0; i < std::min(count, room.request().len); ++i) {
    const char* const name = room.behind() + std::size_t{i} * ETH_GSTRING_LEN;
    names[i] = printable(std::string(name, strnlen(name, ETH_GSTRING_LEN)));
  }
  return names;
}

}  // namespace

std::uint32_t countSelfTests(EthtoolDoor& door, const std::string& port) {
  Room<ethtool_sset_info> room(ETHTOOL_GSSET_INFO, sizeof(std::uint32_t));
  room.request().sset_mask = std::uint64_t{1} << ETH_SS_TEST;
  if (door.ask(port, room.data()) != 0 || room.request().sset_mask == 0) return 0;
  std::uint32_t count = 0;
  std::memcpy(&count, room.behind(), sizeof count);
  return count <= kMostTests ? count : 0;
}

SelfTestReport runSelfTests(EthtoolDoor& door, const std::string& port, TestMode mode) {
  std::uint32_t count = countSelfTests(door, port);
  SelfTestReport report;
  report.problem = EOPNOTSUPP;
  if (count == 0) return report;
  const std::vector<std::string> names = testNames(door, port, count);
  Room<ethtool_test> room(ETHTOOL_TEST, std::size_t{kMostTests} * sizeof(std::uint64_t));
  room.request().len = count;
  room.request().flags = mode == TestMode::Offline ? ETH_TEST_FL_OFFLINE : 0;
  report.problem = door.ask(port, room.data());
  if (report.problem != 0) return report;
  // It may have got more or fewer since it was asked.
  count = std::min(room.request().len, kMostTests);
  if (count == 0) report.problem = EOPNOTSUPP;
  report.failed = (room.request().flags & ETH_TEST_FL_FAILED) != 0;
  for (std::uint32_t i = 0; i < count; ++i) {
    DriverTest test;
    const bool named = i < names.size() && !names[i].empty();
    test.name = named ? names[i] : "test " + std::to_string(i + 1);
    std::memcpy(&test.value, room.behind() + i * sizeof(std::uint64_t), sizeof test.value);
    report.tests.push_back(std::move(test));
  }
  return report;
}

}  // namespace providers::port
