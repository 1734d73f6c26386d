#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/events/Event.h"
#include "history/Records.h"
#include "history/store/Statement.h"
#include "history/store/Store.h"

namespace history {

/// Writes one run: its row, which the constructor makes from the first event, the lines of its
/// events, and the rows of its tests and measurements. Events wait until there are enough of them
/// for a transaction.
class RunWriter {
 public:
  RunWriter(Store& store, const engine::Event& first);
  RunWriter(const RunWriter&) = delete;
  RunWriter& operator=(const RunWriter&) = delete;
  /// Writes what waits, if it can.
  ~RunWriter();

  void add(const engine::Event& event);
  const std::string& id() const { return m_id; }

 private:
  void begin(const engine::Event& first);
  bool insertRow(const engine::Event& first);
  void keep(const engine::Event& event);
  void leaveOut(const engine::Event& event);
  void append(const engine::Event& event);
  void count(const engine::Event& event);
  bool mustWrite(const engine::Event& event) const;

  void write();
  void writeRow(const engine::Event& event);
  void writeTest(const engine::Event& event, const engine::TestStarted& test);
  void writeEnd(const engine::Event& event, const engine::Ended& end);
  void writeMeasurement(const engine::Event& event, const engine::Measurement& measurement);
  void writeTotals();
  void makeRoom();

  Store& m_store;
  std::int64_t m_number = 0;
  std::string m_id;

  std::string m_lines;                ///< that wait
  std::vector<engine::Event> m_rows;  ///< that wait
  engine::Time m_written;             ///< the first event after the last writing
  std::uint64_t m_bytes = 0;          ///< of the lines kept so far
  std::uint64_t m_bytesWithRoom = 0;  ///< when room was made the last time
  std::uint64_t m_leftOut = 0;
  Counts m_tests;
  bool m_hasEnded = false;
  bool m_isBroken = false;

  Statement m_insertChunk;
  Statement m_insertTest;
  Statement m_endTest;
  Statement m_insertMeasurement;
  Statement m_updateRun;
};

}  // namespace history
