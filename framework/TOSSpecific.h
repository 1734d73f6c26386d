#pragma once

#include <cstdint>
#include <string>

#include "framework/Export.h"

namespace NZELVOR20 {

/// What the framework asks of the operating system and of the installation. All operations may be
/// called from any thread.
class VORCORE_API TOSSpecific {
 public:
  /// The installation directory, without a separator at its end; UTF-8.
  static std::string GetVORRootPath();

  /// The size of the file in bytes. Throws `TVORException` (not found) when it cannot be told.
  /// Outside Windows, the part `\kfr\data\` of a path is read with "/".
  static std::uint64_t GetFileSize(const std::string& path);

  /// The system firmware's identifier; empty where there is none to be had.
  static std::string GetBiosID();

  /// True in a build for a partner brand.
  static bool isOEMBuild();
};

}  // namespace NZELVOR20
