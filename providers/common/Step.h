#pragma once

#include <string>

namespace providers {

/// A step of a corrective action, from the words that tell it within a sentence: "replace DIMM 3"
/// becomes the line "Replace DIMM 3\n".
inline std::string step(std::string words) {
  if (!words.empty() && words.front() >= 'a' && words.front() <= 'z') words.front() -= 'a' - 'A';
  return words + "\n";
}

}  // namespace providers
