#include "engine/process/ChildProcess.h"

#include <array>
#include <csignal>
#include <new>
#include <stdexcept>

#include "engine/process/ChildSignal.h"
#include "engine/process/PipeSignal.h"
#include "engine/process/ProgramError.h"

namespace engine {
namespace {

/// How long the pipes of a process that has ended may stay open: others hold them then.
constexpr double kPatience = 0.5;

constexpr std::size_t kOutput = 1;
constexpr std::size_t kError = 2;
constexpr std::size_t kToChild = 3;
constexpr std::size_t kFromChild = 4;
constexpr std::size_t kPipes = 5;

struct Sending {
  uv_write_t request;
  std::string bytes;
};

[[noreturn]] void refuse(const std::string& program, int failure) {
  const std::string text = program + " cannot be started: " + uv_strerror(failure);
  for (const int passing : {UV_ENOMEM, UV_EAGAIN, UV_EMFILE, UV_ENFILE}) {
    if (failure == passing) throw std::runtime_error(text);
  }
  throw ProgramError(text);
}

/// This process's environment with the variables put to it, as "NAME=VALUE".
std::vector<std::string> environmentWith(
    const std::vector<std::pair<std::string, std::string>>& variables) {
  std::vector<std::string> all;
  uv_env_item_t* items = nullptr;
  int count = 0;
  if (uv_os_environ(&items, &count) != 0) throw std::bad_alloc();
  for (int i = 0; i < count; ++i) {
    const std::string name = items[i].name;
    bool isReplaced = false;
    for (const auto& variable : variables) isReplaced = isReplaced || variable.first == name;
    if (!isReplaced) all.push_back(name + "=" + items[i].value);
  }
  uv_os_free_environ(items, count);
  for (const auto& variable : variables) all.push_back(variable.first + "=" + variable.second);
  return all;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(&text[0]);
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

/// The pipes outlive the child by the moment that closing takes.
class ChildProcess::Pipes {
 public:
  Pipes(Loop& loop, ChildProcess& child) : m_child(&child) {
    for (std::size_t i = kOutput; i < kPipes; ++i) {
      uv_pipe_init(loop.handle(), &m_pipes[i], 0);
      m_pipes[i].data = this;
      ++m_open;
    }
  }

  std::vector<uv_stdio_container_t> forChild(int shared) {
    std::vector<uv_stdio_container_t> all(shared < 0 ? kPipes : kPipes + 1);
    all[0].flags = UV_IGNORE;
    for (std::size_t i = kOutput; i < kPipes; ++i) {
      const auto direction = i == kToChild ? UV_READABLE_PIPE : UV_WRITABLE_PIPE;
      all[i].flags = static_cast<uv_stdio_flags>(UV_CREATE_PIPE | direction);
      all[i].data.stream = stream(i);
    }
    if (shared >= 0) {
      all[kPipes].flags = UV_INHERIT_FD;
      all[kPipes].data.fd = shared;
    }
    return all;
  }

  void startReading() {
    for (const std::size_t i : {kOutput, kError, kFromChild}) {
      uv_read_start(stream(i), provideRoom, takeBytes);
      ++m_reading;
    }
  }

  void send(std::string bytes) {
    if (isClosing(kToChild)) return;
    auto* const sending = new Sending{{}, std::move(bytes)};
    uv_buf_t buffer = uv_buf_init(&sending->bytes[0], static_cast<unsigned>(sending->bytes.size()));
    sending->request.data = sending;
    const auto done = [](uv_write_t* request, int) { delete static_cast<Sending*>(request->data); };
    const NoPipeSignal quiet;
    if (uv_write(&sending->request, stream(kToChild), &buffer, 1, done) != 0) delete sending;
  }

  bool isReadOut() const { return m_reading == 0; }

  /// Nobody hears of the child any more; deletes itself when all is closed.
  void abandon() {
    m_child = nullptr;
    for (std::size_t i = kOutput; i < kPipes; ++i) close(i);
  }

 private:
  uv_stream_t* stream(std::size_t i) { return reinterpret_cast<uv_stream_t*>(&m_pipes[i]); }
  uv_handle_t* handle(std::size_t i) { return reinterpret_cast<uv_handle_t*>(&m_pipes[i]); }
  bool isClosing(std::size_t i) { return uv_is_closing(handle(i)) != 0; }

  void close(std::size_t i) {
    if (isClosing(i)) return;
    uv_close(handle(i), [](uv_handle_t* closed) {
      auto* const self = static_cast<Pipes*>(closed->data);
      if (--self->m_open == 0) delete self;
    });
  }

  static void provideRoom(uv_handle_t* handle, std::size_t, uv_buf_t* room) {
    auto& buffer = static_cast<Pipes*>(handle->data)->m_buffer;
    *room = uv_buf_init(buffer.data(), static_cast<unsigned>(buffer.size()));
  }

  static void takeBytes(uv_stream_t* from, ssize_t count, const uv_buf_t* room) {
    auto* const self = static_cast<Pipes*>(from->data);
    if (count == 0 || self->m_child == nullptr) return;
    const auto index =
        static_cast<std::size_t>(reinterpret_cast<uv_pipe_t*>(from) - self->m_pipes.data());
    if (count > 0) {
      self->deliver(index, std::string_view(room->base, static_cast<std::size_t>(count)));
    } else {
      self->endOf(index);
    }
  }

  void deliver(std::size_t index, std::string_view bytes) {
    ChildListener& listener = m_child->m_listener;
    m_child->m_loop.call([&] {
      if (index == kOutput) listener.onOutput(bytes);
      if (index == kError) listener.onErrorOutput(bytes);
      if (index == kFromChild) listener.onReply(bytes);
    });
  }

  void endOf(std::size_t index) {
    --m_reading;
    close(index);
    m_child->tellEndOnceRead();
  }

  ChildProcess* m_child;
  std::array<uv_pipe_t, kPipes> m_pipes;
  std::array<char, 65536> m_buffer;
  int m_open = 0;
  int m_reading = 0;
};

namespace {

int spawn(uv_loop_t* loop, uv_process_t* process, const uv_process_options_t& options) {
  const ChildSignalTurn turn;
  return uv_spawn(loop, process, &options);
}

void forget(uv_process_t* process) {
  const ChildSignalTurn turn;
  uv_close(reinterpret_cast<uv_handle_t*>(process),
           [](uv_handle_t* handle) { delete reinterpret_cast<uv_process_t*>(handle); });
}

}  // namespace

ChildProcess::ChildProcess(Loop& loop, const Command& command, ChildListener& listener)
    : m_loop(loop),
      m_listener(listener),
      m_pipes(new Pipes(loop, *this)),
      m_process(new uv_process_t),
      m_patience(loop) {
  std::vector<std::string> arguments = command.arguments;
  arguments.insert(arguments.begin(), command.program);
  std::vector<std::string> environment = environmentWith(command.environment);
  const std::vector<char*> argumentPointers = pointersTo(arguments);
  const std::vector<char*> environmentPointers = pointersTo(environment);
  std::vector<uv_stdio_container_t> stdio = m_pipes->forChild(command.shared);

  uv_process_options_t options = {};
  options.file = command.program.c_str();
  options.args = const_cast<char**>(argumentPointers.data());
  options.env = const_cast<char**>(environmentPointers.data());
  options.stdio = stdio.data();
  options.stdio_count = static_cast<int>(stdio.size());
  options.flags = UV_PROCESS_WINDOWS_HIDE;
#if !defined(_WIN32)
  options.flags |=
      UV_PROCESS_DETACHED;  // a session of its own; on Windows the job would not hold it
#endif
  options.exit_cb = [](uv_process_t* process, std::int64_t status, int signal) {
    if (process->data == nullptr) return;
    static_cast<ChildProcess*>(process->data)->noteEnd({status, signal});
  };
  m_process->data = this;
  const int failure = spawn(loop.handle(), m_process, options);
  if (failure != 0) {
    m_pipes->abandon();
    forget(m_process);
    refuse(command.program, failure);
  }
  m_id = m_process->pid;
  m_pipes->startReading();
}

ChildProcess::~ChildProcess() {
  if (!m_hasEnded) askToEnd();
  m_process->data = nullptr;
  forget(m_process);
  m_pipes->abandon();
}

void ChildProcess::send(std::string bytes) { m_pipes->send(std::move(bytes)); }

void ChildProcess::signal(int number) {
  if (!m_hasEnded) uv_process_kill(m_process, number);
}

void ChildProcess::noteEnd(const ProcessEnd& end) {
  m_hasEnded = true;
  m_end = end;
  m_patience.start(kPatience, [this] { m_listener.onEnd(m_end); });
  tellEndOnceRead();
}

/// The end is told from the timer, never from within another call of the listener's.
void ChildProcess::tellEndOnceRead() {
  if (m_hasEnded && m_pipes->isReadOut()) {
    m_patience.start(0, [this] { m_listener.onEnd(m_end); });
  }
}

}  // namespace engine
