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

/// What the exception that is being handled has to say. To be called in a handler only.
std::string currentExceptionText();

/// `text` without blanks and line ends around it.
std::string trimmed(const std::string& text);

}  // namespace host
