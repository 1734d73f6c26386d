#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "providers/disk/health/DriveCommands.h"

namespace providers::disk {

enum class SelfTestKind { Short, Extended };

/// How a self-test stands.
struct SelfTestState {
  enum class Phase { Running, Passed, Failed, Aborted, Unknown };
  Phase phase = Phase::Unknown;
  double share = 0;  ///< while it runs, from 0 to 1
  std::string text;  ///< of its end: a sentence without its end
  std::optional<std::uint64_t> failingBlock;
};

/// The test that a drive has in itself, which goes on without anybody.
class SelfTest {
 public:
  virtual ~SelfTest() = default;
  /// Why the drive does not begin; empty where it has begun.
  virtual std::string start(SelfTestKind kind) = 0;
  virtual SelfTestState state() = 0;
  virtual void abort() = 0;
  /// How long the drive says that it takes, in seconds; 0 where it doesn't.
  virtual double seconds(SelfTestKind kind) = 0;
};

std::unique_ptr<SelfTest> makeSelfTest(const Disk& disk, DriveCommands& commands);

}  // namespace providers::disk
