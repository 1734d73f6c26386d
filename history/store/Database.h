#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

struct sqlite3;

namespace history {

/// A file of SQLite, opened in a way that trusts nothing in it: no triggers, no views, no functions
/// called by its schema, no text longer than `kLongest`. For one thread at a time.
class Database {
 public:
  /// The longest text or blob that is written or read.
  static constexpr int kLongest = 512 * 1024 * 1024;

  enum class Use { kWritten, kUnchanging };

  /// Opens or makes the file; one that is unchanging, which nobody writes as long as it is open,
  /// takes no file beside it. `layer` is the name of SQLite's layer of files, or null. Waits for
  /// others that write for as long as `patience`. Throws `HistoryError`.
  Database(const std::filesystem::path& file, const char* layer, std::chrono::milliseconds patience,
           Use use = Use::kWritten);

  void run(const std::string& sql);
  /// The first column of the first row; 0 where there is none.
  std::int64_t number(const std::string& sql);

  std::int64_t lastRow() const;
  /// How many rows the last statement has changed.
  std::int64_t changes() const;
  bool isReadOnly() const;
  const std::string& name() const { return m_name; }  ///< of the file, fit for messages
  sqlite3* handle() const { return m_handle.get(); }

  /// Throws what an error of SQLite means: `DamagedHistory`, `BusyHistory` or `HistoryError`.
  [[noreturn]] void fail(int code) const;

 private:
  struct Closer {
    void operator()(sqlite3* handle) const noexcept;
  };

  std::string m_name;
  std::unique_ptr<sqlite3, Closer> m_handle;
};

/// Changes that happen together or not at all; begun as a writer, so that it waits for others
/// before it has read anything. Undone unless `commit` was called.
class Transaction {
 public:
  explicit Transaction(Database& database);
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  ~Transaction();
  void commit();

 private:
  Database& m_database;
  bool m_isOpen = true;
};

}  // namespace history
