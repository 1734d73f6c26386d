#include "substitute/cmpi.nsp/installation/FolderListing.h"

#include <algorithm>
#include <filesystem>

namespace cmpinsp {

namespace {

constexpr std::size_t kBlock = 16384;
constexpr auto kSeparator = static_cast<char>(std::filesystem::path::preferred_separator);

char lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter | 0x20) : letter;
}

}  // namespace

void FolderListing::add(const FolderEntry& entry) {
  m_entries.push_back({keep(entry.name), entry.kind, keep(entry.ending)});
}

void FolderListing::sort() {
  std::sort(m_entries.begin(), m_entries.end(),
            [](const FolderEntry& one, const FolderEntry& other) { return one.name < other.name; });
}

std::string_view FolderListing::keep(std::string_view text) {
  if (text.empty()) return {};
  if (text.size() > m_room) {
    m_room = std::max(kBlock, text.size());
    m_blocks.emplace_back(new char[m_room]);
    m_next = m_blocks.back().get();
  }
  const char* const kept = m_next;
  m_next = std::copy(text.begin(), text.end(), m_next);
  m_room -= text.size();
  return {kept, text.size()};
}

std::string pathIn(const std::string& folder, std::string_view name) {
  const bool isSeparated = folder.empty() || folder.back() == '/' || folder.back() == kSeparator;
  std::string path;
  path.reserve(folder.size() + 1 + name.size());
  path += folder;
  if (!isSeparated) path += kSeparator;
  path += name;
  return path;
}

bool hasEnding(std::string_view name, std::string_view ending) {
  if (name.size() <= ending.size()) return false;
  name.remove_prefix(name.size() - ending.size());
  return std::equal(ending.begin(), ending.end(), name.begin(),
                    [](char one, char other) { return lower(one) == lower(other); });
}

}  // namespace cmpinsp
