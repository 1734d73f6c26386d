#pragma once

#include <cstdint>
#include <filesystem>
#include <istream>
#include <string>
#include <vector>

namespace reports {

enum class StreamFormat : std::uint8_t { kEvents, kOcp };

/// What makes a stream whole that was cut off.
struct Recovery {
  StreamFormat format = StreamFormat::kEvents;
  std::uint64_t kept = 0;            ///< the bytes that stay: whole lines
  std::uint64_t dropped = 0;         ///< those of a line that was cut off, behind them
  std::uint64_t open = 0;            ///< tests that had not ended
  std::vector<std::string> closing;  ///< the lines to put behind what stays, without their ends
};

/// Reads a stream of events or an OCP stream, which its first line tells apart, and makes the lines
/// that close it: for each test that is open an error and an end, then an error and an end of the
/// run. They have the time of the last line, and go on with its numbers. A stream that is whole
/// needs none. Throws `std::runtime_error` that names the file, and the line where one behind which
/// others come makes no sense.
Recovery recoveryOf(std::istream& in, const std::string& file);

/// The same for a file, which is made whole in its place. When that is interrupted, it can be done
/// again.
Recovery recoverFile(const std::filesystem::path& path);

}  // namespace reports
