#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "diagsrunner/DiagsRunner.h"
#include "tests/support/World.h"

namespace support {

inline constexpr int kOtherMode = 0;

/// A call of `GetCIMData`: what it takes, with the values of the test enumeration, and what it
/// gives.
struct Query {
  int mode = DiagsRunner::EENUMTEST;
  NZELVOR20::TCIMValue family = NZELVOR20::TCIMValue("cmpi");
  std::string associationClass = kAvailableService;
  std::string serviceRole = "ServiceProvided";
  std::string elementRole = "UserOfService";
  std::vector<std::string> ids = {};

  /// The answer and the identifiers: `true: A|B|`.
  std::string ask(DiagsRunner& runner) {
    NZELVOR20::TCIMReference ref1({}, {});
    NZELVOR20::TCIMReference ref2({}, {});
    const bool found = runner.GetCIMData(ref1, ref2, associationClass, serviceRole, elementRole, "",
                                         "", "", "", ids, mode, family);
    std::string text = found ? "true: " : "false: ";
    for (const std::string& id : ids) {
      text += id + "|";
    }
    return text;
  }
};

inline std::ostream& operator<<(std::ostream& stream, const Query& query) {
  return stream << query.associationClass << ", mode " << query.mode << ", "
                << query.family.ToString(10);
}

/// The error lines alone of a log.
inline std::string errorsOf(Journal& journal) {
  std::string errors;
  for (const Event& event : journal.events()) {
    if (event.kind == Kind::log && event.text.compare(0, 6, "log 0 ") == 0) {
      errors += event.text + "\n";
    }
  }
  return errors;
}

}  // namespace support
