#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace support {

/// Base of the rows of a table of cases; failure messages and test names show the row's name.
struct Row {
  const char* name;
};

inline std::ostream& operator<<(std::ostream& stream, const Row& row) { return stream << row.name; }

/// Names the cases of a table, in `INSTANTIATE_TEST_SUITE_P`.
struct RowName {
  template <typename SomeRow>
  std::string operator()(const testing::TestParamInfo<SomeRow>& row) const {
    return row.param.name;
  }
};

}  // namespace support
