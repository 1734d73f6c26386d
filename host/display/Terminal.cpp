#include "host/display/Terminal.h"

namespace host {

void adapt(DisplayStyle& style, const Surroundings& around) {
  style.redraws = around.isTerminal && around.takesSequences;
  style.colours = around.isTerminal && around.takesSequences && around.noColour.empty();
  style.size = terminalSize;
}

}  // namespace host
