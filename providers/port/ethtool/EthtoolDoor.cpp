#include "providers/port/ethtool/EthtoolDoor.h"

#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
// Behind the system's own, which it has to fit to.
#include <linux/sockios.h>

namespace providers::port {

namespace {

class Socket : public EthtoolDoor {
 public:
  Socket() : m_socket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)), m_problem(errno) {}
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;
  ~Socket() override {
    if (m_socket >= 0) close(m_socket);
  }

  int ask(const std::string& port, void* request) override {
    if (m_socket < 0) return m_problem;
    if (port.size() >= IFNAMSIZ) return ENODEV;
    ifreq order = {};
    std::copy(port.begin(), port.end(), std::begin(order.ifr_name));
    order.ifr_data = static_cast<char*>(request);
    return ioctl(m_socket, SIOCETHTOOL, &order) == 0 ? 0 : errno;
  }

 private:
  const int m_socket;
  const int m_problem;
};

}  // namespace

std::unique_ptr<EthtoolDoor> openEthtool() { return std::make_unique<Socket>(); }

}  // namespace providers::port
