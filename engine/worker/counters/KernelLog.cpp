#include "engine/worker/counters/KernelLog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <sstream>

namespace engine::counters {
namespace {

/// Above what is given out by and by, as the worker's pipes are.
constexpr int kFirstNumber = 200;
/// As much as the kernel keeps on most machines; a flood may be longer.
constexpr std::size_t kMostOfLog = 1024 * 1024;
/// A record is read in one piece, or not at all.
constexpr std::size_t kLongestRecord = 8192;

bool isLog(const struct stat& facts) {
  return S_ISREG(facts.st_mode) || (S_ISCHR(facts.st_mode) && facts.st_rdev == makedev(1, 11));
}

/// "6,339,5140900,-;Message": priority and facility first, and the facility 0 is the kernel's.
/// Lines that begin with a blank belong to the one before.
bool takeMessage(const std::string& line, std::string& message) {
  constexpr unsigned long kPriorities = 8;
  const std::size_t end = line.find(';');
  if (end == std::string::npos || line[0] < '0' || line[0] > '9') return false;
  if (std::strtoul(line.c_str(), nullptr, 10) >= kPriorities) return false;
  message = line.substr(end + 1);
  return true;
}

}  // namespace

KernelLog::KernelLog(const std::string& path) {
  struct stat facts {};
  if (stat(path.c_str(), &facts) != 0 || !isLog(facts)) return;
  const int opened = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
  if (opened < 0) return;
  m_file = fcntl(opened, F_DUPFD_CLOEXEC, kFirstNumber);
  if (m_file < 0) m_file = fcntl(opened, F_DUPFD_CLOEXEC, 0);  // few are allowed
  close(opened);
  const bool isReady =
      m_file >= 0 && fstat(m_file, &facts) == 0 && isLog(facts) && lseek(m_file, 0, SEEK_END) >= 0;
  m_device = facts.st_dev;
  m_node = facts.st_ino;
  if (isReady) return;
  if (m_file >= 0) close(m_file);
  m_file = -1;
}

KernelLog::~KernelLog() {
  if (isStillOurs()) close(m_file);
}

bool KernelLog::isStillOurs() const {
  struct stat facts {};
  return m_file >= 0 && fstat(m_file, &facts) == 0 && facts.st_dev == m_device &&
         facts.st_ino == m_node;
}

std::vector<std::string> KernelLog::messages() const {
  std::vector<std::string> all;
  std::istringstream lines(readAll());
  for (std::string line; std::getline(lines, line);) {
    std::string message;
    if (takeMessage(line, message)) all.push_back(std::move(message));
  }
  return all;
}

/// Where the oldest was overwritten before it was read, the rest is still there (EPIPE).
std::string KernelLog::readAll() const {
  std::string text;
  char record[kLongestRecord];
  while (isStillOurs() && text.size() < kMostOfLog) {
    const ssize_t count = read(m_file, record, sizeof record);
    if (count > 0) text.append(record, static_cast<std::size_t>(count));
    if (count < 0 && (errno == EINTR || errno == EPIPE)) continue;
    if (count <= 0) break;
  }
  return text;
}

}  // namespace engine::counters
