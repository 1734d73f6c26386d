#pragma once

#include <exception>
#include <functional>
#include <ostream>
#include <string>

namespace support {

/// How an operation ended, and what it did on the way.
struct Outcome {
  enum class Kind { returned, vorException, standardException, otherException };

  Kind kind = Kind::returned;
  std::string text;   ///< what was returned, or what the exception says
  int status = 0;     ///< the status code of a `TVORException`
  std::string calls;  ///< the parts of the journal, see `Journal`
  std::string log;
  std::string output;
  std::string all;

  bool returned() const { return kind == Kind::returned; }
};

std::ostream& operator<<(std::ostream& stream, Outcome::Kind kind);
std::ostream& operator<<(std::ostream& stream, const Outcome& outcome);

/// Runs `operation` and says how it ended; the journal's parts are those of the journal at the end.
Outcome outcomeOf(const std::function<std::string()>& operation);

}  // namespace support
