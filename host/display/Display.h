#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "engine/events/EventSink.h"
#include "host/display/DisplayStyle.h"
#include "host/display/LivePart.h"
#include "host/display/TestLine.h"
#include "host/display/Wording.h"

namespace host {

/// Shows a run while it goes on: on a terminal a line a test, which is drawn anew until its verdict
/// stands there, else plain lines. Of several tests at once, plain lines say anew which one they
/// are about. Whatever the events hold is made safe for a terminal. May be called from several
/// threads.
class Display : public engine::EventSink {
 public:
  /// The answer goes to `out`, errors to `err`; both have to live as long.
  Display(std::ostream& out, std::ostream& err, DisplayStyle style);

  /// Of a run that has no end, how far its tests were stays to be seen.
  ~Display() override;

  /// Throws `std::runtime_error` when standard output cannot be written.
  void take(const engine::Event& event) override;

  /// Draws the lines of running tests anew, as time goes by without events. Does nothing where they
  /// are not drawn anew.
  void tick();

 private:
  using Moment = DisplayStyle::Clock::time_point;

  struct Running {
    RunningTest test;
    Moment start;
    Moment toldAt;
    int toldPercent = -1;
  };

  void begin(const engine::Event& event, const engine::TestStarted& test);
  void progress(Running& running, std::uint64_t number, const engine::Progress& progress);
  void end(const engine::Event& event, const engine::Ended& end);
  void endOfRun();
  void tellVerdict(std::uint64_t number, const Running& running, const engine::Ended& end);
  void tellFinding(std::uint64_t number, const engine::Diagnosis& finding);
  void tellDetail(std::uint64_t number, const std::string& text);
  void tellError(std::uint64_t number, const std::string& error);

  std::string finishedLine(const Running& running, const engine::Ended& end) const;
  std::string coloured(const std::string& text, engine::Outcome outcome) const;
  std::size_t columns() const;
  const std::string& nameOf(std::uint64_t number) const;
  void announce(std::uint64_t number);
  void printLine(const std::string& line);
  void redraw();
  void redrawIfDue();
  void checkOutput();

  std::ostream& m_out;
  std::ostream& m_err;
  DisplayStyle m_style;
  std::mutex m_mutex;
  LivePart m_live;
  std::map<std::uint64_t, Running> m_running;
  std::uint64_t m_announced = 0;  ///< what the lines are about: a test, or 0 for the run
  Moment m_drawn;
  Summary m_summary;
};

}  // namespace host
