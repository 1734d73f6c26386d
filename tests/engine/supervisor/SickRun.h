#pragma once

#include <functional>
#include <string>
#include <vector>

#include "engine/Engine.h"

/// Runs of the installation with a sick provider and a sound one.
namespace sick {

/// Keeps all events, and may look at each as it comes.
class Events : public engine::EventSink {
 public:
  std::function<void(const engine::Event&)> onEvent;
  std::vector<engine::Event> all;

  void take(const engine::Event& event) override;

  /// Those of one kind of one run of a test, or of the run as a whole.
  template <class Body>
  std::vector<Body> of(std::uint64_t test) const {
    std::vector<Body> found;
    for (const engine::Event& event : all) {
      const Body* const body = event.test == test ? std::get_if<Body>(&event.body) : nullptr;
      if (body != nullptr) found.push_back(*body);
    }
    return found;
  }

  /// What does not keep to the order of events; empty where all does.
  std::string disorder() const;
};

/// What befalls the provider in all workers that start while this is there.
class Sickness {
 public:
  explicit Sickness(const std::string& text);
  Sickness(const Sickness&) = delete;
  Sickness& operator=(const Sickness&) = delete;
  ~Sickness();
};

/// An engine on that installation, whose limits are short.
engine::Engine makeEngine();

/// Both tests, the sick one first, with this limit for that and this grace, in milliseconds.
engine::Plan bothTests(int timeout, int grace);

/// The offer as it is in health.
std::vector<engine::OfferedTest> offer();

/// How many processes there are that a worker of this process started; those that were killed are
/// given a moment to go. On Windows nobody looks.
std::size_t leftProcesses();

}  // namespace sick
