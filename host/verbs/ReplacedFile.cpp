#include "host/verbs/ReplacedFile.h"

#include <cerrno>
#include <fstream>
#include <random>
#include <stdexcept>
#include <system_error>

#include "host/Messages.h"
#include "text/SafeText.h"

namespace host {
namespace {

namespace fs = std::filesystem;

/// Where a link leads: it is to stay, and what it leads to may be a device.
fs::path followed(const fs::path& path) {
  std::error_code failure;
  if (!fs::is_symlink(path, failure)) return path;
  const fs::path target = fs::canonical(path, failure);
  return failure ? path : target;
}

bool canBeReplaced(const fs::path& path) {
  std::error_code failure;
  return !fs::exists(path, failure) || fs::is_regular_file(path, failure);
}

/// Nobody can guess it and put a link there.
fs::path nameBeside(const fs::path& path) {
  std::random_device random;
  fs::path beside = path;
  beside += "." + std::to_string(random()) + std::to_string(random()) + ".tmp";
  return beside;
}

}  // namespace

ReplacedFile::ReplacedFile(const std::string& name)
    : m_name(name), m_path(followed(fs::u8path(name))), m_isReplaced(canBeReplaced(m_path)) {
  std::error_code failure;
  if (fs::is_directory(m_path, failure)) throw UsageError(name + " is a folder");
  if (!m_isReplaced) return;
  try {
    fs::remove(makeBeside(""), failure);
  } catch (const std::runtime_error& error) {
    throw UsageError(error.what());
  }
}

void ReplacedFile::settle() {
  const std::string text = m_text.str();
  if (!m_isReplaced) return write(m_path, text);
  const fs::path beside = makeBeside(text);
  std::error_code failure;
  fs::rename(beside, m_path, failure);
  if (!failure) return;
  std::error_code unused;
  fs::remove(beside, unused);
  fail(failure.message());
}

/// The file that is to take the other one's place: whoever collects it may read it, as far as the
/// user lets others read files at all, and nobody else may write.
fs::path ReplacedFile::makeBeside(const std::string& text) const {
  const fs::path beside = nameBeside(m_path);
  std::error_code failure;
  try {
    write(beside, text);
  } catch (...) {
    fs::remove(beside, failure);
    throw;
  }
  fs::permissions(beside, fs::perms::group_write | fs::perms::others_write,
                  fs::perm_options::remove, failure);
  return beside;
}

void ReplacedFile::write(const fs::path& path, const std::string& text) const {
  errno = 0;
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << text;
  file.close();
  if (!file) fail(errno == 0 ? "" : std::generic_category().message(errno));
}

void ReplacedFile::fail(const std::string& reason) const {
  throw std::runtime_error(text::visible(m_name) + " cannot be written" +
                           (reason.empty() ? "" : ": " + reason));
}

}  // namespace host
