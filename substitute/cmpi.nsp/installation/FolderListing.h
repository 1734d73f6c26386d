#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace cmpinsp {

/// What a folder says of something in it, without a look at the thing itself.
struct FolderEntry {
  enum class Kind : std::uint8_t { eFile, eFolder, eLink, eOther };
  std::string_view name;  ///< UTF-8; empty where it is no text: Windows lets files have such names
  Kind kind = Kind::eOther;
  std::string_view ending;  ///< of a name that is no text: what follows its last dot, with that
};

/// What is in a folder, but for the folder itself and the one above. The texts live as long as the
/// listing.
class FolderListing {
 public:
  /// In the order of their names' bytes.
  const std::vector<FolderEntry>& entries() const { return m_entries; }
  /// Then the entries are those that were told before it.
  const std::error_code& error() const { return m_error; }

 private:
  friend FolderListing listFolder(const std::string& folder);
  void add(const FolderEntry& entry);
  void sort();
  std::string_view keep(std::string_view text);

  std::vector<std::unique_ptr<char[]>> m_blocks;
  char* m_next = nullptr;  ///< free from here on, in the last block
  std::size_t m_room = 0;
  std::vector<FolderEntry> m_entries;
  std::error_code m_error;
};

FolderListing listFolder(const std::string& folder);

/// The path of `name` in `folder`.
std::string pathIn(const std::string& folder, std::string_view name);

/// Whether `name` has more than `ending` and ends with that, without case.
bool hasEnding(std::string_view name, std::string_view ending);

}  // namespace cmpinsp
