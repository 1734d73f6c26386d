#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <thread>

#include "providers/memory/size/MemoryTurn.h"

namespace providers::memory {

namespace {

/// A socket with a name that is in no folder: every user may take one, nobody can take it from him,
/// and it is free as soon as the process is gone. Nothing is ever sent.
class NamedSocket : public MemoryTurn {
 public:
  NamedSocket(const std::string& name, uid_t user)
      : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    const std::string full = name + "-" + std::to_string(user);
    const std::size_t length = std::min(full.size(), sizeof m_address.sun_path - 1);
    m_address.sun_family = AF_UNIX;
    std::copy_n(full.begin(), length, m_address.sun_path + 1);
    m_length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + length);
  }
  NamedSocket(const NamedSocket&) = delete;
  NamedSocket& operator=(const NamedSocket&) = delete;
  ~NamedSocket() override {
    if (m_socket >= 0) close(m_socket);
  }

  /// 0, or the number of the error.
  int take() const { return bind(m_socket, address(), m_length) == 0 ? 0 : errno; }
  void show() const { listen(m_socket, SOMAXCONN); }
  int reach() const { return connect(m_socket, address(), m_length) == 0 ? 0 : errno; }

  /// Whether who was reached is this user, by the system's word.
  bool isOf(uid_t user) const {
    ucred peer = {};
    socklen_t size = sizeof peer;
    return getsockopt(m_socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == user;
  }

 private:
  const sockaddr* address() const { return reinterpret_cast<const sockaddr*>(&m_address); }

  const int m_socket;
  sockaddr_un m_address = {};
  socklen_t m_length = 0;
};

/// Whether it is the user who has the user's name. Who has just taken it may not show it yet.
bool isHeldBy(const std::string& name, uid_t user, int tries) {
  constexpr std::chrono::milliseconds kPause(10);
  for (int i = 0; i < tries; ++i) {
    if (i > 0) std::this_thread::sleep_for(kPause);
    const NamedSocket probe(name, user);
    const int problem = probe.reach();
    if (problem == 0) return probe.isOf(user);
    if (problem != ECONNREFUSED) return false;
  }
  return false;
}

}  // namespace

std::unique_ptr<MemoryTurn> takeTurn(const std::string& name) {
  constexpr uid_t kRoot = 0;
  constexpr int kTries = 5;
  const uid_t user = geteuid();
  if (user != kRoot && isHeldBy(name, kRoot, 1)) return nullptr;
  auto turn = std::make_unique<NamedSocket>(name, user);
  const int problem = turn->take();
  if (problem == 0) turn->show();
  if (problem == EADDRINUSE && isHeldBy(name, user, kTries)) return nullptr;
  return turn;
}

}  // namespace providers::memory
