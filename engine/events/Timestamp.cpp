#include "engine/events/Timestamp.h"

#include <algorithm>
#include <cstdint>

namespace engine {
namespace {

using std::chrono::microseconds;

constexpr std::int64_t kMicrosecondsADay = 86'400'000'000;

struct Date {
  std::int64_t year;
  unsigned month;
  unsigned day;
};

// The calendar is counted from the first of March of the year 0, so that the day that a leap year
// adds is its last, in eras of 400 years.
constexpr std::int64_t kDaysAnEra = 146'097;
constexpr std::int64_t kDaysTo1970 = 719'468;

std::int64_t floorDivide(std::int64_t value, std::int64_t by) {
  return (value >= 0 ? value : value - by + 1) / by;
}

Date dateOf(std::int64_t daysSince1970) {
  const std::int64_t days = daysSince1970 + kDaysTo1970;
  const std::int64_t era = floorDivide(days, kDaysAnEra);
  const std::int64_t dayOfEra = days - era * kDaysAnEra;
  const std::int64_t yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t shifted = (5 * dayOfYear + 2) / 153;  // months since March
  Date date{};
  date.day = static_cast<unsigned>(dayOfYear - (153 * shifted + 2) / 5 + 1);
  date.month = static_cast<unsigned>(shifted < 10 ? shifted + 3 : shifted - 9);
  date.year = yearOfEra + era * 400 + (date.month <= 2 ? 1 : 0);
  return date;
}

std::int64_t daysSince1970(const Date& date) {
  const std::int64_t year = date.year - (date.month <= 2 ? 1 : 0);
  const std::int64_t era = floorDivide(year, 400);
  const std::int64_t yearOfEra = year - era * 400;
  const std::int64_t shifted = (static_cast<std::int64_t>(date.month) + 9) % 12;
  const std::int64_t dayOfYear = (153 * shifted + 2) / 5 + static_cast<std::int64_t>(date.day) - 1;
  const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * kDaysAnEra + dayOfEra - kDaysTo1970;
}

/// Reads digits and the signs between them from the front of a text.
class Reader {
 public:
  explicit Reader(std::string_view text) : m_rest(text) {}

  unsigned number(std::size_t digits) {
    unsigned value = 0;
    for (std::size_t i = 0; i < digits; ++i) value = value * 10 + digit();
    return value;
  }
  void sign(char wanted) {
    if (m_rest.empty() || m_rest.front() != wanted) {
      m_isGood = false;
    } else {
      m_rest.remove_prefix(1);
    }
  }
  /// A point and one to six digits behind it, if there is one, as microseconds.
  unsigned fraction() {
    if (m_rest.empty() || m_rest.front() != '.') return 0;
    m_rest.remove_prefix(1);
    unsigned value = digit();
    unsigned digits = 1;
    for (; digits < 6 && nextIsDigit(); ++digits) value = value * 10 + digit();
    for (; digits < 6; ++digits) value *= 10;
    return value;
  }
  bool isDone() const { return m_isGood && m_rest.empty(); }

 private:
  bool nextIsDigit() const {
    return !m_rest.empty() && m_rest.front() >= '0' && m_rest.front() <= '9';
  }
  unsigned digit() {
    if (!nextIsDigit()) {
      m_isGood = false;
      return 0;
    }
    const auto value = static_cast<unsigned>(m_rest.front() - '0');
    m_rest.remove_prefix(1);
    return value;
  }

  std::string_view m_rest;
  bool m_isGood = true;
};

}  // namespace

std::string timestampOf(Time time) {
  static const std::int64_t kFirst = daysSince1970({0, 1, 1}) * kMicrosecondsADay;
  static const std::int64_t kLast = daysSince1970({10'000, 1, 1}) * kMicrosecondsADay - 1;
  const std::int64_t since1970 =
      std::clamp<std::int64_t>(time.time_since_epoch().count(), kFirst, kLast);
  const std::int64_t days = floorDivide(since1970, kMicrosecondsADay);
  const std::int64_t ofDay = since1970 - days * kMicrosecondsADay;
  const Date date = dateOf(days);
  const auto second = static_cast<unsigned>(ofDay / 1'000'000);
  std::string text = "0000-00-00T00:00:00.000000Z";
  const auto put = [&](std::size_t end, std::size_t digits, unsigned number) {
    for (; digits > 0; --digits, number /= 10) text[--end] = static_cast<char>('0' + number % 10);
  };
  put(4, 4, static_cast<unsigned>(date.year));
  put(7, 2, date.month);
  put(10, 2, date.day);
  put(13, 2, second / 3600);
  put(16, 2, second / 60 % 60);
  put(19, 2, second % 60);
  put(26, 6, static_cast<unsigned>(ofDay % 1'000'000));
  return text;
}

std::optional<Time> timeFrom(std::string_view timestamp) {
  Reader reader(timestamp);
  Date date{};
  date.year = static_cast<std::int64_t>(reader.number(4));
  reader.sign('-');
  date.month = reader.number(2);
  reader.sign('-');
  date.day = reader.number(2);
  reader.sign('T');
  const unsigned hour = reader.number(2);
  reader.sign(':');
  const unsigned minute = reader.number(2);
  reader.sign(':');
  const unsigned second = reader.number(2);
  const unsigned fraction = reader.fraction();
  reader.sign('Z');
  if (!reader.isDone() || date.month < 1 || date.month > 12 || hour > 23 || minute > 59 ||
      second > 59) {
    return std::nullopt;
  }
  const std::int64_t days = daysSince1970(date);
  const Date back = dateOf(days);
  if (back.month != date.month || back.day != date.day) return std::nullopt;
  const std::int64_t ofDay = static_cast<std::int64_t>(hour) * 3600 + minute * 60 + second;
  return Time(microseconds(days * kMicrosecondsADay + ofDay * 1'000'000 + fraction));
}

}  // namespace engine
