#pragma once

#include <filesystem>
#include <ostream>

namespace host {

/// Where a report is written.
class Destination {
 public:
  Destination() = default;
  Destination(const Destination&) = delete;
  Destination& operator=(const Destination&) = delete;
  virtual ~Destination() = default;

  /// From now on, what is there is the report's. Throws `std::runtime_error` that names the file
  /// where that cannot be.
  virtual void begin() {}

  /// To be written to behind `begin`.
  virtual std::ostream& stream() = 0;

  /// The run has ended, and all of the report has been written. Throws as `begin` does.
  virtual void settle() {}

  /// Whether two writers would write over each other. A device takes as many as there are.
  bool isSameAs(const Destination& other) const;

 protected:
  virtual const std::filesystem::path& path() const = 0;
};

}  // namespace host
