#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "engine/process/LineSplitter.h"

namespace engine {
namespace {

/// The lines, with "+" behind each that goes on.
std::vector<std::string> linesOf(const std::vector<std::string>& pieces, std::size_t limit) {
  std::vector<std::string> lines;
  LineSplitter splitter(limit, [&lines](std::string&& line, bool isPart) {
    lines.push_back(std::move(line) + (isPart ? "+" : ""));
  });
  for (const std::string& piece : pieces) splitter.add(piece);
  splitter.finish();
  return lines;
}

struct SplitRow {
  std::vector<std::string> pieces;
  std::size_t limit;
  std::vector<std::string> lines;
};

TEST(LineSplitter, ALineIsWholeHoweverItsBytesCome) {
  const SplitRow rows[] = {
      {{}, 100, {}},
      {{"a\nb\n"}, 100, {"a", "b"}},
      {{"a", "b\nc", "\n"}, 100, {"ab", "c"}},
      {{"\n\n"}, 100, {"", ""}},
      {{"a\r\nb\r\n"}, 100, {"a", "b"}},
      {{"a\rb\n"}, 100, {"a\rb"}},
      {{"without an end"}, 100, {"without an end"}},
  };
  for (const SplitRow& row : rows) EXPECT_EQ(linesOf(row.pieces, row.limit), row.lines);
}

TEST(LineSplitter, ALongLineComesInPartsThatEndBetweenCharacters) {
  const SplitRow rows[] = {
      {{"abcd\n"}, 4, {"abcd"}},
      {{"abcde\n"}, 4, {"abcd+", "e"}},
      {{"abcdefgh\n"}, 4, {"abcd+", "efgh"}},
      {{"abc\u00e4\n"}, 4, {"abc+", "\u00e4"}},
      {{"ab\u20ac\n"}, 4, {"ab+", "\u20ac"}},
      {{"a\U0001F600\n"}, 4, {"a+", "\U0001F600"}},
      {{"abc\xc3", "\xa4\n"}, 4, {"abc+", "\u00e4"}},
      // What is no UTF-8 is cut anywhere, and is never lost.
      {{"\x80\x80\x80\x80\x80\x80\n"}, 4, {"\x80\x80\x80\x80+", "\x80\x80"}},
  };
  for (const SplitRow& row : rows) EXPECT_EQ(linesOf(row.pieces, row.limit), row.lines);
}

TEST(LineSplitter, NoByteIsLostWhereverTheInputIsCut) {
  const std::string input = "x\u00e4\U0001F600yz\n\n\u20ac\u20ac\u20ac\u20acend\r\nrest";
  const std::vector<std::string> whole = linesOf({input}, 5);
  for (std::size_t cut = 0; cut <= input.size(); ++cut) {
    EXPECT_EQ(linesOf({input.substr(0, cut), input.substr(cut)}, 5), whole) << cut;
  }
}

}  // namespace
}  // namespace engine
