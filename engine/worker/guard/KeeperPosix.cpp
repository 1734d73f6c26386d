#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <system_error>

#include "engine/protocol/PlaceRecord.h"
#include "engine/worker/guard/Keeper.h"

namespace engine::guard {
namespace {

constexpr int kFromSupervisor = 3;
/// How long a worker that was asked to end may take before it is killed.
constexpr int kPatienceMilliseconds = 200;
/// What cannot be killed for so long waits for a device; nobody can help that.
constexpr std::chrono::seconds kLastPatience(5);
constexpr unsigned kRoundMicroseconds = 2000;

/// Other than its worker's, so that who ends all workers by their name leaves those who tidy up.
void takeName() { prctl(PR_SET_NAME, "diags-keeper"); }

/// Where memory runs out, the worker goes first, and neither its keeper nor its supervisor.
void offerToBeKilled() { std::ofstream("/proc/self/oom_score_adj") << "1000"; }

void becomeWorker(pid_t keeper, const char* name, const sigset_t& formerMask) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != keeper) std::_Exit(EXIT_FAILURE);
  prctl(PR_SET_NAME, name);
  setpgid(0, 0);
  sigprocmask(SIG_SETMASK, &formerMask, nullptr);
  offerToBeKilled();
}

/// The parent of a process; 0 where it cannot be told. The name in the file may hold anything.
pid_t parentOf(const std::filesystem::path& process) {
  std::ifstream file(process / "stat");
  std::string text;
  std::getline(file, text, '\0');
  const std::size_t nameEnd = text.rfind(')');
  int parent = 0;
  char state = 0;
  if (nameEnd == std::string::npos) return 0;
  return std::sscanf(text.c_str() + nameEnd + 1, " %c %d", &state, &parent) == 2 ? parent : 0;
}

std::map<pid_t, pid_t> parentsOfAll() {
  std::map<pid_t, pid_t> parents;
  std::error_code failure;
  for (std::filesystem::directory_iterator it("/proc", failure), end; !failure && it != end;
       it.increment(failure)) {
    const int id = std::atoi(it->path().filename().c_str());
    if (id > 1) parents[id] = parentOf(it->path());
  }
  return parents;
}

bool isBelow(pid_t ancestor, pid_t process, const std::map<pid_t, pid_t>& parents) {
  std::size_t steps = 0;
  for (auto it = parents.find(process); it != parents.end() && steps <= parents.size(); ++steps) {
    if (it->second == ancestor) return true;
    it = parents.find(it->second);
  }
  return false;
}

/// All that is below this process: children, theirs, and so on.
void killDescendants() {
  const pid_t self = getpid();
  const std::map<pid_t, pid_t> parents = parentsOfAll();
  for (const auto& one : parents) {
    if (isBelow(self, one.first, parents)) ::kill(one.first, SIGKILL);
  }
}

/// What the supervisor has open is none of the worker's affair: a report that is being written, for
/// instance. Only the pipes stay, and the record of where the worker is.
void closeInherited() {
  const unsigned first = PlaceRecord::isRecord(PlaceRecord::kDescriptor) ? 6 : 5;
  if (syscall(SYS_close_range, first, ~0U, 0) == 0) return;
  const long most = sysconf(_SC_OPEN_MAX);
  for (int i = static_cast<int>(first); i < (most < 0 ? 1024 : most); ++i) close(i);
}

/// Watches over one child: the worker, or the keeper that does.
class Keeper {
 public:
  Keeper(pid_t worker, pid_t supervisor, const sigset_t& signals)
      : m_worker(worker), m_signals(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK)) {
    m_supervisor = static_cast<int>(syscall(SYS_pidfd_open, supervisor, 0));
    for (const int descriptor : {0, 1, 2, 4}) close(descriptor);
  }

  [[noreturn]] void watch() {
    while (!m_hasEnded) waitForNews();
    endTheRest();
    endLikeTheWorker();
  }

 private:
  void waitForNews() {
    pollfd places[] = {{m_signals, POLLIN, 0}, {kFromSupervisor, 0, 0}, {m_supervisor, POLLIN, 0}};
    const int ready = poll(places, 3, m_isAsked ? kPatienceMilliseconds : -1);
    if (ready == 0) ::kill(m_worker, SIGKILL);
    if ((places[1].revents & (POLLHUP | POLLERR | POLLNVAL)) != 0 || places[2].revents != 0) {
      ::kill(m_worker, SIGKILL);
      m_isOrphaned = true;
    }
    readSignals();
    reap();
    if (m_isOrphaned && !m_hasEnded) usleep(1000);
  }

  void readSignals() {
    signalfd_siginfo news;
    while (read(m_signals, &news, sizeof news) == static_cast<ssize_t>(sizeof news)) {
      if (news.ssi_signo == SIGCHLD) continue;
      m_isAsked = true;
      ::kill(m_worker, SIGTERM);
    }
  }

  void reap() {
    int status = 0;
    for (pid_t ended = 0; (ended = waitpid(-1, &status, WNOHANG)) > 0;) {
      if (ended != m_worker) continue;
      m_hasEnded = true;
      m_status = status;
    }
  }

  /// What the worker started has become this process's, child by child, as its parents end. What
  /// stayed in the worker's group goes at once, and where there is no /proc, that is all.
  void endTheRest() const {
    ::kill(-m_worker, SIGKILL);
    const auto start = std::chrono::steady_clock::now();
    while (std::chrono::steady_clock::now() - start < kLastPatience) {
      pid_t ended = 0;
      do {
        ended = waitpid(-1, nullptr, WNOHANG);
      } while (ended > 0);
      if (ended < 0) return;
      killDescendants();
      usleep(kRoundMicroseconds);
    }
  }

  [[noreturn]] void endLikeTheWorker() const {
    if (WIFSIGNALED(m_status)) {
      const rlimit none = {0, 0};
      setrlimit(RLIMIT_CORE, &none);
      signal(WTERMSIG(m_status), SIG_DFL);
      sigset_t all;
      sigemptyset(&all);
      sigprocmask(SIG_SETMASK, &all, nullptr);
      ::kill(getpid(), WTERMSIG(m_status));
    }
    std::_Exit(WIFEXITED(m_status) ? WEXITSTATUS(m_status) : EXIT_FAILURE);
  }

  pid_t m_worker;
  int m_signals;
  int m_supervisor;
  bool m_isAsked = false;
  bool m_isOrphaned = false;
  bool m_hasEnded = false;
  int m_status = 0;
};

/// Forks: comes back in the child with this process, which stays behind as its keeper. Either of
/// both takes over what is left below, and what comes of it when the other one is gone.
pid_t keep(const sigset_t& signals) {
  const pid_t supervisor = getppid();
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  const pid_t keeper = getpid();
  const pid_t child = fork();
  if (child == 0) return keeper;
  if (child < 0) std::_Exit(EXIT_FAILURE);
  Keeper(child, supervisor, signals).watch();
}

}  // namespace

void stayKept() {
  if (fcntl(kFromSupervisor, F_GETFD) < 0) return;  // nobody to be kept for
  closeInherited();
  char name[16] = "";  // without memory of its own: there may be none, and no way to say so yet
  prctl(PR_GET_NAME, name);
  takeName();
  sigset_t signals;
  sigset_t formerMask;
  sigemptyset(&signals);
  for (const int number : {SIGCHLD, SIGTERM, SIGINT, SIGHUP, SIGQUIT}) sigaddset(&signals, number);
  sigprocmask(SIG_BLOCK, &signals, &formerMask);
  keep(signals);  // and one who keeps the keeper's place, should it be killed with its supervisor
  setpgid(0, 0);
  becomeWorker(keep(signals), name, formerMask);
}

}  // namespace engine::guard
