#include "host/verbs/ReportFile.h"

#include <cerrno>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "host/Messages.h"

namespace host {
namespace {

bool isThere(const std::filesystem::path& path) {
  std::error_code failure;
  return std::filesystem::exists(path, failure);
}

bool isPlainFile(const std::filesystem::path& path) {
  std::error_code failure;
  return std::filesystem::is_regular_file(path, failure);
}

}  // namespace

ReportFile::ReportFile(const std::string& name)
    : m_name(name), m_path(std::filesystem::u8path(name)), m_wasThere(isThere(m_path)) {
  errno = 0;
  m_stream.open(m_path, std::ios::binary | std::ios::app);
  if (m_stream) return;
  const std::string reason = errno == 0 ? "" : ": " + std::generic_category().message(errno);
  throw UsageError(name + " cannot be written" + reason);
}

ReportFile::~ReportFile() {
  if (m_hasBegun || m_wasThere) return;
  m_stream.close();
  std::error_code failure;
  std::filesystem::remove(m_path, failure);
}

void ReportFile::begin() {
  if (std::exchange(m_hasBegun, true) || !m_wasThere || !isPlainFile(m_path)) return;
  std::error_code failure;
  std::filesystem::resize_file(m_path, 0, failure);
  if (failure) throw std::runtime_error(m_name + " cannot be emptied: " + failure.message());
}

}  // namespace host
