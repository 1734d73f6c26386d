#include "history/show/TrendPicture.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "history/show/TrendScale.h"
#include "history/show/Words.h"
#include "text/SafeText.h"

namespace history {
namespace {

constexpr double kWidth = 640;
constexpr double kHeight = 200;
constexpr double kMargin = 8;
/// Above so many, the points themselves would hide the curve.
constexpr std::size_t kMostDots = 200;
/// Finer than anybody sees.
constexpr std::size_t kMostCorners = 1000;

std::string escaped(const std::string& text) {
  std::string safe;
  for (const char letter : text::visible(text)) {
    switch (letter) {
      case '&':
        safe += "&amp;";
        break;
      case '<':
        safe += "&lt;";
        break;
      case '>':
        safe += "&gt;";
        break;
      case '"':
        safe += "&quot;";
        break;
      case '\'':
        safe += "&#39;";
        break;
      default:
        safe += letter;
    }
  }
  return safe;
}

std::string place(double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f", value);
  return text.data();
}

double across(std::size_t index, std::size_t count) {
  if (count < 2) return kWidth / 2;
  return kMargin +
         (kWidth - 2 * kMargin) * static_cast<double>(index) / static_cast<double>(count - 1);
}

double down(const TrendScale& scale, double value) {
  return kHeight - kMargin - (kHeight - 2 * kMargin) * scale.heightOf(value);
}

std::string limitLine(const TrendScale& scale, const std::optional<double>& limit) {
  if (!scale.shows(limit)) return {};
  const std::string y = place(down(scale, *limit));
  return "<line x1=\"0\" x2=\"" + place(kWidth) + "\" y1=\"" + y + "\" y2=\"" + y +
         "\" stroke=\"currentColor\" stroke-dasharray=\"6 4\" opacity=\"0.6\"><title>limit " +
         numberOf(*limit) + "</title></line>\n";
}

std::string curve(const Trend& trend, const TrendScale& scale) {
  const std::vector<double> values = means(trend, kMostCorners);
  std::string corners;
  for (std::size_t i = 0; i < values.size(); ++i) {
    corners +=
        (i == 0 ? "" : " ") + place(across(i, values.size())) + "," + place(down(scale, values[i]));
  }
  return "<polyline fill=\"none\" stroke=\"currentColor\" stroke-width=\"1.5\" points=\"" +
         corners + "\"/>\n";
}

std::string dot(const Trend& trend, const TrendScale& scale, std::size_t index) {
  const TrendPoint& point = trend.points[index];
  return "<circle cx=\"" + place(across(index, trend.points.size())) + "\" cy=\"" +
         place(down(scale, point.mean)) + "\" r=\"3\" fill=\"currentColor\"><title>" +
         escaped(point.run) + ": " + numberOf(point.mean) + " " + escaped(trend.unit) +
         "</title></circle>\n";
}

std::string captionOf(const Trend& trend) {
  std::string caption = escaped(trend.test) + ": " + escaped(trend.name);
  if (!trend.part.empty()) caption += " of " + escaped(trend.part);
  if (!trend.unit.empty()) caption += ", in " + escaped(trend.unit);
  return caption;
}

std::string rangeOf(const Trend& trend) {
  if (trend.points.empty()) return {};
  const TrendScale scale(trend);
  return numberOf(scale.low) + " to " + numberOf(scale.high) + "; " +
         dateOf(trend.points.front().started) + " to " + dateOf(trend.points.back().started) +
         " (UTC)";
}

}  // namespace

std::string svgOf(const Trend& trend) {
  const TrendScale scale(trend);
  std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + place(kWidth) +
                    " " + place(kHeight) + "\" role=\"img\" width=\"100%\">\n<title>" +
                    captionOf(trend) + "</title>\n";
  svg += limitLine(scale, trend.minimum) + limitLine(scale, trend.maximum);
  if (!trend.points.empty()) svg += curve(trend, scale);
  if (trend.points.size() <= kMostDots) {
    for (std::size_t i = 0; i < trend.points.size(); ++i) svg += dot(trend, scale, i);
  }
  return svg + "</svg>\n";
}

void writeFigures(std::ostream& stream, const std::vector<Trend>& trends) {
  for (const Trend& trend : trends) {
    stream << "<figure class=\"trend\">\n<figcaption>" << captionOf(trend) << "</figcaption>\n"
           << svgOf(trend) << "<p>" << rangeOf(trend) << "</p>\n</figure>\n";
  }
}

}  // namespace history
