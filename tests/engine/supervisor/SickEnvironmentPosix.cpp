#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "tests/engine/supervisor/SickEnvironment.h"

namespace sick {
namespace {

const char* const kMark = "SICK_TEST_MARK";

std::string mark() { return std::to_string(getpid()) + "."; }

bool isMarked(const std::filesystem::path& process) {
  std::ifstream file(process / "environ", std::ios::binary);
  const std::string all{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  return all.find(std::string(kMark) + "=" + mark()) != std::string::npos;
}

}  // namespace

void setVariable(const char* name, const std::string& value) {
  setenv(kMark, mark().c_str(), 1);
  if (value.empty()) {
    unsetenv(name);
  } else {
    setenv(name, value.c_str(), 1);
  }
}

std::size_t countMarked() {
  std::size_t count = 0;
  std::error_code failure;
  for (std::filesystem::directory_iterator it("/proc", failure), end; !failure && it != end;
       it.increment(failure)) {
    const int id = std::atoi(it->path().filename().c_str());
    if (id > 1 && id != getpid() && isMarked(it->path())) ++count;
  }
  return count;
}

void pauseBriefly() { usleep(10'000); }

StrayPipe::StrayPipe() {
  int ends[2] = {-1, -1};
  if (pipe(ends) != 0) return;
  m_exit = ends[0];
  m_entry = ends[1];
  fcntl(ends[0], F_SETFD, FD_CLOEXEC);
}

StrayPipe::~StrayPipe() {
  closeEntry();
  close(static_cast<int>(m_exit));
}

void StrayPipe::closeEntry() {
  if (m_entry >= 0) close(static_cast<int>(m_entry));
  m_entry = -1;
}

bool StrayPipe::isHeldByOthers() {
  closeEntry();
  pollfd exit = {static_cast<int>(m_exit), 0, 0};
  return poll(&exit, 1, 0) != 1 || (exit.revents & POLLHUP) == 0;
}

OneProcessor::OneProcessor() : m_former(sizeof(cpu_set_t), '\0') {
  auto* const allowed = reinterpret_cast<cpu_set_t*>(m_former.data());
  sched_getaffinity(0, m_former.size(), allowed);
  for (unsigned i = 0; i < CPU_SETSIZE; ++i) {
    if (CPU_ISSET(i, allowed)) m_number = i;
  }
  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(m_number, &one);
  sched_setaffinity(0, sizeof one, &one);
}

OneProcessor::~OneProcessor() {
  sched_setaffinity(0, m_former.size(), reinterpret_cast<const cpu_set_t*>(m_former.data()));
}

}  // namespace sick
