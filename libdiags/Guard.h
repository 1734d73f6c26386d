#pragma once

#include <cstddef>
#include <deque>
#include <stdexcept>
#include <string>

#include "diags/diags.h"

/// The border to C: no exception crosses it, and each thread has the text of its last failure.
namespace libdiags {

/// A failure with a code of its own.
class Refusal : public std::runtime_error {
 public:
  Refusal(diags_code code, const std::string& text) : std::runtime_error(text), m_code(code) {}
  diags_code code() const { return m_code; }

 private:
  diags_code m_code;
};

/// Throws `Refusal` that names the argument where it is null.
void refuseNull(const void* argument, const char* name);

/// A copy that `diags_free` takes back. Throws `std::bad_alloc`.
char* handOut(const std::string& text);
/// The same of all of them, each ended by a line feed. Their bytes, without the zero byte, go to
/// `length`.
char* handOut(const std::deque<std::string>& lines, std::size_t& length);

/// This thread's; never null.
const char* lastError() noexcept;
void clearLastError() noexcept;

/// The code for the exception that is being handled, whose text becomes this thread's last error.
diags_code codeOfException() noexcept;

/// What a call comes to. `call` gives a `diags_code`.
template <class Call>
diags_code guarded(Call call) noexcept {
  clearLastError();
  try {
    return call();
  } catch (...) {
    return codeOfException();
  }
}

}  // namespace libdiags
