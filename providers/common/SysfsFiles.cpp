#include "providers/common/SysfsFiles.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <system_error>

namespace providers {

namespace fs = std::filesystem;

std::string readAll(const fs::path& file) {
  constexpr std::size_t kMost = 4096;
  return readStart(file, kMost);
}

std::string readStart(const fs::path& file, std::size_t most) {
  std::string bytes(most, '\0');
  std::ifstream stream;
  // A device may do something for each reading: no more is asked for than is wanted.
  stream.rdbuf()->pubsetbuf(nullptr, 0);
  stream.open(file, std::ios::binary);
  stream.read(bytes.data(), static_cast<std::streamsize>(most));
  bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(stream.gcount(), 0)));
  return bytes;
}

std::string printable(const std::string& text) {
  std::string result;
  for (const char letter : text) {
    const bool shown = letter > ' ' && letter <= '~';
    if (shown)
      result += letter;
    else if (!result.empty() && result.back() != ' ')
      result += ' ';
  }
  if (!result.empty() && result.back() == ' ') result.pop_back();
  return result;
}

std::string readLine(const fs::path& file) {
  const std::string text = readAll(file);
  return printable(text.substr(0, text.find('\n')));
}

std::optional<std::uint64_t> readNumber(const fs::path& file) {
  const std::string text = readLine(file);
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (text.empty() || error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::vector<fs::path> childrenOf(const fs::path& folder) {
  std::vector<fs::path> children;
  std::error_code error;
  for (fs::directory_iterator i(folder, error), end; !error && i != end; i.increment(error))
    children.push_back(i->path());
  std::sort(children.begin(), children.end());
  return children;
}

}  // namespace providers
