#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "providers/disk/health/DriveCommands.h"

namespace providers::disk {

/// What a drive answers, by the bytes that it is asked with; what is not scripted is refused as
/// drives refuse it. Keeps what it was asked.
struct DriveScript {
  std::map<std::pair<unsigned, std::uint32_t>, NvmeAnswer> nvme;  ///< by opcode and word 10
  std::map<Bytes, ScsiAnswer> scsi;                               ///< by the beginning of the block
  std::vector<NvmeCommand> nvmeAsked;
  std::vector<Bytes> scsiAsked;
  std::function<void()> afterEach = [] {};

  static ScsiAnswer data(Bytes bytes) { return {{}, 0, {}, std::move(bytes)}; }
  static ScsiAnswer refusal() {
    return {{}, 2, {0x70, 0, 5, 0, 0, 0, 0, 10, 0, 0, 0, 0, 0x20, 0}, {}};
  }
};

class ScriptedDrive : public DriveCommands {
 public:
  explicit ScriptedDrive(DriveScript& script) : m_script(script) {}

  NvmeAnswer nvme(const NvmeCommand& command) override {
    constexpr std::uint16_t kInvalidField = 2;
    m_script.nvmeAsked.push_back(command);
    const auto found = m_script.nvme.find({command.opcode, command.word10});
    NvmeAnswer answer =
        found == m_script.nvme.end() ? NvmeAnswer{{}, kInvalidField, {}} : found->second;
    m_script.afterEach();
    return answer;
  }
  ScsiAnswer scsi(const ScsiCommand& command) override {
    m_script.scsiAsked.push_back(command.block);
    ScsiAnswer answer = DriveScript::refusal();
    for (const auto& [start, scripted] : m_script.scsi)
      if (command.block.size() >= start.size() &&
          std::equal(start.begin(), start.end(), command.block.begin()))
        answer = scripted;
    m_script.afterEach();
    return answer;
  }

 private:
  DriveScript& m_script;
};

}  // namespace providers::disk
