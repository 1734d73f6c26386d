#include "history/store/Database.h"

#include <sqlite3.h>

#include "history/HistoryError.h"
#include "history/store/Statement.h"
#include "text/SafeText.h"

namespace history {
namespace {

std::string meaningOf(int code, const char* words) {
  switch (code & 0xff) {
    case SQLITE_NOTADB:
      return "is no database";
    case SQLITE_CORRUPT:
      return "is a damaged database";
    case SQLITE_BUSY:
      return "is in use by another program that does not let go of it";
    case SQLITE_FULL:
      return "cannot be written: the disk is full";
    case SQLITE_READONLY:
      return "cannot be written: it may only be read";
    case SQLITE_CANTOPEN:
      return "cannot be opened";
    default:
      return std::string("cannot be used: ") + words;
  }
}

bool isDamage(int code) {
  return (code & 0xff) == SQLITE_NOTADB || (code & 0xff) == SQLITE_CORRUPT;
}

/// What a file that comes from somebody else could make the library do.
void restrain(sqlite3* handle) {
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
  sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, Database::kLongest);
  sqlite3_limit(handle, SQLITE_LIMIT_ATTACHED, 0);
}

/// The name by which SQLite takes a file as it stands: without locks, and without the files beside
/// it.
std::string unchanging(const std::filesystem::path& file) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string name = "file:";
  for (const char letter : file.u8string()) {
    const auto byte = static_cast<unsigned char>(letter);
    const bool isPlain = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                         (byte >= '0' && byte <= '9') || byte == '/' || byte == '.';
    if (isPlain) {
      name += letter;
    } else {
      name += {'%', kDigits[byte >> 4U], kDigits[byte & 0xfU]};
    }
  }
  return name + "?immutable=1";
}

}  // namespace

void Database::Closer::operator()(sqlite3* handle) const noexcept { sqlite3_close_v2(handle); }

Database::Database(const std::filesystem::path& file, const char* layer,
                   std::chrono::milliseconds patience, Use use)
    : m_name(text::visible(file.u8string())) {
  const bool isUnchanging = use == Use::kUnchanging;
  const std::string name = isUnchanging ? unchanging(file) : file.u8string();
  const int flags = isUnchanging ? SQLITE_OPEN_READONLY | SQLITE_OPEN_URI
                                 : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
  sqlite3* handle = nullptr;
  const int code = sqlite3_open_v2(name.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, layer);
  m_handle.reset(handle);
  if (code != SQLITE_OK) fail(code);
  sqlite3_extended_result_codes(handle, 1);
  sqlite3_busy_timeout(handle, static_cast<int>(patience.count()));
  restrain(handle);
}

void Database::run(const std::string& sql) { Statement(*this, sql).run(); }

std::int64_t Database::number(const std::string& sql) {
  Statement statement(*this, sql);
  return statement.step() ? statement.integer(0) : 0;
}

std::int64_t Database::lastRow() const { return sqlite3_last_insert_rowid(m_handle.get()); }

std::int64_t Database::changes() const { return sqlite3_changes(m_handle.get()); }

bool Database::isReadOnly() const { return sqlite3_db_readonly(m_handle.get(), "main") == 1; }

void Database::fail(int code) const {
  const char* const words = m_handle ? sqlite3_errmsg(m_handle.get()) : sqlite3_errstr(code);
  const std::string what = m_name + " " + text::visible(meaningOf(code, words));
  if (isDamage(code)) throw DamagedHistory(what);
  if ((code & 0xff) == SQLITE_BUSY) throw BusyHistory(what);
  throw HistoryError(what);
}

Transaction::Transaction(Database& database) : m_database(database) {
  m_database.run("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
  // Where the error itself has undone it already, there is nothing to undo.
  if (m_isOpen) sqlite3_exec(m_database.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::commit() {
  m_database.run("COMMIT");
  m_isOpen = false;
}

}  // namespace history
