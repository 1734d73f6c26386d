#include "history/store/PutAside.h"

#include <chrono>
#include <system_error>
#include <thread>

#include "history/HistoryError.h"
#include "history/store/RunId.h"
#include "history/store/Store.h"
#include "text/SafeText.h"

namespace history {
namespace fs = std::filesystem;

namespace {

fs::path with(fs::path file, const std::string& ending) {
  file += fs::u8path(ending);
  return file;
}

/// Runs have numbers from 1.
constexpr std::int64_t kMendersPlace = 0;

}  // namespace

Mending::Mending(const fs::path& directory, std::chrono::milliseconds patience)
    : m_locks(lockFileIn(directory)) {
  constexpr std::chrono::milliseconds kStep(20);
  for (auto waited = kStep; !m_locks.take(kMendersPlace); waited += kStep) {
    if (waited > patience) {
      throw HistoryError(text::visible(fileIn(directory).u8string()) +
                         " is damaged, and another program does not let go of it");
    }
    std::this_thread::sleep_for(kStep);
  }
}

fs::path putAside(const fs::path& file) {
  const auto now =
      std::chrono::time_point_cast<std::chrono::microseconds>(std::chrono::system_clock::now());
  const fs::path aside = with(file, ".damaged-" + runId(now, someDigits()));
  // The log first: with a new file in its place, it would be taken for that one's.
  for (const char* const ending : {"-wal", "-shm", ""}) {
    std::error_code failure;
    if (!fs::exists(with(file, ending), failure)) continue;
    fs::rename(with(file, ending), with(aside, ending), failure);
    if (!failure) continue;
    throw HistoryError(text::visible(file.u8string()) +
                       " is damaged and cannot be put aside: " + failure.message());
  }
  return aside;
}

}  // namespace history
