#pragma once

#include <string>
#include <vector>

/// Texts that have something in mind.
namespace reports::samples {

struct HostileText {
  const char* name;
  std::string text;
};
const std::vector<HostileText>& hostileTexts();

}  // namespace reports::samples
