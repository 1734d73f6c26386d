#include "integrations/slurm/StateFolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "integrations/slurm/SettingError.h"

namespace slurm {
namespace {

using Json = nlohmann::json;

[[noreturn]] void refuse(const std::string& path, const std::string& what) {
  throw SettingError("state folder " + path + ": " + what);
}

/// More than it ever writes.
constexpr std::size_t kMostState = 8192;

std::string contentOf(int file) {
  std::array<char, kMostState> buffer{};
  const ssize_t size = ::read(file, buffer.data(), buffer.size());
  return {buffer.data(), size > 0 ? static_cast<std::size_t>(size) : 0};
}

std::optional<LastRun> runFrom(const std::string& text) {
  const Json json = Json::parse(text, nullptr, false);
  if (!json.is_object() || !json.contains("time") || !json["time"].is_number_integer())
    return std::nullopt;
  LastRun run;
  run.time = json["time"].get<std::time_t>();
  run.isSettled = json.contains("settled") && json["settled"] == true;
  return run;
}

std::string textOf(const LastRun& run) {
  const Json json{{"time", run.time},
                  {"verdict", run.verdict},
                  {"reason", run.reason},
                  {"settled", run.isSettled}};
  return json.dump(-1, ' ', true, Json::error_handler_t::replace) + "\n";
}

}  // namespace

bool isRecent(const LastRun& last, std::time_t now, Duration every) {
  return last.isSettled && last.time <= now && std::chrono::seconds(now - last.time) < every;
}

StateFolder::StateFolder(const std::string& path) : m_path(path) {
  std::error_code failure;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), failure);
  if (::mkdir(path.c_str(), S_IRWXU) != 0 && errno != EEXIST) refuse(path, std::strerror(errno));
  m_folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  struct stat found {};
  if (m_folder < 0 || ::fstat(m_folder, &found) != 0) refuse(path, std::strerror(errno));
  const bool isOwn = found.st_uid == ::geteuid() && (found.st_mode & (S_IWGRP | S_IWOTH)) == 0;
  if (isOwn) return;
  ::close(m_folder);
  refuse(path, "it must belong to who runs this, and nobody else may write there");
}

StateFolder::~StateFolder() {
  if (m_lock >= 0) ::close(m_lock);
  ::close(m_folder);
}

bool StateFolder::lock() {
  m_lock = ::openat(m_folder, "lock", O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
  if (m_lock < 0) refuse(m_path, std::string("lock: ") + std::strerror(errno));
  return ::flock(m_lock, LOCK_EX | LOCK_NB) == 0;
}

std::optional<LastRun> StateFolder::last(Verb verb) const {
  const int file =
      ::openat(m_folder, (nameOf(verb) + ".json").c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
  if (file < 0) return std::nullopt;
  const std::string text = contentOf(file);
  ::close(file);
  return runFrom(text);
}

void StateFolder::keep(Verb verb, const LastRun& run) const {
  const std::string name = nameOf(verb) + ".json";
  const std::string text = textOf(run);
  const int file =
      ::openat(m_folder, "new", O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600);
  const bool isWritten =
      file >= 0 && ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  const int why = errno;
  if (file >= 0) ::close(file);
  if (!isWritten) refuse(m_path, name + ": " + std::strerror(why));
  if (::renameat(m_folder, "new", m_folder, name.c_str()) != 0)
    refuse(m_path, name + ": " + std::strerror(errno));
}

}  // namespace slurm
