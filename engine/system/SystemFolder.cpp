#include "engine/system/SystemFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>

#include "engine/system/Telling.h"

namespace engine {
namespace {

constexpr std::size_t kLongestText = 4096;
constexpr std::size_t kMostNames = 1024;

class File {
 public:
  explicit File(const std::string& path)
      : m_descriptor(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY)) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() {
    if (m_descriptor >= 0) close(m_descriptor);
  }

  bool isPlain() const {
    struct stat facts {};
    return m_descriptor >= 0 && fstat(m_descriptor, &facts) == 0 && S_ISREG(facts.st_mode);
  }

  /// Behind what was read before; 0 at the end, and where nothing can be read.
  std::size_t read(char* to, std::size_t most) const {
    while (true) {
      const ssize_t count = ::read(m_descriptor, to, most);
      if (count >= 0) return static_cast<std::size_t>(count);
      if (errno != EINTR) return 0;
    }
  }

 private:
  int m_descriptor;
};

bool isDigit(char byte) { return byte >= '0' && byte <= '9'; }

/// Numbers by their length first: they have no zeros in front.
bool isBefore(const std::string& one, const std::string& other) {
  const auto numberAt = [](const std::string& text, std::size_t at) {
    std::size_t end = at;
    while (end < text.size() && isDigit(text[end])) ++end;
    return end - at;
  };
  for (std::size_t i = 0; i < std::min(one.size(), other.size()); ++i) {
    const std::size_t left = numberAt(one, i);
    const std::size_t right = numberAt(other, i);
    const bool isWithin = i > 0 && isDigit(one[i - 1]);
    if (!isWithin && left != 0 && right != 0 && left != right) return left < right;
    if (one[i] != other[i]) return one[i] < other[i];
  }
  return one.size() < other.size();
}

}  // namespace

SystemFolder SystemFolder::operator/(const std::string& name) const {
  return SystemFolder(m_path + "/" + name);
}

bool SystemFolder::has(const std::string& name) const {
  return access((m_path + "/" + name).c_str(), F_OK) == 0;
}

namespace {

/// Thousands of them are read and kept: each takes no more room than it has bytes. What fits into
/// one page comes at once, so that less than was asked for is the end.
std::string shortBytes(const File& file, std::size_t most) {
  char text[kLongestText];
  std::size_t size = 0;
  while (size < most) {
    const std::size_t wanted = most - size;
    const std::size_t count = file.read(text + size, wanted);
    size += count;
    if (count < wanted) break;
  }
  return std::string(text, size);
}

std::string longBytes(const File& file, std::size_t most) {
  constexpr std::size_t kPiece = 65536;
  std::string all;
  while (all.size() < most) {
    const std::size_t before = all.size();
    all.resize(std::min(most, before + kPiece));
    const std::size_t count = file.read(&all[before], all.size() - before);
    all.resize(before + count);
    if (count == 0) break;
  }
  return all;
}

}  // namespace

std::string SystemFolder::bytes(const std::string& name, std::size_t most) const {
  const File file(m_path + "/" + name);
  if (!file.isPlain()) return {};
  return most <= kLongestText ? shortBytes(file, most) : longBytes(file, most);
}

std::string SystemFolder::text(const std::string& name) const {
  return telling(bytes(name, kLongestText));
}

std::string SystemFolder::serial(const std::string& name) const {
  return tellingSerial(bytes(name, kLongestText));
}

std::vector<std::string> SystemFolder::names() const {
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(m_path.c_str()), &closedir);
  std::vector<std::string> all;
  while (folder != nullptr && all.size() < kMostNames) {
    const dirent* const entry = readdir(folder.get());
    if (entry == nullptr) break;
    if (entry->d_name[0] != '.') all.emplace_back(entry->d_name);
  }
  std::sort(all.begin(), all.end(), isBefore);
  return all;
}

std::string SystemFolder::targetOf(const std::string& link) const {
  char target[kLongestText];
  const ssize_t length = readlink((m_path + "/" + link).c_str(), target, sizeof target);
  if (length <= 0) return {};
  const std::string path(target, static_cast<std::size_t>(length));
  return path.substr(path.rfind('/') + 1);
}

}  // namespace engine
