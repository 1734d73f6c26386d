#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The text format in which Prometheus reads metrics.
namespace reports {

using Labels = std::vector<std::pair<const char*, std::string>>;

/// The text as the value of a label may have it: one line, nothing in it acts on a terminal, and
/// where it is very long, its beginning alone.
std::string labelText(std::string_view text);

/// Such a value, escaped for its quotes.
std::string quotedLabel(std::string_view value);

/// A number as the format has it, read back as the same `double`.
std::string metricNumber(double value);

/// `{test="...",device="..."}`; nothing where there are none. The values are `labelText`s.
std::string labelSet(const Labels& labels);

/// The two lines in front of a metric's series.
std::string metricHead(const std::string& name, std::string_view help);

}  // namespace reports
