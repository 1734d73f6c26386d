#include "tests/history/PowerCut.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace history {
namespace fs = std::filesystem;

namespace {

std::string contentOfFile(const std::string& path) {
  std::ifstream stream(fs::u8path(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace

PowerCut& PowerCut::instance() {
  static PowerCut one;
  return one;
}

void PowerCut::plan(std::uint64_t operations) {
  m_files.clear();
  m_instead = nullptr;
  m_left = operations;
  m_hasHappened = false;
}

bool PowerCut::mayGoOn() {
  if (m_left > 0) {
    --m_left;
    return true;
  }
  if (m_instead) m_instead();
  m_hasHappened = true;
  return false;
}

void PowerCut::opened(const std::string& path) {
  const auto [entry, isNew] = m_files.try_emplace(path);
  if (isNew) entry->second.kept = contentOfFile(path);
  entry->second.isDeleted = false;
}

void PowerCut::written(const std::string& path, std::uint64_t offset, const std::string& bytes) {
  m_files[path].pending.push_back({offset, bytes, false});
}

void PowerCut::truncated(const std::string& path, std::uint64_t size) {
  m_files[path].pending.push_back({size, {}, true});
}

void PowerCut::synced(const std::string& path) {
  File& file = m_files[path];
  for (const Write& write : file.pending) apply(write, file.kept);
  file.pending.clear();
}

void PowerCut::deleted(const std::string& path) { m_files[path].isDeleted = true; }

void PowerCut::apply(const Write& write, std::string& content) {
  const std::size_t offset = static_cast<std::size_t>(write.offset);
  if (write.isTruncation) {
    content.resize(offset);
    return;
  }
  if (content.size() < offset + write.bytes.size()) content.resize(offset + write.bytes.size());
  content.replace(offset, write.bytes.size(), write.bytes);
}

std::string PowerCut::contentOf(const File& file, Fate fate) {
  std::string content = file.kept;
  const std::size_t count = file.pending.size();
  for (std::size_t i = 0; i < count; ++i) {
    Write write = file.pending[i];
    if (fate == Fate::kLost || (fate == Fate::kEveryOther && i % 2 == 0) ||
        (fate == Fate::kFirstHalf && i >= count / 2)) {
      continue;
    }
    if (fate == Fate::kLastTorn && i + 1 == count && !write.isTruncation) {
      write.bytes.resize(write.bytes.size() / 2);
    }
    apply(write, content);
  }
  return content;
}

void PowerCut::leaveBehind(Fate fate) {
  for (const auto& [path, file] : m_files) {
    // What was deleted may be there again, as the folder was not told to keep it so.
    if (file.isDeleted && fate != Fate::kLost) continue;
    std::ofstream stream(fs::u8path(path), std::ios::binary | std::ios::trunc);
    const std::string content = contentOf(file, fate);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
  }
}

}  // namespace history
