#include "history/StateDirectory.h"

#include "history/HistoryError.h"

namespace history {
namespace fs = std::filesystem;

namespace {

constexpr const char* kFolder = "diagsrunner";

/// The variable's value where it is a path from the root: others are void.
fs::path folderOf(const Environment& environment, const char* variable) {
  const fs::path path = fs::u8path(environment(variable));
  return path.is_absolute() ? path : fs::path();
}

}  // namespace

fs::path defaultStateDirectory(const Environment& environment) {
#if defined(_WIN32)
  const fs::path local = folderOf(environment, "LOCALAPPDATA");
  if (!local.empty()) return local / kFolder;
  throw HistoryError("LOCALAPPDATA does not say where runs are kept; give a folder for them");
#else
  const fs::path data = folderOf(environment, "XDG_DATA_HOME");
  if (!data.empty()) return data / kFolder;
  const fs::path home = folderOf(environment, "HOME");
  if (!home.empty()) return home / ".local" / "share" / kFolder;
  throw HistoryError(
      "neither XDG_DATA_HOME nor HOME says where runs are kept; give a folder for them");
#endif
}

}  // namespace history
