#pragma once

#include <string>
#include <vector>

#include "substitute/cmpi.nsp/Problem.h"

namespace cmpinsp {

/// The problems, a line each.
inline std::string linesOf(const std::vector<substitute::Problem>& problems) {
  std::string text;
  for (const substitute::Problem& problem : problems) text += problem.toText() + "\n";
  return text;
}

}  // namespace cmpinsp
