#pragma once

#include <filesystem>
#include <fstream>
#include <string>

namespace host {

/// A file that a report goes to. It is opened before anything runs, so that one that cannot be
/// written is known by then; but a command that is refused afterwards leaves what was there before
/// as it was, and no file where there was none.
class ReportFile {
 public:
  /// Opens the file, made where it is missing. Throws `UsageError` that names it.
  explicit ReportFile(const std::string& name);
  /// Takes away what was made for nothing.
  ~ReportFile();
  ReportFile(const ReportFile&) = delete;
  ReportFile& operator=(const ReportFile&) = delete;

  /// Makes it empty, once: from now on it is the report's. Throws `std::runtime_error` that names
  /// it where it cannot be emptied.
  void begin();

  /// To be written to behind `begin`.
  std::ostream& stream() { return m_stream; }

  /// Whether two writers would write over each other. A device takes as many as there are.
  bool isSameAs(const ReportFile& other) const;

 private:
  std::string m_name;
  std::filesystem::path m_path;
  bool m_wasThere;
  bool m_hasBegun = false;
  std::ofstream m_stream;
};

}  // namespace host
