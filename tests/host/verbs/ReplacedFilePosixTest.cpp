#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "host/verbs/ReplacedFile.h"

namespace host {
namespace {

namespace files = std::filesystem;

class ReplacedFilePosix : public testing::Test {
 protected:
  ReplacedFilePosix() { files::create_directory(m_folder); }
  ~ReplacedFilePosix() override { files::remove_all(m_folder); }

  std::string file(const std::string& name) const { return m_folder / name; }

  static void write(const std::string& name, const std::string& text) {
    ReplacedFile replaced(name);
    replaced.begin();
    replaced.stream() << text;
    replaced.settle();
  }

 private:
  files::path m_folder =
      files::temp_directory_path() / ("diags replaced " + std::to_string(std::random_device()()));
};

// Catches metrics that nobody but the user can read: another one collects them.
TEST_F(ReplacedFilePosix, OthersMayReadItAndNotWriteIt) {
  const mode_t before = umask(0);
  write(file("a.prom"), "text");
  umask(before);
  EXPECT_EQ(files::status(file("a.prom")).permissions(), files::perms(0644));
}

TEST_F(ReplacedFilePosix, TheUsersMaskHolds) {
  const mode_t before = umask(077);
  write(file("a.prom"), "text");
  umask(before);
  EXPECT_EQ(files::status(file("a.prom")).permissions(), files::perms(0600));
}

TEST_F(ReplacedFilePosix, ALinkStaysAndWhatItLeadsToIsReplaced) {
  std::ofstream(file("there.prom")) << "old";
  files::create_symlink("there.prom", file("link.prom"));
  write(file("link.prom"), "new");
  EXPECT_TRUE(files::is_symlink(file("link.prom")));
  std::ifstream in(file("there.prom"));
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "new");
}

// Catches root's /dev/null turned into a file.
TEST_F(ReplacedFilePosix, ADeviceIsWrittenToAndStays) {
  files::create_symlink("/dev/null", file("null"));
  write(file("null"), "text");
  EXPECT_TRUE(files::is_symlink(file("null")));
  EXPECT_TRUE(files::is_character_file("/dev/null"));
}

}  // namespace
}  // namespace host
