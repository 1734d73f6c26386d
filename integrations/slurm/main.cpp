// Slurm's health check, prolog and epilog: docs/slurm.md.
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>

#include "integrations/slurm/Check.h"
#include "integrations/slurm/Child.h"
#include "integrations/slurm/Options.h"
#include "integrations/slurm/SettingError.h"

namespace {

using slurm::Status;

/// What to end with when there is no time left.
volatile std::sig_atomic_t statusAtEnd = Status::kUnfinished;

/// Whatever hangs, a log or a disk: this is the end, and of what was started, too.
void endNow(int) {
  slurm::killChild();
  ::_exit(statusAtEnd);
}

void endAt(slurm::Duration budget) {
  struct sigaction action {};
  action.sa_handler = endNow;
  for (const int one : {SIGALRM, SIGHUP, SIGINT, SIGTERM}) ::sigaction(one, &action, nullptr);
  ::signal(SIGPIPE, SIG_IGN);
  constexpr slurm::Duration kEarly{20};
  const auto left = std::chrono::duration_cast<std::chrono::microseconds>(budget - kEarly).count();
  itimerval timer{};
  timer.it_value.tv_sec = static_cast<time_t>(left / 1'000'000);
  timer.it_value.tv_usec = static_cast<suseconds_t>(left % 1'000'000);
  ::setitimer(ITIMER_REAL, &timer, nullptr);
}

std::string fromEnvironment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

std::string hostName() {
  char name[256] = "";
  if (::gethostname(name, sizeof name - 1) != 0) return "";
  const std::string whole = name;
  return whole.substr(0, whole.find('.'));
}

slurm::Surroundings surroundingsOf(slurm::Settings settings) {
  for (const slurm::Key& key : slurm::settingKeys()) {
    // A name from outside is held to the same rules as one that was written down.
    if (key.text != &slurm::Settings::node || !settings.node.empty()) continue;
    const std::string given = fromEnvironment("SLURMD_NODENAME");
    slurm::set(settings, key, given.empty() ? hostName() : given);
  }
  const std::string conf = fromEnvironment("SLURM_CONF");
  return {settings.node, settings.slurmConf.empty() ? conf : settings.slurmConf};
}

int run(const std::vector<std::string>& arguments, slurm::Verb verb) {
  const slurm::Clock clock;
  const slurm::Log log(slurm::nameOf(verb));
  try {
    const slurm::Request request = slurm::requestFrom(arguments);
    if (request.answer) {
      std::cout << *request.answer << std::flush;
      return Status::kGood;
    }
    endAt(request.settings.budget);
    return slurm::statusFor(
        verb, slurm::check(verb, request.settings, surroundingsOf(request.settings), clock, log));
  } catch (const slurm::SettingError& error) {
    log.tell(slurm::Log::Grade::kError, error.what());
    return slurm::statusFor(verb, Status::kUsage);
  } catch (const std::exception& error) {
    log.tell(slurm::Log::Grade::kError, error.what());
    return slurm::statusFor(verb, Status::kUnfinished);
  }
}

}  // namespace

int main(int count, char** arguments) {
  const std::vector<std::string> all(arguments, arguments + count);
  // Without a verb it is somebody at a terminal: the options say what is missing.
  const auto verb = slurm::verbOf(all);
  statusAtEnd = slurm::statusFor(verb.value_or(slurm::Verb::kHealth), Status::kUnfinished);
  return run(all, verb.value_or(slurm::Verb::kHealth));
}
