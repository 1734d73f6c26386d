#pragma once

#include <uv.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/process/Loop.h"

namespace engine {

/// What to start. Texts are UTF-8.
struct Command {
  std::string program;  ///< its path
  std::vector<std::string> arguments;
  /// Put to what this process has in its environment, or in its place.
  std::vector<std::pair<std::string, std::string>> environment;
  int shared = -1;  ///< where it is not negative, the child has it as its descriptor 5
};

/// How a process ended: by a signal, or with a status (on Windows, that of an exception too).
struct ProcessEnd {
  std::int64_t status = 0;
  int signal = 0;
};

/// Hears of a child, on the thread of its loop. The child may be let go of in any of these calls.
class ChildListener {
 public:
  virtual ~ChildListener() = default;
  virtual void onReply(std::string_view bytes) = 0;
  virtual void onOutput(std::string_view bytes) = 0;
  virtual void onErrorOutput(std::string_view bytes) = 0;
  /// The last call: the process has ended, and everything that it wrote has come, but for what
  /// comes more than half a second later from others that keep its pipes open.
  virtual void onEnd(const ProcessEnd& end) = 0;
};

/// A child process that hears us on its descriptor 3 and answers on its descriptor 4. Its standard
/// output and error are read, its standard input is empty. It has a session of its own, so that no
/// key that is pressed in the terminal reaches it.
class ChildProcess {
 public:
  /// Throws `std::runtime_error` that names the program where it cannot be started: `ProgramError`
  /// where it could not be at any time. `loop` and `listener` outlive the child.
  ChildProcess(Loop& loop, const Command& command, ChildListener& listener);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  /// Lets go of it: its pipes close, and the process is asked to end.
  ~ChildProcess();

  /// Hands the bytes over, as soon as the child takes them; one that has ended takes none.
  void send(std::string bytes);

  /// Asks the process to end (SIGTERM); on Windows ends it.
  void askToEnd() { signal(SIGTERM); }
  void kill() { signal(SIGKILL); }

  int id() const { return m_id; }

 private:
  class Pipes;
  void signal(int number);
  void noteEnd(const ProcessEnd& end);
  void tellEndOnceRead();

  Loop& m_loop;
  ChildListener& m_listener;
  Pipes* m_pipes;
  uv_process_t* m_process;
  Timer m_patience;
  int m_id = 0;
  bool m_hasEnded = false;
  ProcessEnd m_end;
};

}  // namespace engine
