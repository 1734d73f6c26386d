#include "substitute/cmpi.nsp/cache/CacheFile.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>

#include "substitute/cmpi.nsp/installation/PathForm.h"
#include "substitute/cmpi.nsp/installation/PathRights.h"
#include "substitute/cmpi.nsp/installation/SystemMessage.h"

namespace cmpinsp {

namespace {

namespace fs = std::filesystem;

/// Why it is not known whose the file is; empty where that can be found out.
std::string whyNotExaminable(const std::string& path) {
  if (!losesItsMachine(fs::u8path(path))) return std::string();
  return "such a path cannot be examined: begin it with a drive letter";
}

/// Makes the folder and those above it that are missing.
void makeFolder(const fs::path& folder, std::error_code& error) {
  if (fs::is_directory(folder, error)) return;
  if (folder.has_relative_path()) makeFolder(folder.parent_path(), error);
  error.clear();
  if (fs::create_directory(folder, error)) {
    fs::permissions(folder, fs::perms::owner_all, error);
  }
}

/// A name in the same folder that nobody else uses, in this process or another.
fs::path temporaryBeside(const fs::path& file) {
  std::random_device random;
  fs::path name = file;
  name += "." + std::to_string(random()) + std::to_string(random()) + ".tmp";
  return name;
}

std::string writeAll(const fs::path& file, const std::string& bytes) {
  std::ofstream stream(file, std::ios::binary);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  stream.close();
  return stream ? std::string() : "it cannot be written";
}

}  // namespace

std::string whyNotTrusted(const std::string& path) {
  const std::string unknown = whyNotExaminable(path);
  if (!unknown.empty()) return unknown;
  std::error_code error;
  const fs::path real = fs::canonical(fs::u8path(path), error);
  if (error == std::errc::no_such_file_or_directory) return std::string();
  return error ? systemMessage(error) : whyOthersCanChange(real.u8string());
}

std::string withoutLinks(const std::string& path) {
#if defined(_WIN32)
  // Made absolute by gcc's library, \\server\share would be a folder of the current drive.
  return path;
#else
  std::error_code error;
  const fs::path file = fs::absolute(fs::u8path(path), error);
  if (error) return path;
  const fs::path folder = fs::weakly_canonical(file.parent_path(), error);
  return error ? path : (folder / file.filename()).u8string();
#endif
}

std::string replaceCacheFile(const std::string& path, const std::string& bytes) {
  const fs::path file = fs::u8path(withoutLinks(path));
  const std::string folder = file.parent_path().u8string();
  std::string refusal = whyNotExaminable(path);
  if (refusal.empty()) refusal = whyOthersCanChangeFolder(folder);
  if (!refusal.empty()) return refusal;
  std::error_code error;
  makeFolder(file.parent_path(), error);
  if (error) return systemMessage(error);
  refusal = whyOthersCanChangeFolder(folder);  // now that all of it is there
  if (!refusal.empty()) return refusal;
  const fs::path temporary = temporaryBeside(file);
  std::string failure = writeAll(temporary, bytes);
  if (failure.empty()) {
    fs::permissions(temporary, fs::perms::owner_read | fs::perms::owner_write, error);
    fs::rename(temporary, file, error);
    if (error) failure = systemMessage(error);
  }
  if (!failure.empty()) fs::remove(temporary, error);
  return failure;
}

}  // namespace cmpinsp
