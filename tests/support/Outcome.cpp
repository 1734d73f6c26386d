#include "tests/support/Outcome.h"

#include "framework/TVORException.h"
#include "tests/support/Journal.h"
#include "tests/support/Text.h"

namespace support {

namespace {

Outcome endOf(const std::function<std::string()>& operation) {
  Outcome outcome;
  try {
    outcome.text = operation();
  } catch (const NZELVOR20::TVORException& exception) {
    outcome.kind = Outcome::Kind::vorException;
    outcome.text = exception.what();
    outcome.status = exception.GetStatus().GetStatusCode();
  } catch (const std::exception& exception) {
    outcome.kind = Outcome::Kind::standardException;
    outcome.text = exception.what();
  } catch (...) {
    outcome.kind = Outcome::Kind::otherException;
  }
  return outcome;
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, Outcome::Kind kind) {
  switch (kind) {
    case Outcome::Kind::returned:
      return stream << "returned";
    case Outcome::Kind::vorException:
      return stream << "vor exception";
    case Outcome::Kind::standardException:
      return stream << "standard exception";
    case Outcome::Kind::otherException:
      break;
  }
  return stream << "other exception";
}

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
  return stream << outcome.kind << " " << quoted(outcome.text) << "\n" << outcome.all;
}

Outcome outcomeOf(const std::function<std::string()>& operation) {
  Outcome outcome = endOf(operation);
  Journal& journal = Journal::current();
  outcome.calls = journal.calls();
  outcome.log = journal.log();
  outcome.output = journal.output();
  outcome.all = journal.all();
  return outcome;
}

}  // namespace support
