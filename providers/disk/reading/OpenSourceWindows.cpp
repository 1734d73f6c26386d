#include <windows.h>

#include <algorithm>

#include "providers/common/WindowsText.h"
#include "providers/disk/reading/BlockSource.h"
#include "providers/disk/reading/SlotMemory.h"

namespace providers::disk {

namespace {

/// A read for each slot, each with an event by which its end is known.
class OverlappedSource : public BlockSource {
 public:
  OverlappedSource(HANDLE file, const SourceShape& shape)
      : m_file(file),
        m_shape(shape),
        m_memory(shape.slots, shape.slotBytes),
        m_reads(new OVERLAPPED[shape.slots]()),
        m_states(shape.slots, State::Free) {
    for (unsigned slot = 0; slot < shape.slots; ++slot)
      m_events.push_back(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  }
  OverlappedSource(const OverlappedSource&) = delete;
  OverlappedSource& operator=(const OverlappedSource&) = delete;
  ~OverlappedSource() override {
    CancelIoEx(m_file, nullptr);
    std::vector<ReadAnswer> ended;
    for (int i = 0; i < kLastWaits && inFlight() > 0; ++i) collect(ended, kLastWait);
    if (inFlight() > 0) {
      m_memory.abandon();
      m_reads.release();  // NOLINT: the system may still write there
      return;
    }
    for (HANDLE event : m_events) CloseHandle(event);
    CloseHandle(m_file);
  }

  unsigned slots() const override { return m_shape.slots; }
  std::uint32_t slotBytes() const override { return m_shape.slotBytes; }
  const std::uint8_t* data(unsigned slot) const override { return m_memory.of(slot); }
  const char* means() const override { return "overlapped reads"; }

  void start(unsigned slot, const Extent& extent) override {
    OVERLAPPED& read = m_reads[slot];
    read = {};
    read.Offset = static_cast<DWORD>(extent.offset);
    read.OffsetHigh = static_cast<DWORD>(extent.offset >> 32);
    read.hEvent = m_events[slot];
    ResetEvent(read.hEvent);
    m_states[slot] = State::Reading;
    if (ReadFile(m_file, m_memory.of(slot), extent.bytes, nullptr, &read)) return;
    const DWORD error = GetLastError();
    if (error == ERROR_IO_PENDING) return;
    m_states[slot] = State::Free;
    m_refused.push_back(answerOf(slot, 0, error));
  }

  void collect(std::vector<ReadAnswer>& ended, double seconds) override {
    ended.insert(ended.end(), m_refused.begin(), m_refused.end());
    const bool any = !m_refused.empty();
    m_refused.clear();
    if (!any) waitForOne(seconds);
    for (unsigned slot = 0; slot < m_shape.slots; ++slot) {
      DWORD got = 0;
      if (m_states[slot] != State::Reading ||
          WaitForSingleObject(m_events[slot], 0) != WAIT_OBJECT_0)
        continue;
      const BOOL good = GetOverlappedResult(m_file, &m_reads[slot], &got, FALSE);
      m_states[slot] = State::Free;
      ended.push_back(answerOf(slot, got, good ? ERROR_SUCCESS : GetLastError()));
    }
  }

 private:
  enum class State { Free, Reading };
  static constexpr int kLastWaits = 10;
  static constexpr double kLastWait = 0.5;

  static ReadAnswer answerOf(unsigned slot, DWORD got, DWORD error) {
    // The end of the disk is no error here but what it is elsewhere: a read that brings nothing.
    if (error == ERROR_HANDLE_EOF) return {slot, 0, ReadError::None};
    return {slot, error == ERROR_SUCCESS ? got : 0, readErrorOf(static_cast<int>(error))};
  }

  void waitForOne(double seconds) {
    std::vector<HANDLE> events;
    for (unsigned slot = 0; slot < m_shape.slots; ++slot)
      if (m_states[slot] == State::Reading) events.push_back(m_events[slot]);
    const auto count =
        static_cast<DWORD>(std::min<std::size_t>(events.size(), MAXIMUM_WAIT_OBJECTS));
    if (count > 0)
      WaitForMultipleObjects(count, events.data(), FALSE, static_cast<DWORD>(seconds * 1000));
  }

  std::size_t inFlight() const {
    return static_cast<std::size_t>(std::count(m_states.begin(), m_states.end(), State::Reading));
  }

  const HANDLE m_file;
  const SourceShape m_shape;
  SlotMemory m_memory;
  std::unique_ptr<OVERLAPPED[]> m_reads;
  std::vector<HANDLE> m_events;
  std::vector<State> m_states;
  std::vector<ReadAnswer> m_refused;
};

std::string whyNot(const std::string& node, DWORD error) {
  const std::string text =
      node + " cannot be opened for reading (error " + std::to_string(error) + ")";
  return error == ERROR_ACCESS_DENIED ? text + "; run as administrator" : text;
}

}  // namespace

OpenedSource openSource(const std::string& node, const SourceShape& shape, const std::string&) {
  const HANDLE file =
      CreateFileW(toWide(node).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                  OPEN_EXISTING, FILE_FLAG_NO_BUFFERING | FILE_FLAG_OVERLAPPED, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {nullptr, whyNot(node, GetLastError())};
  return {std::make_unique<OverlappedSource>(file, shape), {}};
}

}  // namespace providers::disk
