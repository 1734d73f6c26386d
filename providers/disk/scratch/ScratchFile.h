#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "providers/disk/finding/Disk.h"

namespace providers::disk {

/// Why something failed; nothing where it did not.
struct ScratchProblem {
  std::string text;
  bool ofDrive = false;  ///< the drive failed; else there is no room, no right, or the like
};

/// A file that is a run's own, written and read past the cache. Places and lengths are multiples of
/// 4096. For one thread.
class ScratchFile {
 public:
  virtual ~ScratchFile() = default;
  virtual std::uint64_t bytes() const = 0;
  virtual std::string folder() const = 0;
  virtual ScratchProblem write(std::uint64_t offset, const std::uint8_t* data,
                               std::size_t bytes) = 0;
  virtual ScratchProblem read(std::uint64_t offset, std::uint8_t* into, std::size_t bytes) = 0;
  /// Sees to it that the disk has what was written.
  virtual ScratchProblem flush() = 0;
};

/// A scratch file, or why there is none.
struct OpenedScratch {
  std::unique_ptr<ScratchFile> file;
  std::string problem;
  std::string shortage = {};  ///< for lack of what it is smaller than was asked for: "room"
};

/// A file of about so many bytes in the folder, or, where that is empty, on some file system of the
/// disk; less where there is not enough room.
using OpenScratch =
    std::function<OpenedScratch(const Disk& disk, const std::string& folder, std::uint64_t bytes)>;

/// The file has no name from the beginning on, or loses it at once, so that nothing is left of it
/// however the process ends. A folder that is not on the disk is refused.
OpenedScratch openScratch(const Disk& disk, const std::string& folder, std::uint64_t bytes);

/// Whether this system has such files.
bool systemHasScratchFiles();

}  // namespace providers::disk
