#include "reports/html/Badge.h"

#include <ostream>

namespace reports::html {
namespace {

const char* pathOf(const std::string& style) {
  if (style == "pass") return "M3 8.5l3.5 3.5L13 4.5";
  if (style == "fail") return "M4 4l8 8M12 4l-8 8";
  if (style == "warn") return "M8 3v6M8 12v1";
  if (style == "info") return "M8 7v6M8 3v1";
  return "M3.5 8h9";
}

}  // namespace

std::string mark(const std::string& style) {
  return std::string("<svg class=\"mark\" viewBox=\"0 0 16 16\" aria-hidden=\"true\"><path d=\"") +
         pathOf(style) + "\"/></svg>";
}

void writeBadge(std::ostream& out, const char* style, const char* word) {
  out << "<span class=\"badge " << style << "\">" << mark(style) << "<span>" << word
      << "</span></span>";
}

}  // namespace reports::html
