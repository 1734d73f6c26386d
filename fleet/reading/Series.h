#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "fleet/reading/Names.h"

namespace fleet {

/// How much of one stream is read. What is beyond is told and passed over.
struct Limits {
  std::size_t tests = 10'000;                             ///< that are kept, or open at once
  std::size_t measurements = 200'000;                     ///< of different names
  std::size_t nameBytes = std::size_t{32} * 1024 * 1024;  ///< of theirs
};

/// What is measured on each machine that has it: numbers of names.
struct Series {
  std::uint32_t test = 0;
  std::uint32_t device = 0;  ///< of the test
  std::uint32_t measurement = 0;
  std::uint32_t unit = 0;
  std::uint32_t place = 0;  ///< the part that was measured: its place, or else its name
  std::uint32_t model = 0;  ///< of that part, or else of the machine
};

/// A measured value of a machine: the mean of all that were measured.
struct Value {
  std::uint32_t series = 0;
  float value = 0;
};

/// A test on a device of a machine: the numbers of both names.
constexpr std::uint64_t ownerOf(std::uint32_t test, std::uint32_t device) {
  return (static_cast<std::uint64_t>(test) << 32U) | device;
}

/// The names and series of all streams. Any thread may call it.
class Tables {
 public:
  Names names;

  std::uint32_t seriesOf(const Series& series);
  /// The test and device of each value's series.
  std::vector<std::uint64_t> ownersOf(const std::vector<Value>& values) const;
  /// To be read when no thread adds any more.
  const std::deque<Series>& series() const { return m_series; }

 private:
  mutable std::mutex m_mutex;
  std::deque<Series> m_series;
  std::unordered_map<std::string, std::uint32_t> m_numbers;
};

/// The series that were met last, by their names, so that the tables are asked once for each. What
/// a single stream may add to it, and with it to the tables, is limited. It serves one thread.
class KnownSeries {
 public:
  /// Before each stream: what has grown larger than one may be is forgotten.
  void beginStream(const Limits& limits);
  std::optional<std::uint32_t> find(const std::string& key) const;
  /// Whether the stream may still add this one.
  bool hasRoomFor(const std::string& key, const Limits& limits) const;
  void add(const std::string& key, std::uint32_t series);

 private:
  std::unordered_map<std::string, std::uint32_t> m_series;
  std::size_t m_bytes = 0;        ///< of all keys
  std::size_t m_added = 0;        ///< by the stream that is being read
  std::size_t m_bytesBefore = 0;  ///< when it began
};

/// Puts together what is measured of one machine, a series at a time. It serves one stream after
/// the other, on one thread.
class Sums {
 public:
  /// False where it would be more series than `most`.
  bool add(std::uint32_t series, double value, std::size_t most);
  /// The means, and makes room for the next stream.
  std::vector<Value> take();

 private:
  struct Sum {
    std::uint32_t series;
    std::uint32_t count;
    double sum;
  };
  std::vector<Sum> m_sums;
  std::vector<std::uint32_t> m_places;  ///< by series: in `m_sums`, from 1
};

}  // namespace fleet
