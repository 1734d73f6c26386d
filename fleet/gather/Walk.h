#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "fleet/Answer.h"

namespace fleet {

/// The files that may be streams: those that are named, whatever they are called, and of folders,
/// however deep, those whose names end in .jsonl or .json. It keeps a folder a level, not the
/// files. Links to folders are not followed.
class Walk {
 public:
  explicit Walk(std::vector<std::string> names);

  /// The next file; false where there is none. What cannot be looked at is complained about.
  bool next(std::filesystem::path& file);
  std::vector<Complaint>& complaints() { return m_complaints; }

 private:
  bool openNext(std::filesystem::path& file);
  bool step(std::filesystem::path& file);
  bool enter(const std::filesystem::path& folder);
  void complain(const std::filesystem::path& path, const std::string& text);

  std::vector<std::string> m_names;
  std::size_t m_next = 0;
  std::vector<std::filesystem::directory_iterator> m_open;
  std::vector<Complaint> m_complaints;
};

}  // namespace fleet
