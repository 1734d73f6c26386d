#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace engine {

/// Makes lines of the bytes of a pipe, which come in pieces of any size.
class LineSplitter {
 public:
  /// Gets a line without its line end; `isPart` where the line goes on in the next call.
  using Take = std::function<void(std::string&& line, bool isPart)>;

  /// A line of more than `limit` bytes comes in parts of at most that, none of which ends within a
  /// UTF-8 character. `limit` is at least 4.
  LineSplitter(std::size_t limit, Take take);

  void add(std::string_view bytes);

  /// No more comes: what is there without a line end is a line too.
  void finish();

 private:
  void takeLine();
  void takeParts();

  std::size_t m_limit;
  Take m_take;
  std::string m_line;
};

}  // namespace engine
