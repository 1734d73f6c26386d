#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "history/History.h"
#include "history/store/Database.h"
#include "history/store/RunLocks.h"

namespace history {

/// What a history and those that write in it stand on: its file, who writes which run, and how much
/// there may be.
struct Store {
  Store(const std::filesystem::path& directory, const Options& options);

  Database database;
  RunLocks locks;
  std::uint64_t mostBytes;
};

/// The history's file in that folder.
std::filesystem::path fileIn(const std::filesystem::path& directory);
/// The file beside it that its locks are on.
std::filesystem::path lockFileIn(const std::filesystem::path& directory);

/// Removes the oldest runs until what is left takes at most that many bytes of the file; those that
/// are being written stay. Returns how many were removed.
std::uint64_t removeOldest(Store& store, std::uint64_t mostBytes);

/// Removes everything of that run. Within a transaction.
void removeRun(Database& database, std::int64_t number);

/// Gives back to the system what removed runs took.
void shrink(Database& database);

}  // namespace history
