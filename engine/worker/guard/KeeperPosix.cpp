#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "engine/worker/guard/Keeper.h"

namespace engine::guard {
namespace {

constexpr int kFromSupervisor = 3;
/// How long a worker that was asked to end may take before it is killed.
constexpr int kPatienceMilliseconds = 200;
/// What cannot be killed for so long waits for a device; nobody can help that.
constexpr int kMostRounds = 500;
constexpr int kRoundMilliseconds = 10;

/// Where memory runs out, the worker goes first, and neither its keeper nor its supervisor.
void offerToBeKilled() { std::ofstream("/proc/self/oom_score_adj") << "1000"; }

void becomeWorker(pid_t keeper, const sigset_t& formerMask) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != keeper) std::_Exit(EXIT_FAILURE);
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

void killChildren() {
  const pid_t self = getpid();
  std::error_code failure;
  for (std::filesystem::directory_iterator it("/proc", failure), end; !failure && it != end;
       it.increment(failure)) {
    const int id = std::atoi(it->path().filename().c_str());
    if (id > 1 && parentOf(it->path()) == self) ::kill(id, SIGKILL);
  }
}

/// Watches over one worker.
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

  /// What the worker started has become this process's, child by child, as its parents end.
  static void endTheRest() {
    for (int round = 0; round < kMostRounds; ++round) {
      const pid_t ended = waitpid(-1, nullptr, WNOHANG);
      if (ended < 0) return;
      if (ended > 0) continue;
      killChildren();
      usleep(kRoundMilliseconds * 1000 / (round < 10 ? 10 : 1));
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

}  // namespace

void stayKept() {
  if (fcntl(kFromSupervisor, F_GETFD) < 0) return;  // nobody to be kept for
  const pid_t supervisor = getppid();
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  sigset_t signals;
  sigset_t formerMask;
  sigemptyset(&signals);
  for (const int number : {SIGCHLD, SIGTERM, SIGINT, SIGHUP, SIGQUIT}) sigaddset(&signals, number);
  sigprocmask(SIG_BLOCK, &signals, &formerMask);
  const pid_t keeper = getpid();
  const pid_t worker = fork();
  if (worker == 0) return becomeWorker(keeper, formerMask);
  if (worker < 0) std::_Exit(EXIT_FAILURE);
  Keeper(worker, supervisor, signals).watch();
}

}  // namespace engine::guard
