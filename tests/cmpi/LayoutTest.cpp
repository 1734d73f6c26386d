#include <gtest/gtest.h>

#include "tests/cmpi/Sizes.h"

extern "C" {
Sizes layout_c_100();
Sizes layout_c_200();
Sizes layout_c_210();
Sizes layout_cpp_100();
Sizes layout_cpp_200();
Sizes layout_cpp_210();
}

namespace {

struct Row {
  const char* name;
  Sizes (*sizes)();
  Sizes wanted;
};

constexpr Sizes kEdition100 = {100, 32, 160, 136, 80, 80, 24, 16};
constexpr Sizes kEdition200 = {200, 40, 160, 168, 88, 80, 24, 16};
constexpr Sizes kEdition210 = {210, 40, 184, 192, 88, 88, 24, 16};

constexpr Row kRows[] = {
    {"C, 1.0", layout_c_100, kEdition100},     {"C, 2.0", layout_c_200, kEdition200},
    {"C, 2.1", layout_c_210, kEdition210},     {"C++, 1.0", layout_cpp_100, kEdition100},
    {"C++, 2.0", layout_cpp_200, kEdition200}, {"C++, 2.1", layout_cpp_210, kEdition210},
};

// A table that is a slot too long or too short makes a provider of that edition read past its end.
TEST(CmpiHeaders, EachEditionHasTheTablesThatItsProvidersWereBuiltFor) {
  for (const Row& row : kRows) {
    const Sizes sizes = row.sizes();
    EXPECT_EQ(sizes.edition, row.wanted.edition) << row.name;
    EXPECT_EQ(sizes.broker, row.wanted.broker) << row.name;
    EXPECT_EQ(sizes.brokerTable, row.wanted.brokerTable) << row.name;
    EXPECT_EQ(sizes.factoryTable, row.wanted.factoryTable) << row.name;
    EXPECT_EQ(sizes.instanceTable, row.wanted.instanceTable) << row.name;
    EXPECT_EQ(sizes.instanceInterface, row.wanted.instanceInterface) << row.name;
    EXPECT_EQ(sizes.data, row.wanted.data) << row.name;
    EXPECT_EQ(sizes.status, row.wanted.status) << row.name;
  }
}

}  // namespace
