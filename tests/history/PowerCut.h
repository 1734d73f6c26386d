#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace history {

/// A layer of files for SQLite that remembers what a disk has been told to keep. After a number of
/// writes, calls for syncing, truncations and deletions, the power goes: from there on all of them
/// fail, and afterwards the files hold what a disk may have made of it. There is one of it in a
/// process.
class PowerCut {
 public:
  /// What becomes of writes since the last sync.
  enum class Fate { kLost, kKept, kEveryOther, kFirstHalf, kLastTorn };

  /// Its name for SQLite; registers it at the first call.
  static const char* layer();
  static PowerCut& instance();

  /// The power stays for that many operations. Forgets what was before.
  void plan(std::uint64_t operations);
  /// What is done in the place of the cut.
  void instead(std::function<void()> act) { m_instead = std::move(act); }
  bool hasHappened() const { return m_hasHappened; }
  /// Once everything is closed: gives the files the content that they have after the cut.
  void leaveBehind(Fate fate);

  /// For the layer. False: the power is gone.
  bool mayGoOn();
  void opened(const std::string& path);
  void written(const std::string& path, std::uint64_t offset, const std::string& bytes);
  void truncated(const std::string& path, std::uint64_t size);
  void synced(const std::string& path);
  void deleted(const std::string& path);

 private:
  struct Write {
    std::uint64_t offset;
    std::string bytes;
    bool isTruncation;
  };
  struct File {
    std::string kept;            ///< what is on the disk for certain
    std::vector<Write> pending;  ///< what may be
    bool isDeleted = false;
  };
  static void apply(const Write& write, std::string& content);
  static std::string contentOf(const File& file, Fate fate);

  std::map<std::string, File> m_files;
  std::function<void()> m_instead;
  std::uint64_t m_left = 0;
  bool m_hasHappened = false;
};

}  // namespace history
