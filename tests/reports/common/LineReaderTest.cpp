#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

#include "reports/common/LineReader.h"

namespace reports {
namespace {

TEST(LineReader, TakesAStreamApartAndKnowsWhereItIs) {
  std::istringstream in(std::string("a\n\nb\0c\r\nd", 9));
  LineReader lines(in, "f");
  struct Row {
    std::string line;
    std::uint64_t end;
    bool isWhole;
  };
  std::uint64_t number = 0;
  for (const Row& row : {Row{"a", 2, true}, Row{"", 3, true},
                         Row{std::string("b\0c\r", 4), 8, true}, Row{"d", 9, false}}) {
    ASSERT_TRUE(lines.next());
    EXPECT_EQ(lines.line(), row.line);
    EXPECT_EQ(lines.end(), row.end);
    EXPECT_EQ(lines.isWhole(), row.isWhole);
    EXPECT_EQ(lines.number(), ++number);
  }
  EXPECT_FALSE(lines.next());
  EXPECT_EQ(lines.where(), "f, line 4");
}

TEST(LineReader, AnEmptyStreamHasNoLine) {
  std::istringstream in;
  EXPECT_FALSE(LineReader(in, "f").next());
}

TEST(LineReader, KeepsTheBeginningOfALineThatIsTooLongAndGoesOnBehindIt) {
  std::istringstream in("12345\n123456\n1\n");
  LineReader lines(in, "f", 5);
  ASSERT_TRUE(lines.next());
  EXPECT_FALSE(lines.isTooLong());
  ASSERT_TRUE(lines.next());
  EXPECT_TRUE(lines.isTooLong());
  EXPECT_EQ(lines.line(), "12345");
  ASSERT_TRUE(lines.next());
  EXPECT_FALSE(lines.isTooLong());
  EXPECT_EQ(lines.line(), "1");
}

TEST(LineReader, LinesCrossTheBordersOfWhatIsReadAtOnce) {
  const std::string longOne(200'000, 'x');
  std::istringstream in(longOne + "\n" + longOne + "y\n");
  LineReader lines(in, "f");
  ASSERT_TRUE(lines.next());
  EXPECT_EQ(lines.line(), longOne);
  ASSERT_TRUE(lines.next());
  EXPECT_EQ(lines.line(), longOne + "y");
  EXPECT_FALSE(lines.next());
}

class BrokenBuffer : public std::streambuf {
  int_type underflow() override { throw std::runtime_error("broken"); }
};

TEST(LineReader, AStreamThatCannotBeReadIsNamed) {
  BrokenBuffer buffer;
  std::istream in(&buffer);
  LineReader lines(in, "f\x1b");
  try {
    lines.next();
    FAIL() << "it was read";
  } catch (const std::runtime_error& fault) {
    EXPECT_STREQ(fault.what(), "f\\x1b cannot be read");
  }
}

}  // namespace
}  // namespace reports
