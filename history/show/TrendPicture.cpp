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
/// Where the numbers of the scale stand.
constexpr double kScaleWidth = 56;
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
  constexpr double kRoom = kWidth - kScaleWidth - kMargin;
  if (count < 2) return kScaleWidth + kRoom / 2;
  return kScaleWidth + kRoom * static_cast<double>(index) / static_cast<double>(count - 1);
}

double down(const TrendScale& scale, double value) {
  return kHeight - kMargin - (kHeight - 2 * kMargin) * scale.heightOf(value);
}

std::string limitLine(const TrendScale& scale, const std::optional<double>& limit) {
  if (!scale.shows(limit)) return {};
  const std::string y = place(down(scale, *limit));
  return "<line x1=\"" + place(kScaleWidth) + "\" x2=\"" + place(kWidth) + "\" y1=\"" + y +
         "\" y2=\"" + y +
         "\" stroke=\"currentColor\" stroke-dasharray=\"6 4\" opacity=\"0.6\"><title>limit " +
         numberOf(*limit) + "</title></line>\n";
}

std::string scaleLabel(double value, double y) {
  return "<text x=\"" + place(kScaleWidth - kMargin) + "\" y=\"" + place(y) +
         "\" text-anchor=\"end\" font-size=\"11\" fill=\"currentColor\" opacity=\"0.6\">" +
         numberOf(value) + "</text>\n";
}

/// Beside the highest and the lowest place of the curve.
std::string scaleLabels(const TrendScale& scale) {
  constexpr double kHalfLetter = 4;
  return scaleLabel(scale.high, down(scale, scale.high) + kHalfLetter) +
         scaleLabel(scale.low, down(scale, scale.low) + kHalfLetter);
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

/// From the least to the greatest of the means, and when that was.
std::string rangeOf(const Trend& trend) {
  if (trend.points.empty()) return {};
  const auto byMean = [](const TrendPoint& one, const TrendPoint& other) {
    return one.mean < other.mean;
  };
  const auto ends = std::minmax_element(trend.points.begin(), trend.points.end(), byMean);
  const TrendPoint& last = trend.points.back();
  if (trend.points.size() == 1) {
    return "1 run: " + numberOf(last.mean) + "; " + dateOf(last.started) + " (UTC)";
  }
  return std::to_string(trend.points.size()) + " runs: " + numberOf(ends.first->mean) + " to " +
         numberOf(ends.second->mean) + ", the last " + numberOf(last.mean) + "; " +
         dateOf(trend.points.front().started) + " to " + dateOf(last.started) + " (UTC)";
}

std::string allowedIn(const Trend& trend) {
  std::string limits;
  if (trend.minimum) limits = "at least " + numberOf(*trend.minimum);
  if (trend.maximum)
    limits += (limits.empty() ? "at most " : " and at most ") + numberOf(*trend.maximum);
  return limits.empty() ? limits : "; all right: " + limits;
}

}  // namespace

std::string svgOf(const Trend& trend) {
  const TrendScale scale(trend);
  std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + place(kWidth) +
                    " " + place(kHeight) + "\" role=\"img\" width=\"100%\">\n<title>" +
                    captionOf(trend) + "</title>\n";
  svg += limitLine(scale, trend.minimum) + limitLine(scale, trend.maximum);
  if (!trend.points.empty()) svg += scaleLabels(scale) + curve(trend, scale);
  if (trend.points.size() <= kMostDots) {
    for (std::size_t i = 0; i < trend.points.size(); ++i) svg += dot(trend, scale, i);
  }
  return svg + "</svg>\n";
}

void writeFigures(std::ostream& stream, const std::vector<Trend>& trends) {
  for (const Trend& trend : trends) {
    stream << "<figure class=\"trend\">\n<figcaption>" << captionOf(trend) << "</figcaption>\n"
           << svgOf(trend) << "<p>" << rangeOf(trend) << allowedIn(trend) << "</p>\n</figure>\n";
  }
}

void writeTrendPage(std::ostream& stream, const std::string& name,
                    const std::vector<Trend>& trends) {
  const std::string title = "Measurements of " + escaped(name) + " over the runs";
  stream << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
            "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
            "'unsafe-inline'\">\n<meta name=\"viewport\" content=\"width=device-width, "
            "initial-scale=1\">\n<title>"
         << title << "</title>\n<style>\n"
         << ":root{color-scheme:light dark}\n"
            "body{max-width:1000px;margin:0 auto;padding:20px;font:16px/1.5 system-ui,sans-serif;"
            "overflow-wrap:anywhere}\n"
            "h1{font-size:1.5rem;line-height:1.25}\n"
            "figure{margin:0 0 2.5rem;break-inside:avoid}\n"
            "figcaption{font-weight:600}\n"
            "svg{display:block;height:auto;max-width:800px;font-family:inherit}\n"
            "p{margin:0;opacity:.75}\n</style>\n</head>\n<body>\n<h1>"
         << title << "</h1>\n";
  writeFigures(stream, trends);
  stream << "</body>\n</html>\n";
}

}  // namespace history
