#include "host/verbs/PageFile.h"

#include <cerrno>
#include <iostream>
#include <stdexcept>
#include <system_error>

#include "host/Messages.h"

namespace host {

PageFile::PageFile(const std::string& name) : m_name(name) {
  if (!name.empty() && name != "-") m_file.emplace(name);
}

void PageFile::write(const std::function<void(std::ostream&)>& writer) {
  if (isStandardOutput()) return writer(std::cout);
  if (!m_file) return;
  m_file->begin();
  errno = 0;
  writer(m_file->stream());
  if (m_file->stream().flush()) return;
  const std::string reason = errno == 0 ? "" : ": " + std::generic_category().message(errno);
  throw std::runtime_error(m_name + " cannot be written" + reason);
}

void refuseTwoAnswers(bool isJson, const PageFile& page) {
  if (isJson && page.isStandardOutput()) {
    throw UsageError("--json and --html cannot both be standard output");
  }
}

}  // namespace host
