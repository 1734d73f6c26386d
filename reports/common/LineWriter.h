#pragma once

#include <ostream>
#include <string>
#include <string_view>

namespace reports {

/// Puts whole lines into a stream, each of them flushed, so that what has been written survives the
/// end of the process. The stream must outlive it.
class LineWriter {
 public:
  /// `file` is the name that a failure is told with.
  LineWriter(std::ostream& out, std::string file);

  /// Adds the line's end. Throws `std::runtime_error`.
  void write(std::string line);
  /// Text of several lines, as it is.
  void writeAll(std::string_view lines);

 private:
  std::ostream& m_out;
  std::string m_file;
};

}  // namespace reports
