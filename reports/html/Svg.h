#pragma once

#include <string>

/// What pictures are made of.
namespace reports::html {

/// Begins a picture; what it shows stands in its title too, for those who do not see it.
std::string svg(const char* style, double width, double height, const std::string& title);

std::string rectangle(const char* style, double x, double y, double width, double height);
std::string line(const char* style, double x1, double y1, double x2, double y2);
std::string dot(const char* style, double x, double y);

}  // namespace reports::html
