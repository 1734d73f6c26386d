#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/plan/LimitWatch.h"
#include "engine/plan/Sequence.h"
#include "engine/supervisor/EventStream.h"
#include "engine/supervisor/WorkerCall.h"

namespace engine {

/// One run of one test in a worker of its own. Everything becomes events; the last one of the test
/// is its `Ended`, whatever the worker does.
class RunningTest : private CallListener {
 public:
  /// What a test needs to know of its run.
  struct Course {
    Loop& loop;
    EventStream& events;
    WorkerProgram program;
    InstallationOptions installation;
    std::optional<std::uint64_t> threadedMinutes;
    double listSeconds;  ///< what the listing may take, which comes before the test
    int logLevel;
    /// The test is over, with this outcome; its worker may still be cleaning up.
    std::function<void(const PlannedRun&, Outcome)> onOver;
    /// A provider was ended because it did not come to an end of cleaning up.
    std::function<void(const std::string& provider)> onDawdling;
  };

  /// Starts the worker. Throws nothing but `std::bad_alloc`: where it cannot be started, the test
  /// is over by an error. `id` numbers it among the events; the course outlives it.
  RunningTest(const Course& course, const PlannedRun& run, std::uint64_t id);
  RunningTest(const RunningTest&) = delete;
  RunningTest& operator=(const RunningTest&) = delete;
  ~RunningTest() override;

  /// Ends it in good order, because of `why`; it is the user's wish, or the time of the whole run
  /// is up.
  void stop(const std::string& why);
  /// Ends its worker now.
  void end();

  /// The worker is gone, too.
  bool isGone() const { return m_isGone; }
  bool isOver() const { return m_isOver; }

 private:
  void begin();
  bool isForWantOfOthers(const CallEnd& end) const;
  void goOnWithout(const Error& error);
  void onReply(Reply&& reply) override;
  void onLine(Stream stream, std::string&& text, bool isPart) override;
  void onDone(const Done& done) override;
  void onEnd(const CallEnd& end) override;
  void take(Happened&& happened);
  void fail(Error error);
  void finish();
  void tellTimeUp();
  void complainAboutLimits(Ended& ended);
  void put(Body body, Source source = Source::kEngine);
  Ended endOfBroken() const;

  const Course& m_course;
  PlannedRun m_run;
  std::uint64_t m_id;
  std::chrono::steady_clock::time_point m_start;
  std::unique_ptr<WorkerCall> m_call;
  std::optional<Ended> m_answer;
  Timer m_again;
  std::vector<std::string> m_without;  ///< providers that did not survive the listing
  std::vector<Error> m_listingErrors;
  LimitWatch m_limits;
  bool m_isListed = false;
  bool m_hasError = false;
  bool m_isStopped = false;
  bool m_isOver = false;
  bool m_isGone = false;
};

}  // namespace engine
