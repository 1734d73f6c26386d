#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/ip_icmp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <system_error>
#include <utility>
#include <vector>

#include "providers/port/echo/EchoDoor.h"

namespace providers::port {

namespace {

std::uint16_t checksum(const std::string& bytes) {
  constexpr std::uint32_t kLow = 0xFFFF;
  constexpr unsigned kHalf = 16;
  std::uint32_t sum = 0;
  for (std::size_t i = 0; i < bytes.size(); i += 2) {
    std::uint16_t word = 0;
    std::memcpy(&word, bytes.data() + i, std::min<std::size_t>(2, bytes.size() - i));
    sum += word;
    sum = (sum & kLow) + (sum >> kHalf);
  }
  return static_cast<std::uint16_t>(~sum);
}

/// A raw socket sees the packets of others, too, those that go out among them, and with their IP
/// header.
class Loopback : public EchoDoor {
 public:
  Loopback(int socket, bool raw)
      : m_socket(socket), m_raw(raw), m_id(static_cast<std::uint16_t>(getpid())) {}
  Loopback(const Loopback&) = delete;
  Loopback& operator=(const Loopback&) = delete;
  ~Loopback() override { close(m_socket); }

  std::string send(const EchoPacket& packet) override {
    icmphdr header = {};
    header.type = ICMP_ECHO;
    header.un.echo.id = m_id;
    header.un.echo.sequence = htons(packet.sequence);
    std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
    bytes += packet.content;
    header.checksum = checksum(bytes);
    std::memcpy(bytes.data(), &header, sizeof header);
    sockaddr_in to = {};
    to.sin_family = AF_INET;
    to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const ssize_t sent = sendto(m_socket, bytes.data(), bytes.size(), MSG_DONTWAIT,
                                reinterpret_cast<const sockaddr*>(&to), sizeof to);
    return sent < 0 ? std::generic_category().message(errno) : std::string();
  }

  std::optional<EchoPacket> receive(int milliseconds) override {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
    for (auto left = milliseconds; left >= 0;) {
      if (!isThere(left)) return std::nullopt;
      if (auto packet = next()) return packet;
      left = static_cast<int>(
          std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count());
    }
    return waiting();
  }

 private:
  /// What has come while this thread had no processor, and the time was over.
  std::optional<EchoPacket> waiting() {
    constexpr int kMost = 1000;
    for (int i = 0; i < kMost && isThere(0); ++i) {
      if (auto packet = next()) return packet;
    }
    return std::nullopt;
  }

  /// Or may be: a signal can have come instead.
  bool isThere(int milliseconds) const {
    pollfd wanted{m_socket, POLLIN, 0};
    const int found = poll(&wanted, 1, milliseconds);
    return found > 0 || (found < 0 && errno == EINTR);
  }

  /// The packet that has come, if it is an answer to one of ours.
  std::optional<EchoPacket> next() {
    constexpr std::size_t kLargest = 65536;
    constexpr unsigned kHeaderWords = 0x0F, kWordBytes = 4;
    std::vector<char> bytes(kLargest);
    const ssize_t received = recv(m_socket, bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (received <= 0) return std::nullopt;
    const auto size = static_cast<std::size_t>(received);
    const std::size_t begin =
        m_raw ? (static_cast<unsigned char>(bytes[0]) & kHeaderWords) * kWordBytes : 0;
    icmphdr header = {};
    if (size < begin + sizeof header) return std::nullopt;
    std::memcpy(&header, bytes.data() + begin, sizeof header);
    // Of the other kind the system has set the identifier and let the right ones through.
    if (header.type != ICMP_ECHOREPLY || (m_raw && header.un.echo.id != m_id)) return std::nullopt;
    return EchoPacket{
        ntohs(header.un.echo.sequence),
        std::string(bytes.data() + begin + sizeof header, size - begin - sizeof header)};
  }

  const int m_socket;
  const bool m_raw;
  const std::uint16_t m_id;
};

/// Room for more than one of the largest packets, which take up twice their size; and of a raw
/// socket, nothing but answers: what others send meanwhile would crowd out the one that is awaited.
void makeRoom(int socket, bool isRaw) {
  constexpr int kBytes = 4 << 20;
  if (setsockopt(socket, SOL_SOCKET, SO_RCVBUFFORCE, &kBytes, sizeof kBytes) != 0) {
    setsockopt(socket, SOL_SOCKET, SO_RCVBUF, &kBytes, sizeof kBytes);
  }
  if (!isRaw) return;
  constexpr int kFilter =
      1;  // ICMP_FILTER of linux/icmp.h, which glibc's header does not get along with
  const std::uint32_t hidden = ~(1U << static_cast<unsigned>(ICMP_ECHOREPLY));
  setsockopt(socket, SOL_RAW, kFilter, &hidden, sizeof hidden);
}

}  // namespace

OpenedEcho openLoopbackEcho() {
  for (const int type : {SOCK_DGRAM, SOCK_RAW}) {
    const int opened = socket(AF_INET, type | SOCK_CLOEXEC, IPPROTO_ICMP);
    if (opened < 0) continue;
    makeRoom(opened, type == SOCK_RAW);
    return {std::make_unique<Loopback>(opened, type == SOCK_RAW), {}};
  }
  const std::string error = std::generic_category().message(errno);
  return {nullptr, "this user may open no socket for echoes: " + error +
                       "; run the test as root, or have net.ipv4.ping_group_range let the user in"};
}

std::string adviceWithoutEcho() {
  return "look whether the system answers echoes (net.ipv4.icmp_echo_ignore_all is 0) and whether "
         "a packet filter keeps them from the loopback interface";
}

}  // namespace providers::port
