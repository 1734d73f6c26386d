#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <set>

#include "tests/conformance/Conformance.h"

namespace conformance {
namespace {

/// The names of the broker's tables in the headers of the newest edition.
std::set<std::string> tablesInHeaders() {
  std::set<std::string> names;
  for (const char* header : {"cmpibroker.h", "cmpiobjects.h"}) {
    std::ifstream file(std::string(DIAGS_SOURCE_DIR "/cmpi/") + header);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const std::regex table("struct _(CMPI\\w+FT) \\{");
    for (std::sregex_iterator at(text.begin(), text.end(), table), end; at != end; ++at) {
      names.insert((*at)[1]);
    }
  }
  return names;
}

/// What all groups of an edition call.
std::map<std::string, Table> calledIn(int edition) {
  std::map<std::string, Table> all;
  for (const std::string& group : groups()) {
    for (const auto& [name, table] : run(edition, group).tables) {
      all[name].size = table.size;
      all[name].called |= table.called;
    }
  }
  return all;
}

/// The bits of a table whose slots can all be called; its head is no function.
std::uint64_t allSlots(const std::string& name, const Table& table) {
  const unsigned head = name == "CMPIBrokerFT" ? 2 : 1;
  return ((std::uint64_t{1} << table.size / sizeof(void*)) - 1) >> head << head;
}

class Coverage : public testing::TestWithParam<int> {};

// Catches a slot, also one that is added to a table later, that no check calls.
TEST_P(Coverage, EverySlotOfEveryTableIsCalled) {
  const std::map<std::string, Table> called = calledIn(GetParam());
  EXPECT_GE(called.size(), 15U);
  for (const auto& [name, table] : called) {
    EXPECT_EQ(table.called, allSlots(name, table))
        << name << ": one bit for each slot, the lowest for its first 8 bytes";
  }
}
INSTANTIATE_TEST_SUITE_P(Editions, Coverage, testing::Values(100, 200, 210),
                         testing::PrintToStringParamName());

// Catches a table that no check knows of.
TEST(CoverageOfTables, IsComplete) {
  const std::map<std::string, Table> called = calledIn(210);
  const std::set<std::string> declared = tablesInHeaders();
  EXPECT_EQ(declared.size(), 20U);
  for (const std::string& name : declared) {
    EXPECT_EQ(called.count(name), 1U) << name;
  }
}

}  // namespace
}  // namespace conformance
