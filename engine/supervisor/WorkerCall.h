#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "engine/events/Event.h"
#include "engine/process/ChildProcess.h"
#include "engine/process/LineSplitter.h"
#include "engine/protocol/Messages.h"
#include "engine/protocol/PlaceRecord.h"

namespace engine {

/// Where the worker's program is, and how long it is waited for.
struct WorkerProgram {
  std::string path;
  double grace = 5;  ///< seconds for ending in good order, and for cleaning up
};

/// How the supervisor learns which provider its worker entered.
enum class Places {
  kTold,     ///< each time, in order with all else: what makes no sense comes from the last one
  kLookedUp  ///< when it has to know: a question enters every provider many times
};

/// How a call of a worker ended.
struct CallEnd {
  std::optional<Done> done;    ///< what the worker said last; none: `error` says why not
  std::optional<Error> error;  ///< also where it said that it failed, or ended badly behind `done`
  bool hasDawdled = false;     ///< it was ended while it cleaned up
};

/// Hears of a call, on the thread of its loop.
class CallListener {
 public:
  virtual ~CallListener() = default;
  /// Everything but `Hello`, `Entered`, `Crashed` and `Done`.
  virtual void onReply(Reply&& reply) = 0;
  /// A line that the worker or what it loaded wrote to a standard stream.
  virtual void onLine(Stream stream, std::string&& text, bool isPart) = 0;
  /// The worker has said its last word, and may still be cleaning up.
  virtual void onDone(const Done&) {}
  /// The last call. The worker is gone, and so is all that it started.
  virtual void onEnd(const CallEnd& end) = 0;
};

/// One worker that carries out one request. Whatever it does, the call ends: by its word, by the
/// end of its process, or because its time was up.
class WorkerCall : private ChildListener {
 public:
  /// Throws `std::runtime_error` where the worker cannot be started. `loop` and `listener` outlive
  /// the call, which is not let go of before `onEnd`, and not from within a call of the listener.
  WorkerCall(Loop& loop, const WorkerProgram& program, const Request& request,
             CallListener& listener, Places places);
  ~WorkerCall() override;

  /// When `seconds` are over, the call is stopped, with `Cause::kTimedOut` unless it ends well.
  void limitTo(double seconds);

  /// More than so many bytes in all make no sense: what they say is kept.
  void limitReplies(std::size_t most) { m_mostReplied = most; }

  /// Ends the running test in good order; after the grace, the worker and all that it started.
  void stop();

  /// Ends the worker and all that it started, now.
  void end();

  /// The last provider and operation that the worker entered.
  Entered place() const;
  bool isTimeUp() const { return m_isTimeUp; }
  bool isStopping() const { return m_isStopping; }

 private:
  void onReply(std::string_view bytes) override { m_replies.add(bytes); }
  void onOutput(std::string_view bytes) override { m_output.add(bytes); }
  void onErrorOutput(std::string_view bytes) override { m_errors.add(bytes); }
  void onEnd(const ProcessEnd& end) override;
  void take(std::string&& line, bool isPart);
  void take(Reply&& reply);
  void take(Hello hello);
  void take(Entered&& entered);
  void take(Crashed&& crash);
  void take(Done&& done);
  void refuse(const std::string& why);
  std::optional<Error> errorOf(const ProcessEnd& end) const;
  std::optional<Error> causeOf(const ProcessEnd& end) const;
  void blame(Error& error) const;
  Error memoryError() const;
  bool knowsPlace() const;

  CallListener& m_listener;
  WorkerProgram m_program;
  std::string m_mark;
  PlaceRecord m_record;
  LineSplitter m_replies;
  LineSplitter m_output;
  LineSplitter m_errors;
  Timer m_limit;
  Timer m_patience;
  std::optional<ChildProcess> m_child;

  std::size_t m_mostReplied = 0;  ///< bytes; 0: without a limit
  std::size_t m_replied = 0;
  Entered m_place;  ///< when it was told to stop, or as it said where there is no record
  std::optional<Crashed> m_crash;
  std::optional<Done> m_done;
  std::optional<Error> m_protocolError;
  std::optional<Error> m_memoryError;
  bool m_isStopping = false;
  bool m_isEnding = false;
  bool m_isTimeUp = false;
  bool m_hasDawdled = false;
};

}  // namespace engine
