#include "engine/installation/InstallationRoot.h"

#include <filesystem>
#include <system_error>

namespace engine {
namespace {

namespace fs = std::filesystem;

bool isDirectory(const fs::path& path) {
  std::error_code failure;
  return fs::is_directory(path, failure);
}

std::string withoutSeparatorAtEnd(const fs::path& path) {
  const fs::path plain = path.has_filename() ? path : path.parent_path();
  return plain.u8string();
}

std::string namedRoot(const std::string& root, const std::string& where) {
  const fs::path path = fs::u8path(root);
  if (!isDirectory(path)) throw InstallationError(where + ": \"" + root + "\" is no directory");
  // A slip of the pen must not pass for an installation in which all is well.
  if (!isDirectory(path / "schema")) {
    throw InstallationError(where + ": \"" + root +
                            "\" is no installation: it has no folder schema");
  }
  return withoutSeparatorAtEnd(path);
}

/// The installation that the program belongs to; empty where there is none. The program's own
/// folder comes first: what lies around an unpacked package is none of its affair.
fs::path rootBeside(const fs::path& program) {
  if (program.empty()) return fs::path();
  for (const char* const candidate : {".", "../installation", "../lib/diagsrunner", ".."}) {
    fs::path path = (program / candidate).lexically_normal();
    if (isDirectory(path / "schema")) return path;
  }
  return fs::path();
}

}  // namespace

std::string findInstallationRoot(const RootSources& sources) {
  if (!sources.option.empty()) return namedRoot(sources.option, "--root");
  if (!sources.environment.empty()) return namedRoot(sources.environment, "DIAGS_ROOT");
  const fs::path beside = rootBeside(fs::u8path(sources.programDirectory));
  if (!beside.empty()) return withoutSeparatorAtEnd(beside);
  throw InstallationError("no installation found beside this program; name one with --root DIR");
}

std::string findWorker(const std::string& programDirectory) {
#if defined(_WIN32)
  const char* const kName = "diags-worker.exe";
#else
  const char* const kName = "diags-worker";
#endif
  const auto own = std::filesystem::u8path(programDirectory);
  std::string places;
  const auto beside = own.parent_path();
  for (const auto& place :
       {own / kName, beside / "lib" / "diagsrunner" / kName, beside / "bin" / kName}) {
    std::error_code failure;
    if (std::filesystem::is_regular_file(place, failure)) return place.u8string();
    places += (places.empty() ? "" : ", ") + place.u8string();
  }
  throw InstallationError("the program that runs the tests is missing; looked for " + places);
}

std::string namedWorker(const std::string& path) {
  std::error_code failure;
  if (fs::is_regular_file(fs::u8path(path), failure)) return path;
  throw InstallationError("the program that runs the tests is missing: there is no file " + path);
}

}  // namespace engine
