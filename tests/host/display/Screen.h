#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// What a terminal would show of what was written to it: it knows the sequences that the display
/// uses, and nothing else; a sequence that it does not know is a fault of the test's subject.
class Screen {
 public:
  explicit Screen(std::size_t columns) : m_columns(columns) {}

  void write(std::string_view text);
  void resize(std::size_t columns) { m_columns = columns; }

  /// The lines from the first one on that ever was shown, without blanks at their ends.
  std::vector<std::string> lines() const;

  /// Whether a line went on in the next one because the terminal is not wider.
  bool hasWrapped() const { return m_hasWrapped; }
  /// What was not understood.
  const std::string& unknown() const { return m_unknown; }

 private:
  using Line = std::vector<std::string>;  ///< a character a column

  std::size_t sequence(std::string_view text);
  void put(char c);
  void goOn();

  std::size_t m_columns;
  std::vector<Line> m_lines{Line()};
  std::size_t m_row = 0;
  std::size_t m_column = 0;
  bool m_hasWrapped = false;
  std::string m_unknown;
};

}  // namespace host
