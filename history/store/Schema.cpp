#include "history/store/Schema.h"

#include <cstdint>
#include <string>
#include <vector>

#include "history/HistoryError.h"
#include "history/store/Statement.h"

namespace history {
namespace {

/// Marks the file as this program's: "DiHy".
constexpr std::int64_t kApplication = 0x44694879;
/// Of the tables below. A version that changes them brings along what turns older ones into its
/// own.
constexpr std::int64_t kVersion = 1;

/// By name, as the database lists them. Times are microseconds since 1970, words those of the
/// events' lines. `ended` is null while a run goes on, and stays so in one that was cut off.
const std::vector<std::string>& definitions() {
  static const std::vector<std::string> all{
      // The lines of events, many of them in a row.
      "CREATE TABLE chunks(number INTEGER PRIMARY KEY, run INTEGER NOT NULL, lines BLOB NOT NULL)",
      "CREATE INDEX chunks_of_run ON chunks(run)",
      ("CREATE TABLE measurements(run INTEGER NOT NULL, test INTEGER NOT NULL, sequence INTEGER "
       "NOT "
       "NULL, name TEXT NOT NULL, part TEXT NOT NULL, unit TEXT NOT NULL, number REAL, text TEXT "
       "NOT "
       "NULL, minimum REAL, maximum REAL, PRIMARY KEY(run, test, sequence)) WITHOUT ROWID"),
      ("CREATE TABLE runs(number INTEGER PRIMARY KEY, id TEXT NOT NULL UNIQUE, started INTEGER NOT "
       "NULL, ended INTEGER, outcome TEXT, host TEXT NOT NULL, version TEXT NOT NULL, command TEXT "
       "NOT "
       "NULL, passed INTEGER NOT NULL, warned INTEGER NOT NULL, failed INTEGER NOT NULL, "
       "unfinished "
       "INTEGER NOT NULL, skipped INTEGER NOT NULL, bytes INTEGER NOT NULL, left_out INTEGER NOT "
       "NULL)"),
      ("CREATE TABLE tests(run INTEGER NOT NULL, test INTEGER NOT NULL, name TEXT NOT NULL, "
       "service "
       "TEXT NOT NULL, repetition INTEGER NOT NULL, started INTEGER NOT NULL, seconds REAL, "
       "outcome "
       "TEXT, remark TEXT NOT NULL, PRIMARY KEY(run, test)) WITHOUT ROWID"),
      "CREATE INDEX tests_by_name ON tests(name)",
      "CREATE INDEX tests_by_service ON tests(service)",
  };
  return all;
}

std::vector<std::string> definitionsIn(Database& database) {
  // What an index of the library's own stands for has no text.
  Statement statement(database,
                      "SELECT sql FROM sqlite_master WHERE sql IS NOT NULL ORDER BY name");
  std::vector<std::string> found;
  while (statement.step()) found.push_back(statement.text(0));
  return found;
}

void make(Database& database) {
  for (const std::string& definition : definitions()) database.run(definition);
  database.run("PRAGMA application_id = " + std::to_string(kApplication));
  database.run("PRAGMA user_version = " + std::to_string(kVersion));
}

void check(Database& database, const std::vector<std::string>& found) {
  if (database.number("PRAGMA application_id") != kApplication) {
    throw HistoryError(database.name() + " is a database of another program");
  }
  if (database.number("PRAGMA user_version") > kVersion) {
    throw HistoryError(database.name() + " was written by a later version of this program");
  }
  // Tables that are others only look like these; who knows what reading them would do.
  if (found != definitions()) {
    throw DamagedHistory(database.name() +
                         " is a damaged database: its tables are not the history's");
  }
}

}  // namespace

void prepareSchema(Database& database) {
  std::vector<std::string> found = definitionsIn(database);
  if (found.empty() && !database.isReadOnly()) {
    Transaction transaction(database);
    found = definitionsIn(database);  // somebody else may have been faster
    if (found.empty() && database.number("PRAGMA application_id") == 0) {
      make(database);
      found = definitions();
    }
    transaction.commit();
  }
  check(database, found);
}

}  // namespace history
