#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/events/Event.h"
#include "engine/events/EventSink.h"
#include "history/HistoryError.h"
#include "history/Records.h"

namespace history {

struct Store;

struct Options {
  /// How large the file may grow; the oldest runs make room.
  std::uint64_t mostBytes = 256U * 1024U * 1024U;
  /// How long to wait for others that write.
  std::chrono::milliseconds patience = std::chrono::seconds(10);
  /// What to do with a damaged file: with `true` it is put aside and a new one begun, so that a run
  /// can be kept; with `false` the history is not opened.
  bool putsDamagedAside = false;
  /// SQLite's layer of files, by its name; null: the system's. Another one can break, as tests do.
  const char* layer = nullptr;
};

/// Every run that was made, kept in a folder in one file of SQLite, which several processes may
/// write at once. For one thread at a time. Everything throws `HistoryError` that names the file.
class History {
 public:
  /// Opens the history in that folder, which is made if it is missing, with rights for its owner
  /// alone.
  static History open(const std::filesystem::path& directory, const Options& options = {});

  History(History&&) noexcept;
  History& operator=(History&&) noexcept;
  ~History();

  /// What the user should know about the opening: that a damaged file was put aside, and where.
  /// Else empty.
  const std::string& notice() const { return m_notice; }

  /// The run that `word` stands for: its identifier, the beginning of one that no other has,
  /// "last", or "last-1" for the one before it. Throws `HistoryError` where there is none, or
  /// several.
  std::string resolve(std::string_view word) const;

  /// The newest first.
  std::vector<RunRecord> runs(const RunFilter& filter = {}, std::size_t most = SIZE_MAX) const;
  /// Throws `HistoryError` where there is no run of that identifier, as do the next ones.
  RunRecord run(const std::string& id) const;

  /// Hands the run's events to the sink, in their order, as they come from the file. Those of a run
  /// that was cut off end somewhere.
  void events(const std::string& id, engine::EventSink& sink) const;

  /// The first of them, which names the machine; nothing where it was not written any more.
  std::optional<engine::RunStarted> start(const std::string& id) const;

  Difference diff(const std::string& before, const std::string& after) const;

  /// The tests of all runs, each once, by the test identifier.
  std::vector<TestName> tests() const;

  /// How the measurements of a test went over the last `most` runs. The test is a test identifier
  /// or the Name of a service; with an empty `measurement`, all that are numbers.
  std::vector<Trend> trend(const std::string& test, const std::string& measurement = {},
                           std::size_t most = 1000) const;

  /// Throws `HistoryError` where somebody still writes it.
  void remove(const std::string& id);

  /// Removes the oldest runs until the file is no larger; those that are being written stay.
  std::uint64_t keepWithin(std::uint64_t mostBytes);

 private:
  friend class Recorder;
  engine::Event eventIn(std::string_view line, const std::string& id) const;
  explicit History(std::unique_ptr<Store> store);

  std::unique_ptr<Store> m_store;
  std::string m_notice;
};

}  // namespace history
