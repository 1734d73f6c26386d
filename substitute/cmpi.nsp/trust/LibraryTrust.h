#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace cmpinsp {

/// A provider library as it was found.
struct ExaminedLibrary {
  std::string path;     ///< of the file, symbolic links resolved: what may be loaded
  std::string refusal;  ///< why it may not be loaded; empty when it may
};

/// Examines the provider libraries of an installation. Safe to use from several threads.
///
/// A library's code runs with the rights of whoever runs the command, so nobody else may be able to
/// put it there: it is a file in the providers' folder itself, symbolic links resolved, and neither
/// it nor a folder above it can be changed by others (`PathRights`), nor a library that it needs
/// (`LibraryNeeds`). The links that lead to it are not examined, so that they must not be followed
/// again.
///
/// What libraries have in common is looked at once for all that are examined within a second.
class LibraryTrust {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  /// All paths are UTF-8.
  explicit LibraryTrust(std::string providersFolder, Clock clock = std::chrono::steady_clock::now);
  LibraryTrust(const LibraryTrust&) = delete;
  LibraryTrust& operator=(const LibraryTrust&) = delete;
  ~LibraryTrust();

  ExaminedLibrary examine(const std::string& libraryPath);

 private:
  struct Moment;
  Moment& moment();

  const std::string m_providersFolder;
  const Clock m_clock;
  std::mutex m_mutex;
  std::unique_ptr<Moment> m_moment;
};

}  // namespace cmpinsp
