#include "reports/html/Svg.h"

#include <algorithm>

#include "reports/html/Escape.h"
#include "reports/html/Figures.h"

namespace reports::html {
namespace {

std::string attribute(const char* name, double value) {
  return std::string(" ") + name + "=\"" + coordinate(value) + "\"";
}

}  // namespace

std::string svg(const char* style, double width, double height, const std::string& title) {
  return std::string("<svg class=\"") + style + "\" viewBox=\"0 0 " + coordinate(width) + " " +
         coordinate(height) + "\" role=\"img\"><title>" + escaped(title) + "</title>";
}

std::string rectangle(const char* style, double x, double y, double width, double height) {
  return std::string("<rect class=\"") + style + "\"" + attribute("x", x) + attribute("y", y) +
         attribute("width", std::max(width, 0.0)) + attribute("height", std::max(height, 0.0)) +
         "/>";
}

std::string line(const char* style, double x1, double y1, double x2, double y2) {
  return std::string("<line class=\"") + style + "\"" + attribute("x1", x1) + attribute("y1", y1) +
         attribute("x2", x2) + attribute("y2", y2) + "/>";
}

std::string dot(const char* style, double x, double y) {
  return std::string("<circle class=\"") + style + "\"" + attribute("cx", x) + attribute("cy", y) +
         " r=\"3\"/>";
}

}  // namespace reports::html
