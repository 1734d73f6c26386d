#include "framework/TOSSpecific.h"

#include <filesystem>

#include "framework/TVORException.h"
#include "substitute/vorcore/system/ConfigurationState.h"
#include "substitute/vorcore/system/ThisMachine.h"

namespace NZELVOR20 {
namespace {

bool isSeparator(char letter) {
#if defined(_WIN32)
  return letter == '/' || letter == '\\';
#else
  return letter == '/';
#endif
}

/// The file that a path in the installation's own way of writing stands for.
std::filesystem::path localPath(std::string path) {
#if !defined(_WIN32)
  const std::string dataFolder = "\\kfr\\data\\";
  const std::size_t position = path.rfind(dataFolder);
  if (position != std::string::npos) path.replace(position, dataFolder.size(), "/kfr/data/");
#endif
  return std::filesystem::u8path(path);
}

}  // namespace

std::string TOSSpecific::GetVORRootPath() {
  std::string root = vorcore::currentConfiguration()->root;
  if (root.empty()) root = vorcore::programFolder();
  while (!root.empty() && isSeparator(root.back())) root.pop_back();
  return root;
}

std::uint64_t TOSSpecific::GetFileSize(const std::string& path) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(localPath(path), error);
  if (error) throw TVORException(TVORStatusCode(eVORNotFound, "file " + path));
  return size;
}

std::string TOSSpecific::GetBiosID() {
  const auto configuration = vorcore::currentConfiguration();
  if (configuration->overrideBiosId) return configuration->biosId;
  return vorcore::firmwareIdentifier(vorcore::thisMachinesFirmware());
}

bool TOSSpecific::isOEMBuild() { return vorcore::currentConfiguration()->oemBuild; }

}  // namespace NZELVOR20
