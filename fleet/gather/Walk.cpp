#include "fleet/gather/Walk.h"

#include <system_error>
#include <utility>

#include "fleet/reading/Names.h"

namespace fleet {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kDeepest = 64;

bool isNamedAsStream(const fs::path& path) {
  const std::string end = lowered(path.extension().u8string());
  return end == ".jsonl" || end == ".json";
}

}  // namespace

Walk::Walk(std::vector<std::string> names) : m_names(std::move(names)) {}

void Walk::complain(const fs::path& path, const std::string& text) {
  m_complaints.push_back({path.u8string(), 0, text, true});
}

bool Walk::enter(const fs::path& folder) {
  std::error_code failure;
  fs::directory_iterator entries(folder, failure);
  if (failure) {
    complain(folder, "cannot be read: " + failure.message());
    return false;
  }
  if (m_open.size() == kDeepest) {
    complain(folder, "lies too deep to be looked into");
    return false;
  }
  m_open.push_back(std::move(entries));
  return true;
}

bool Walk::openNext(fs::path& file) {
  const fs::path path = fs::u8path(m_names[m_next++]);
  std::error_code failure;
  const fs::file_status status = fs::status(path, failure);
  if (status.type() == fs::file_type::directory) {
    enter(path);
    return false;
  }
  if (status.type() == fs::file_type::regular) {
    file = path;
    return true;
  }
  complain(path, status.type() == fs::file_type::not_found ? "no such file or folder"
                 : failure                                 ? "cannot be read: " + failure.message()
                                                           : "is a pipe or a device, no file");
  return false;
}

bool Walk::step(fs::path& file) {
  fs::directory_iterator& entries = m_open.back();
  if (entries == fs::directory_iterator()) {
    m_open.pop_back();
    return false;
  }
  const fs::path path = entries->path();
  std::error_code failure;
  entries.increment(failure);
  if (failure) {
    complain(path.parent_path(), "cannot be read to its end: " + failure.message());
    entries = {};
  }
  const fs::file_status link = fs::symlink_status(path, failure);
  if (link.type() == fs::file_type::directory) {
    enter(path);
    return false;
  }
  if (!isNamedAsStream(path)) return false;
  const fs::file_status status = fs::status(path, failure);
  if (status.type() == fs::file_type::regular) {
    file = path;
    return true;
  }
  complain(path, status.type() == fs::file_type::not_found   ? "is a link that leads nowhere"
                 : status.type() == fs::file_type::directory ? "is a link to a folder"
                 : failure ? "cannot be read: " + failure.message()
                           : "is a pipe or a device, no file");
  return false;
}

bool Walk::next(fs::path& file) {
  while (true) {
    if (!m_open.empty()) {
      if (step(file)) return true;
    } else if (m_next == m_names.size()) {
      return false;
    } else if (openNext(file)) {
      return true;
    }
  }
}

}  // namespace fleet
