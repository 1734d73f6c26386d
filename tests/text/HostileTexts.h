#pragma once

#include <string>
#include <vector>

namespace text {

struct HostileText {
  const char* name;
  std::string text;
};

/// Control characters, terminal escapes, markup, what ends a CDATA section or a comment, what is no
/// UTF-8, marks of direction.
const std::vector<HostileText>& hostileTexts();

}  // namespace text
