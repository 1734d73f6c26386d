#pragma once

#include <string>
#include <string_view>

#include "integrations/slurm/Child.h"

namespace slurm {

/// Cuts what comes in pieces into lines.
class Lines {
 public:
  explicit Lines(LineTaker taker) : m_taker(std::move(taker)) {}

  void add(std::string_view piece) {
    for (std::size_t end = piece.find('\n'); end != std::string_view::npos;
         end = piece.find('\n')) {
      keep(piece.substr(0, end));
      finish();
      piece.remove_prefix(end + 1);
    }
    keep(piece);
  }

  /// The line that is under way is whole.
  void finish() {
    if (!m_isTooLong && !m_line.empty()) m_taker(m_line);
    m_line.clear();
    m_isTooLong = false;
  }

 private:
  void keep(std::string_view piece) {
    constexpr std::size_t kLongest = std::size_t{4} << 20;
    m_isTooLong = m_isTooLong || m_line.size() + piece.size() > kLongest;
    if (m_isTooLong) {
      m_line.clear();
    } else {
      m_line += piece;
    }
  }

  LineTaker m_taker;
  std::string m_line;
  bool m_isTooLong = false;
};

}  // namespace slurm
