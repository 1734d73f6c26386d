#pragma once

#include <filesystem>
#include <sstream>
#include <string>

#include "host/verbs/Destination.h"

namespace host {

/// A file that others read at any time, and that therefore has either what was there before or the
/// whole report: that is written beside it, under a name that ends in ".tmp", and takes its place
/// when the run has ended. A run that is cut off leaves the file as it was. A device or a pipe,
/// which cannot be replaced, is written to.
class ReplacedFile : public Destination {
 public:
  /// Tries whether a file can be made beside it. Throws `UsageError` that names it.
  explicit ReplacedFile(const std::string& name);

  std::ostream& stream() override { return m_text; }
  void settle() override;

 protected:
  const std::filesystem::path& path() const override { return m_path; }

 private:
  std::filesystem::path makeBeside(const std::string& text) const;
  void write(const std::filesystem::path& path, const std::string& text) const;
  [[noreturn]] void fail(const std::string& reason) const;

  std::string m_name;
  std::filesystem::path m_path;
  bool m_isReplaced;
  std::ostringstream m_text;
};

}  // namespace host
