#include "integrations/slurm/Controller.h"

#include <optional>

#include "integrations/slurm/Child.h"
#include "integrations/slurm/Node.h"
#include "integrations/slurm/OwnFile.h"
#include "integrations/slurm/Reason.h"
#include "integrations/slurm/SettingError.h"

namespace slurm {
namespace {

using Grade = Log::Grade;

/// A controller that does not answer is given up a little earlier than it is told to be.
constexpr Duration kToEnd{100};

class Controller {
 public:
  Controller(const Settings& settings, const Surroundings& surroundings, const Clock& clock,
             const Log& log)
      : m_settings(settings), m_surroundings(surroundings), m_clock(clock), m_log(log) {}

  std::optional<NodeState> ask(Duration until) const {
    std::string line;
    const bool isDone = run({"--oneliner", "show", "node", m_surroundings.node}, until,
                            [&line](std::string_view one) {
                              if (line.empty()) line = one;
                            });
    if (!isDone) return std::nullopt;
    std::optional<NodeState> state = nodeStateFrom(line, m_surroundings.node);
    if (!state) m_log.tell(Grade::kError, "scontrol does not tell the state of the node");
    return state;
  }

  bool drain(const std::string& reason, Duration until) const {
    return run({"update", "NodeName=" + m_surroundings.node, "State=DRAIN", "Reason=" + reason},
               until, [](std::string_view) {});
  }

 private:
  Command commandFrom(const std::vector<std::string>& arguments) const {
    Command command{{m_settings.scontrol}, {"PATH=/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL=C"}};
    command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
    if (!m_surroundings.slurmConf.empty())
      command.environment.push_back("SLURM_CONF=" + m_surroundings.slurmConf);
    return command;
  }

  bool run(const std::vector<std::string>& arguments, Duration until,
           const LineTaker& output) const {
    std::string said;
    const ChildResult result = runChild(commandFrom(arguments), m_clock, until - kToEnd, until,
                                        output, [&said](std::string_view line) {
                                          if (said.empty()) said = ": " + std::string(line);
                                        });
    if (result.end == ChildEnd::kExited && result.code == 0) return true;
    const std::string what = "scontrol " + arguments[arguments.front() == "update" ? 0 : 1];
    m_log.tell(Grade::kError,
               result.end == ChildEnd::kTimedOut     ? what + " does not come to an end" + said
               : result.end == ChildEnd::kNotStarted ? what + " did not start: " + result.why
                                                     : what + " failed" + said);
    return false;
  }

  const Settings& m_settings;
  const Surroundings& m_surroundings;
  const Clock& m_clock;
  const Log& m_log;
};

}  // namespace

bool drain(const Settings& settings, const Surroundings& surroundings, const std::string& reason,
           const Clock& clock, const Log& log) {
  try {
    needOwnFile(settings.scontrol);
  } catch (const SettingError& error) {
    log.tell(Grade::kError, error.what());
    return false;
  }
  const Shares shares = sharesOf(settings.budget);
  const Controller controller(settings, surroundings, clock, log);
  const std::optional<NodeState> state = controller.ask(shares.asked);
  if (!state) return false;
  if (state->isDrained) {
    log.tell(Grade::kInfo, surroundings.node + " is drained already (" + state->reason + ")");
    return true;
  }
  if (!controller.drain(reasonBeside(*state, reason), shares.drained)) return false;
  log.tell(Grade::kWarning, surroundings.node + " is drained");
  return true;
}

}  // namespace slurm
