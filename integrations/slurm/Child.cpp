#include "integrations/slurm/Child.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

#include "integrations/slurm/Lines.h"

namespace slurm {
namespace {

/// The group of the child that is under way, or 0.
std::atomic<pid_t> group{0};

/// After the last signal, a process that the kernel does not let go is left to it.
constexpr Duration kAfterKill{50};

class File {
 public:
  explicit File(int file = -1) : m_file(file) {}
  ~File() { close(); }
  File(File&& other) noexcept : m_file(std::exchange(other.m_file, -1)) {}
  File& operator=(File&& other) noexcept {
    std::swap(m_file, other.m_file);
    return *this;
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  int get() const { return m_file; }
  bool isOpen() const { return m_file >= 0; }
  void close() {
    if (m_file >= 0) ::close(std::exchange(m_file, -1));
  }

 private:
  int m_file;
};

struct Pipe {
  File read;
  File write;

  bool open() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return false;
    read = File(ends[0]);
    write = File(ends[1]);
    return true;
  }
};

std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (const std::string& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

/// Reads what there is. Not open any more when the other end is closed.
void drain(File& file, Lines& lines) {
  std::array<char, 65536> buffer{};
  const ssize_t size = ::read(file.get(), buffer.data(), buffer.size());
  if (size > 0) lines.add({buffer.data(), static_cast<std::size_t>(size)});
  if (size == 0 || (size < 0 && errno != EINTR && errno != EAGAIN)) file.close();
}

/// What the one end of a child has: nothing here may allocate, as this is the child after `fork`.
[[noreturn]] void becomeChild(char* const* arguments, char* const* environment, int output,
                              int errors, int trouble, pid_t parent) {
  ::setpgid(0, 0);
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (::getppid() != parent) ::_exit(127);
  const int nothing = ::open("/dev/null", O_RDONLY);
  if (nothing >= 0 && ::dup2(nothing, 0) == 0 && ::dup2(output, 1) == 1 && ::dup2(errors, 2) == 2) {
    for (const int one : {SIGALRM, SIGCHLD, SIGHUP, SIGINT, SIGPIPE, SIGTERM})
      ::signal(one, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::execve(arguments[0], arguments, environment);
  }
  const int why = errno;
  const ssize_t ignored = ::write(trouble, &why, sizeof why);
  static_cast<void>(ignored);
  ::_exit(127);
}

class Run {
 public:
  Run(const Clock& clock, Duration terminate, Duration kill, const LineTaker& output,
      const LineTaker& errors)
      : m_clock(clock),
        m_terminate(terminate),
        m_kill(kill),
        m_outputLines(output),
        m_errorLines(errors) {}

  ChildResult operator()(const Command& command) {
    block();
    ChildResult result = start(command) ? watch() : failure();
    unblock();
    return result;
  }

 private:
  /// That the child has ended is to be read, not to interrupt.
  void block() {
    sigset_t child;
    sigemptyset(&child);
    sigaddset(&child, SIGCHLD);
    ::sigprocmask(SIG_BLOCK, &child, &m_before);
    m_ended = File(::signalfd(-1, &child, SFD_CLOEXEC | SFD_NONBLOCK));
  }

  void unblock() { ::sigprocmask(SIG_SETMASK, &m_before, nullptr); }

  ChildResult failure() const { return {ChildEnd::kNotStarted, m_why, std::strerror(m_why)}; }

  bool start(const Command& command) {
    Pipe output;
    Pipe errors;
    Pipe trouble;
    if (!m_ended.isOpen() || !output.open() || !errors.open() || !trouble.open()) {
      m_why = errno;
      return false;
    }
    const std::vector<char*> arguments = pointersTo(command.arguments);
    const std::vector<char*> environment = pointersTo(command.environment);
    const pid_t parent = ::getpid();
    m_child = ::fork();
    if (m_child == 0)
      becomeChild(arguments.data(), environment.data(), output.write.get(), errors.write.get(),
                  trouble.write.get(), parent);
    m_why = errno;
    if (m_child < 0) return false;
    ::setpgid(m_child, m_child);
    group = m_child;
    m_output = std::move(output.read);
    m_errors = std::move(errors.read);
    trouble.write.close();
    return hasStarted(trouble.read);
  }

  /// Where the program could not be executed, it says why.
  bool hasStarted(const File& trouble) {
    if (::read(trouble.get(), &m_why, sizeof m_why) != static_cast<ssize_t>(sizeof m_why))
      return true;
    group = 0;
    ::waitpid(m_child, nullptr, 0);
    return false;
  }

  ChildResult watch() {
    while (!hasEnded() && m_clock.elapsed() < m_kill + kAfterKill) {
      wait();
      hurry();
    }
    // What it has left behind ends with it.
    killChild();
    group = 0;
    readRest();
    if (m_result.end == ChildEnd::kNotStarted) m_result.end = ChildEnd::kTimedOut;
    return m_result;
  }

  bool hasEnded() {
    int status = 0;
    const pid_t found = ::waitpid(m_child, &status, WNOHANG);
    if (found != m_child) return false;
    m_result.end = m_isHurried         ? ChildEnd::kTimedOut
                   : WIFEXITED(status) ? ChildEnd::kExited
                                       : ChildEnd::kSignalled;
    m_result.code = WIFEXITED(status) ? WEXITSTATUS(status) : WTERMSIG(status);
    return true;
  }

  Duration untilNext() const {
    const Duration now = m_clock.elapsed();
    const Duration next = now < m_terminate ? m_terminate
                          : now < m_kill    ? m_kill
                                            : m_kill + kAfterKill;
    return std::max(Duration(1), next - now);
  }

  void wait() {
    std::array<pollfd, 3> files{
        {{m_ended.get(), POLLIN, 0}, {m_output.get(), POLLIN, 0}, {m_errors.get(), POLLIN, 0}}};
    ::poll(files.data(), files.size(), static_cast<int>(untilNext().count()));
    if (files[1].revents != 0) drain(m_output, m_outputLines);
    if (files[2].revents != 0) drain(m_errors, m_errorLines);
    std::array<char, sizeof(signalfd_siginfo)> told{};
    const ssize_t ignored = ::read(m_ended.get(), told.data(), told.size());
    static_cast<void>(ignored);
  }

  void hurry() {
    const Duration now = m_clock.elapsed();
    if (now >= m_terminate && !std::exchange(m_isHurried, m_isHurried || now >= m_terminate))
      ::kill(m_child, SIGTERM);
    if (now >= m_kill) killChild();
  }

  /// The pipes' content; who else holds their other ends is not waited for.
  void readRest() {
    for (auto* const one : {&m_output, &m_errors}) {
      Lines& lines = one == &m_output ? m_outputLines : m_errorLines;
      if (one->isOpen()) ::fcntl(one->get(), F_SETFL, O_NONBLOCK);
      for (bool isMore = one->isOpen(); isMore;) {
        pollfd file{one->get(), POLLIN, 0};
        isMore = ::poll(&file, 1, 0) > 0 && m_clock.elapsed() < m_kill + kAfterKill;
        if (isMore) drain(*one, lines);
        isMore = isMore && one->isOpen();
      }
      lines.finish();
    }
  }

  const Clock& m_clock;
  const Duration m_terminate;
  const Duration m_kill;
  Lines m_outputLines;
  Lines m_errorLines;
  File m_ended;
  File m_output;
  File m_errors;
  pid_t m_child = -1;
  sigset_t m_before{};
  int m_why = 0;
  bool m_isHurried = false;
  ChildResult m_result;
};

}  // namespace

ChildResult runChild(const Command& command, const Clock& clock, Duration terminate, Duration kill,
                     const LineTaker& output, const LineTaker& errors) {
  return Run(clock, terminate, kill, output, errors)(command);
}

void killChild() noexcept {
  const pid_t one = group;
  if (one > 0) ::kill(-one, SIGKILL);
}

}  // namespace slurm
