#include "history/store/Statement.h"

#include <sqlite3.h>

#include <algorithm>
#include <limits>

#include "history/store/Database.h"

namespace history {

void Statement::Finalizer::operator()(sqlite3_stmt* statement) const noexcept {
  sqlite3_finalize(statement);
}

Statement::Statement(Database& database, const std::string& sql) : m_database(database) {
  sqlite3_stmt* statement = nullptr;
  const int code = sqlite3_prepare_v2(database.handle(), sql.c_str(), -1, &statement, nullptr);
  m_statement.reset(statement);
  check(code);
}

void Statement::check(int code) const {
  if (code != SQLITE_OK) m_database.fail(code);
}

Statement& Statement::bind(int parameter, std::string_view text) {
  // A text without an address would be NULL.
  const char* const start = text.data() == nullptr ? "" : text.data();
  check(sqlite3_bind_text64(m_statement.get(), parameter, start, text.size(), SQLITE_STATIC,
                            SQLITE_UTF8));
  return *this;
}

Statement& Statement::bindBytes(int parameter, std::string_view bytes) {
  const char* const start = bytes.data() == nullptr ? "" : bytes.data();
  check(sqlite3_bind_blob64(m_statement.get(), parameter, start, bytes.size(), SQLITE_STATIC));
  return *this;
}

Statement& Statement::bind(int parameter, std::int64_t number) {
  check(sqlite3_bind_int64(m_statement.get(), parameter, number));
  return *this;
}

Statement& Statement::bind(int parameter, std::uint64_t number) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::int64_t>::max();
  return bind(parameter, static_cast<std::int64_t>(std::min(number, kMost)));
}

Statement& Statement::bind(int parameter, double number) {
  check(sqlite3_bind_double(m_statement.get(), parameter, number));
  return *this;
}

Statement& Statement::bindNull(int parameter) {
  check(sqlite3_bind_null(m_statement.get(), parameter));
  return *this;
}

bool Statement::step() {
  const int code = sqlite3_step(m_statement.get());
  if (code == SQLITE_ROW) return true;
  // Only now does it let go of what it read; and its own code is the more telling one.
  sqlite3_reset(m_statement.get());
  if (code != SQLITE_DONE) m_database.fail(code);
  return false;
}

void Statement::run() {
  while (step()) {
  }
}

bool Statement::isNull(int column) const {
  return sqlite3_column_type(m_statement.get(), column) == SQLITE_NULL;
}

std::int64_t Statement::integer(int column) const {
  return sqlite3_column_int64(m_statement.get(), column);
}

std::uint64_t Statement::count(int column) const {
  return static_cast<std::uint64_t>(std::max<std::int64_t>(integer(column), 0));
}

double Statement::real(int column) const {
  return sqlite3_column_double(m_statement.get(), column);
}

std::string Statement::text(int column) const { return std::string(bytes(column)); }

std::string_view Statement::bytes(int column) const {
  const void* const start = sqlite3_column_blob(m_statement.get(), column);
  const int size = sqlite3_column_bytes(m_statement.get(), column);
  if (start == nullptr || size <= 0) return {};
  return {static_cast<const char*>(start), static_cast<std::size_t>(size)};
}

}  // namespace history
