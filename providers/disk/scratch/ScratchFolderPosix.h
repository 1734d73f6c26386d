#pragma once

#include <cstdint>
#include <string>

#include "providers/disk/scratch/ScratchFile.h"

namespace providers::disk {

/// A folder that is opened once: what is asked of it and what is made in it goes by the opened one,
/// whatever its path leads to meanwhile.
class ScratchFolder {
 public:
  explicit ScratchFolder(std::string path);
  ScratchFolder(ScratchFolder&& other) noexcept;
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder();

  bool isOpen() const { return m_folder >= 0; }
  /// The id of the mount that it is on; empty where that is not known. Others may have been mounted
  /// over the path since somebody looked.
  std::string mount() const;
  /// A file of about so many bytes, without a name.
  OpenedScratch makeFile(std::uint64_t bytes) const;

 private:
  int makeUnnamed() const;

  std::string m_path;
  int m_folder;
};

}  // namespace providers::disk
