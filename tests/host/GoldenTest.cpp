// Runs each command line in golden/*.cmd and compares its exit status and both streams with the
// .out file beside it. To add a case, add the two files; with DIAGS_UPDATE_GOLDEN set in the
// environment, the .out files are written instead of compared.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ostream>

#include "tests/host/CommandRunner.h"

namespace host_test {
namespace {

namespace fs = std::filesystem;

#if defined(_WIN32)
const std::string kLibraryPrefix;
const std::string kLibrarySuffix = ".dll";
#else
const std::string kLibraryPrefix = "lib";
const std::string kLibrarySuffix = ".so";
#endif

const char* const kGoldenFolder = DIAGS_SOURCE_DIR "/tests/host/golden";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

/// Control characters other than line ends and tabs as text.
std::string printable(const std::string& text) {
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 || c == '\n' || c == '\t') {
      result += c;
    } else {
      char number[8];
      std::snprintf(number, sizeof number, "\\x%02x", static_cast<unsigned>(byte));
      result += number;
    }
  }
  return result;
}

#if defined(_WIN32)
/// Paths with slashes; a character that is spelt out keeps its backslash. In JSON a path's are
/// twice.
std::string withSlashes(std::string text) {
  if (text.compare(0, 1, "{") == 0) return replaced(text, "\\\\", "/");
  for (std::size_t at = text.find('\\'); at != std::string::npos; at = text.find('\\', at + 1)) {
    const std::string next = text.substr(at + 1, 3);
    const bool isSpeltOut = next.size() == 3 && (next[0] == 'x' || next[0] == 'u') &&
                            next.find_first_not_of("0123456789abcdef", 1) == std::string::npos;
    if (!isSpeltOut) text[at] = '/';
  }
  return text;
}
#endif

/// What differs between machines and builds by its name.
std::string normalised(std::string text) {
#if defined(_WIN32)
  text = withSlashes(std::move(text));
  text = replaced(text, "The system cannot find the file specified.", "No such file or directory");
#endif
  for (const std::string library : {"diagsScripted", "testFaulty", "testGone"}) {
    text = replaced(text, kLibraryPrefix + library + kLibrarySuffix, "{" + library + "}");
  }
  // Windows puts the drive in front of a path that has none.
  const std::string absolute = fs::absolute(DIAGS_TEST_INSTALLATIONS).generic_string();
  text = replaced(text, absolute, "{installations}");
  text = replaced(text, DIAGS_TEST_INSTALLATIONS, "{installations}");
  return replaced(printable(text), "diags " DIAGS_PROJECT_VERSION, "diags {version}");
}

std::string transcriptOf(const std::string& commandLine) {
  const CommandResult result =
      runCommand(splitWords(replaced(commandLine, "{installations}", DIAGS_TEST_INSTALLATIONS)));
  return "status " + std::to_string(result.status) + "\n--- standard output\n" +
         normalised(result.out) + "--- standard error\n" + normalised(result.err);
}

struct GoldenCase {
  std::string name;
};

void PrintTo(const GoldenCase& goldenCase, std::ostream* stream) { *stream << goldenCase.name; }

std::vector<GoldenCase> goldenCases() {
  std::vector<GoldenCase> cases;
  for (const fs::directory_entry& entry : fs::directory_iterator(kGoldenFolder)) {
    if (entry.path().extension() == ".cmd") cases.push_back({entry.path().stem().string()});
  }
  std::sort(cases.begin(), cases.end(),
            [](const GoldenCase& one, const GoldenCase& other) { return one.name < other.name; });
  return cases;
}

class Golden : public testing::TestWithParam<GoldenCase> {};

TEST_P(Golden, TheCommandAnswersAsRecorded) {
  const std::string base = std::string(kGoldenFolder) + "/" + GetParam().name;
  const std::string transcript = transcriptOf(readText(base + ".cmd"));
  if (std::getenv("DIAGS_UPDATE_GOLDEN") != nullptr) {
    std::ofstream(base + ".out", std::ios::binary) << transcript;
  } else {
    EXPECT_EQ(transcript, readText(base + ".out"));
  }
}

/// GoogleTest wants letters, digits and underscores.
std::string caseName(const testing::TestParamInfo<GoldenCase>& tested) {
  std::string name = tested.param.name;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(CommandLine, Golden, testing::ValuesIn(goldenCases()), caseName);

}  // namespace
}  // namespace host_test
