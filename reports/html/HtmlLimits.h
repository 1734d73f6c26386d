#pragma once

#include <cstddef>

namespace reports {

/// How much of a run a page shows. It is for reading, and so is bounded however long the run was;
/// what is left out is counted, and the page says so.
struct HtmlLimits {
  std::size_t lines = 200;  ///< of each test's output and log, from their beginning and their end
  std::size_t lineBytes = 1000;      ///< of such a line
  std::size_t textBytes = 4000;      ///< of a message, and the like
  std::size_t recordBytes = 20'000;  ///< of a record's data
  std::size_t items = 100;   ///< of a test's messages, findings, errors, steps, measurements, each
  std::size_t tests = 1000;  ///< shown one by one; beyond that, those that did not pass come first
  std::size_t rows = 100;    ///< of the timeline, and series of measurements over the tests
  std::size_t bytes = 8U << 20U;  ///< of texts that are kept for tests that are over
};

}  // namespace reports
