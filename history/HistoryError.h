#pragma once

#include <stdexcept>

namespace history {

/// What the history cannot do. The text names the file, or the argument, in letters that act on no
/// terminal.
class HistoryError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The file is no database, or one whose content is damaged.
class DamagedHistory : public HistoryError {
 public:
  using HistoryError::HistoryError;
};

/// Others write, and did not let go of it in time.
class BusyHistory : public HistoryError {
 public:
  using HistoryError::HistoryError;
};

}  // namespace history
