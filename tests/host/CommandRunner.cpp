#include "tests/host/CommandRunner.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

#if !defined(_WIN32)
#include <sys/wait.h>
#endif

namespace host_test {
namespace {

namespace fs = std::filesystem;

#if defined(_WIN32)

std::string quoted(const std::string& word) {
  std::string result = "\"";
  for (const char c : word) result += c == '"' ? std::string("\\\"") : std::string(1, c);
  return result + "\"";
}

// The command interpreter takes one pair of quotes off the whole line.
int runShell(const std::string& line) {
  return _wsystem(fs::u8path("\"" + line + "\"").wstring().c_str());
}

#else

std::string quoted(const std::string& word) {
  std::string result = "'";
  for (const char c : word) result += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return result + "'";
}

int runShell(const std::string& line) {
  const int status = std::system(line.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

#endif

/// A file that takes what a process writes, and is gone with its holder.
class ScratchFile {
 public:
  ScratchFile()
      : m_path(fs::temp_directory_path() / ("diags-" + std::to_string(std::random_device()()))) {}
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile() {
    std::error_code ignored;
    fs::remove(m_path, ignored);
  }

  std::string path() const { return m_path.u8string(); }

 private:
  fs::path m_path;
};

}  // namespace

std::string readText(const std::string& path) {
  std::ifstream file(fs::u8path(path), std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at)) {
    text.erase(at, 1);
  }
  return text;
}

std::vector<std::string> splitWords(const std::string& line) {
  std::vector<std::string> words;
  std::string word;
  bool quotes = false;
  bool started = false;
  for (const char c : line) {
    if (c == '"') {
      quotes = !quotes;
      started = true;
    } else if (!quotes && (c == ' ' || c == '\n')) {
      if (started) words.push_back(word);
      word.clear();
      started = false;
    } else {
      word += c;
      started = true;
    }
  }
  if (started) words.push_back(word);
  return words;
}

#if defined(_WIN32)
const char* const kStateVariable = "LOCALAPPDATA";
#else
const char* const kStateVariable = "XDG_DATA_HOME";
#endif

/// The runs of tests are not kept with those of whoever runs the tests, and go with the tests; so
/// does what they cache, where nobody has said where to.
class StateOfTests {
 public:
  StateOfTests() {
#if defined(_WIN32)
    _putenv_s(kStateVariable, m_folder.string().c_str());
#else
    setenv(kStateVariable, m_folder.c_str(), 1);
    setenv("XDG_CACHE_HOME", (m_folder / "cache").c_str(), 0);
#endif
  }
  ~StateOfTests() {
    std::error_code failure;
    fs::remove_all(m_folder, failure);
  }

 private:
  fs::path m_folder =
      fs::temp_directory_path() / ("diags-test-runs-" + std::to_string(std::random_device()()));
};

const StateOfTests stateOfTests;

CommandResult runCommand(const std::vector<std::string>& arguments, const std::string& outPath,
                         const std::string& prefix) {
  const ScratchFile out;
  const ScratchFile err;
  std::string line = prefix + quoted(DIAGS_COMMAND);
  for (const std::string& argument : arguments) line += " " + quoted(argument);
  line += " >" + quoted(outPath.empty() ? out.path() : outPath) + " 2>" + quoted(err.path());

  CommandResult result;
  result.status = runShell(line);
  result.out = readText(out.path());
  result.err = readText(err.path());
  return result;
}

}  // namespace host_test
