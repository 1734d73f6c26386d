#include <gtest/gtest.h>

#include <cstring>

#include "substitute/cmpi.nsp/broker/lifetime/Tables.h"

namespace cmpinsp::broker {
namespace {

struct Row {
  const char* name;
  const void* table;
  std::size_t size;
  std::size_t firstFunction;
};

#define ROW(table) \
  { #table, &table, sizeof table, 8 }

const Row kRows[] = {
    ROW(kContextTable),      ROW(kResultTable),
    ROW(kStringTable),       ROW(kArrayTable),
    ROW(kEnumerationTable),  ROW(kInstanceTable),
    ROW(kObjectPathTable),   ROW(kArgsTable),
    ROW(kDateTimeTable),     ROW(kErrorTable),
    ROW(kPropertyListTable), ROW(kSelectExpTable),
    ROW(kSelectCondTable),   ROW(kSubCondTable),
    ROW(kPredicateTable),    ROW(kEnumerationFilterTable),
    ROW(kBrokerEncTable),    ROW(kBrokerExtTable),
    ROW(kBrokerMemTable),    {"kBrokerTable", &kBrokerTable, sizeof kBrokerTable, 16},
};

// A provider calls a slot without a look at it.
TEST(Tables, NoSlotIsNull) {
  for (const Row& row : kRows) {
    for (std::size_t at = row.firstFunction; at < row.size; at += sizeof(void*)) {
      std::uintptr_t slot = 0;
      std::memcpy(&slot, static_cast<const char*>(row.table) + at, sizeof slot);
      EXPECT_NE(slot, 0U) << row.name << " at " << at;
    }
  }
}

TEST(Tables, AnnounceTheNewestEdition) {
  EXPECT_EQ(kBrokerTable.brokerVersion, 210);
  EXPECT_STRNE(kBrokerTable.brokerName, "");
  for (const Row& row : kRows) {
    if (row.firstFunction != 8) continue;
    int version = 0;
    std::memcpy(&version, row.table, sizeof version);
    EXPECT_EQ(version, 210) << row.name;
  }
}

}  // namespace
}  // namespace cmpinsp::broker
