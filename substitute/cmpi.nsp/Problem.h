#pragma once

#include <string>

#include "framework/Export.h"

namespace substitute {

/// A fault in an installation file. `line` and `column` are 0 where they have no meaning.
struct CMPI_NSP_API Problem {
  std::string file;
  unsigned long line = 0;
  unsigned long column = 0;
  std::string message;
  bool isCut = false;  ///< nothing that the file says from there on is taken

  /// "file:line:column: message", without the numbers that are 0.
  std::string toText() const;
};

}  // namespace substitute
