#include "fleet/page/Words.h"

#include <cmath>
#include <initializer_list>

#include "reports/html/Escape.h"
#include "reports/html/Figures.h"
#include "text/SafeText.h"

namespace fleet::page {
namespace {

bool isUnreserved(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' ||
         c == '_' || c == '.' || c == '~';
}

std::string inAddress(std::string_view text) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string out;
  for (const char c : text) {
    if (isUnreserved(c)) {
      out += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      out += {'%', kDigits[byte >> 4U], kDigits[byte & 15U]};
    }
  }
  return out;
}

std::string withUnit(double value, const std::string& unit) {
  constexpr std::size_t kLongestUnit = 40;
  const std::string text = reports::html::figure(value);
  return unit.empty() ? text : text + " " + reports::html::shortened(unit, kLongestUnit);
}

}  // namespace

const Look kLooks[kVerdicts] = {
    {Verdict::kFailed, 'f', "fail", "Failed", "\xE2\x9C\x95"},
    {Verdict::kUnfinished, 'u', "open", "Unfinished", "?"},
    {Verdict::kWarned, 'w', "warn", "Warning", "!"},
    {Verdict::kPassed, 'p', "pass", "Passed", "\xE2\x9C\x93"},
    {Verdict::kSkipped, 's', "open", "Skipped", "\xE2\x80\x93"},
    {Verdict::kNone, 'n', "open", "No answer", ""},
};

const Look& lookOf(Verdict verdict) {
  for (const Look& look : kLooks) {
    if (look.verdict == verdict) return look;
  }
  return kLooks[kVerdicts - 1];
}

std::string thousands(std::uint64_t number) {
  std::string text = std::to_string(number);
  for (std::size_t at = text.size(); at > 3;) text.insert(at -= 3, ",");
  return text;
}

std::string counted(std::uint64_t number, std::string_view what) {
  std::string text = thousands(number) + " ";
  text += what;
  return number == 1 ? text : text + "s";
}

std::string htmlOf(std::string_view text, std::size_t bytes) {
  return reports::html::escaped(reports::html::shortened(text, bytes));
}

std::string seen(std::string_view text, std::size_t bytes) {
  return text::visible(reports::html::shortened(text, bytes));
}

std::string address(std::string_view key, std::string_view value) {
  std::string text = "#";
  text += key;
  return text + "=" + inAddress(value);
}

std::string joined(std::initializer_list<std::string_view> texts) {
  std::string all;
  for (const std::string_view text : texts) {
    if (text.empty()) continue;
    if (!all.empty()) all += " \xC2\xB7 ";
    all += text;
  }
  return all;
}

std::string_view testName(const Answer& answer, std::uint32_t test) {
  return test < answer.tests.size() ? std::string_view(answer.tests[test].name)
                                    : std::string_view();
}

std::string besidePeers(const Slow& slow) {
  const std::string peers =
      " of " + counted(slow.peers, "peer") + ", " + withUnit(slow.median, slow.unit);
  const bool hasRatio = std::isfinite(slow.ratio);
  const std::string percent =
      hasRatio ? reports::html::figure(std::round(slow.ratio * 1000) / 10) + " % of the " : "";
  std::string text = withUnit(slow.value, slow.unit);
  // Of several, the ratio is that of their mean speeds: the value and the median are of one of
  // them.
  if (slow.measurements > 1 || !hasRatio)
    text += " beside the median" + peers;
  else
    text += ", " + percent + "median" + peers;
  if (slow.measurements == 1) return text;
  text += "; of " + counted(slow.measurements, "measurement") + " the farthest off";
  return hasRatio ? text + ", together " + percent + "peers' speed" : text;
}

}  // namespace fleet::page
