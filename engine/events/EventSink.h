#pragma once

#include "engine/events/Event.h"

namespace engine {

/// Takes the events of a run, one after the other: a display, a writer of a report, the history.
class EventSink {
 public:
  EventSink() = default;
  EventSink(const EventSink&) = delete;
  EventSink& operator=(const EventSink&) = delete;
  virtual ~EventSink() = default;

  /// The events of one run come in their order, from one thread at a time. Throws
  /// `std::runtime_error` that names the file where it cannot be written; the sink is left out from
  /// then on, and the run goes on.
  virtual void take(const Event& event) = 0;
};

}  // namespace engine
