#include <gtest/gtest.h>

#include <cerrno>
#include <sstream>
#include <stdexcept>

#include "reports/common/LineWriter.h"

namespace reports {
namespace {

/// Counts what reaches it; from some call on, it is full.
class Disk : public std::stringbuf {
 public:
  explicit Disk(int room) : m_room(room) {}
  int flushes = 0;

 private:
  std::streamsize xsputn(const char* text, std::streamsize count) override {
    if (--m_room >= 0) return std::stringbuf::xsputn(text, count);
    errno = ENOSPC;
    return 0;
  }
  int sync() override {
    ++flushes;
    return 0;
  }

  int m_room;
};

TEST(LineWriter, FlushesEachLine) {
  Disk disk(2);
  std::ostream out(&disk);
  LineWriter lines(out, "f");
  lines.write("a");
  lines.write("b");
  EXPECT_EQ(disk.str(), "a\nb\n");
  EXPECT_EQ(disk.flushes, 2);
}

TEST(LineWriter, AFullDiskIsToldWithTheFilesName) {
  Disk disk(1);
  std::ostream out(&disk);
  LineWriter lines(out, "out\x1b.jsonl");
  lines.write("a");
  try {
    lines.write("b");
    FAIL() << "it was written";
  } catch (const std::runtime_error& fault) {
    EXPECT_EQ(fault.what(),
              "out\\x1b.jsonl cannot be written: " + std::generic_category().message(ENOSPC));
  }
}

}  // namespace
}  // namespace reports
