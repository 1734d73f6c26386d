#include "engine/plan/CimDateTime.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

#include "engine/plan/Duration.h"
#include "engine/plan/PlanError.h"

namespace engine {
namespace {

constexpr std::size_t kLength = 25, kPoint = 14, kSign = 21;

bool isDecimal(char c) { return c >= '0' && c <= '9'; }

/// The number in digits alone; -1 where there is something else.
int numberIn(std::string_view digits) {
  int number = 0;
  for (const char c : digits) {
    if (!isDecimal(c)) return -1;
    number = number * 10 + (c - '0');
  }
  return digits.empty() ? -1 : number;
}

struct Field {
  std::size_t start, length;
  int least, most;
};

constexpr Field kTimestampFields[] = {{0, 4, 0, 9999}, {4, 2, 1, 12},  {6, 2, 1, 31},
                                      {8, 2, 0, 23},   {10, 2, 0, 59}, {12, 2, 0, 59}};
constexpr Field kIntervalFields[] = {
    {0, 8, 0, 99'999'999}, {8, 2, 0, 23}, {10, 2, 0, 59}, {12, 2, 0, 59}};

int daysIn(int year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool isLeap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return month == 2 && isLeap ? 29 : kDays[month - 1];
}

/// Each field in its range, or stars; behind the first stars there is nothing else.
template <std::size_t kCount>
bool areFieldsGood(std::string_view text, const Field (&fields)[kCount]) {
  bool isOpen = false;
  for (const Field& field : fields) {
    const std::string_view digits = text.substr(field.start, field.length);
    if (digits == std::string_view("********").substr(0, field.length)) {
      isOpen = true;
      continue;
    }
    const int number = numberIn(digits);
    if (isOpen || number < field.least || number > field.most) return false;
  }
  const std::string_view fraction = text.substr(kPoint + 1, 6);
  const std::size_t stars = fraction.find('*');
  const std::string_view known = fraction.substr(0, stars);
  if (!known.empty() && (isOpen || numberIn(known) < 0)) return false;
  return stars == std::string_view::npos ||
         fraction.substr(stars).find_first_not_of('*') == std::string_view::npos;
}

bool isDayGood(std::string_view text) {
  const int year = numberIn(text.substr(0, 4)), month = numberIn(text.substr(4, 2));
  const int day = numberIn(text.substr(6, 2));
  return year < 0 || month < 0 || day < 0 || day <= daysIn(year, month);
}

bool isCimDateTime(std::string_view text) {
  if (text.size() != kLength || text[kPoint] != '.') return false;
  const std::string_view offset = text.substr(kSign + 1);
  if (text[kSign] == ':') return offset == "000" && areFieldsGood(text, kIntervalFields);
  if (text[kSign] != '+' && text[kSign] != '-') return false;
  return numberIn(offset) >= 0 && areFieldsGood(text, kTimestampFields) && isDayGood(text);
}

/// "+01:00", "-05:30" or "Z" as CIM's minutes.
std::optional<std::string> offsetMinutes(std::string_view text) {
  if (text == "Z" || text == "z") return "+000";
  if (text.size() != 6 || (text[0] != '+' && text[0] != '-') || text[3] != ':') return std::nullopt;
  const int hours = numberIn(text.substr(1, 2)), minutes = numberIn(text.substr(4, 2));
  // CIM has three digits for them.
  if (hours < 0 || minutes < 0 || minutes > 59 || hours * 60 + minutes > 999) return std::nullopt;
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "%c%03d", text[0], hours * 60 + minutes);
  return buffer;
}

/// "2026-11-22T02:00:00.5+01:00".
std::optional<std::string> fromIso(std::string_view text) {
  constexpr std::string_view kShape = "0000-00-00T00:00:00";
  if (text.size() <= kShape.size()) return std::nullopt;
  std::string signs;
  for (std::size_t i = 0; i < kShape.size(); ++i) {
    if (kShape[i] == '0') {
      signs += text[i];
    } else if (text[i] != kShape[i] && !(kShape[i] == 'T' && (text[i] == ' ' || text[i] == 't'))) {
      return std::nullopt;
    }
  }
  if (numberIn(std::string_view(signs).substr(0, 8)) < 0 ||
      numberIn(std::string_view(signs).substr(8)) < 0) {
    return std::nullopt;
  }
  std::string_view rest = text.substr(kShape.size());
  std::string fraction;
  if (rest.front() == '.') {
    rest.remove_prefix(1);
    for (; !rest.empty() && isDecimal(rest.front()); rest.remove_prefix(1))
      fraction += rest.front();
    if (fraction.empty()) return std::nullopt;
  }
  fraction.resize(6, '0');
  const auto offset = offsetMinutes(rest);
  if (!offset) return std::nullopt;
  std::string whole = signs + '.' + fraction + *offset;
  return isCimDateTime(whole) ? std::optional<std::string>(std::move(whole)) : std::nullopt;
}

std::optional<std::string> fromDuration(std::string_view text) {
  std::int64_t milliseconds = 0;
  try {
    milliseconds = durationFrom(text).count();
  } catch (const PlanError&) {
    return std::nullopt;
  }
  const std::int64_t seconds = milliseconds / 1'000;
  char buffer[40];
  std::snprintf(buffer, sizeof buffer, "%08d%02d%02d%02d.%03d000:000",
                static_cast<int>(seconds / 86'400), static_cast<int>(seconds / 3'600 % 24),
                static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60),
                static_cast<int>(milliseconds % 1'000));
  return buffer;
}

}  // namespace

std::optional<std::string> dateTimeText(std::string_view text) {
  if (isCimDateTime(text)) return std::string(text);
  if (auto iso = fromIso(text)) return iso;
  return fromDuration(text);
}

}  // namespace engine
