#include "reports/html/Plots.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "reports/html/Figures.h"
#include "reports/html/Svg.h"
#include "reports/html/Words.h"

namespace reports::html {
namespace {

constexpr double kWidth = 220;
constexpr double kHeight = 44;
constexpr double kBulletHeight = 18;

/// Limits that can be drawn.
std::optional<double> drawn(const std::optional<double>& limit) {
  return limit && std::isfinite(*limit) ? limit : std::nullopt;
}

/// Leads from values to coordinates, with some room at both ends.
class Scale {
 public:
  Scale(const Series& series, double length) : m_least(series.least()), m_most(series.most()) {
    for (const auto& limit : {drawn(series.latest().minimum), drawn(series.latest().maximum)}) {
      if (!limit) continue;
      m_least = std::min(m_least, *limit);
      m_most = std::max(m_most, *limit);
    }
    // Halves: the whole difference may be more than a number holds.
    double half = m_most / 2 - m_least / 2;
    if (!(half > 0)) half = std::max(std::abs(m_most) / 2, 0.5);
    m_middle = m_least / 2 + m_most / 2;
    m_half = half * 1.25;
    m_length = length;
  }

  double at(double value) const {
    return m_length / 2 + (value / 2 - m_middle / 2) / (m_half / 2) * (m_length / 2);
  }

 private:
  double m_least;
  double m_most;
  double m_middle = 0;
  double m_half = 1;
  double m_length = 1;
};

std::string valueWithUnit(double value, const std::string& unit) {
  return unit.empty() ? figure(value) : figure(value) + " " + unit;
}

std::string titleOf(const Series& series) {
  std::string title = series.name() + ": ";
  if (series.count() == 1) {
    title += valueWithUnit(series.least(), series.unit());
  } else {
    title += std::to_string(series.count()) + " values from " + figure(series.least()) + " to " +
             valueWithUnit(series.most(), series.unit());
  }
  const std::string limits = limitsText(series.latest());
  return limits.empty() ? title : title + "; allowed: " + limits;
}

std::string bullet(const Series& series) {
  const Scale scale(series, kWidth);
  const double minimum =
      series.latest().minimum ? std::max(scale.at(*series.latest().minimum), 0.0) : 0.0;
  const double maximum =
      series.latest().maximum ? std::min(scale.at(*series.latest().maximum), kWidth) : kWidth;
  const char* const style = series.outside() > 0 ? "value out" : "value";
  return svg("plot bullet", kWidth, kBulletHeight, titleOf(series)) +
         rectangle("track", 0, 6, kWidth, 6) + rectangle("good", minimum, 6, maximum - minimum, 6) +
         rectangle(style, scale.at(series.least()) - 2, 1, 4, 16) + "</svg>";
}

/// Where the n-th of `count` places stands.
double across(std::size_t n, std::size_t count) {
  constexpr double kMargin = 4;
  return kMargin + (kWidth - 2 * kMargin) * static_cast<double>(n) /
                       static_cast<double>(std::max<std::size_t>(count - 1, 1));
}

std::string point(double x, double y) { return coordinate(x) + "," + coordinate(y) + " "; }

/// From the least to the most of each place, where places hold several values.
std::string band(const Series& series, const Scale& scale) {
  const auto& places = series.places();
  std::string points;
  for (std::size_t i = 0; i < places.size(); ++i) {
    points += point(across(i, places.size()), kHeight - scale.at(places[i].most));
  }
  for (std::size_t i = places.size(); i-- > 0;) {
    points += point(across(i, places.size()), kHeight - scale.at(places[i].least));
  }
  return "<polygon class=\"band\" points=\"" + points + "\"/>";
}

std::string course(const Series& series, const Scale& scale) {
  const auto& places = series.places();
  std::string points;
  std::string dots;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const double x = across(i, places.size());
    const double mean = places[i].mean();
    points += point(x, kHeight - scale.at(mean));
    if (!places[i].isOutside) continue;
    const bool isAbove = series.latest().maximum && places[i].most > *series.latest().maximum;
    dots += dot("out", x, kHeight - scale.at(isAbove ? places[i].most : places[i].least));
  }
  const std::size_t end = places.size() - 1;
  if (!places[end].isOutside) {
    dots += dot("latest", across(end, places.size()), kHeight - scale.at(places[end].mean()));
  }
  return "<polyline class=\"course\" points=\"" + points + "\"/>" + dots;
}

std::string limitLines(const Series& series, const Scale& scale) {
  std::string lines;
  for (const auto& limit : {drawn(series.latest().minimum), drawn(series.latest().maximum)}) {
    if (limit) {
      const double y = kHeight - scale.at(*limit);
      lines += line("limit", 0, y, kWidth, y);
    }
  }
  return lines;
}

std::string curve(const Series& series) {
  const Scale scale(series, kHeight);
  return svg("plot curve", kWidth, kHeight, titleOf(series)) + limitLines(series, scale) +
         band(series, scale) + course(series, scale) + "</svg>";
}

}  // namespace

std::string plot(const Series& series) {
  if (series.places().empty()) return {};
  if (series.count() > 1) return curve(series);
  const bool hasLimits = drawn(series.latest().minimum) || drawn(series.latest().maximum);
  return hasLimits ? bullet(series) : std::string();
}

std::string bars(const Timeline::Row& row, engine::Time from, engine::Time to) {
  constexpr double kLength = 1000;
  constexpr double kThinnest = 3;
  const double whole = std::max(secondsBetween(from, to), 1e-6);
  std::string text =
      "<svg class=\"bars\" viewBox=\"0 0 1000 14\" preserveAspectRatio=\"none\" "
      "aria-hidden=\"true\">";
  for (const Timeline::Bar& bar : row.bars) {
    const double start = secondsBetween(from, bar.from) / whole * kLength;
    const double width = std::max(secondsBetween(bar.from, bar.to) / whole * kLength, kThinnest);
    text += rectangle(lookOf(bar.outcome).style, std::min(start, kLength - width), 0, width, 14);
  }
  return text + "</svg>";
}

std::string limitsText(const engine::Measurement& measurement) {
  if (measurement.minimum && measurement.maximum) {
    return figure(*measurement.minimum) + " to " +
           valueWithUnit(*measurement.maximum, measurement.unit);
  }
  if (measurement.minimum) {
    return "at least " + valueWithUnit(*measurement.minimum, measurement.unit);
  }
  if (measurement.maximum) {
    return "at most " + valueWithUnit(*measurement.maximum, measurement.unit);
  }
  return {};
}

}  // namespace reports::html
