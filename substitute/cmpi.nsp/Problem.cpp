#include "substitute/cmpi.nsp/Problem.h"

namespace substitute {

std::string Problem::toText() const {
  std::string text = file;
  if (line != 0) {
    text += ":" + std::to_string(line);
    if (column != 0) text += ":" + std::to_string(column);
  }
  return text.empty() ? message : text + ": " + message;
}

}  // namespace substitute
