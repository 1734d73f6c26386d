#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <string>

namespace reports {

/// Takes a stream apart into lines of at most some length; it holds one of them at a time. The
/// stream must outlive it, and is opened as binary.
class LineReader {
 public:
  /// Names of 10 MB whose every byte is escaped fit.
  static constexpr std::size_t kLongest = 64 * 1024 * 1024;

  /// `file` is the name that faults are told with.
  LineReader(std::istream& in, std::string file, std::size_t longest = kLongest);

  /// What is behind the beginning of a line that is too long is not read: for who goes no further.
  void stopAtTooLong() { m_stopsAtTooLong = true; }

  /// Goes on to the next line; false at the end. Throws `std::runtime_error` that names
  /// the file where it cannot be read.
  bool next();

  const std::string& line() const { return m_line; }  ///< without its end
  std::uint64_t number() const { return m_number; }   ///< of the line, from 1
  std::uint64_t end() const { return m_end; }         ///< the bytes up to the line's end
  bool isWhole() const { return m_isWhole; }          ///< it has an end
  std::string where() const;                          ///< "FILE, line 5"
  bool isTooLong() const { return m_isTooLong; }      ///< `line` has its beginning

 private:
  bool fill();
  void append(std::size_t count);

  std::istream& m_in;
  std::string m_file;
  std::size_t m_longest;
  std::string m_buffer;
  std::size_t m_position = 0;  ///< in the buffer
  std::string m_line;
  std::uint64_t m_number = 0;
  std::uint64_t m_end = 0;
  bool m_isWhole = false;
  bool m_isTooLong = false;
  bool m_stopsAtTooLong = false;
};

}  // namespace reports
