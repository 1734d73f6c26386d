#pragma once

#include <string>

#include "host/display/DisplayStyle.h"

/// What standard output leads to.
namespace host {

struct Surroundings {
  bool isTerminal = false;
  bool takesSequences = false;  ///< it understands the sequences that move the cursor
  std::string noColour;         ///< the variable NO_COLOR
};

/// Those of this process. Where that has to be asked for, as on Windows, the terminal understands
/// sequences from now on.
Surroundings surroundings();

/// The size of the terminal, and 80 by 24 where there is none or it does not say.
ScreenSize terminalSize();

/// Lets the style redraw, and have colours, where that does no harm; and asks the terminal its
/// size.
void adapt(DisplayStyle& style, const Surroundings& around);

}  // namespace host
