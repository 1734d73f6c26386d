// Each of these needs what the one before it declares.
// clang-format off
#include <winsock2.h>
#include <iphlpapi.h>
#include <icmpapi.h>
// clang-format on

#include <utility>
#include <vector>

#include "providers/port/echo/EchoDoor.h"

namespace providers::port {

namespace {

constexpr unsigned kLoopbackAddress = 0x0100007F;  // 127.0.0.1, in the order of the network

/// The system sends a packet and waits for its answer in one call, and any user may have it do so.
class Loopback : public EchoDoor {
 public:
  explicit Loopback(HANDLE handle) : m_handle(handle), m_room(kRoom) {}
  Loopback(const Loopback&) = delete;
  Loopback& operator=(const Loopback&) = delete;
  ~Loopback() override { IcmpCloseHandle(m_handle); }

  std::string send(const EchoPacket& packet) override {
    m_answer.reset();
    std::string content = packet.content;
    if (content.size() > kMost) return "it is too large";
    const DWORD answers =
        IcmpSendEcho(m_handle, kLoopbackAddress, content.data(), static_cast<WORD>(content.size()),
                     nullptr, m_room.data(), static_cast<DWORD>(m_room.size()), kMilliseconds);
    if (answers == 0) return problemOf(GetLastError());
    const auto& reply = *reinterpret_cast<const ICMP_ECHO_REPLY*>(m_room.data());
    if (reply.Status != IP_SUCCESS) return problemOf(reply.Status);
    m_answer = EchoPacket{packet.sequence,
                          std::string(static_cast<const char*>(reply.Data), reply.DataSize)};
    return {};
  }

  std::optional<EchoPacket> receive(int) override { return std::exchange(m_answer, std::nullopt); }

 private:
  static constexpr DWORD kMilliseconds = 1000;
  static constexpr std::size_t kMost = 65500;  // bytes in a packet
  static constexpr std::size_t kRoom = 66000;  // for its answer with all that stands around it

  /// A packet without an answer has been sent for all that.
  static std::string problemOf(DWORD error) {
    return error == IP_REQ_TIMED_OUT ? "" : "the system's error " + std::to_string(error);
  }

  const HANDLE m_handle;
  std::vector<char> m_room;
  std::optional<EchoPacket> m_answer;
};

}  // namespace

OpenedEcho openLoopbackEcho() {
  const HANDLE handle = IcmpCreateFile();
  if (handle != INVALID_HANDLE_VALUE) return {std::make_unique<Loopback>(handle), {}};
  return {nullptr, "the system sends no echo: error " + std::to_string(GetLastError())};
}

std::string adviceWithoutEcho() {
  return "look whether a firewall keeps echoes from the loopback interface";
}

}  // namespace providers::port
