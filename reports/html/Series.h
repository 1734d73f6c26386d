#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/events/Event.h"

namespace reports::html {

/// The values of one measurement in their order. However many there are, it stays small: once it is
/// full, neighbours share a place, which knows its least and its most, so that no outlier is lost.
class Series {
 public:
  /// Some values that followed each other.
  struct Place {
    double least = 0;
    double most = 0;
    double sum = 0;
    std::uint64_t count = 0;
    bool isOutside = false;  ///< one of them was beyond its limits

    double mean() const { return sum / static_cast<double>(count); }
  };

  /// `name`, `part` and `unit` are those of the first one.
  explicit Series(const engine::Measurement& first);

  bool isOf(const engine::Measurement& measurement) const;
  void add(const engine::Measurement& measurement);

  const std::string& name() const { return m_latest.name; }
  const std::string& part() const { return m_latest.part; }
  const std::string& unit() const { return m_latest.unit; }

  /// The latest one, with its limits.
  const engine::Measurement& latest() const { return m_latest; }

  /// All values, numbers or not; and those beyond their limits.
  std::uint64_t count() const { return m_count; }
  std::uint64_t outside() const { return m_outside; }

  /// The numbers among the values.
  const std::vector<Place>& places() const { return m_places; }
  double least() const { return m_least; }
  double most() const { return m_most; }

 private:
  void addNumber(double number, bool isOutside);
  void share();

  engine::Measurement m_latest;
  std::vector<Place> m_places;
  std::uint64_t m_each = 1;  ///< how many values a place holds
  std::uint64_t m_count = 0;
  std::uint64_t m_outside = 0;
  double m_least = 0;
  double m_most = 0;
};

/// Whether the value is a number beyond the limits.
bool isBeyondLimits(const engine::Measurement& measurement);

}  // namespace reports::html
