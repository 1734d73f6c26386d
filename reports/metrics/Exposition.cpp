#include "reports/metrics/Exposition.h"

#include <charconv>
#include <cmath>
#include <iterator>

#include "text/SafeText.h"
#include "text/Utf8.h"

namespace reports {
namespace {

/// In bytes, with the ellipsis. Identifiers of tests are shorter.
constexpr std::size_t kLongest = 200;
constexpr std::string_view kEllipsis = "...";

/// So much of it as has room, in whole characters.
std::string_view beginning(std::string_view text, std::size_t room) {
  std::size_t length = 0;
  while (length < text.size()) {
    const std::size_t next = length + text::firstCharacter(text.substr(length)).length;
    if (next > room) break;
    length = next;
  }
  return text.substr(0, length);
}

}  // namespace

std::string labelText(std::string_view text) {
  // What is spelt out becomes longer, never shorter: with one character more, the rest is not
  // needed.
  constexpr std::size_t kCharacter = 4;
  const std::string shown = text::visible(beginning(text, kLongest + kCharacter));
  if (shown.size() <= kLongest) return shown;
  return std::string(beginning(shown, kLongest - kEllipsis.size())) + std::string(kEllipsis);
}

std::string quotedLabel(std::string_view value) {
  std::string quoted = "\"";
  for (const char byte : value) {
    if (byte == '\n') {
      quoted += "\\n";
      continue;
    }
    if (byte == '\\' || byte == '"') quoted += '\\';
    quoted += byte;
  }
  return quoted + '"';
}

std::string metricNumber(double value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value > 0 ? "+Inf" : "-Inf";
  char digits[40];
  const std::to_chars_result end = std::to_chars(std::begin(digits), std::end(digits), value);
  return std::string(digits, end.ptr);
}

std::string labelSet(const Labels& labels) {
  std::string text;
  for (const auto& [name, value] : labels) {
    text += (text.empty() ? "{" : ",") + std::string(name) + "=" + quotedLabel(value);
  }
  return text.empty() ? text : text + "}";
}

std::string metricHead(const std::string& name, std::string_view help) {
  return "# HELP " + name + " " + std::string(help) + "\n# TYPE " + name + " gauge\n";
}

}  // namespace reports
