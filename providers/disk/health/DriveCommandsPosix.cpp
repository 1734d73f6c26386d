#include <fcntl.h>
#include <linux/nvme_ioctl.h>
#include <scsi/sg.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "providers/common/DeviceNumberPosix.h"
#include "providers/disk/health/DriveCommands.h"

namespace providers::disk {

namespace {

constexpr unsigned kTimeLimit = 30000;  // milliseconds

std::string whyNot(const std::string& what, int error) {
  const std::string text = what + ": " + std::strerror(error);
  if (error == EACCES || error == EPERM)
    return text +
           "; the drive is asked by root alone (CAP_SYS_ADMIN and CAP_SYS_RAWIO), and inside a "
           "container only where the device was handed in";
  if (error == ENOTTY || error == EINVAL)
    return text + "; the way to this drive passes no such commands on";
  return text;
}

class IoctlCommands : public DriveCommands {
 public:
  IoctlCommands(int file, std::string node) : m_file(file), m_node(std::move(node)) {}
  IoctlCommands(const IoctlCommands&) = delete;
  IoctlCommands& operator=(const IoctlCommands&) = delete;
  ~IoctlCommands() override { close(m_file); }

  NvmeAnswer nvme(const NvmeCommand& command) override {
    NvmeAnswer answer;
    answer.data.resize(command.bytes);
    nvme_admin_cmd request{};
    request.opcode = command.opcode;
    request.nsid = command.space;
    request.cdw10 = command.word10;
    request.addr = reinterpret_cast<std::uintptr_t>(answer.data.data());
    request.data_len = command.bytes;
    request.timeout_ms = kTimeLimit;
    const int result = ioctl(m_file, NVME_IOCTL_ADMIN_CMD, &request);
    if (result < 0) answer.problem = whyNot(m_node + " takes no command", errno);
    if (result > 0) answer.status = static_cast<std::uint16_t>(result);
    return answer;
  }

  ScsiAnswer scsi(const ScsiCommand& command) override {
    ScsiAnswer answer;
    Bytes block = command.block;
    answer.sense.resize(64);
    answer.data.resize(command.bytes);
    sg_io_hdr_t request{};
    request.interface_id = 'S';
    request.dxfer_direction = command.bytes > 0 ? SG_DXFER_FROM_DEV : SG_DXFER_NONE;
    request.cmdp = block.data();
    request.cmd_len = static_cast<unsigned char>(block.size());
    request.dxferp = answer.data.data();
    request.dxfer_len = command.bytes;
    request.sbp = answer.sense.data();
    request.mx_sb_len = static_cast<unsigned char>(answer.sense.size());
    request.timeout = kTimeLimit;
    if (ioctl(m_file, SG_IO, &request) < 0) {
      answer.problem = whyNot(m_node + " takes no command", errno);
      return answer;
    }
    if (request.host_status != 0)
      answer.problem =
          m_node + " does not answer (host status " + std::to_string(request.host_status) + ")";
    answer.status = request.status;
    answer.sense.resize(std::min<std::size_t>(request.sb_len_wr, answer.sense.size()));
    const int missing = std::clamp(request.resid, 0, static_cast<int>(command.bytes));
    answer.data.resize(command.bytes - static_cast<unsigned>(missing));
    return answer;
  }

 private:
  const int m_file;
  const std::string m_node;
};

}  // namespace

bool systemHandsCommandsOn() { return true; }

OpenedDrive openDrive(const Disk& disk) {
  const int file = open(disk.node.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (file < 0) return {nullptr, whyNot(disk.node + " cannot be opened", errno)};
  auto commands = std::make_unique<IoctlCommands>(file, disk.node);
  if (std::string problem = whyAnotherDevice(file, disk.node, disk.number); !problem.empty())
    return {nullptr, std::move(problem)};
  return {std::move(commands), {}};
}

}  // namespace providers::disk
