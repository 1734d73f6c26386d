#include "engine/installation/PlanShelf.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace engine {
namespace {

namespace fs = std::filesystem;

/// A pipe or a device might never come to an end, or never begin.
void refuseNoFile(const std::string& path, fs::file_type type) {
  if (type == fs::file_type::regular) return;
  const char* const what = type == fs::file_type::not_found   ? "there is no such file"
                           : type == fs::file_type::directory ? "this is a folder, no plan"
                           : type == fs::file_type::none || type == fs::file_type::unknown
                               ? "cannot be read"
                               : "this is a pipe or a device; a plan is a file";
  throw PlanError(path + ": " + what);
}

/// No plan is longer; one byte more tells that it is.
std::string readFile(const std::string& path) {
  std::error_code failure;
  refuseNoFile(path, fs::status(fs::u8path(path), failure).type());
  std::ifstream file(fs::u8path(path), std::ios::binary);
  std::string text(kLongestPlan + 1, '\0');
  file.read(&text[0], static_cast<std::streamsize>(text.size()));
  if (file.bad() || !file.is_open()) throw PlanError(path + ": cannot be read");
  text.resize(static_cast<std::size_t>(file.gcount()));
  return text;
}

}  // namespace

PlanShelf shelfOf(const std::string& root) {
  PlanShelf shelf;
  shelf.read = readFile;
  shelf.folder = (fs::u8path(root) / "plans").u8string();
  std::error_code failure;
  for (fs::directory_iterator it(fs::u8path(shelf.folder), failure), end; !failure && it != end;
       it.increment(failure)) {
    if (it->path().extension() == ".toml") shelf.names.push_back(it->path().stem().u8string());
  }
  std::sort(shelf.names.begin(), shelf.names.end());
  return shelf;
}

}  // namespace engine
