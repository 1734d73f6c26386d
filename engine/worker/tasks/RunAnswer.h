#pragma once

#include <optional>
#include <string>

#include "engine/events/Event.h"
#include "engine/worker/tasks/Thrown.h"

namespace engine::tasks {

/// What came of a run.
struct RunAnswer {
  std::string text;         ///< the runner's answer, without blanks around it
  std::string exception;    ///< of one that ended the run; empty for none
  Thrown thrown;            ///< what the last provider threw meanwhile, whoever caught it
  std::string brief;        ///< the verdict in brackets
  std::string remark;       ///< the record in one line
  std::string record;       ///< the record's data
  std::string state;        ///< the record's completion state, by its name
  std::string recordClass;  ///< the record's class
  bool wasStopped = false;  ///< the run was told to end
};

/// Whether the runner's answer is a verdict.
bool isVerdict(const std::string& text);

/// Whether it is the record of a test that comes with this program: its class has the name of the
/// schema's owner in front.
bool isOurs(const std::string& recordClass);

/// How the test ended. One that was told to end is never faulty hardware, and neither is one of our
/// own that ends with a warning: its text is "Warning", where the runner, which has no word for it,
/// says "Fail".
Ended endOf(const RunAnswer& answer);

/// Errors of the machine were counted during the run: a pass of a test that comes with this program
/// is one with a warning then. What others answer for is left as they said it.
void doubt(Ended& ended, const RunAnswer& answer);

/// Why there is no verdict; nothing where there is one, or where the run was told to end.
std::optional<Error> errorOf(const RunAnswer& answer);

}  // namespace engine::tasks
