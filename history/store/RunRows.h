#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "history/Records.h"
#include "history/store/Statement.h"
#include "history/store/Store.h"

namespace history {

/// The runs that a filter lets pass, the newest first.
class RunRows {
 public:
  RunRows(Store& store, const RunFilter& filter, std::size_t most);
  std::optional<RunRecord> next();

 private:
  Store& m_store;
  RunFilter m_filter;
  Statement m_rows;
};

/// The number of the run in the tables. Throws `HistoryError` where there is none.
std::int64_t numberOf(Store& store, const std::string& id);

RunRecord recordOf(Store& store, std::int64_t number);

/// The word of an outcome in a column; nothing where it is null. Throws `DamagedHistory` at any
/// other.
std::optional<engine::Outcome> outcomeIn(const Database& database, const Statement& row,
                                         int column);

engine::Time timeOf(std::int64_t microseconds);
std::int64_t microsecondsOf(engine::Time time);

}  // namespace history
