#include "substitute/cmpi.nsp/broker/text/CimDateTime.h"

#include <array>
#include <chrono>

#include "substitute/cmpi.nsp/broker/lifetime/Failure.h"

namespace cmpinsp::broker {
namespace {

constexpr std::size_t kLength = 25;
constexpr std::int64_t kMicro = 1000000;
constexpr std::int64_t kDay = 86400;

[[noreturn]] void fail(const std::string& text) {
  throw Failure(CMPI_RC_ERR_INVALID_PARAMETER, "\"" + text + "\" is no CIM date-time");
}

/// Days from 1970-01-01 in the proleptic Gregorian calendar.
std::int64_t daysFromCivil(std::int64_t year, std::int64_t month, std::int64_t day) {
  year -= month <= 2 ? 1 : 0;
  const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
  const std::int64_t yearOfEra = year - era * 400;
  const std::int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

std::int64_t daysIn(std::int64_t year, std::int64_t month) {
  return daysFromCivil(month < 12 ? year : year + 1, month % 12 + 1, 1) -
         daysFromCivil(year, month, 1);
}

struct Civil {
  std::int64_t year;
  unsigned month;
  unsigned day;
};

Civil civilFromDays(std::int64_t days) {
  days += 719468;
  const std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
  const std::int64_t dayOfEra = days - era * 146097;
  const std::int64_t yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t shifted = (5 * dayOfYear + 2) / 153;
  const std::int64_t month = shifted < 10 ? shifted + 3 : shifted - 9;
  return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), static_cast<unsigned>(month),
          static_cast<unsigned>(dayOfYear - (153 * shifted + 2) / 5 + 1)};
}

/// Reads the fields of one text from left to right.
class FieldReader {
 public:
  explicit FieldReader(const std::string& text) : m_text(text) {}

  /// A number of `width` digits within limits; asterisks count as the least, and nothing but
  /// asterisks may follow them.
  std::int64_t number(std::size_t width, std::int64_t least, std::int64_t most) {
    std::int64_t value = 0;
    std::size_t digits = 0;
    for (std::size_t i = 0; i < width; ++i) {
      const char letter = m_text[m_at++];
      if (letter == '*') {
        value *= 10;
        m_isVague = true;
      } else if (letter >= '0' && letter <= '9' && !m_isVague) {
        value = value * 10 + (letter - '0');
        ++digits;
      } else {
        fail(m_text);
      }
    }
    if (digits == 0) return least;
    if (value < least || value > most) fail(m_text);
    return value;
  }

  void skip(char letter) {
    if (m_text[m_at++] != letter) fail(m_text);
  }

  /// What follows is not a part of what came before: it may be exact where that was vague.
  void begin() { m_isVague = false; }

 private:
  const std::string& m_text;
  std::size_t m_at = 0;
  bool m_isVague = false;  ///< an asterisk came
};

std::int64_t readInterval(const std::string& text) {
  FieldReader fields(text);
  std::int64_t seconds = fields.number(8, 0, 99999999) * kDay;
  seconds += fields.number(2, 0, 23) * 3600;
  seconds += fields.number(2, 0, 59) * 60;
  seconds += fields.number(2, 0, 59);
  fields.skip('.');
  return seconds * kMicro + fields.number(6, 0, 999999);
}

std::int64_t readPoint(const std::string& text, char sign) {
  FieldReader fields(text);
  const std::int64_t year = fields.number(4, 0, 9999);
  const std::int64_t month = fields.number(2, 1, 12);
  const std::int64_t day = fields.number(2, 1, daysIn(year, month));
  std::int64_t seconds = daysFromCivil(year, month, day) * kDay;
  seconds += fields.number(2, 0, 23) * 3600;
  seconds += fields.number(2, 0, 59) * 60;
  seconds += fields.number(2, 0, 60);
  fields.skip('.');
  const std::int64_t fraction = fields.number(6, 0, 999999);
  fields.skip(sign);
  fields.begin();
  const std::int64_t offset = fields.number(3, 0, 999) * 60;
  return (seconds + (sign == '+' ? -offset : offset)) * kMicro + fraction;
}

/// Writes numbers of a fixed width one after the other, which takes a tenth of the time of a
/// formatted print: providers make a date-time for every instance.
class Digits {
 public:
  void add(std::size_t width, std::uint64_t number) {
    m_end += width;
    for (std::size_t at = m_end; at-- > m_end - width; number /= 10) {
      m_text[at] = static_cast<char>('0' + number % 10);
    }
    m_isTooLarge = m_isTooLarge || number != 0;
  }
  void add(char separator) { m_text[m_end++] = separator; }

  /// Whether a number did not fit.
  bool isTooLarge() const { return m_isTooLarge; }
  std::string text() const { return std::string(m_text.data(), m_end); }

 private:
  std::array<char, kLength> m_text{};
  std::size_t m_end = 0;
  bool m_isTooLarge = false;
};

}  // namespace

CimDateTime CimDateTime::parse(const std::string& text) {
  if (text.size() != kLength) fail(text);
  const char sign = text[21];
  CimDateTime result;
  result.text = text;
  result.isInterval = sign == ':';
  if (result.isInterval) {
    if (text.compare(21, 4, ":000") != 0) fail(text);
    result.instant = readInterval(text);
    result.microseconds = static_cast<std::uint64_t>(result.instant);
    return result;
  }
  if (sign != '+' && sign != '-') fail(text);
  // The binary form cannot say what was before 1970.
  result.instant = readPoint(text, sign);
  result.microseconds = result.instant < 0 ? 0 : static_cast<std::uint64_t>(result.instant);
  return result;
}

CimDateTime CimDateTime::fromBinary(std::uint64_t microseconds, bool isInterval) {
  const std::uint64_t seconds = microseconds / 1000000U;
  const std::uint64_t days = seconds / 86400U;
  Digits digits;
  if (isInterval) {
    digits.add(8, days);
  } else {
    const Civil date = civilFromDays(static_cast<std::int64_t>(days));
    digits.add(4, static_cast<std::uint64_t>(date.year));
    digits.add(2, date.month);
    digits.add(2, date.day);
  }
  digits.add(2, seconds / 3600U % 24U);
  digits.add(2, seconds / 60U % 60U);
  digits.add(2, seconds % 60U);
  digits.add('.');
  digits.add(6, microseconds % 1000000U);
  digits.add(isInterval ? ':' : '+');
  digits.add(3, 0);
  if (digits.isTooLarge()) {
    throw Failure(CMPI_RC_ERR_INVALID_PARAMETER,
                  std::to_string(microseconds) + " microseconds are out of range");
  }
  return {digits.text(), microseconds, isInterval, static_cast<std::int64_t>(microseconds)};
}

CimDateTime CimDateTime::now() {
  const auto since = std::chrono::system_clock::now().time_since_epoch();
  const auto count = std::chrono::duration_cast<std::chrono::microseconds>(since).count();
  return fromBinary(static_cast<std::uint64_t>(count), false);
}

}  // namespace cmpinsp::broker
