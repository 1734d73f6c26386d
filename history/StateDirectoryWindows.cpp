#if defined(_WIN32)

#include "history/HistoryError.h"
#include "history/StateDirectory.h"
#include "text/SafeText.h"

namespace history {

// A folder below the user's own inherits that it is for that user, the administrators and the
// system.
void makeStateDirectory(const std::filesystem::path& directory) {
  std::error_code failure;
  std::filesystem::create_directories(directory, failure);
  if (std::filesystem::is_directory(directory)) return;
  throw HistoryError(text::visible(directory.u8string()) +
                     " is no folder that runs can be kept in" +
                     (failure ? ": " + failure.message() : std::string()));
}

// Whoever may read a folder of a user's own may write it.
bool mayOnlyBeRead(const std::filesystem::path&) { return false; }

// The folder's rights are the file's; the library makes the file itself.
void makePrivateFile(const std::filesystem::path&) {}

}  // namespace history

#endif
