#pragma once

#include <functional>
#include <optional>
#include <ostream>
#include <string>

#include "host/verbs/ReportFile.h"

namespace host {

/// Where the page of an answer goes: a file, with "-" standard output, with an empty name nowhere.
/// A file is opened before the answer is looked for: to find that it cannot be takes no time then.
class PageFile {
 public:
  /// Throws `UsageError` that names the file.
  explicit PageFile(const std::string& name);

  bool isWanted() const { return !m_name.empty(); }
  bool isStandardOutput() const { return m_name == "-"; }

  /// Throws `std::runtime_error` that names the file.
  void write(const std::function<void(std::ostream&)>& writer);

 private:
  std::string m_name;
  std::optional<ReportFile> m_file;
};

/// JSON and the page cannot both be standard output: throws `UsageError`.
void refuseTwoAnswers(bool isJson, const PageFile& page);

}  // namespace host
