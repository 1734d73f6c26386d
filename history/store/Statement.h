#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct sqlite3_stmt;

namespace history {

class Database;

/// One SQL statement with its parameters, from 1, and its columns, from 0. It lives no longer than
/// its database. Throws what `Database::fail` does.
class Statement {
 public:
  Statement(Database& database, const std::string& sql);

  /// These take the text by reference: it must live until the statement has been run or reset.
  Statement& bind(int parameter, std::string_view text);
  Statement& bindBytes(int parameter, std::string_view bytes);
  Statement& bind(int parameter, std::int64_t number);
  Statement& bind(int parameter, std::uint64_t number);
  Statement& bind(int parameter, double number);
  Statement& bindNull(int parameter);
  template <typename Value>
  Statement& bind(int parameter, const std::optional<Value>& value) {
    return value ? bind(parameter, *value) : bindNull(parameter);
  }

  /// The next row; false after the last, and the statement can be run again.
  bool step();
  /// Runs one that has no rows.
  void run();

  bool isNull(int column) const;
  std::int64_t integer(int column) const;
  std::uint64_t count(int column) const;  ///< 0 where the number is negative
  double real(int column) const;
  std::string text(int column) const;
  /// Until the next step.
  std::string_view bytes(int column) const;

 private:
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const noexcept;
  };
  void check(int code) const;

  Database& m_database;
  std::unique_ptr<sqlite3_stmt, Finalizer> m_statement;
};

}  // namespace history
