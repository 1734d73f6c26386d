#pragma once

#include <optional>

#include "engine/protocol/Messages.h"

namespace engine {

/// Where a worker is: a little memory that it shares with its supervisor, who looks it up when it
/// has to know. A message at each call of a provider would wake the supervisor up hundreds of times
/// to tell it what it asks for once. Where there is none, as on Windows, `Entered` messages stand
/// for it.
///
/// The supervisor makes and reads it, on one thread; the worker writes it, on any.
class PlaceRecord {
 public:
  /// The number that the worker finds it under.
  static constexpr int kDescriptor = 5;

  /// A record of nowhere; one that is not open where the system has none.
  static PlaceRecord make() noexcept;

  /// Whether a descriptor is one of these, and nothing else that happens to be open.
  static bool isRecord(int descriptor) noexcept;

  /// Takes over a descriptor; a negative one stands for none.
  explicit PlaceRecord(int descriptor = -1) noexcept : m_descriptor(descriptor) {}
  PlaceRecord(PlaceRecord&& other) noexcept;
  PlaceRecord& operator=(PlaceRecord&& other) noexcept;
  ~PlaceRecord();

  /// Negative where it is not open.
  int descriptor() const { return m_descriptor; }

  /// Writes one that may be shared with a supervisor. False where the descriptor is none, as a
  /// provider may have closed it and opened a file of its own under the number; and where the names
  /// are too long: the record is then of nowhere.
  static bool write(int descriptor, const char* provider, const char* operation) noexcept;

  /// Empty before the first entry.
  std::optional<Entered> read() const;

 private:
  int m_descriptor;
};

}  // namespace engine
