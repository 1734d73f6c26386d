#include "history/show/TrendPlot.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "history/show/TrendScale.h"
#include "history/show/Words.h"
#include "text/SafeText.h"

namespace history {
namespace {

/// Points in characters, each of which has `across` times `down` of them.
class Canvas {
 public:
  Canvas(std::size_t columns, std::size_t lines, bool usesBraille)
      : m_across(usesBraille ? 2 : 1),
        m_down(usesBraille ? 4 : 1),
        m_columns(columns),
        m_lines(lines),
        m_points(width() * height(), ' ') {}

  std::size_t width() const { return m_columns * m_across; }
  std::size_t height() const { return m_lines * m_down; }

  /// `y` is from 0, at the bottom, to 1.
  void set(std::size_t x, double y, char kind) {
    const auto fromBottom =
        static_cast<std::size_t>(std::lround(y * static_cast<double>(height() - 1)));
    const std::size_t row = height() - 1 - std::min(fromBottom, height() - 1);
    if (x < width()) m_points[row * width() + x] = kind;
  }

  std::string line(std::size_t line) const {
    std::string text;
    for (std::size_t column = 0; column < m_columns; ++column) text += cell(line, column);
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
  }

 private:
  std::string cell(std::size_t line, std::size_t column) const {
    if (m_down == 1) return std::string(1, m_points[line * width() + column]);
    // The dots of a character of braille, from the top, the left column first.
    static constexpr unsigned kDots[2][4] = {{0x01, 0x02, 0x04, 0x40}, {0x08, 0x10, 0x20, 0x80}};
    unsigned dots = 0;
    for (std::size_t x = 0; x < 2; ++x) {
      for (std::size_t y = 0; y < 4; ++y) {
        if (m_points[(line * 4 + y) * width() + column * 2 + x] != ' ') dots |= kDots[x][y];
      }
    }
    if (dots == 0) return " ";
    // U+2800 and what is set in its last eight bits, as UTF-8.
    return {static_cast<char>(0xe2), static_cast<char>(0xa0 | (dots >> 6U)),
            static_cast<char>(0x80 | (dots & 0x3fU))};
  }

  std::size_t m_across;
  std::size_t m_down;
  std::size_t m_columns;
  std::size_t m_lines;
  std::vector<char> m_points;
};

void drawLimit(Canvas& canvas, const TrendScale& scale, const std::optional<double>& limit) {
  if (!scale.shows(limit)) return;
  for (std::size_t x = 0; x < canvas.width(); x += 3) canvas.set(x, scale.heightOf(*limit), '-');
}

void drawCurve(Canvas& canvas, const TrendScale& scale, const Trend& trend) {
  const std::vector<double> values = means(trend, canvas.width());
  const std::size_t gaps = std::max<std::size_t>(values.size(), 2) - 1;
  for (std::size_t i = 0; i < values.size(); ++i) {
    canvas.set(i * (canvas.width() - 1) / gaps, scale.heightOf(values[i]), '*');
  }
}

std::string headingOf(const Trend& trend) {
  std::string heading = text::visible(trend.test) + ": " + measurementOf(trend.name, trend.part);
  if (!trend.unit.empty()) heading += ", in " + text::visible(trend.unit);
  const std::size_t runs = trend.points.size();
  return heading + ", " + std::to_string(runs) + (runs == 1 ? " run" : " runs");
}

std::string limitsOf(const Trend& trend) {
  std::string words;
  if (trend.minimum) words += " at least " + numberOf(*trend.minimum);
  if (trend.maximum) {
    words += std::string(trend.minimum ? " and" : "") + " at most " + numberOf(*trend.maximum);
  }
  return words.empty() ? words : "  all right:" + words + "\n";
}

}  // namespace

void writePlot(std::ostream& stream, const Trend& trend, const PlotOptions& options) {
  stream << headingOf(trend) << '\n' << limitsOf(trend);
  if (trend.points.empty() || options.lines == 0) return;
  const TrendScale scale(trend);
  const std::string top = numberOf(scale.high);
  const std::string bottom = numberOf(scale.low);
  const std::size_t margin = std::max(columnsOf(top), columnsOf(bottom)) + 1;
  const std::size_t width = std::max<std::size_t>(options.columns, margin + 10) - margin - 2;
  Canvas canvas(width, options.lines, options.usesBraille);
  drawLimit(canvas, scale, trend.minimum);
  drawLimit(canvas, scale, trend.maximum);
  drawCurve(canvas, scale, trend);
  for (std::size_t line = 0; line < options.lines; ++line) {
    const bool isLast = line + 1 == options.lines;
    const std::string label = line == 0 ? top : isLast ? bottom : std::string();
    stream << paddedBefore(label, margin) << " |" << canvas.line(line) << '\n';
  }
  stream << std::string(margin, ' ') << "  " << dateOf(trend.points.front().started) << " to "
         << dateOf(trend.points.back().started) << " (UTC)\n";
}

}  // namespace history
