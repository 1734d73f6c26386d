#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

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
  /// `Unknown`, with the reason, also while the drive has no result of the test that was started.
  virtual SelfTestState state() = 0;
  /// Why the drive does not end it; empty where it does.
  virtual std::string abort() = 0;
  /// How long the drive says that it takes, in seconds; 0 where it doesn't.
  virtual double seconds(SelfTestKind kind) = 0;
};

/// Tells the result of the test that was started from those of earlier ones, which a drive keeps in
/// the same log.
class ResultLog {
 public:
  void rememberBefore(Bytes log) { m_before = std::move(log); }
  void sawItRun() { m_ran = true; }
  bool hasRun() const { return m_ran; }
  /// Results may be alike to the last byte: of a test that was seen at work the newest one counts.
  bool hasNewResult(const Bytes& log) const { return m_ran || log != m_before; }

 private:
  Bytes m_before;
  bool m_ran = false;
};

constexpr const char* kNoResultYet = "The drive has no result of it";

std::unique_ptr<SelfTest> makeSelfTest(const Disk& disk, DriveCommands& commands);

}  // namespace providers::disk
