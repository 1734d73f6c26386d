#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "engine/events/EventSink.h"

namespace engine {

/// Numbers and times the events of a run, and hands each to every sink.
class EventStream {
 public:
  /// The sinks outlive the stream.
  explicit EventStream(std::vector<EventSink*> sinks) : m_sinks(std::move(sinks)) {}

  /// Throws nothing: a sink that fails is left out from then on, and the others are told.
  void put(Source source, std::uint64_t test, Body body);

  /// What the sinks that failed said.
  const std::vector<std::string>& failures() const { return m_failures; }

 private:
  void deliver(const Event& event);

  std::vector<EventSink*> m_sinks;
  std::vector<std::string> m_failures;
  std::uint64_t m_next = 0;
};

}  // namespace engine
