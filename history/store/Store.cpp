#include "history/store/Store.h"

#include <cstdint>
#include <system_error>
#include <thread>

#include "history/HistoryError.h"
#include "history/StateDirectory.h"
#include "history/store/Schema.h"
#include "history/store/Statement.h"
#include "text/SafeText.h"

namespace history {
namespace fs = std::filesystem;

namespace {

/// The file is there, and no other user can read it, before the library opens it.
fs::path ready(const fs::path& directory) {
  makeStateDirectory(directory);
  makePrivateFile(fileIn(directory));
  return fileIn(directory);
}

fs::path beside(const fs::path& file, const char* end) { return fs::path(file) += end; }

/// Where nothing may be made beside the file, SQLite opens none that it logs ahead of, unless what
/// it wants to make is there. What is still in that log, only a place that may be written can tell.
Database::Use useOf(const fs::path& file) {
  std::error_code failure;
  if (!mayOnlyBeRead(file.parent_path()) || fs::exists(beside(file, "-shm"), failure)) {
    return Database::Use::kWritten;
  }
  const std::uintmax_t bytes = fs::file_size(beside(file, "-wal"), failure);
  if (failure || bytes == 0) return Database::Use::kUnchanging;
  throw HistoryError(text::visible(file.u8string()) +
                     " cannot be read in a folder that may not be written: its last changes are "
                     "still beside it; copy the whole folder somewhere else");
}

Database opened(const fs::path& directory, const Options& options) {
  const fs::path file = ready(directory);
  return Database(file, options.layer, options.patience, useOf(file));
}

/// Changes the way in which the file is written, for which nobody else may have it open. The
/// library does not wait for others here.
void logAhead(Database& database, std::chrono::milliseconds patience) {
  constexpr std::chrono::milliseconds kStep(10);
  for (auto waited = kStep;; waited += kStep) {
    try {
      database.run("PRAGMA journal_mode = WAL");
      return;
    } catch (const BusyHistory&) {
      if (waited > patience) throw;
    }
    std::this_thread::sleep_for(kStep);
  }
}

/// What holds for a connection, and in a new file for the file. A commit is on the disk when it
/// returns.
void configure(Database& database, std::chrono::milliseconds patience) {
  database.run("PRAGMA auto_vacuum = INCREMENTAL");
  logAhead(database, patience);
  database.run("PRAGMA synchronous = FULL");
  database.run("PRAGMA journal_size_limit = 4194304");
  database.run("PRAGMA cell_size_check = ON");
  database.run("PRAGMA mmap_size = 0");
}

/// In use, without what removed runs have left.
std::uint64_t bytesIn(Database& database) {
  const std::int64_t pages =
      database.number("PRAGMA page_count") - database.number("PRAGMA freelist_count");
  return static_cast<std::uint64_t>(pages * database.number("PRAGMA page_size"));
}

/// The oldest run that nobody writes; 0 where there is none.
std::int64_t oldestAtRest(Store& store) {
  Statement runs(store.database, "SELECT number, ended IS NULL FROM runs ORDER BY id");
  while (runs.step()) {
    const std::int64_t number = runs.integer(0);
    if (runs.integer(1) == 0 || !store.locks.isTaken(number)) return number;
  }
  return 0;
}

}  // namespace

fs::path fileIn(const fs::path& directory) { return directory / "history.db"; }
fs::path lockFileIn(const fs::path& directory) { return directory / "history.lock"; }

Store::Store(const fs::path& directory, const Options& options)
    : database(opened(directory, options)),
      locks(lockFileIn(directory)),
      mostBytes(options.mostBytes) {
  if (!database.isReadOnly()) configure(database, options.patience);
  prepareSchema(database);
}

void removeRun(Database& database, std::int64_t number) {
  for (const char* const table : {"chunks", "measurements", "tests"}) {
    Statement(database, std::string("DELETE FROM ") + table + " WHERE run = ?")
        .bind(1, number)
        .run();
  }
  Statement(database, "DELETE FROM runs WHERE number = ?").bind(1, number).run();
}

std::uint64_t removeOldest(Store& store, std::uint64_t mostBytes) {
  std::uint64_t removed = 0;
  while (bytesIn(store.database) > mostBytes) {
    // One at a time: others that write need not wait for all of them.
    Transaction transaction(store.database);
    const std::int64_t oldest = oldestAtRest(store);
    if (oldest == 0) break;
    removeRun(store.database, oldest);
    transaction.commit();
    ++removed;
  }
  if (removed != 0) shrink(store.database);
  return removed;
}

void shrink(Database& database) { database.run("PRAGMA incremental_vacuum"); }

}  // namespace history
