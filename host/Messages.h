#pragma once

#include <stdexcept>
#include <string>

namespace host {

/// A command line that cannot be carried out as it is.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Writes "diags: " and `text` as one line to standard error, after what standard output holds.
/// `text` is made `visible`; blanks and line ends behind it are left out. May be called from any
/// thread.
void reportError(const std::string& text);

}  // namespace host
