#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "engine/events/Event.h"

namespace engine {

/// A line that is no event; the text names the field and says what is wrong with it.
class NoEvent : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The event as one JSON text without a line end, by `docs/events.schema.json`: `sequence`, `time`,
/// `source`, `testId` unless it is 0, and what happened under the name of its kind. Bytes that are
/// no UTF-8 become U+FFFD. Throws `std::bad_alloc` alone.
std::string lineOf(const Event& event);

/// The event that such a text stands for. Members that it does not know are passed over: a later
/// version may have more of them. Throws `NoEvent`.
Event eventFrom(std::string_view line);

}  // namespace engine
