#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <utility>

#include "diagsrunner/DiagsRunner.h"
#include "exclusion/FilterDiagsParser.h"
#include "framework/TVORException.h"
#include "platform/Platform.h"
#include "runner/CoreLog.h"
#include "runner/DataFile.h"
#include "runner/Properties.h"
#include "runner/Text.h"

namespace diagsrunner {

using NZELVOR20::TVORException;

namespace {

std::optional<std::uint32_t> matrixFileSize(const std::string& path) {
  try {
    return dataFileSize(path);
  } catch (const TVORException&) {
    logError("Error opening excludetestmatrix.xml");
    return std::nullopt;
  }
}

platform::Buffer allocateMatrixBuffer(std::uint32_t size) {
  try {
    return allocateTextBuffer(size);
  } catch (const TVORException&) {
    logError("Error loading excludetestmatrix.xml");
    throw;
  }
}

/// Null where there is no file to filter by.
platform::Buffer readMatrixFile() {
  const std::string path = dataFilePath("excludetestmatrix.xml");
  const std::optional<std::uint32_t> size = matrixFileSize(path);
  if (!size) {
    return nullptr;
  }
  platform::Buffer buffer = allocateMatrixBuffer(*size);
  if (!platform::readFile(path, buffer.get(), *size)) {
    return nullptr;
  }
  return buffer;
}

/// An item that tells no service is not hidden.
bool providesOneOf(const InstanceHandle& item, const std::vector<std::string>& fragments) {
  const PropertyHandle provided =
      item ? item->GetProperty("ServiceProvided", {}) : PropertyHandle();
  if (!provided) {
    return false;
  }
  const std::string path = provided->GetValue({}).ToReference().GetPath();
  logTrace("DiagsRunner::filterDiagsItems serviceProvided OP = ", path);
  return std::any_of(fragments.begin(), fragments.end(),
                     [&](const std::string& fragment) { return contains(path, fragment); });
}

/// Moves the items that stay to the front of a list, in their order. Wherever the walk ends, by an
/// exception too, the list holds what stayed and what was not looked at yet.
class Compaction {
 public:
  explicit Compaction(std::vector<InstanceHandle>& items) : m_items(items) {}
  Compaction(const Compaction&) = delete;
  Compaction& operator=(const Compaction&) = delete;
  ~Compaction() {
    const auto kept = m_items.begin() + static_cast<std::ptrdiff_t>(m_kept);
    m_items.erase(kept, kept + static_cast<std::ptrdiff_t>(m_next - m_kept));
  }

  bool atEnd() const { return m_next == m_items.size(); }
  const InstanceHandle& current() const { return m_items[m_next]; }
  void remove() { m_items[m_next++].reset(); }
  void keep() {
    if (m_kept != m_next) {
      m_items[m_kept] = std::move(m_items[m_next]);
    }
    ++m_kept;
    ++m_next;
  }

 private:
  std::vector<InstanceHandle>& m_items;
  std::size_t m_kept = 0;
  std::size_t m_next = 0;
};

void removeMatching(std::vector<InstanceHandle>& items, const std::vector<std::string>& fragments) {
  for (Compaction walk(items); !walk.atEnd();) {
    if (providesOneOf(walk.current(), fragments)) {
      logTrace("DiagsRunner::filterDiagsItems - erasing: ",
               walk.current()->GetObjectPath({}).GetPath());
      walk.remove();
    } else {
      walk.keep();
    }
  }
}

/// Removes what the matrix in `text` hides on the machine `biosID`.
void filterByMatrix(DiagsRunner& runner, const std::string& biosID, char* text,
                    std::vector<InstanceHandle>& items) {
  FilterDiagsParser parser;
  parser.Parse(text);
  const ExclusionMatrix matrix = parser.GetExclusionMatrix();
  runner.filterDiagsItemsLogger(matrix);
  const auto entry = matrix.find(lowerCased(biosID));
  if (entry != matrix.end()) {
    removeMatching(items, entry->second);
  }
}

}  // namespace
}  // namespace diagsrunner

void DiagsRunner::filterDiagsItems(std::vector<boost::shared_ptr<NZELVOR20::ICIMInstance>>& items) {
  diagsrunner::logTrace("Entering DiagsRunner::filterDiagsItems()");
  const diagsrunner::platform::Buffer text = diagsrunner::readMatrixFile();
  if (!text) {
    return;
  }
  diagsrunner::filterByMatrix(*this, m_biosID, text.get(), items);
  diagsrunner::logTrace("Leaving DiagsRunner::filterDiagsItems()");
}

void DiagsRunner::filterDiagsItemsLogger(std::map<std::string, std::vector<std::string>> matrix) {
  diagsrunner::logTrace("Entering DiagsRunner::filterDiagsItemsLogger()");
  for (const auto& [biosID, fragments] : matrix) {
    for (const std::string& fragment : fragments) {
      diagsrunner::logTrace(biosID, " -> ", fragment);
    }
  }
  diagsrunner::logTrace("Leaving DiagsRunner::filterDiagsItemsLogger()");
}
