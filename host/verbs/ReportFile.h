#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "host/verbs/Destination.h"

namespace host {

/// A file that a report goes to. It is opened before anything runs, so that one that cannot be
/// written is known by then; but a command that is refused afterwards leaves what was there before
/// as it was, and no file where there was none.
class ReportFile : public Destination {
 public:
  /// Opens the file, made where it is missing. Throws `UsageError` that names it.
  explicit ReportFile(const std::string& name);
  /// Takes away what was made for nothing.
  ~ReportFile() override;

  /// Makes it empty, once.
  void begin() override;

  std::ostream& stream() override { return m_stream; }

 protected:
  const std::filesystem::path& path() const override { return m_path; }

 private:
  std::string m_name;
  std::filesystem::path m_path;
  bool m_wasThere;
  bool m_hasBegun = false;
  std::ofstream m_stream;
};

}  // namespace host
