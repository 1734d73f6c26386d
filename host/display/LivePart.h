#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace host {

/// The lines at the end of a terminal that are drawn anew in their place. None may be wider than
/// the terminal; what stands above them is never touched, whatever becomes of its size.
class LivePart {
 public:
  explicit LivePart(std::ostream& out) : m_out(out) {}

  /// Shows these lines instead of those that are there. The cursor stays behind the last one.
  void show(const std::vector<std::string>& lines);

  /// Takes them away; the cursor is at the beginning of a line then.
  void clear();

  /// Leaves them as they are; what comes next stands below them.
  void leave();

 private:
  std::ostream& m_out;
  std::size_t m_shown = 0;
};

}  // namespace host
